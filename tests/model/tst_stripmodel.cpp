// The processing model against results worked out by hand: equaliser gains,
// the compressor's static curve, attack and release, bypass and side chain.

#include <QTest>
#include <cmath>
#include <cstring>
#include <vector>

#include "ChannelStripProcessor.h"
#include "GeneratedSignal.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ParameterMemory.h"
#include "StripSettings.h"

using namespace ChannelStripKeys;

namespace {

constexpr double Fs = 48000.0;
constexpr double TwoPi = 6.283185307179586;
constexpr double SilenceDb = -1000.0;

using Steps = QList<QPair<QByteArray, int>>;

// The strip's settings after the given parameter steps, read the way the
// host reads them.
StripSettings settingsWith(const Steps &steps)
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    for (const auto &[key, value] : steps)
        memory.setValueByKey(key.constData(), value);
    return StripSettings::fromMemory(memory, 0);
}

// Runs a stereo strip over a signal, both channels alike, in host-sized blocks.
class StripRun
{
public:
    explicit StripRun(const StripSettings &settings, int channels = 2)
        : m_processor(Fs, channels)
    {
        m_processor.setSettings(settings);
    }

    // Processes `seconds` of a sine starting on its peak (amplitude in dBFS),
    // returns the output of the left channel.
    std::vector<float> sine(double frequency, double amplitudeDb, double seconds)
    {
        return tone(frequency, amplitudeDb, amplitudeDb, seconds).first;
    }

    // The same with its own level on each channel; both outputs.
    std::pair<std::vector<float>, std::vector<float>> tone(
        double frequency, double leftDb, double rightDb, double seconds)
    {
        const int frames = int(std::lround(seconds * Fs));
        std::vector<float> left(frames), right(frames);
        const double leftAmplitude = std::pow(10.0, leftDb / 20.0);
        const double rightAmplitude = std::pow(10.0, rightDb / 20.0);
        for (int i = 0; i < frames; ++i, ++m_position) {
            const double x = std::cos(TwoPi * frequency * m_position / Fs);
            left[i] = float(leftAmplitude * x);
            right[i] = float(rightAmplitude * x);
        }
        process(left, right);
        return { left, right };
    }

    void process(std::vector<float> &left, std::vector<float> &right)
    {
        for (size_t start = 0; start < left.size(); start += 256) {
            float *const channels[2] = { left.data() + start, right.data() + start };
            m_processor.process(channels, int(std::min<size_t>(256, left.size() - start)));
        }
    }

    ChannelStripProcessor &processor() { return m_processor; }
    double gainReduction() const { return m_processor.compressor().current().gainReductionDb; }

private:
    ChannelStripProcessor m_processor;
    long long m_position = 0;
};

double rmsDb(const std::vector<float> &samples, size_t from)
{
    double sum = 0.0;
    for (size_t i = from; i < samples.size(); ++i)
        sum += double(samples[i]) * samples[i];
    return 10.0 * std::log10(sum / double(samples.size() - from));
}

// Four compressor steps: ratio 4:1 is step 60, the hard knee 2; threshold
// offset 100 is 0 dB and drive 100 is 20 dB, so the effective threshold is
// -20 dB.
Steps compressorSteps(
    int thresholdOffset, int drive, int ratio, int knee, int attackMs = 10, int releaseMs = 200)
{
    return { { CompressorThresholdOffset, thresholdOffset }, { CompressorDrive, drive },
        { CompressorRatio, ratio }, { CompressorKnee, knee }, { CompressorAttack, attackMs },
        { CompressorRelease, releaseMs } };
}

} // namespace

class TestStripModel : public QObject
{
    Q_OBJECT

private slots:
    void equalizerAndOutputGain_data();
    void equalizerAndOutputGain();
    void compressorSettlesOnTheStaticCurve_data();
    void compressorSettlesOnTheStaticCurve();
    void envelopeFollowsItsTimeConstants_data();
    void envelopeFollowsItsTimeConstants();
    void stereoDetectorIsLinked_data();
    void stereoDetectorIsLinked();
    void bypassIsBitExact_data();
    void bypassIsBitExact();
    void sideChainShapesOnlyTheDetector_data();
    void sideChainShapesOnlyTheDetector();
};

