#pragma once

#include <array>

#include "LevelDetector.h"
#include "ORVChStrip/Filter/FILTER2PEQ.h"
#include "StripSettings.h"

// The strip's compressor: the side-chain equaliser feeds the detector
// (LevelDetector, linked across the channels: the louder channel drives
// both), the detector level goes through the compressor graph's own static
// curve, and the difference between curve and level, less the make-up, is
// the gain applied to every channel. The side chain only ever shapes what the
// detector hears, never the audio.
class StripCompressor
{
public:
    static constexpr int MaxChannels = 2;
    static constexpr double SilenceDb = -150.0;

    // Where the detector sits on the static curve.
    struct OperatingPoint
    {
        double levelDb = SilenceDb;   // detector level
        double gainReductionDb = 0.0; // level minus the curve's output, >= 0
    };

    explicit StripCompressor(double sampleRate);

    void setSettings(const StripSettings &settings);
    // Processes `frames` samples of each channel in place.
    void process(float *const *channels, int channelCount, int frames);
    // The loudest moment since the last call (the curve rises with the
    // level, so that is also the moment of most reduction), then starts over.
    OperatingPoint takeOperatingPoint();
    // The operating point at the last sample processed.
    OperatingPoint current() const { return pointAt(m_currentLevelDb, m_currentGain); }

private:
    void applySideChain(bool restart);
    static OperatingPoint pointAt(double levelDb, double curveGain);

    double m_sampleRate;
    std::array<FILTER2PEQ, MaxChannels> m_sideChainFilters;
    LevelDetector m_detector;
    StripSettings::Band m_sideChain;
    bool m_bypass = false;
    double m_effectiveThreshold = 0.0;
    double m_slope = 0.0;
    int m_knee = CompressorCurve::Soft;
    double m_makeUpGain = 1.0;
    // The curve's gain is kept linear while processing; the reduction in dB
    // is worked out only for the moments that are reported.
    double m_currentLevelDb = SilenceDb;
    double m_currentGain = 1.0;
    double m_loudestLevelDb = SilenceDb;
    double m_loudestGain = 1.0;
};
