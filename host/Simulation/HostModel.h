#pragma once

#include <QHash>

#include "Interfaces/IModelInfo.h"
#include "ParameterDefinition.h"

// The model description a host hands to create(): effects, parameters and
// meters. Parameter ids start at FirstParameterId in table order; meters are
// laid out one after another, two array entries per channel.
class HostModel : public IModelInfo
{
public:
    static constexpr unsigned short FirstParameterId = 0x100;

    HostModel(QList<FxEntry> effects, QList<ParameterDefinition> parameters, QList<MeterDefinition> meters);
    // The channel strip of the reference host.
    static HostModel channelStrip();

    bool getFxInfo(unsigned short *kind, unsigned short *fxId, unsigned int index) override;
    unsigned short getFxCount() override;
    bool findParameter(unsigned short *index, const char *key) override;
    bool getParameterInfo(unsigned short *prmId, unsigned short *channels, unsigned short index) override;
    unsigned short getParameterCount() override;
    bool findMeter(unsigned short *index, const char *key) override;
    bool getMeterInfo(unsigned short *base, unsigned short *channels, unsigned short index) override;

    const QList<ParameterDefinition> &parameters() const { return m_parameters; }
    const QList<MeterDefinition> &meters() const { return m_meters; }
    const ParameterDefinition *parameter(unsigned short prmId) const;
    // 0 when the key is unknown.
    unsigned short parameterId(const char *key) const;
    unsigned short meterBase(const char *key) const;
    unsigned int meterArraySize() const;

private:
    QList<FxEntry> m_effects;
    QList<ParameterDefinition> m_parameters;
    QList<MeterDefinition> m_meters;
    QHash<QByteArray, int> m_parameterIndex;
};