void TestStripModel::equalizerAndOutputGain_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<double>("gainDb");

    // 1 kHz is frequency step 72; gain steps are 0.1 dB from -18 dB; the
    // output level 0.1 dB from -18 dB. A peaking band's gain at its centre is
    // its gain exactly.
    QTest::newRow("+6 dB middle band at 1 kHz")
        << Steps { { EqualizerMiddleFrequency, 72 }, { EqualizerMiddleGain, 240 } } << 6.0;
    QTest::newRow("middle band switched off")
        << Steps { { EqualizerMiddleFrequency, 72 }, { EqualizerMiddleGain, 240 }, { EqualizerMiddleOn, 0 } }
        << 0.0;
    QTest::newRow("equaliser in bypass")
        << Steps { { EqualizerMiddleFrequency, 72 }, { EqualizerMiddleGain, 240 }, { EqualizerBypass, 1 } }
        << 0.0;
    QTest::newRow("output level -6 dB") << Steps { { OutputLevel, 120 } } << -6.0;
    QTest::newRow("band and output add up")
        << Steps { { EqualizerMiddleFrequency, 72 }, { EqualizerMiddleGain, 240 }, { OutputLevel, 200 } }
        << 8.0;
}

void TestStripModel::equalizerAndOutputGain()
{
    QFETCH(Steps, steps);
    QFETCH(double, gainDb);

    // At -20 dBFS the default compressor (threshold 0 dB, no drive) is idle.
    StripRun run(settingsWith(steps));
    // Read 30 times a second, as the host does, until the peak meters have
    // fallen from the filters' first swing.
    for (int reading = 0; reading < 60; ++reading) {
        run.sine(1000.0, -20.0, 1.0 / 30.0);
        run.processor().takeMeterReading();
    }
    const std::vector<float> out = run.sine(1000.0, -20.0, 0.3);
    QVERIFY(std::abs(rmsDb(out, 0) - (-20.0 - 3.0103 + gainDb)) < 0.1);

    const MeterReading meters = run.processor().takeMeterReading();
    QVERIFY(std::abs(meters.inputDb[0] - -20.0) < 0.05);
    QVERIFY(std::abs(meters.outputDb[1] - meters.inputDb[1] - gainDb) < 0.1);
}

void TestStripModel::compressorSettlesOnTheStaticCurve_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<double>("amplitudeDb");
    QTest::addColumn<double>("reductionDb");

    // Peak level 0 dBFS, 20 dB over a -20 dB threshold: 20 * (1 - 1/4).
    QTest::newRow("4:1 hard knee") << compressorSteps(100, 100, 60, 2) << 0.0 << 15.0;
    // 20 dB over is past the medium knee's 10 dB half width: the same line.
    QTest::newRow("4:1 medium knee") << compressorSteps(100, 100, 60, 1) << 0.0 << 15.0;
    // Still inside the soft knee (26 dB half width): 20 * 2.3^2 * 0.19231 * 0.75.
    QTest::newRow("4:1 soft knee") << compressorSteps(100, 100, 60, 0) << 0.0 << 15.262;
    // Threshold -10 dB and drive 20 dB: -30 dB; a -10 dBFS sine is 20 dB over, at 2:1.
    QTest::newRow("2:1 hard knee, -30 dB threshold") << compressorSteps(50, 100, 20, 2) << -10.0 << 10.0;
    // The last ratio stands for limiting: 20 * (1 - 1/3000).
    QTest::newRow("limiting") << compressorSteps(100, 100, 120, 2) << 0.0 << 19.9933;
    // Without drive a -10 dB threshold slides up to 0 dB: nothing to reduce.
    QTest::newRow("threshold without drive") << compressorSteps(50, 0, 60, 2) << 0.0 << 0.0;
    QTest::newRow("below the threshold") << compressorSteps(100, 100, 60, 2) << -25.0 << 0.0;
    // Make-up and the output level do not count as reduction.
    QTest::newRow("with make-up") << compressorSteps(100, 100, 60, 2)
            + Steps { { CompressorMakeUpOffset, 200 } }
                                  << 0.0 << 15.0;
}

