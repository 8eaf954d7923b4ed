#pragma once

// The host's description of one hardware model: its effects, parameters and
// meters. Keys are short ASCII strings such as "fx_cmp_atck" or "meter_eq".
class IModelInfo
{
public:
    virtual ~IModelInfo() = default;

    // Fills the kind and the effect id of effect entry `index`.
    virtual bool getFxInfo(unsigned short *kind, unsigned short *fxId, unsigned int index) = 0;
    virtual unsigned short getFxCount() = 0;
    virtual bool findParameter(unsigned short *index, const char *key) = 0;
    // Fills the id used with IMemAPI and the parameter's channel count.
    virtual bool getParameterInfo(unsigned short *prmId, unsigned short *channels, unsigned short index) = 0;
    virtual unsigned short getParameterCount() = 0;
    virtual bool findMeter(unsigned short *index, const char *key) = 0;
    // Fills the meter's first position in the meter array and its channel count.
    virtual bool getMeterInfo(unsigned short *base, unsigned short *channels, unsigned short index) = 0;
};
