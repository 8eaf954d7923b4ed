#pragma once

class IModelInfo;

// Turns parameter and meter keys into the host's ids through the model's
// description. Without a model it finds nothing. The editor keeps one that
// follows its model; its helpers hold that instead of the whole editor, and
// a widget that has a model but no editor makes its own.
class ParameterLookup
{
public:
    explicit ParameterLookup(IModelInfo *modelInfo = nullptr)
        : m_pModelInfo(modelInfo)
    { }

    IModelInfo *modelInfo() const { return m_pModelInfo; }
    void setModelInfo(IModelInfo *modelInfo) { m_pModelInfo = modelInfo; }

    // The parameter id of `key` and its second value (the channel count);
    // each is written only where the pointer is not null.
    bool parameter(const char *key, unsigned short *prmId, unsigned short *second = nullptr) const;
    // The position of the left (or right) entry of meter `key` on channel
    // `ch` in the host's meter array; false for a channel the meter lacks.
    bool meterIndex(const char *key, unsigned short ch, bool right, unsigned short *index) const;

private:
    IModelInfo *m_pModelInfo;
};