void TestStripModel::compressorSettlesOnTheStaticCurve()
{
    QFETCH(Steps, steps);
    QFETCH(double, amplitudeDb);
    QFETCH(double, reductionDb);
    const StripSettings settings = settingsWith(steps);
    StripRun run(settings);

    // Within five attack times of a steady sine...
    run.sine(1000.0, amplitudeDb, 5 * settings.attackMs / 1000.0);
    QVERIFY2(
        std::abs(run.gainReduction() - reductionDb) < 0.2, qPrintable(QString::number(run.gainReduction())));
    // ...and there it stays; the detector reads the sine's peak level.
    const std::vector<float> out = run.sine(1000.0, amplitudeDb, 0.2);
    QVERIFY(std::abs(run.gainReduction() - reductionDb) < 0.2);
    QVERIFY(std::abs(run.processor().compressor().current().levelDb - amplitudeDb) < 0.1);
    const double makeUp = settings.makeUpDb;
    QVERIFY(std::abs(rmsDb(out, out.size() / 2) - (amplitudeDb - 3.0103 - reductionDb + makeUp)) < 0.2);

    const MeterReading meters = run.processor().takeMeterReading();
    QVERIFY(std::abs(meters.gainReductionDb - reductionDb) < 0.2);
    QVERIFY(std::abs(meters.detectorLevelDb - amplitudeDb) < 0.1);
}

void TestStripModel::envelopeFollowsItsTimeConstants_data()
{
    QTest::addColumn<int>("attackMs");
    QTest::addColumn<int>("releaseMs");
    QTest::newRow("1 ms attack, 50 ms release") << 1 << 50;
    QTest::newRow("80 ms attack, 1000 ms release") << 80 << 1000;
}

void TestStripModel::envelopeFollowsItsTimeConstants()
{
    QFETCH(int, attackMs);
    QFETCH(int, releaseMs);
    StripRun run(settingsWith(compressorSteps(100, 100, 60, 2, attackMs, releaseMs)));

    // After one attack time the detector has risen to 1 - 1/e of the peak,
    // -3.98 dB: 16.02 dB over the threshold, 12.0 dB of reduction at 4:1.
    run.sine(1000.0, 0.0, attackMs / 1000.0);
    QVERIFY2(std::abs(run.gainReduction() - 12.0) < 0.25, qPrintable(QString::number(run.gainReduction())));
    run.sine(1000.0, 0.0, 8 * attackMs / 1000.0);
    QVERIFY(std::abs(run.gainReduction() - 15.0) < 0.2);

    // Silence: the detector falls 10 dB in half the release time, leaving
    // 10 dB over the threshold (7.5 dB of reduction), and reaches the
    // threshold after the release time.
    run.sine(1000.0, SilenceDb, releaseMs / 2000.0);
    QVERIFY2(std::abs(run.gainReduction() - 7.5) < 0.3, qPrintable(QString::number(run.gainReduction())));
    run.sine(1000.0, SilenceDb, releaseMs / 2000.0 + 0.002);
    QCOMPARE(run.gainReduction(), 0.0);
}

void TestStripModel::stereoDetectorIsLinked_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<double>("leftDb");
    QTest::addColumn<double>("rightDb");
    QTest::addColumn<double>("rightGainDb");

    // The louder channel, 20 dB over the threshold, sets 15 dB of reduction
    // for both.
    QTest::newRow("stereo, loud left") << 2 << 0.0 << -20.0 << -15.0;
    QTest::newRow("stereo, loud right") << 2 << -20.0 << 0.0 << -15.0;
    // A mono strip processes its one channel and leaves the other buffer be.
    QTest::newRow("mono") << 1 << 0.0 << 0.0 << 0.0;
}

