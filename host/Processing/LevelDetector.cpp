#include "LevelDetector.h"

#include <algorithm>
#include <cmath>

void LevelDetector::setTimes(double attackMs, double releaseMs, double sampleRate)
{
    const double attackSamples = std::max(attackMs, 0.001) * 1e-3 * sampleRate;
    const double releaseSamples = std::max(releaseMs, 0.001) * 1e-3 * sampleRate;
    m_attackCoefficient = 1.0 - std::exp(-1.0 / attackSamples);
    // 20 dB, a factor of ten, per release time.
    m_releaseFactor = std::pow(10.0, -1.0 / releaseSamples);
}

void LevelDetector::reset()
{
    m_peak = 0.0;
    m_level = 0.0;
}
