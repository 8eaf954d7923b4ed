#pragma once

#include <array>
#include <cstdint>

// One second-order (biquad) section: coefficient setters for a peaking band
// and first- and second-order shelves, the magnitude response of the newest
// coefficients in dB, and sample processing that crossfades from the old to
// the new coefficients over 10 ms so that a change never clicks.
//
// Coefficients are b0, b1, b2, c1, c2 with the feedback signs already flipped:
//   y[n] = b0 x[n] + b1 x[n-1] + b2 x[n-2] + c1 y[n-1] + c2 y[n-2]
// A delay line holds x[n-1], x[n-2], y[n-1], y[n-2].
class FILTER2PEQ
{
public:
    using Coefficients = std::array<double, 5>;
    using DelayLine = std::array<double, 4>;

    FILTER2PEQ();

    // The section count is fixed: the order is always 2, whatever is asked.
    void _setOrder(long order);
    void initializeFilterDelay();
    void initXFadeFilterCoef();
    // Prepares the running filter for a sample rate: crossfade length, state.
    void initializeFilterProc(double fs);

    void setCoefPEQ_C(double fs, double f0, double gain, double Q, double widthExp, double refGain);
    void setCoefLowShelf_C(double fs, double f0, double gain, double slopeExp, double refGain);
    void setCoefHiShelf_C(double fs, double f0, double gain, double slopeExp, double refGain);
    void setCoefLowShelf_2C(double fs, double f0, double gain, double slopeExp, double refGain);
    void setCoefHiShelf_2C(double fs, double f0, double gain, double slopeExp, double refGain);
    void setCoefByCopy(const FILTER2PEQ *other);

    // Starts a crossfade from the running coefficients to the newest ones.
    void changeCoef();
    double cal(double x);
    // Magnitude of the newest coefficients at f, in dB (-100 for silence).
    double power(double f, double fs) const;

    long order() const { return m_order; }
    bool isPending() const { return m_pending != 0; }
    long crossfadeCounter() const { return m_counter; }
    double crossfadeLength() const { return m_crossfadeLength; }
    const Coefficients &newCoefficients() const { return m_newCoef; }
    const Coefficients &currentCoefficients() const { return m_currentCoef; }
    const Coefficients &previousCoefficients() const { return m_previousCoef; }

    // The working Q of the peaking band after its high-frequency correction.
    static double correctedPeakingQ(double fs, double f0, double Q);

private:
    // Writes the pass-through set when f0 is too close to Nyquist for the
    // coefficients to stay stable; only below 44.1 kHz.
    bool applyNyquistGuard(double fs, double f0);
    void setCoefficients(double b0, double b1, double b2, double c1, double c2);
    static double runSection(const Coefficients &c, DelayLine &d, double x);

    Coefficients m_newCoef {};
    DelayLine m_delay {};
    Coefficients m_currentCoef {};
    DelayLine m_spareDelay {};
    Coefficients m_previousCoef {};
    DelayLine m_previousDelay {};

    long m_order = 0;
    int m_pending = 0;
    long m_counter = 0;
    std::int64_t m_copiedWord = 0;
    double m_crossfadeLength = 0.0;
};
