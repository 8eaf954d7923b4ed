#include <QTest>
#include <cmath>
#include <complex>
#include <tuple>

#include "ORVChStrip/Filter/FILTER2PEQ.h"

// Responses are checked against the analog prototypes that the bilinear
// transform maps onto each setter, evaluated at the prewarped frequency.
namespace {

enum Shape { Peaking, LowShelf, HighShelf, LowShelf2, HighShelf2 };

double db(std::complex<double> h)
{
    return 20.0 * std::log10(std::abs(h));
}

double prototypeDb(Shape shape, double fs, double f0, double gain, double q, double f)
{
    const std::complex<double> j(0.0, 1.0);
    const double t = std::tan(M_PI * f0 / fs);
    const double w = std::tan(M_PI * f / fs);
    switch (shape) {
    case Peaking: {
        // Band width 1/Qw, widened as the gain falls below 18 dB.
        const double qw = FILTER2PEQ::correctedPeakingQ(fs, f0, q);
        const double beta = (1.0 / qw) * std::pow(10.0, -0.7 * (std::abs(gain) - 18.0) / 20.0);
        const double a = std::pow(10.0, std::abs(gain) / 20.0);
        const std::complex<double> s = j * w / t;
        const std::complex<double> boost = (s * s + a * beta * s + 1.0) / (s * s + beta * s + 1.0);
        return gain >= 0 ? db(boost) : -db(boost);
    }
    case LowShelf: {
        const double a = std::pow(10.0, std::abs(gain) / 20.0);
        const double k = std::pow(10.0, 0.32 * 18.0 / 20.0) * t * std::pow(a, 0.68);
        const std::complex<double> s = j * w;
        const std::complex<double> boost = (s + k) / (s + k / a);
        return gain >= 0 ? db(boost) : -db(boost);
    }
    case HighShelf: {
        const double g = std::pow(10.0, std::abs(gain) / 20.0);
        const double k = std::pow(10.0, -0.32 * 18.0 / 20.0) * t * std::pow(g, -0.68);
        const std::complex<double> s = j * w;
        const std::complex<double> boost = g * (s + k) / (s + g * k);
        return gain >= 0 ? db(boost) : -db(boost);
    }
    default: return 0.0;
    }
}

void setShape(FILTER2PEQ &filter, Shape shape, double fs, double f0, double gain, double q = 1.0)
{
    switch (shape) {
    case Peaking: filter.setCoefPEQ_C(fs, f0, gain, q, 0.7, 18.0); break;
    case LowShelf: filter.setCoefLowShelf_C(fs, f0, gain, 0.32, 18.0); break;
    case HighShelf: filter.setCoefHiShelf_C(fs, f0, gain, 0.32, 18.0); break;
    case LowShelf2: filter.setCoefLowShelf_2C(fs, f0, gain, 0.32, 18.0); break;
    case HighShelf2: filter.setCoefHiShelf_2C(fs, f0, gain, 0.32, 18.0); break;
    }
}

// The steady-state gain of the running filter for a sine, in dB.
double measuredDb(FILTER2PEQ &filter, double fs, double f)
{
    const int settle = 48000;
    const int window = 4800; // whole periods for the test frequencies
    double in = 0.0;
    double out = 0.0;
    for (int n = 0; n < settle + window; ++n) {
        const double x = std::sin(2.0 * M_PI * f * n / fs);
        const double y = filter.cal(x);
        if (n >= settle) {
            in += x * x;
            out += y * y;
        }
    }
    return 10.0 * std::log10(out / in);
}

} // namespace

class TestFilter2Peq : public QObject
{
    Q_OBJECT

private slots:
    void response_data();
    void response();
    void peakingQCorrection_data();
    void peakingQCorrection();
    void boostAndCutCancel_data();
    void boostAndCutCancel();
    void nyquistGuard_data();
    void nyquistGuard();
    void runningFilterMatchesPower();
    void crossfadeBlendsOldAndNew();
};

void TestFilter2Peq::response_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<double>("fs");
    QTest::addColumn<double>("f0");
    QTest::addColumn<double>("gain");
    QTest::addColumn<double>("q");

    QTest::newRow("peak boost 1k") << int(Peaking) << 48000.0 << 1000.0 << 12.0 << 1.0;
    QTest::newRow("peak narrow 8k 48k") << int(Peaking) << 48000.0 << 8000.0 << 18.0 << 16.0;
    QTest::newRow("low shelf boost") << int(LowShelf) << 48000.0 << 100.0 << 6.0 << 1.0;
    QTest::newRow("high shelf cut") << int(HighShelf) << 88200.0 << 3000.0 << -15.0 << 1.0;
}

