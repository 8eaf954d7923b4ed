#include "ORVChStrip/ORVChStripParameters.h"

#include "Interfaces/ChannelStripKeys.h"

namespace ORVChStripParameters {

const char *const MorphingParameterList[MorphingParameterCount] = {
    ChannelStripKeys::CompressorAttack,
    ChannelStripKeys::CompressorRelease,
    ChannelStripKeys::CompressorRatio,
    ChannelStripKeys::CompressorKnee,
    ChannelStripKeys::SideChainFrequency,
    ChannelStripKeys::SideChainGain,
    ChannelStripKeys::SideChainQuality,
    ChannelStripKeys::EqualizerHighFrequency,
    ChannelStripKeys::EqualizerHighGain,
    ChannelStripKeys::EqualizerMiddleFrequency,
    ChannelStripKeys::EqualizerMiddleGain,
    ChannelStripKeys::EqualizerMiddleQuality,
    ChannelStripKeys::EqualizerLowFrequency,
    ChannelStripKeys::EqualizerLowGain,
    ChannelStripKeys::OutputLevel,
};

} // namespace ORVChStripParameters
