#pragma once

#include <QList>

#include "Common/ComponentBase.h"

class IMemAPI;
class IModelInfo;

// The state component an effect editor hands to the host. The values never
// live here: getState reads them out of the host's parameter memory and
// serialises them, setState parses a stream and writes them back. The base
// stores a version and one big-endian normalised float per key.
class EffectComponent : public ComponentBase
{
public:
    static constexpr int DataVersionSize = 4;

    EffectComponent();
    ~EffectComponent() override;

    int32_t setState(IBStream *state) override;
    int32_t getState(IBStream *state) override;
    // Four bytes, no terminator.
    virtual const char *getDataVersion() const;
    // The keys of the float block, in stream order; a null key keeps its slot.
    virtual QList<const char *> getParameterList(const unsigned char *version) const;

    void setModelInfo(IModelInfo *modelInfo) { m_pModelInfo = modelInfo; }
    void setMemAPI(IMemAPI *memAPI) { m_pMemAPI = memAPI; }
    void setCh(int ch) { m_ch = ch; }
    IModelInfo *modelInfo() const { return m_pModelInfo; }
    IMemAPI *memAPI() const { return m_pMemAPI; }
    int ch() const { return m_ch; }

protected:
    unsigned short channel() const { return static_cast<unsigned short>(m_ch); }
    // The host's id for a key; false when the model does not know it.
    bool findParameter(const char *key, unsigned short *prmId) const;
    // The normalised current value; false when the key or a host read fails.
    bool readNormalized(const char *key, float *value) const;
    // Writes all `count` bytes; a host error or a short write is returned.
    static int32_t writeAll(IBStream *stream, const void *data, int32_t count);
    static int32_t readAll(IBStream *stream, void *data, int32_t count);

private:
    IModelInfo *m_pModelInfo = nullptr;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch = 0;
};