void TestFilter2Peq::response()
{
    QFETCH(int, shape);
    QFETCH(double, fs);
    QFETCH(double, f0);
    QFETCH(double, gain);
    QFETCH(double, q);

    FILTER2PEQ filter;
    setShape(filter, Shape(shape), fs, f0, gain, q);
    for (double f : { 20.0, 63.0, 180.0, 700.0, 1000.0, 2500.0, 7000.0, 12000.0, 15000.0 }) {
        const double expected = prototypeDb(Shape(shape), fs, f0, gain, q, f);
        QVERIFY2(std::abs(filter.power(f, fs) - expected) < 1e-6,
            qPrintable(
                QStringLiteral("%1 Hz: %2 dB, expected %3").arg(f).arg(filter.power(f, fs)).arg(expected)));
    }
    if (shape == Peaking)
        QVERIFY(std::abs(filter.power(f0, fs) - gain) < 1e-9);
}

void TestFilter2Peq::peakingQCorrection_data()
{
    QTest::addColumn<double>("fs");
    QTest::addColumn<double>("f0");
    QTest::addColumn<double>("q");
    QTest::addColumn<double>("expected");

    // 1.25686 - 0.02143 * log2(16) - 4.103e-5 * 8000 = 0.84290
    QTest::newRow("48k 8k Q16") << 48000.0 << 8000.0 << 16.0 << 16.0 * 0.842900;
    // 1.25513 - 0.0301 * 1 - 4.817e-5 * 10000 = 0.74333
    QTest::newRow("44.1k 10k Q2") << 44100.0 << 10000.0 << 2.0 << 2.0 * 0.74333;
    // k > 1: the correction never raises Q.
    QTest::newRow("96k 5k Q1") << 96000.0 << 5000.0 << 1.0 << 1.0;
    // Q * k below 0.1 is held at 0.1.
    QTest::newRow("44.1k 20k Q0.1") << 44100.0 << 20000.0 << 0.1 << 0.1;
    QTest::newRow("384k row") << 384000.0 << 100000.0 << 4.0
                              << 4.0
            * (1.00041829825 + 0.000395429657653 * 2.0 - 6.56655493056e-7 * 100000.0);
}

void TestFilter2Peq::peakingQCorrection()
{
    QFETCH(double, fs);
    QFETCH(double, f0);
    QFETCH(double, q);
    QFETCH(double, expected);
    QVERIFY2(std::abs(FILTER2PEQ::correctedPeakingQ(fs, f0, q) - expected) < 1e-4,
        qPrintable(QString::number(FILTER2PEQ::correctedPeakingQ(fs, f0, q), 'g', 10)));
}

void TestFilter2Peq::boostAndCutCancel_data()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<double>("gain");
    QTest::addColumn<double>("dcDb"); // of the boost
    QTest::addColumn<double>("nyquistDb");
    QTest::newRow("peak") << int(Peaking) << 6.0 << 0.0 << 0.0;
    QTest::newRow("low shelf") << int(LowShelf) << 9.0 << 9.0 << 0.0;
    QTest::newRow("high shelf") << int(HighShelf) << 0.5 << 0.0 << 0.5;
    QTest::newRow("low shelf 2nd") << int(LowShelf2) << 12.0 << 12.0 << 0.0;
    QTest::newRow("high shelf 2nd") << int(HighShelf2) << 18.0 << 0.0 << 18.0;
}

