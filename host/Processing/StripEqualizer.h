#pragma once

#include <array>

#include "ORVChStrip/Filter/FILTER2PEQ.h"
#include "StripSettings.h"

// The strip's three-band equaliser on up to two channels: a first-order low
// shelf, a peaking middle band and a first-order high shelf, built with the
// same coefficient functions and shape arguments as the equaliser graph. A
// band that is off, or the whole equaliser in bypass, is not run at all, so
// the audio passes untouched.
class StripEqualizer
{
public:
    static constexpr int MaxChannels = 2;

    explicit StripEqualizer(double sampleRate);

    void setSettings(const StripSettings &settings);
    void process(float *const *channels, int channelCount, int frames);

private:
    enum BandIndex { Low, Middle, High, BandCount };

    void applyBand(int band, const StripSettings::Band &settings, bool restart);

    double m_sampleRate;
    bool m_bypass = false;
    std::array<StripSettings::Band, BandCount> m_bands;
    // m_filters[channel][band]
    std::array<std::array<FILTER2PEQ, BandCount>, MaxChannels> m_filters;
};
