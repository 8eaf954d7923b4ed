#pragma once

#include <array>

#include "MeterReading.h"
#include "PeakMeterBallistics.h"
#include "StripCompressor.h"
#include "StripEqualizer.h"

// The model of one channel strip, mono or stereo: compressor, then the
// three-band equaliser, then the output level, processed in place block by
// block, with the input and output peaks gathered for the meters.
class ChannelStripProcessor
{
public:
    ChannelStripProcessor(double sampleRate, int channelCount);

    double sampleRate() const { return m_sampleRate; }
    int channelCount() const { return m_channelCount; }

    void setSettings(const StripSettings &settings);
    // `channels` holds channelCount() pointers to `frames` samples each.
    void process(float *const *channels, int frames);
    // The meters after the audio processed since the last reading.
    MeterReading takeMeterReading();
    const StripCompressor &compressor() const { return m_compressor; }

private:
    double m_sampleRate;
    int m_channelCount;
    StripCompressor m_compressor;
    StripEqualizer m_equalizer;
    double m_outputGain = 1.0;
    bool m_compressorBypass = false;
    long long m_framesSinceReading = 0;
    std::array<float, 2> m_inputPeak {};
    std::array<float, 2> m_outputPeak {};
    std::array<PeakMeterBallistics, 2> m_inputMeters;
    std::array<PeakMeterBallistics, 2> m_outputMeters;
};