void TestFilter2Peq::boostAndCutCancel()
{
    QFETCH(int, shape);
    QFETCH(double, gain);
    QFETCH(double, dcDb);
    QFETCH(double, nyquistDb);
    FILTER2PEQ boost;
    FILTER2PEQ cut;
    setShape(boost, Shape(shape), 48000, 1500, gain, 2.0);
    setShape(cut, Shape(shape), 48000, 1500, -gain, 2.0);
    for (double f = 20.0; f < 24000.0; f *= 1.17)
        QVERIFY2(
            std::abs(boost.power(f, 48000) + cut.power(f, 48000)) < 1e-9, qPrintable(QString::number(f)));
    // The shelves reach their gain at one end and 0 dB at the other.
    if (shape != Peaking) {
        QVERIFY(std::abs(boost.power(0.0, 48000) - dcDb) < 1e-9);
        QVERIFY(std::abs(boost.power(24000.0, 48000) - nyquistDb) < 1e-6);
        QCOMPARE(boost.newCoefficients()[2] == 0.0, shape == LowShelf || shape == HighShelf);
    }

    FILTER2PEQ flat;
    setShape(flat, Shape(shape), 48000, 1500, 0.0, 2.0);
    for (double f : { 20.0, 1500.0, 20000.0 })
        QVERIFY(std::abs(flat.power(f, 48000)) < 1e-9);
    // A cut of -100 dB on the high shelf means G = 0, so b0 = b1 = 0.
    FILTER2PEQ silent;
    silent.setCoefHiShelf_C(48000, 1000, -100.0, 0.32, 18.0);
    QCOMPARE(silent.power(23000, 48000), -100.0);
}

void TestFilter2Peq::nyquistGuard_data()
{
    QTest::addColumn<double>("fs");
    QTest::addColumn<double>("f0");
    QTest::addColumn<bool>("guarded");
    QTest::newRow("32k 15995") << 32000.0 << 15995.0 << true;
    QTest::newRow("32k 15990") << 32000.0 << 15990.0 << false;
}

void TestFilter2Peq::nyquistGuard()
{
    QFETCH(double, fs);
    QFETCH(double, f0);
    QFETCH(bool, guarded);
    for (int shape = Peaking; shape <= HighShelf2; ++shape) {
        FILTER2PEQ filter;
        filter.initializeFilterProc(fs);
        setShape(filter, Shape(shape), fs, f0, 12.0, 1.0);
        QVERIFY(filter.isPending());
        const FILTER2PEQ::Coefficients passThrough { 1.0, 0.0, 0.0, 0.0, 0.0 };
        QCOMPARE(filter.newCoefficients() == passThrough, guarded);
        if (guarded) {
            for (double f : { 100.0, 5000.0, 15000.0 })
                QCOMPARE(filter.power(f, fs), 0.0);
        }
    }
}

void TestFilter2Peq::runningFilterMatchesPower()
{
    const double fs = 48000.0;
    for (const auto &[shape, f0, gain] :
        { std::tuple(Peaking, 1000.0, 12.0), { LowShelf, 200.0, 6.0 }, { HighShelf, 4000.0, -8.0 } }) {
        for (double f : { 100.0, 1000.0, 2000.0, 8000.0 }) {
            FILTER2PEQ filter;
            filter.initializeFilterProc(fs);
            setShape(filter, shape, fs, f0, gain, 2.0);
            const double measured = measuredDb(filter, fs, f);
            QVERIFY2(std::abs(measured - filter.power(f, fs)) < 0.01,
                qPrintable(QStringLiteral("%1 Hz: ran %2 dB, power %3 dB")
                               .arg(f)
                               .arg(measured)
                               .arg(filter.power(f, fs))));
        }
    }
}

void TestFilter2Peq::crossfadeBlendsOldAndNew()
{
    // Old set: pass-through; new set: a shelf started from silence. The output
    // blends the two along a logistic curve (0.5 at the middle) and is the new
    // filter alone once the crossfade has run.
    const double fs = 48000.0;
    FILTER2PEQ blended;
    blended.setCoefPEQ_C(32000, 16000, 0, 1, 0.7, 18);
    blended.initializeFilterProc(fs);
    blended.setCoefLowShelf_C(fs, 300, 12, 0.32, 18);

    FILTER2PEQ fresh;
    fresh.setCoefLowShelf_C(fs, 300, 12, 0.32, 18);
    fresh.initializeFilterProc(fs);

    for (int n = 0; n < 2000; ++n) {
        const double x = std::sin(0.01 * n) + 0.25;
        const double y = blended.cal(x);
        const double yNew = fresh.cal(x);
        if (n == 0)
            QVERIFY(std::abs(y - x) < 0.01 * std::abs(yNew - x) + 1e-12);
        if (n == 240)
            QVERIFY(std::abs(y - 0.5 * (x + yNew)) < 1e-3 * std::abs(yNew) + 1e-9);
        if (n >= 480)
            QCOMPARE(y, yNew);
    }
}

QTEST_APPLESS_MAIN(TestFilter2Peq)
#include "tst_filter2peq.moc"
