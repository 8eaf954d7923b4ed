#include "StripCompressor.h"

#include <algorithm>
#include <cmath>

#include "ORVChStrip/Filter/VectorRegisterState.h"
#include "ORVChStrip/Filter/EqualizerShape.h"

namespace {

// Beyond this the curve has run off its table (an unguarded ratio or knee).
constexpr double MaxGainReductionDb = 144.0;
const double MinCurveGain = std::pow(10.0, -MaxGainReductionDb / 20.0);

} // namespace

StripCompressor::StripCompressor(double sampleRate)
    : m_sampleRate(sampleRate)
{
    setSettings(StripSettings());
    applySideChain(true);
}

void StripCompressor::applySideChain(bool restart)
{
    for (FILTER2PEQ &filter : m_sideChainFilters) {
        filter.setCoefPEQ_C(m_sampleRate, m_sideChain.frequency, m_sideChain.gain, m_sideChain.quality,
            EqualizerShape::PeakingWidthExp, EqualizerShape::ReferenceGain);
        // A filter that was not running starts clean instead of fading in.
        if (restart)
            filter.initializeFilterProc(m_sampleRate);
    }
}

void StripCompressor::setSettings(const StripSettings &settings)
{
    const bool sideChainChanged = settings.sideChain != m_sideChain;
    const bool sideChainTurnedOn = settings.sideChain.on && !m_sideChain.on;
    m_sideChain = settings.sideChain;
    if (sideChainChanged)
        applySideChain(sideChainTurnedOn);
    m_bypass = settings.compressorBypass;
    m_detector.setTimes(settings.attackMs, settings.releaseMs, m_sampleRate);
    const CompressorCurve::Settings &curve = settings.curve;
    m_effectiveThreshold = CompressorCurve::effectiveThreshold(
        CompressorCurve::threshold(curve.thresholdOffset), CompressorCurve::drive(curve.drive));
    m_slope = 1.0 / CompressorCurve::ratio(curve.ratioIndex) - 1.0;
    m_knee = curve.knee;
    m_makeUpGain = std::pow(10.0, settings.makeUpDb / 20.0);
}

StripCompressor::OperatingPoint StripCompressor::pointAt(double levelDb, double curveGain)
{
    OperatingPoint point;
    point.levelDb = levelDb;
    point.gainReductionDb = std::min(-20.0 * std::log10(curveGain), MaxGainReductionDb);
    return point;
}

void StripCompressor::process(float *const *channels, int channelCount, int frames)
{
    clearUpperVectorRegisters();
    channelCount = std::clamp(channelCount, 0, MaxChannels);
    for (int i = 0; i < frames; ++i) {
        double rectified = 0.0;
        for (int c = 0; c < channelCount; ++c) {
            const double x = channels[c][i];
            const double s = m_sideChain.on ? m_sideChainFilters[c].cal(x) : x;
            rectified = std::max(rectified, std::abs(s));
        }
        const double level = m_detector.process(rectified);
        const double levelDb = level > 0.0 ? std::max(20.0 * std::log10(level), SilenceDb) : SilenceDb;
        m_currentLevelDb = levelDb;
        if (m_bypass) {
            m_currentGain = 1.0;
        } else {
            const double curveGain = CompressorCurve::gain(levelDb, m_effectiveThreshold, m_slope, m_knee);
            // An undefined curve (NaN) leaves the level alone; none ever boosts.
            m_currentGain = std::isnan(curveGain) ? 1.0 : std::clamp(curveGain, MinCurveGain, 1.0);
            const double gain = m_currentGain * m_makeUpGain;
            for (int c = 0; c < channelCount; ++c)
                channels[c][i] = static_cast<float>(channels[c][i] * gain);
        }
        if (levelDb > m_loudestLevelDb) {
            m_loudestLevelDb = levelDb;
            m_loudestGain = m_currentGain;
        }
    }
}

StripCompressor::OperatingPoint StripCompressor::takeOperatingPoint()
{
    const OperatingPoint point = pointAt(m_loudestLevelDb, m_loudestGain);
    m_loudestLevelDb = SilenceDb;
    m_loudestGain = 1.0;
    return point;
}
