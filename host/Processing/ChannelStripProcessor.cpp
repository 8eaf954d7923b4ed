#include "ChannelStripProcessor.h"

#include <algorithm>
#include <cmath>

namespace {

float peakOf(const float *samples, int frames, float peak)
{
    for (int i = 0; i < frames; ++i)
        peak = std::max(peak, std::abs(samples[i]));
    return peak;
}

double toDb(double linear)
{
    return linear > 0.0 ? 20.0 * std::log10(linear) : MeterReading::SilenceDb;
}

} // namespace

ChannelStripProcessor::ChannelStripProcessor(double sampleRate, int channelCount)
    : m_sampleRate(sampleRate)
    , m_channelCount(std::clamp(channelCount, 1, 2))
    , m_compressor(sampleRate)
    , m_equalizer(sampleRate)
{ }

void ChannelStripProcessor::setSettings(const StripSettings &settings)
{
    m_compressor.setSettings(settings);
    m_equalizer.setSettings(settings);
    m_compressorBypass = settings.compressorBypass;
    m_outputGain = std::pow(10.0, settings.outputDb / 20.0);
}

void ChannelStripProcessor::process(float *const *channels, int frames)
{
    if (frames <= 0)
        return;
    for (int c = 0; c < m_channelCount; ++c)
        m_inputPeak[c] = peakOf(channels[c], frames, m_inputPeak[c]);
    m_compressor.process(channels, m_channelCount, frames);
    m_equalizer.process(channels, m_channelCount, frames);
    for (int c = 0; c < m_channelCount; ++c) {
        float *samples = channels[c];
        if (m_outputGain != 1.0) {
            for (int i = 0; i < frames; ++i)
                samples[i] = static_cast<float>(samples[i] * m_outputGain);
        }
        m_outputPeak[c] = peakOf(samples, frames, m_outputPeak[c]);
    }
    m_framesSinceReading += frames;
}

MeterReading ChannelStripProcessor::takeMeterReading()
{
    const double seconds = m_framesSinceReading / m_sampleRate;
    MeterReading reading;
    reading.channelCount = m_channelCount;
    for (int c = 0; c < m_channelCount; ++c) {
        reading.inputDb[c] = m_inputMeters[c].update(toDb(m_inputPeak[c]), seconds);
        reading.outputDb[c] = m_outputMeters[c].update(toDb(m_outputPeak[c]), seconds);
        m_inputPeak[c] = 0.0f;
        m_outputPeak[c] = 0.0f;
    }
    const StripCompressor::OperatingPoint point = m_compressor.takeOperatingPoint();
    reading.detectorLevelDb = std::max(point.levelDb, MeterReading::SilenceDb);
    reading.gainReductionDb = point.gainReductionDb;
    reading.compressorActive = !m_compressorBypass;
    m_framesSinceReading = 0;
    return reading;
}
