#pragma once

#include "FUnknown.h"
#include "IMeterObserver.h"
#include "IPrmObserver.h"

// The hardware's parameter memory. Values are signed integers in the range
// the host reports per parameter and channel. Every call returns a result
// code of the plug-in standard; negative means failure.
class IMemAPI : public FUnknown
{
public:
    // `index` selects one character of a string parameter and is 0 otherwise.
    virtual int getValue(unsigned short prmId, unsigned short ch, int *value, int index = 0) = 0;
    virtual int setValue(
        unsigned short prmId, unsigned short ch, int value, int index = 0, int reserved = 0, int notify = 1)
        = 0;
    virtual int getRange(unsigned short prmId, unsigned short ch, int *min, int *max) = 0;
    // The value that the current morph position implies for the parameter.
    virtual int getBaseValue(unsigned short prmId, unsigned short ch, int *value) = 0;
    virtual int addPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer, int index = 0)
        = 0;
    virtual int removePrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) = 0;
    // 0 while `observer` observes the parameter on the channel, non-zero when
    // it does not (so an editor adds it on non-zero and removes it on 0).
    virtual int queryPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) = 0;
    virtual int getMeterNotifier(IMeterNotifier **notifier) = 0;
    virtual int getDefault(unsigned short prmId, unsigned short ch, int *value) = 0;
    // Writes the value's text, NUL-terminated, in the local 8-bit encoding.
    virtual int getValueString(unsigned short prmId, unsigned short ch, int value, char *buffer, int size)
        = 0;
    // Parses a value text into the nearest valid value without writing it.
    virtual int setValueString(unsigned short prmId, unsigned short ch, const char *text, int *value) = 0;

protected:
    ~IMemAPI() = default;
};
