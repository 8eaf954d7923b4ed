#include "ORVChStrip/Filter/FILTER2PEQ.h"

#include <cmath>
#include <complex>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;
constexpr double Sqrt2 = 1.414213562373095;
constexpr double NegativeInverseLn2 = -1.4426950408889634;
constexpr double SilentDb = -100.0;

// 10^(dB/20), with exactly -100 dB standing for silence.
double dbToLinear(double db)
{
    return db != SilentDb ? std::pow(10.0, db / 20.0) : 0.0;
}

double prewarp(double fs, double f0)
{
    return std::tan(Pi * f0 / fs);
}

// The high-frequency Q correction of the peaking band, by sample rate: the
// bilinear transform narrows a band near Nyquist, so the Q is lowered there.
struct QCorrection
{
    double threshold;
    double a;
    double b;
    double c;
};

bool qCorrectionFor(double fs, QCorrection *row)
{
    if (fs < 48000.0)
        *row = { 2000.0, 0.0301, 4.817e-5, 1.25513 };
    else if (fs < 88200.0)
        *row = { 2000.0, 0.02143, 4.103e-5, 1.25686 };
    else if (fs < 96000.0)
        *row = { 4000.0, 0.0317, 2.462e-5, 1.29486 };
    else if (fs < 352800.0)
        *row = { 4000.0, 0.02382, 2.004e-5, 1.21531 };
    else if (fs < 384000.0)
        *row = { 4000.0, -0.000464497094809, 8.18066158909e-7, 1.00088954901 };
    else if (static_cast<long long>(fs) == 384000)
        *row = { 4000.0, -0.000395429657653, 6.56655493056e-7, 1.00041829825 };
    else
        return false;
    return true;
}

} // namespace

FILTER2PEQ::FILTER2PEQ()
{
    _setOrder(2);
    m_crossfadeLength = 441.0;
    m_pending = 1;
    m_counter = 442;
}

void FILTER2PEQ::_setOrder(long)
{
    // One section only; the requested order is ignored on purpose.
    m_order = 2;
    m_newCoef.fill(0.0);
    m_delay.fill(0.0);
    m_currentCoef.fill(0.0);
    m_spareDelay.fill(0.0);
    m_previousCoef.fill(0.0);
    m_previousDelay.fill(0.0);
}

void FILTER2PEQ::initializeFilterDelay()
{
    m_delay.fill(0.0);
    m_spareDelay.fill(0.0);
    m_previousDelay.fill(0.0);
}

void FILTER2PEQ::initXFadeFilterCoef()
{
    m_currentCoef = m_newCoef;
    m_previousCoef = m_newCoef;
}

void FILTER2PEQ::initializeFilterProc(double fs)
{
    m_crossfadeLength = fs * 10.0 / 1000.0;
    m_counter = static_cast<long>(m_crossfadeLength) + 1;
    m_pending = 0;
    initializeFilterDelay();
    initXFadeFilterCoef();
}

bool FILTER2PEQ::applyNyquistGuard(double fs, double f0)
{
    if (fs < 44100.0 && f0 > 0.5 * fs - 10.0) {
        setCoefficients(1.0, 0.0, 0.0, 0.0, 0.0);
        return true;
    }
    return false;
}

void FILTER2PEQ::setCoefficients(double b0, double b1, double b2, double c1, double c2)
{
    m_newCoef = { b0, b1, b2, c1, c2 };
    m_pending = 1;
}

double FILTER2PEQ::correctedPeakingQ(double fs, double f0, double Q)
{
    QCorrection row {};
    if (!qCorrectionFor(fs, &row) || !(f0 > row.threshold))
        return Q;
    const double k = std::log(Q) * row.a * NegativeInverseLn2 + row.c - row.b * f0;
    if (!(k <= 1.0))
        return Q;
    const double q = Q * k;
    return q <= 0.1 ? 0.1 : q;
}

