#pragma once

// The compressor's level detector, a peak detector on the rectified
// side-chain signal in two stages:
// - a peak follower that jumps to every new peak at once and falls at a
//   constant 20 dB per release time (so 20 dB of gain reduction at 1:1
//   slope recover in exactly the release time);
// - the detector level, which rises towards the follower with the attack time
//   as its time constant (63 % of the way in one attack time, 99.3 % in five)
//   and follows it down at once.
// A steady sine of amplitude A is detected as A (its peak level), not as its
// RMS level.
class LevelDetector
{
public:
    void setTimes(double attackMs, double releaseMs, double sampleRate);
    void reset();

    // One rectified sample in, the detector level (linear) out.
    double process(double rectified)
    {
        m_peak = rectified > m_peak * m_releaseFactor ? rectified : m_peak * m_releaseFactor;
        if (m_peak < SilenceFloor)
            m_peak = 0.0; // keep the decay out of denormal numbers
        if (m_peak > m_level)
            m_level += m_attackCoefficient * (m_peak - m_level);
        else
            m_level = m_peak;
        return m_level;
    }

    double level() const { return m_level; }

private:
    static constexpr double SilenceFloor = 1e-9; // -180 dB

    double m_attackCoefficient = 1.0;
    double m_releaseFactor = 0.0;
    double m_peak = 0.0;
    double m_level = 0.0;
};