void TestStripModel::stereoDetectorIsLinked()
{
    QFETCH(int, channels);
    QFETCH(double, leftDb);
    QFETCH(double, rightDb);
    QFETCH(double, rightGainDb);
    StripRun run(settingsWith(compressorSteps(100, 100, 60, 2)), channels);
    run.tone(1000.0, leftDb, rightDb, 0.1);
    const auto [left, right] = run.tone(1000.0, leftDb, rightDb, 0.1);
    QVERIFY(std::abs(rmsDb(left, 0) - (leftDb - 3.0103 - 15.0)) < 0.2);
    QVERIFY(std::abs(rmsDb(right, 0) - (rightDb - 3.0103 + rightGainDb)) < 0.2);
}

void TestStripModel::bypassIsBitExact_data()
{
    QTest::addColumn<int>("programme");
    QTest::addColumn<Steps>("steps");

    // Everything turned far from neutral, then bypassed.
    const Steps extreme = compressorSteps(0, 100, 120, 0, 1, 10)
        + Steps { { EqualizerLowGain, 360 }, { EqualizerMiddleGain, 0 }, { EqualizerHighGain, 360 },
              { SideChainOn, 1 }, { SideChainGain, 360 }, { CompressorMakeUpOffset, 200 } };
    QTest::newRow("both bypassed, drums")
        << int(GeneratedSignal::Drums) << extreme + Steps { { CompressorBypass, 1 }, { EqualizerBypass, 1 } };
    QTest::newRow("compressor bypassed, every band off") << int(GeneratedSignal::Speech)
                                                         << extreme
            + Steps { { CompressorBypass, 1 }, { EqualizerLowOn, 0 }, { EqualizerMiddleOn, 0 },
                  { EqualizerHighOn, 0 } };
}

void TestStripModel::bypassIsBitExact()
{
    QFETCH(int, programme);
    QFETCH(Steps, steps);
    GeneratedSignal signal(GeneratedSignal::Programme(programme), Fs);
    std::vector<float> left(48000), right(48000);
    signal.render(left.data(), right.data(), int(left.size()));
    const std::vector<float> inLeft = left, inRight = right;

    StripRun run(settingsWith(steps));
    run.process(left, right);
    QVERIFY(std::memcmp(left.data(), inLeft.data(), left.size() * sizeof(float)) == 0);
    QVERIFY(std::memcmp(right.data(), inRight.data(), right.size() * sizeof(float)) == 0);
}

void TestStripModel::sideChainShapesOnlyTheDetector_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<int>("gainStep");
    QTest::addColumn<double>("detectorShiftDb");

    // The side-chain band sits on the sine at 1 kHz, so the detector sees its gain.
    QTest::newRow("+12 dB") << true << 300 << 12.0;
    QTest::newRow("switched off") << false << 300 << 0.0;
}

void TestStripModel::sideChainShapesOnlyTheDetector()
{
    QFETCH(bool, on);
    QFETCH(int, gainStep);
    QFETCH(double, detectorShiftDb);

    // At 1:1 the compressor never changes the gain, whatever it detects.
    const Steps base = compressorSteps(100, 100, 0, 2) + Steps { { SideChainFrequency, 72 } };
    StripRun plain(settingsWith(base));
    StripRun shaped(settingsWith(base + Steps { { SideChainOn, on ? 1 : 0 }, { SideChainGain, gainStep } }));
    const std::vector<float> plainOut = plain.sine(1000.0, -20.0, 0.3);
    const std::vector<float> shapedOut = shaped.sine(1000.0, -20.0, 0.3);

    QVERIFY(plainOut == shapedOut);
    const double shift = shaped.processor().compressor().current().levelDb
        - plain.processor().compressor().current().levelDb;
    QVERIFY2(std::abs(shift - detectorShiftDb) < 0.1, qPrintable(QString::number(shift)));
}

QTEST_GUILESS_MAIN(TestStripModel)
#include "tst_stripmodel.moc"