void FILTER2PEQ::setCoefPEQ_C(double fs, double f0, double gain, double Q, double widthExp, double refGain)
{
    if (applyNyquistGuard(fs, f0))
        return;
    const double t = prewarp(fs, f0);
    const double A = std::pow(10.0, std::abs(gain) / 20.0);
    const double Qw = correctedPeakingQ(fs, f0, Q);
    // Proportional Q: the band widens as the gain falls below the reference.
    const double beta = (1.0 / Qw) / std::pow(dbToLinear(std::abs(gain) - refGain), widthExp);

    const double T = t * t;
    const double P = 1.0 + T;
    const double m = t * beta;
    if (gain >= 0.0) {
        const double d = 1.0 + m + T;
        setCoefficients(
            (P + A * m) / d, 2.0 * (T - 1.0) / d, (P - A * m) / d, 2.0 * (1.0 - T) / d, (m - P) / d);
    } else {
        // The exact inverse of the boost.
        const double d = 1.0 + A * m + T;
        setCoefficients((P + m) / d, 2.0 * (T - 1.0) / d, (P - m) / d, 2.0 * (1.0 - T) / d, (A * m - P) / d);
    }
}

void FILTER2PEQ::setCoefLowShelf_C(double fs, double f0, double gain, double slopeExp, double refGain)
{
    if (applyNyquistGuard(fs, f0))
        return;
    const double A = std::pow(10.0, std::abs(gain) / 20.0);
    const double R = dbToLinear(refGain);
    const double t = prewarp(fs, f0);
    const double k = std::tan(std::atan(std::pow(R, slopeExp) * t)) * std::pow(A, 1.0 - slopeExp);
    if (gain >= 0.0) {
        const double d = A + k;
        setCoefficients(A * (1.0 + k) / d, -A * (1.0 - k) / d, 0.0, (A - k) / d, 0.0);
    } else {
        const double q = k / A;
        const double d = 1.0 + k;
        setCoefficients((1.0 + q) / d, -(1.0 - q) / d, 0.0, (1.0 - k) / d, 0.0);
    }
}

void FILTER2PEQ::setCoefHiShelf_C(double fs, double f0, double gain, double slopeExp, double refGain)
{
    if (applyNyquistGuard(fs, f0))
        return;
    // Signed gain here: G < 1 for a cut, so both branches mirror the low shelf.
    const double G = dbToLinear(gain);
    const double R = dbToLinear(refGain);
    const double t = prewarp(fs, f0);
    const double u = std::tan(std::atan(std::pow(1.0 / R, slopeExp) * t));
    if (gain >= 0.0) {
        const double k = u * std::pow(G, slopeExp - 1.0);
        const double d = G * k + 1.0;
        setCoefficients(G * (k + 1.0) / d, -G * (1.0 - k) / d, 0.0, (1.0 - G * k) / d, 0.0);
    } else {
        const double k = u * std::pow(G, 1.0 - slopeExp);
        const double d = k + 1.0;
        setCoefficients((G + k) / d, (k - G) / d, 0.0, (1.0 - k) / d, 0.0);
    }
}

void FILTER2PEQ::setCoefLowShelf_2C(double fs, double f0, double gain, double slopeExp, double refGain)
{
    if (applyNyquistGuard(fs, f0))
        return;
    const double A = std::pow(10.0, std::abs(gain) / 20.0);
    const double R = dbToLinear(refGain);
    const double t = prewarp(fs, f0);
    const double sA = std::sqrt(A);
    const double k = std::tan(std::atan(std::pow(std::sqrt(R), slopeExp) * t)) * std::pow(sA, 1.0 - slopeExp);
    const double k2 = k * k;
    if (gain >= 0.0) {
        const double d = 1.0 + Sqrt2 * k / sA + k2 / A;
        setCoefficients((1.0 + Sqrt2 * k + k2) / d, -2.0 * (1.0 - k2) / d, (1.0 - Sqrt2 * k + k2) / d,
            2.0 * (1.0 - k2 / A) / d, (Sqrt2 * k / sA - 1.0 - k2 / A) / d);
    } else {
        const double d = 1.0 + Sqrt2 * k + k2;
        setCoefficients((1.0 + Sqrt2 * k / sA + k2 / A) / d, -2.0 * (1.0 - k2 / A) / d,
            (1.0 - Sqrt2 * k / sA + k2 / A) / d, 2.0 * (1.0 - k2) / d, -(1.0 - Sqrt2 * k + k2) / d);
    }
}

