#include "StripSettingsObserver.h"

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ParameterMemory.h"
#include "SharedStripSettings.h"

namespace {

using namespace ChannelStripKeys;

// Every parameter the processing model reads.
constexpr const char *ProcessedKeys[] = { CompressorDrive, CompressorAttack, CompressorRelease,
    CompressorRatio, CompressorKnee, CompressorThresholdOffset, CompressorMakeUpOffset, SideChainFrequency,
    SideChainGain, SideChainQuality, SideChainOn, CompressorBypass, EqualizerLowFrequency, EqualizerLowGain,
    EqualizerLowOn, EqualizerMiddleFrequency, EqualizerMiddleGain, EqualizerMiddleQuality, EqualizerMiddleOn,
    EqualizerHighFrequency, EqualizerHighGain, EqualizerHighOn, EqualizerBypass, OutputLevel };

} // namespace

StripSettingsObserver::StripSettingsObserver(
    ParameterMemory &memory, int channel, SharedStripSettings &target)
    : m_memory(memory)
    , m_channel(channel)
    , m_target(target)
{
    for (const char *key : ProcessedKeys) {
        const unsigned short id = m_memory.model()->parameterId(key);
        if (id && m_memory.addPrmObserver(id, static_cast<unsigned short>(m_channel), this) >= 0)
            m_observed.append(id);
    }
    publish();
}

StripSettingsObserver::~StripSettingsObserver()
{
    for (unsigned short id : std::as_const(m_observed))
        m_memory.removePrmObserver(id, static_cast<unsigned short>(m_channel), this);
}

int StripSettingsObserver::Update(unsigned short, unsigned short, int, const char *)
{
    publish();
    return 0;
}

void StripSettingsObserver::publish()
{
    m_target.publish(StripSettings::fromMemory(m_memory, m_channel));
}
