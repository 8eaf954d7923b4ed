#include "Common/ParameterLookup.h"

#include "Interfaces/IModelInfo.h"

bool ParameterLookup::parameter(const char *key, unsigned short *prmId, unsigned short *second) const
{
    if (!m_pModelInfo || !key)
        return false;
    unsigned short index = 0;
    if (!m_pModelInfo->findParameter(&index, key))
        return false;
    unsigned short id = 0;
    unsigned short count = 0;
    if (!m_pModelInfo->getParameterInfo(&id, &count, index))
        return false;
    if (prmId)
        *prmId = id;
    if (second)
        *second = count;
    return true;
}

bool ParameterLookup::meterIndex(const char *key, unsigned short ch, bool right, unsigned short *index) const
{
    if (!m_pModelInfo || !key)
        return false;
    unsigned short meter = 0;
    if (!m_pModelInfo->findMeter(&meter, key))
        return false;
    unsigned short base = 0;
    unsigned short channels = 0;
    if (!m_pModelInfo->getMeterInfo(&base, &channels, meter))
        return false;
    if (channels <= ch)
        return false;
    if (index)
        *index = static_cast<unsigned short>(base + 2 * ch + (right ? 1 : 0));
    return true;
}
