#include "HostModel.h"

#include "ChannelStripModel.h"

HostModel::HostModel(
    QList<FxEntry> effects, QList<ParameterDefinition> parameters, QList<MeterDefinition> meters)
    : m_effects(std::move(effects))
    , m_parameters(std::move(parameters))
    , m_meters(std::move(meters))
{
    for (int i = 0; i < m_parameters.size(); ++i)
        m_parameterIndex.insert(m_parameters.at(i).key, i);
}

HostModel HostModel::channelStrip()
{
    return HostModel(
        ChannelStripModel::effects(), ChannelStripModel::parameters(), ChannelStripModel::meters());
}

bool HostModel::getFxInfo(unsigned short *kind, unsigned short *fxId, unsigned int index)
{
    if (index >= unsigned(m_effects.size()))
        return false;
    if (kind)
        *kind = m_effects.at(index).kind;
    if (fxId)
        *fxId = m_effects.at(index).id;
    return true;
}

unsigned short HostModel::getFxCount()
{
    return static_cast<unsigned short>(m_effects.size());
}

bool HostModel::findParameter(unsigned short *index, const char *key)
{
    if (!key)
        return false;
    const auto it = m_parameterIndex.constFind(QByteArray(key));
    if (it == m_parameterIndex.cend())
        return false;
    if (index)
        *index = static_cast<unsigned short>(*it);
    return true;
}

bool HostModel::getParameterInfo(unsigned short *prmId, unsigned short *channels, unsigned short index)
{
    if (index >= m_parameters.size())
        return false;
    if (prmId)
        *prmId = static_cast<unsigned short>(FirstParameterId + index);
    if (channels)
        *channels = 2;
    return true;
}

unsigned short HostModel::getParameterCount()
{
    return static_cast<unsigned short>(m_parameters.size());
}

bool HostModel::findMeter(unsigned short *index, const char *key)
{
    if (!key)
        return false;
    for (int i = 0; i < m_meters.size(); ++i) {
        if (m_meters.at(i).key == key) {
            if (index)
                *index = static_cast<unsigned short>(i);
            return true;
        }
    }
    return false;
}

bool HostModel::getMeterInfo(unsigned short *base, unsigned short *channels, unsigned short index)
{
    if (index >= m_meters.size())
        return false;
    unsigned short position = 0;
    for (int i = 0; i < index; ++i)
        position += 2 * m_meters.at(i).channels;
    if (base)
        *base = position;
    if (channels)
        *channels = m_meters.at(index).channels;
    return true;
}

const ParameterDefinition *HostModel::parameter(unsigned short prmId) const
{
    const int index = int(prmId) - FirstParameterId;
    return index >= 0 && index < m_parameters.size() ? &m_parameters.at(index) : nullptr;
}

unsigned short HostModel::parameterId(const char *key) const
{
    const auto it = m_parameterIndex.constFind(QByteArray(key));
    return it == m_parameterIndex.cend() ? 0 : static_cast<unsigned short>(FirstParameterId + *it);
}

unsigned short HostModel::meterBase(const char *key) const
{
    unsigned short position = 0;
    for (const MeterDefinition &meter : m_meters) {
        if (meter.key == key)
            return position;
        position += 2 * meter.channels;
    }
    return 0;
}

unsigned int HostModel::meterArraySize() const
{
    unsigned int size = 0;
    for (const MeterDefinition &meter : m_meters)
        size += 2u * meter.channels;
    return size;
}
