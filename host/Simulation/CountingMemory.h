#pragma once

#include "Interfaces/IMemAPI.h"

// A parameter memory that passes every call on to another and counts the
// calls, so a benchmark or a test can tell what a gesture costs the host.
// Without echo, writes reach the memory but its observers are not told, as
// with a host that does not confirm a write by calling back.
class CountingMemory final : public IMemAPI
{
public:
    explicit CountingMemory(IMemAPI *memory)
        : m_pMemory(memory)
    { }

    int calls() const { return m_calls; }
    void resetCalls() { m_calls = 0; }
    void setEcho(bool echo) { m_echo = echo; }

    int32_t queryInterface(const char *iid, void **obj) override
    {
        ++m_calls;
        return m_pMemory->queryInterface(iid, obj);
    }
    uint32_t addRef() override { return 1; }
    uint32_t release() override { return 1; }
    int getValue(unsigned short prmId, unsigned short ch, int *value, int index) override
    {
        ++m_calls;
        return m_pMemory->getValue(prmId, ch, value, index);
    }
    int setValue(
        unsigned short prmId, unsigned short ch, int value, int index, int reserved, int notify) override
    {
        ++m_calls;
        return m_pMemory->setValue(prmId, ch, value, index, reserved, m_echo ? notify : 0);
    }
    int getRange(unsigned short prmId, unsigned short ch, int *min, int *max) override
    {
        ++m_calls;
        return m_pMemory->getRange(prmId, ch, min, max);
    }
    int getBaseValue(unsigned short prmId, unsigned short ch, int *value) override
    {
        ++m_calls;
        return m_pMemory->getBaseValue(prmId, ch, value);
    }
    int addPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer, int index) override
    {
        ++m_calls;
        return m_pMemory->addPrmObserver(prmId, ch, observer, index);
    }
    int removePrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) override
    {
        ++m_calls;
        return m_pMemory->removePrmObserver(prmId, ch, observer);
    }
    int queryPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) override
    {
        ++m_calls;
        return m_pMemory->queryPrmObserver(prmId, ch, observer);
    }
    int getMeterNotifier(IMeterNotifier **notifier) override
    {
        ++m_calls;
        return m_pMemory->getMeterNotifier(notifier);
    }
    int getDefault(unsigned short prmId, unsigned short ch, int *value) override
    {
        ++m_calls;
        return m_pMemory->getDefault(prmId, ch, value);
    }
    int getValueString(unsigned short prmId, unsigned short ch, int value, char *buffer, int size) override
    {
        ++m_calls;
        return m_pMemory->getValueString(prmId, ch, value, buffer, size);
    }
    int setValueString(unsigned short prmId, unsigned short ch, const char *text, int *value) override
    {
        ++m_calls;
        return m_pMemory->setValueString(prmId, ch, text, value);
    }

private:
    IMemAPI *m_pMemory;
    int m_calls = 0;
    bool m_echo = true;
};
