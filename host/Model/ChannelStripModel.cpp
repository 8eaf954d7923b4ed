#include "ChannelStripModel.h"

#include <utility>

#include "Interfaces/ChannelStripKeys.h"

namespace ChannelStripModel {

namespace {

ParameterDefinition tableParameter(const char *key, ValueKind kind, int maximum, int defaultValue,
    const char *unit, const char *morphColumn = nullptr)
{
    ParameterDefinition parameter;
    parameter.key = key;
    parameter.kind = kind;
    parameter.maximum = maximum;
    parameter.defaultValue = defaultValue;
    parameter.unit = QString::fromLatin1(unit);
    parameter.morphColumnKey = morphColumn;
    return parameter;
}

ParameterDefinition linearParameter(const char *key, int minimum, int maximum, int defaultValue, double step,
    double offset, int decimals, const char *unit, const char *morphColumn = nullptr,
    bool signedOutput = false)
{
    ParameterDefinition parameter
        = tableParameter(key, ValueKind::Linear, maximum, defaultValue, unit, morphColumn);
    parameter.minimum = minimum;
    parameter.step = step;
    parameter.offset = offset;
    parameter.decimals = decimals;
    parameter.signedOutput = signedOutput;
    return parameter;
}

ParameterDefinition switchParameter(const char *key, int defaultValue)
{
    return tableParameter(key, ValueKind::Switch, 1, defaultValue, "");
}

ParameterDefinition textParameter(const char *key, int length)
{
    ParameterDefinition parameter = tableParameter(key, ValueKind::Text, 255, 0, "");
    parameter.decimals = length; // characters held
    return parameter;
}

} // namespace

QList<ParameterDefinition> parameters()
{
    QList<ParameterDefinition> list = {
        // Compressor
        linearParameter(ChannelStripKeys::CompressorDrive, 0, 100, 0, 0.2, 0.0, 1, "dB"),
        linearParameter(ChannelStripKeys::CompressorAttack, 1, 200, 10, 1.0, 0.0, 0, "ms",
            ChannelStripKeys::MorphCompressorAttack),
        linearParameter(ChannelStripKeys::CompressorRelease, 10, 2000, 200, 1.0, 0.0, 0, "ms",
            ChannelStripKeys::MorphCompressorRelease),
        tableParameter(ChannelStripKeys::CompressorRatio, ValueKind::Ratio, 120, 40, "",
            ChannelStripKeys::MorphCompressorRatio),
        tableParameter(ChannelStripKeys::CompressorKnee, ValueKind::Knee, 2, 0, "",
            ChannelStripKeys::MorphCompressorKnee),
        linearParameter(ChannelStripKeys::CompressorThresholdOffset, 0, 200, 100, 0.2, -20.0, 1, "dB",
            ChannelStripKeys::MorphCompressorThresholdOffset, true),
        linearParameter(ChannelStripKeys::CompressorMakeUpOffset, 0, 200, 100, 0.1, -10.0, 1, "dB",
            ChannelStripKeys::MorphCompressorMakeUpOffset, true),
        tableParameter(ChannelStripKeys::SideChainFrequency, ValueKind::Frequency, 124, 72, "Hz",
            ChannelStripKeys::MorphSideChainFrequency),
        tableParameter(ChannelStripKeys::SideChainGain, ValueKind::Gain, 360, 180, "dB",
            ChannelStripKeys::MorphSideChainGain),
        tableParameter(ChannelStripKeys::SideChainQuality, ValueKind::Quality, 60, 12, "",
            ChannelStripKeys::MorphSideChainQuality),
        switchParameter(ChannelStripKeys::SideChainOn, 0),
        switchParameter(ChannelStripKeys::CompressorBypass, 0),
        // Equalizer
        tableParameter(ChannelStripKeys::EqualizerLowFrequency, ValueKind::Frequency, 124, 32, "Hz",
            ChannelStripKeys::MorphEqualizerLowFrequency),
        tableParameter(ChannelStripKeys::EqualizerLowGain, ValueKind::Gain, 360, 180, "dB",
            ChannelStripKeys::MorphEqualizerLowGain),
        tableParameter(ChannelStripKeys::EqualizerMiddleFrequency, ValueKind::Frequency, 124, 72, "Hz",
            ChannelStripKeys::MorphEqualizerMiddleFrequency),
        tableParameter(ChannelStripKeys::EqualizerMiddleGain, ValueKind::Gain, 360, 180, "dB",
            ChannelStripKeys::MorphEqualizerMiddleGain),
        tableParameter(ChannelStripKeys::EqualizerMiddleQuality, ValueKind::Quality, 60, 12, "",
            ChannelStripKeys::MorphEqualizerMiddleQuality),
        tableParameter(ChannelStripKeys::EqualizerHighFrequency, ValueKind::Frequency, 124, 112, "Hz",
            ChannelStripKeys::MorphEqualizerHighFrequency),
        tableParameter(ChannelStripKeys::EqualizerHighGain, ValueKind::Gain, 360, 180, "dB",
            ChannelStripKeys::MorphEqualizerHighGain),
        switchParameter(ChannelStripKeys::EqualizerLowOn, 1),
        switchParameter(ChannelStripKeys::EqualizerMiddleOn, 1),
        switchParameter(ChannelStripKeys::EqualizerHighOn, 1),
        switchParameter(ChannelStripKeys::EqualizerBypass, 0),
        // Output level: -18.0 dB to +6.0 dB in 0.1 dB steps.
        linearParameter(ChannelStripKeys::OutputLevel, 0, 240, 180, 0.1, -18.0, 1, "dB",
            ChannelStripKeys::MorphOutputLevel, true),
        // Morphing: position 0.0 % to 100.0 % across the nine morph points.
        linearParameter(ChannelStripKeys::MorphValue, 0, 1000, 0, 0.1, 0.0, 1, "%"),
        textParameter(ChannelStripKeys::MorphSystemName, 256),
        textParameter(ChannelStripKeys::MorphSystemId, 32),
    };

    // One morph-table column per morphing parameter: the same range and
    // texts, stored per morph point on channels ch * 9 to ch * 9 + 8.
    const int count = int(list.size());
    for (int i = 0; i < count; ++i) {
        const ParameterDefinition &target = list.at(i);
        if (target.morphColumnKey.isEmpty())
            continue;
        ParameterDefinition column = target;
        column.key = target.morphColumnKey;
        column.morphColumnKey.clear();
        column.morphTargetKey = target.key;
        list.append(column);
    }
    return list;
}

QList<MeterDefinition> meters()
{
    return {
        { ChannelStripKeys::InputMeter, ChannelCount, QStringLiteral("input level, dBFS") },
        { ChannelStripKeys::OutputMeter, ChannelCount,
            QStringLiteral("output level after the equalizer, dBFS") },
        { ChannelStripKeys::SideChainMeter, ChannelCount, QStringLiteral("side-chain detector level, dBFS") },
        { ChannelStripKeys::GainReductionMeter, ChannelCount,
            QStringLiteral("gain reduction, dB (0 = none, negative = reduction)") },
    };
}

QList<FxEntry> effects()
{
    return { { 2, 16 }, { 3, 24 }, { ChannelStripFxKind, ChannelStripFxId } };
}

} // namespace ChannelStripModel
