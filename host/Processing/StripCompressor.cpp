#include "StripCompressor.h"

#include <algorithm>
#include <cmath>

#include "Common/VectorRegisterState.h"
#include "ORVChStrip/Filter/EqualizerShape.h"

namespace {

// Beyond this the curve has run off its table (an unguarded ratio or knee).
constexpr double MaxGainReductionDb = 144.0;

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
    m_makeUpDb = settings.makeUpDb;
}

double StripCompressor::gainReductionAt(double levelDb) const
{
    const double reduction
        = levelDb - CompressorCurve::outputLevel(levelDb, m_effectiveThreshold, m_slope, m_knee);
    // NaN (an undefined curve) reads as no reduction.
    return reduction > 0.0 ? std::min(reduction, MaxGainReductionDb) : 0.0;
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
        m_current.levelDb = levelDb;
        if (m_bypass) {
            m_current.gainReductionDb = 0.0;
        } else {
            m_current.gainReductionDb = gainReductionAt(levelDb);
            const double gain = std::pow(10.0, (m_makeUpDb - m_current.gainReductionDb) / 20.0);
            for (int c = 0; c < channelCount; ++c)
                channels[c][i] = static_cast<float>(channels[c][i] * gain);
        }
        if (levelDb > m_loudest.levelDb)
            m_loudest = m_current;
    }
}

StripCompressor::OperatingPoint StripCompressor::takeOperatingPoint()
{
    const OperatingPoint point = m_loudest;
    m_loudest = OperatingPoint();
    return point;
}
