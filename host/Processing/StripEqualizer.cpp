#include "StripEqualizer.h"

#include <algorithm>

#include "ORVChStrip/Filter/EqualizerShape.h"

StripEqualizer::StripEqualizer(double sampleRate)
    : m_sampleRate(sampleRate)
{
    const StripSettings defaults;
    m_bands = { defaults.low, defaults.middle, defaults.high };
    for (int band = 0; band < BandCount; ++band)
        applyBand(band, m_bands[band], true);
    m_bypass = defaults.equalizerBypass;
}

void StripEqualizer::applyBand(int band, const StripSettings::Band &settings, bool restart)
{
    using namespace EqualizerShape;
    const double fs = m_sampleRate;
    for (auto &channel : m_filters) {
        FILTER2PEQ &filter = channel[band];
        switch (band) {
        case Low:
            filter.setCoefLowShelf_C(fs, settings.frequency, settings.gain, ShelfSlopeExp, ReferenceGain);
            break;
        case Middle:
            filter.setCoefPEQ_C(
                fs, settings.frequency, settings.gain, settings.quality, PeakingWidthExp, ReferenceGain);
            break;
        default:
            filter.setCoefHiShelf_C(fs, settings.frequency, settings.gain, ShelfSlopeExp, ReferenceGain);
            break;
        }
        // A band that was not running starts clean; a running one crossfades.
        if (restart)
            filter.initializeFilterProc(fs);
    }
}

void StripEqualizer::setSettings(const StripSettings &settings)
{
    const std::array<StripSettings::Band, BandCount> bands = { settings.low, settings.middle, settings.high };
    for (int band = 0; band < BandCount; ++band) {
        if (bands[band] == m_bands[band])
            continue;
        const bool wasRunning = m_bands[band].on && !m_bypass;
        m_bands[band] = bands[band];
        applyBand(band, m_bands[band], !wasRunning);
    }
    if (m_bypass && !settings.equalizerBypass) {
        for (int band = 0; band < BandCount; ++band)
            applyBand(band, m_bands[band], true);
    }
    m_bypass = settings.equalizerBypass;
}

void StripEqualizer::process(float *const *channels, int channelCount, int frames)
{
    if (m_bypass)
        return;
    channelCount = std::clamp(channelCount, 0, MaxChannels);
    for (int c = 0; c < channelCount; ++c) {
        float *samples = channels[c];
        for (int band = 0; band < BandCount; ++band) {
            if (!m_bands[band].on)
                continue;
            FILTER2PEQ &filter = m_filters[c][band];
            for (int i = 0; i < frames; ++i)
                samples[i] = static_cast<float>(filter.cal(samples[i]));
        }
    }
}
