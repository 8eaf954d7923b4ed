#include "Common/EffectComponent.h"

#include <algorithm>
#include <cmath>

#include "Interfaces/IBStream.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IModelInfo.h"
#include "ORVChStrip/Chunk/NormalizedValue.h"

using namespace NormalizedValue;

EffectComponent::EffectComponent()
    : ComponentBase(0)
{ }

EffectComponent::~EffectComponent() = default;

const char *EffectComponent::getDataVersion() const
{
    return "0000";
}

QList<const char *> EffectComponent::getParameterList(const unsigned char *) const
{
    return {};
}

bool EffectComponent::findParameter(const char *key, unsigned short *prmId) const
{
    if (!key || !m_pModelInfo)
        return false;
    unsigned short index = 0;
    unsigned short channels = 0;
    return m_pModelInfo->findParameter(&index, key)
        && m_pModelInfo->getParameterInfo(prmId, &channels, index);
}

bool EffectComponent::readNormalized(const char *key, float *value) const
{
    unsigned short id = 0;
    int min = 0;
    int max = 0;
    int v = 0;
    if (!m_pMemAPI || !findParameter(key, &id) || m_pMemAPI->getRange(id, channel(), &min, &max) < 0
        || m_pMemAPI->getValue(id, channel(), &v, 0) < 0)
        return false;
    *value = normalized(v, min, max);
    return true;
}

int32_t EffectComponent::writeAll(IBStream *stream, const void *data, int32_t count)
{
    int32_t written = 0;
    const int32_t result = stream->write(data, count, &written);
    if (result != kResultOk)
        return result;
    return written == count ? kResultOk : kResultFalse;
}

int32_t EffectComponent::readAll(IBStream *stream, void *data, int32_t count)
{
    int32_t read = 0;
    const int32_t result = stream->read(data, count, &read);
    if (result != kResultOk)
        return result;
    return read == count ? kResultOk : kResultFalse;
}

int32_t EffectComponent::getState(IBStream *state)
{
    if (!state)
        return kResultFalse;
    if (const int32_t result = writeAll(state, getDataVersion(), DataVersionSize))
        return result;
    if (!m_pMemAPI || !m_pModelInfo)
        return kResultFalse;
    for (const char *key : getParameterList(nullptr)) {
        float value = 0.0f;
        if (readNormalized(key, &value))
            value = std::isnan(value) ? 0.0f : std::clamp(value, 0.0f, 1.0f);
        unsigned char bytes[4];
        writeBigEndianFloat(value, bytes);
        if (const int32_t result = writeAll(state, bytes, 4))
            return result;
    }
    return kResultOk;
}

int32_t EffectComponent::setState(IBStream *state)
{
    if (!state)
        return kResultFalse;
    unsigned char version[DataVersionSize];
    if (const int32_t result = readAll(state, version, DataVersionSize))
        return result;
    if (!m_pMemAPI || !m_pModelInfo)
        return kResultFalse;
    for (const char *key : getParameterList(version)) {
        unsigned char bytes[4];
        if (const int32_t result = readAll(state, bytes, 4))
            return result;
        float f = readBigEndianFloat(bytes);
        unsigned short id = 0;
        int min = 0;
        int max = 0;
        if (!findParameter(key, &id) || m_pMemAPI->getRange(id, channel(), &min, &max) < 0)
            continue;
        f = std::isnan(f) ? 0.0f : std::clamp(f, 0.0f, 1.0f);
        m_pMemAPI->setValue(id, channel(), denormalized(f, min, max), 0, 0, 1);
    }
    return kResultOk;
}