void FILTER2PEQ::setCoefHiShelf_2C(double fs, double f0, double gain, double slopeExp, double refGain)
{
    if (applyNyquistGuard(fs, f0))
        return;
    const double A = std::pow(10.0, std::abs(gain) / 20.0);
    const double R = dbToLinear(refGain);
    const double t = prewarp(fs, f0);
    const double sA = std::sqrt(A);
    const double k
        = std::tan(std::atan(std::pow(1.0 / std::sqrt(R), slopeExp) * t)) / std::pow(sA, 1.0 - slopeExp);
    const double k2 = k * k;
    if (gain >= 0.0) {
        const double d = 1.0 + Sqrt2 * sA * k + A * k2;
        setCoefficients(A * (1.0 + Sqrt2 * k + k2) / d, -2.0 * A * (1.0 - k2) / d,
            A * (1.0 - Sqrt2 * k + k2) / d, 2.0 * (1.0 - A * k2) / d, -(1.0 - Sqrt2 * sA * k + A * k2) / d);
    } else {
        const double d = 1.0 + Sqrt2 * k + k2;
        const double ad = A * d;
        setCoefficients((1.0 + Sqrt2 * sA * k + A * k2) / ad, -2.0 * (1.0 - A * k2) / ad,
            (1.0 - Sqrt2 * sA * k + A * k2) / ad, 2.0 * (1.0 - k2) / d, -(1.0 - Sqrt2 * k + k2) / d);
    }
}

void FILTER2PEQ::setCoefByCopy(const FILTER2PEQ *other)
{
    if (!other || other == this)
        return;
    m_order = other->m_order;
    m_copiedWord = other->m_copiedWord;
    m_newCoef = other->m_newCoef;
}

void FILTER2PEQ::changeCoef()
{
    m_previousCoef = m_currentCoef;
    m_currentCoef = m_newCoef;
    m_previousDelay = m_delay;
    m_delay.fill(0.0);
    m_pending = 0;
    m_counter = 0;
}

double FILTER2PEQ::runSection(const Coefficients &c, DelayLine &d, double x)
{
    const double y = c[0] * x + c[1] * d[0] + c[2] * d[1] + c[3] * d[2] + c[4] * d[3];
    d[1] = d[0];
    d[0] = x;
    d[3] = d[2];
    d[2] = y;
    return y;
}

double FILTER2PEQ::cal(double x)
{
    const long length = static_cast<long>(m_crossfadeLength);
    if (m_pending && m_counter >= length)
        changeCoef();
    if (m_counter >= length)
        return runSection(m_newCoef, m_delay, x);

    // Logistic crossfade from about 0.0067 to about 0.9933 over the length.
    const double g
        = 1.0 / (std::exp((m_counter - 0.5 * m_crossfadeLength) * -10.0 / m_crossfadeLength) + 1.0);
    const double yNew = runSection(m_currentCoef, m_delay, x);
    const double yOld = runSection(m_previousCoef, m_previousDelay, x);
    ++m_counter;
    return g * yNew + (1.0 - g) * yOld;
}

double FILTER2PEQ::power(double f, double fs) const
{
    const double w = TwoPi * f / fs;
    const std::complex<double> z1(std::cos(w), -std::sin(w));
    std::complex<double> h(1.0, 0.0);
    for (long i = 0; i < m_order / 2; ++i) {
        const Coefficients &c = m_newCoef;
        const std::complex<double> n = c[0] + c[1] * z1 + c[2] * z1 * z1;
        const std::complex<double> d = 1.0 - c[3] * z1 - c[4] * z1 * z1;
        const std::complex<double> num = n * std::conj(d);
        const double den = (d * std::conj(d)).real();
        h *= std::complex<double>(num.real() / den, num.imag() / den);
    }
    const double p = h.real() * h.real() + h.imag() * h.imag();
    if (p > 0.0 || std::isnan(p))
        return 10.0 * std::log10(p);
    return SilentDb;
}
