#include "StripSettings.h"

#include <algorithm>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/ChannelStripValueTables.h"
#include "ParameterMemory.h"

namespace {

using namespace ChannelStripKeys;

class SettingsReader
{
public:
    SettingsReader(const ParameterMemory &memory, int channel)
        : m_memory(memory)
        , m_channel(channel)
    { }

    bool has(const char *key) const { return m_memory.model()->parameterId(key) != 0; }
    int raw(const char *key, int fallback) const
    {
        return has(key) ? m_memory.value(key, m_channel) : fallback;
    }

    double frequency(const char *key, double fallback) const
    {
        return has(key) ? ChannelStripTables::FreqTable[clampedStep(key, ChannelStripTables::FreqCount)]
                        : fallback;
    }
    double gain(const char *key) const
    {
        return has(key) ? ChannelStripTables::GainTable[clampedStep(key, ChannelStripTables::GainCount)]
                        : 0.0;
    }
    double quality(const char *key) const
    {
        return has(key) ? ChannelStripTables::QTable[clampedStep(key, ChannelStripTables::QCount)] : 1.0;
    }
    bool on(const char *key, bool fallback) const { return raw(key, fallback ? 1 : 0) != 0; }
    // value * step + offset, as the model states the parameter's unit.
    double linear(const char *key, double fallback) const
    {
        const ParameterDefinition *definition = m_memory.model()->parameter(m_memory.model()->parameterId(key));
        return definition ? m_memory.value(key, m_channel) * definition->step + definition->offset : fallback;
    }

private:
    int clampedStep(const char *key, int count) const
    {
        return std::clamp(m_memory.value(key, m_channel), 0, count - 1);
    }

    const ParameterMemory &m_memory;
    int m_channel;
};

} // namespace

StripSettings StripSettings::fromMemory(const ParameterMemory &memory, int channel)
{
    const SettingsReader read(memory, channel);
    StripSettings s;
    s.low = { read.frequency(EqualizerLowFrequency, s.low.frequency), read.gain(EqualizerLowGain), 1.0,
        read.on(EqualizerLowOn, true) };
    s.middle = { read.frequency(EqualizerMiddleFrequency, s.middle.frequency), read.gain(EqualizerMiddleGain),
        read.quality(EqualizerMiddleQuality), read.on(EqualizerMiddleOn, true) };
    s.high = { read.frequency(EqualizerHighFrequency, s.high.frequency), read.gain(EqualizerHighGain), 1.0,
        read.on(EqualizerHighOn, true) };
    s.equalizerBypass = read.on(EqualizerBypass, false);

    s.sideChain = { read.frequency(SideChainFrequency, s.sideChain.frequency), read.gain(SideChainGain),
        read.quality(SideChainQuality), read.on(SideChainOn, false) };
    s.compressorBypass = read.on(CompressorBypass, false);
    s.attackMs = std::max(read.linear(CompressorAttack, s.attackMs), 0.01);
    s.releaseMs = std::max(read.linear(CompressorRelease, s.releaseMs), 0.01);
    s.curve.thresholdOffset = read.raw(CompressorThresholdOffset, s.curve.thresholdOffset);
    s.curve.drive = read.raw(CompressorDrive, s.curve.drive);
    s.curve.ratioIndex = read.raw(CompressorRatio, s.curve.ratioIndex);
    s.curve.knee = read.raw(CompressorKnee, s.curve.knee);
    s.makeUpDb = read.linear(CompressorMakeUpOffset, 0.0);
    s.outputDb = read.linear(OutputLevel, 0.0);
    return s;
}
