#include "ORVChStrip/Chunk/StateParameterLists.h"

#include "Interfaces/ChannelStripKeys.h"

namespace ORVChStripParameters {

const char *const ParameterListEx[ParameterListExCount] = {
    ChannelStripKeys::CompressorDrive,
    ChannelStripKeys::CompressorAttack,
    ChannelStripKeys::CompressorRelease,
    ChannelStripKeys::CompressorRatio,
    ChannelStripKeys::CompressorKnee,
    ChannelStripKeys::CompressorThresholdOffset,
    ChannelStripKeys::CompressorMakeUpOffset,
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
    ChannelStripKeys::EqualizerBypass,
    ChannelStripKeys::CompressorBypass,
    ChannelStripKeys::MorphValue,
    nullptr,
    // The band switches, beyond the generic block
    ChannelStripKeys::EqualizerLowOn,
    ChannelStripKeys::EqualizerMiddleOn,
    ChannelStripKeys::EqualizerHighOn,
    ChannelStripKeys::SideChainOn,
};

const char *const *const ParameterList = ParameterListEx;

const char *const OrvaneDataParameterList[OrvaneDataParameterCount] = {
    ChannelStripKeys::MorphCompressorAttack,
    ChannelStripKeys::MorphCompressorRelease,
    ChannelStripKeys::MorphCompressorRatio,
    ChannelStripKeys::MorphCompressorKnee,
    ChannelStripKeys::MorphCompressorThresholdOffset,
    ChannelStripKeys::MorphCompressorMakeUpOffset,
    ChannelStripKeys::MorphSideChainFrequency,
    ChannelStripKeys::MorphSideChainGain,
    ChannelStripKeys::MorphSideChainQuality,
    ChannelStripKeys::MorphEqualizerHighFrequency,
    ChannelStripKeys::MorphEqualizerHighGain,
    ChannelStripKeys::MorphEqualizerMiddleFrequency,
    ChannelStripKeys::MorphEqualizerMiddleGain,
    ChannelStripKeys::MorphEqualizerMiddleQuality,
    ChannelStripKeys::MorphEqualizerLowFrequency,
    ChannelStripKeys::MorphEqualizerLowGain,
    ChannelStripKeys::MorphOutputLevel,
};

} // namespace ORVChStripParameters
