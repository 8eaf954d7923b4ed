#pragma once

// Receives the whole meter array. DB values are signed tenths of a decibel
// carried in unsigned ints; entry i lives at base + 2 * channel + side.
class IMeterObserver
{
public:
    virtual void notifyMeterLvlUpdated(unsigned int *levels, unsigned int count) = 0;
    virtual void notifyMeterDbUpdated(unsigned int *values, unsigned int count) = 0;

protected:
    ~IMeterObserver() = default;
};

class IMeterNotifier
{
public:
    virtual int addMeterObserver(IMeterObserver *observer) = 0;
    virtual int meterCount() = 0;
    virtual int removeMeterObserver(IMeterObserver *observer) = 0;

protected:
    ~IMeterNotifier() = default;
};
