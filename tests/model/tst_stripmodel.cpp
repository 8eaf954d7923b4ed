// The reference host's processing model as its meters show it: equaliser and
// output gains, the compressor's static curve and bypass against results
// worked out by hand; the meter array it publishes; the worker thread that
// feeds the meters and follows the strip.

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <cstring>
#include <vector>

#include "AudioFileSignal.h"
#include "AudioFileWriter.h"
#include "ChannelStripProcessor.h"
#include "GeneratedSignal.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMeterObserver.h"
#include "ParameterMemory.h"
#include "StripMeterLayout.h"
#include "StripModelRunner.h"
#include "StripSettings.h"
#include "TestFiles.h"

using namespace ChannelStripKeys;

namespace {

constexpr double Fs = 48000.0;
constexpr double TwoPi = 6.283185307179586;

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
    explicit StripRun(const StripSettings &settings)
        : m_processor(Fs, 2)
    {
        m_processor.setSettings(settings);
    }

    // Processes `seconds` of a sine starting on its peak (amplitude in dBFS),
    // returns the output of the left channel.
    std::vector<float> sine(double frequency, double amplitudeDb, double seconds)
    {
        const int frames = int(std::lround(seconds * Fs));
        std::vector<float> left(frames);
        for (int i = 0; i < frames; ++i, ++m_position)
            left[i]
                = float(std::pow(10.0, amplitudeDb / 20.0) * std::cos(TwoPi * frequency * m_position / Fs));
        std::vector<float> right = left;
        process(left, right);
        return left;
    }

    void process(std::vector<float> &left, std::vector<float> &right)
    {
        for (size_t start = 0; start < left.size(); start += 256) {
            float *const channels[2] = { left.data() + start, right.data() + start };
            m_processor.process(channels, int(std::min<size_t>(256, left.size() - start)));
        }
    }

    ChannelStripProcessor &processor() { return m_processor; }

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

struct MeterLog : IMeterObserver
{
    void notifyMeterLvlUpdated(unsigned int *, unsigned int) override { }
    void notifyMeterDbUpdated(unsigned int *values, unsigned int count) override
    {
        last = QVector<unsigned int>(values, values + count);
        ++arrays;
    }
    int at(HostModel &model, const char *key, int channel, int side = 0) const
    {
        return int(last.value(model.meterBase(key) + 2 * channel + side));
    }
    QVector<unsigned int> last;
    int arrays = 0;
};

} // namespace

class TestStripModel : public QObject
{
    Q_OBJECT

private slots:
    void settlesOnTheStaticCurve_data();
    void settlesOnTheStaticCurve();
    void bypassIsBitExact_data();
    void bypassIsBitExact();
    void meterArrayFollowsTheStrip_data();
    void meterArrayFollowsTheStrip();
    void unreadableAudioFileIsReported();
    void workerFeedsTheMetersAndFollowsTheDrive();
};

void TestStripModel::settlesOnTheStaticCurve_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<double>("amplitudeDb"); // of a 1 kHz sine
    QTest::addColumn<double>("reductionDb");
    QTest::addColumn<double>("gainDb"); // output against input

    // 1 kHz is frequency step 72; gain steps are 0.1 dB from -18 dB; the
    // output level 0.1 dB from -18 dB. A peaking band's gain at its centre is
    // its gain exactly. At -20 dBFS the default compressor is idle.
    const Steps middleBand { { EqualizerMiddleFrequency, 72 }, { EqualizerMiddleGain, 240 } };
    // clang-format off
    QTest::newRow("+6 dB middle band, output +2 dB") << middleBand + Steps { { OutputLevel, 200 } } << -20.0 << 0.0 << 8.0;
    QTest::newRow("middle band switched off") << middleBand + Steps { { EqualizerMiddleOn, 0 } } << -20.0 << 0.0 << 0.0;
    // Peak level 0 dBFS, 20 dB over a -20 dB threshold: 20 * (1 - 1/4).
    QTest::newRow("4:1 hard knee") << compressorSteps(100, 100, 60, 2) << 0.0 << 15.0 << -15.0;
    // Still inside the soft knee (26 dB half width): 20 * 2.3^2 * 0.19231 * 0.75.
    QTest::newRow("4:1 soft knee") << compressorSteps(100, 100, 60, 0) << 0.0 << 15.262 << -15.262;
    // Threshold -10 dB and drive 20 dB: -30 dB; a -10 dBFS sine is 20 dB over, at 2:1.
    QTest::newRow("2:1 hard knee, -30 dB threshold") << compressorSteps(50, 100, 20, 2) << -10.0 << 10.0 << -10.0;
    // The last ratio stands for limiting: 20 * (1 - 1/3000).
    QTest::newRow("limiting") << compressorSteps(100, 100, 120, 2) << 0.0 << 19.9933 << -19.9933;
    // Without drive a -10 dB threshold slides up to 0 dB: nothing to reduce.
    QTest::newRow("threshold without drive") << compressorSteps(50, 0, 60, 2) << 0.0 << 0.0 << 0.0;
    // Make-up (offset 200: +10 dB) does not count as reduction.
    QTest::newRow("with make-up") << compressorSteps(100, 100, 60, 2) + Steps { { CompressorMakeUpOffset, 200 } } << 0.0 << 15.0 << -5.0;
    // clang-format on
}

void TestStripModel::settlesOnTheStaticCurve()
{
    QFETCH(Steps, steps);
    QFETCH(double, amplitudeDb);
    QFETCH(double, reductionDb);
    QFETCH(double, gainDb);
    StripRun run(settingsWith(steps));
    // Read 30 times a second, as the host does, until the compressor has
    // settled and the peak meters have fallen from the first swing.
    for (int reading = 0; reading < 60; ++reading) {
        run.sine(1000.0, amplitudeDb, 1.0 / 30.0);
        run.processor().takeMeterReading();
    }
    const std::vector<float> out = run.sine(1000.0, amplitudeDb, 0.3);
    QVERIFY2(std::abs(rmsDb(out, 0) - (amplitudeDb - 3.0103 + gainDb)) < 0.2,
        qPrintable(QString::number(rmsDb(out, 0))));

    // The meters show it: the input and the detector at the sine's peak level,
    // the reduction, and the output's gain against the input.
    const MeterReading meters = run.processor().takeMeterReading();
    QVERIFY(std::abs(meters.inputDb[0] - amplitudeDb) < 0.05);
    QVERIFY(std::abs(meters.detectorLevelDb - amplitudeDb) < 0.1);
    QVERIFY2(std::abs(meters.gainReductionDb - reductionDb) < 0.2,
        qPrintable(QString::number(meters.gainReductionDb)));
    QVERIFY(std::abs(meters.outputDb[1] - meters.inputDb[1] - gainDb) < 0.2);
}

void TestStripModel::bypassIsBitExact_data()
{
    QTest::addColumn<int>("programme");
    QTest::addColumn<Steps>("steps");

    // Everything turned far from neutral, then bypassed.
    const Steps extreme = compressorSteps(0, 100, 120, 0, 1, 10)
        + Steps { { EqualizerLowGain, 360 }, { EqualizerMiddleGain, 0 }, { EqualizerHighGain, 360 },
              { SideChainOn, 1 }, { SideChainGain, 360 }, { CompressorMakeUpOffset, 200 } };
    // clang-format off
    QTest::newRow("both bypassed, drums") << int(GeneratedSignal::Drums) << extreme + Steps { { CompressorBypass, 1 }, { EqualizerBypass, 1 } };
    // clang-format on
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

void TestStripModel::meterArrayFollowsTheStrip_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<bool>("stereo");
    QTest::newRow("mono strip on channel 3") << 3 << false;
    QTest::newRow("stereo strip on channels 3 and 4") << 3 << true;
    QTest::newRow("stereo strip whose right channel is past the meters") << 15 << true;
}

void TestStripModel::meterArrayFollowsTheStrip()
{
    QFETCH(int, channel);
    QFETCH(bool, stereo);
    HostModel model = HostModel::channelStrip();
    // Inputs, outputs (the right one over 0 dBFS), detector level, reduction.
    const MeterReading reading { 2, { -12.04, -6.0 }, { -3.0, 1.26 }, -8.0, 4.56 };
    const QVector<unsigned int> values = StripMeterLayout(model, channel, stereo).levels(reading);
    QCOMPARE(values.size(), int(model.meterArraySize()));
    auto at = [&](const char *key, int ch, int side) {
        return int(values.at(model.meterBase(key) + 2 * ch + side));
    };

    for (int side = 0; side < 2; ++side) {
        QCOMPARE(at(InputMeter, channel, side), -120);
        QCOMPARE(at(OutputMeter, channel, side), -30);
        QCOMPARE(at(SideChainMeter, channel, side), -80);
        QCOMPARE(at(GainReductionMeter, channel, side), -46);
    }
    const int right = channel + 1;
    if (right < 16) {
        QCOMPARE(at(InputMeter, right, 0), stereo ? -60 : -1270);
        QCOMPARE(at(OutputMeter, right, 1), stereo ? 13 : -1270);
        QCOMPARE(at(GainReductionMeter, right, 0), stereo ? -46 : 0);
    }
    // Other channels: silence, and no reduction.
    QCOMPARE(at(InputMeter, channel - 1, 1), -1270);
    QCOMPARE(at(SideChainMeter, channel - 1, 0), -1270);
    QCOMPARE(at(GainReductionMeter, channel - 1, 0), 0);
}

void TestStripModel::unreadableAudioFileIsReported()
{
    QTemporaryDir dir;
    const QString text = dir.filePath(QStringLiteral("notes.wav"));
    QVERIFY(writeFile(text, "not audio at all\n"));
    for (const QString &path : { text, dir.filePath(QStringLiteral("missing.flac")) }) {
        QString error;
        QVERIFY(!AudioFileSignal::open(path, &error));
        QVERIFY2(error.contains(path), qPrintable(error));
    }
    QString error;
    QVERIFY(
        !AudioFileWriter::create(dir.filePath(QStringLiteral("no/such/folder/out.wav")), 48000, 2, &error));
    QVERIFY(error.contains(QStringLiteral("out.wav")));
}

void TestStripModel::workerFeedsTheMetersAndFollowsTheDrive()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MeterLog log;
    IMeterNotifier *notifier = nullptr;
    QVERIFY(memory.getMeterNotifier(&notifier) >= 0);
    notifier->addMeterObserver(&log);

    StripModelRunner runner(
        memory, 0, true, std::make_unique<GeneratedSignal>(GeneratedSignal::Pink, 48000.0));
    QSignalSpy readings(&runner, &StripModelRunner::meterReadingArrived);
    runner.start();
    // The default threshold of 0 dB leaves pink noise alone.
    QTRY_VERIFY_WITH_TIMEOUT(readings.count() >= 3, 5000);
    QCOMPARE(log.at(model, GainReductionMeter, 0), 0);
    QVERIFY(log.at(model, InputMeter, 1) > -200 && log.at(model, InputMeter, 1) < 0);

    // 20 dB of drive at 10:1 puts the threshold at -20 dB: heavy reduction.
    memory.setValueByKey(CompressorDrive, 100);
    memory.setValueByKey(CompressorRatio, 86);
    QTRY_VERIFY_WITH_TIMEOUT(log.at(model, GainReductionMeter, 0) < -50, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(runner.lastReading().gainReductionDb > 5.0, 5000);
    runner.stop();
    const int arrays = log.arrays;
    QTest::qWait(100);
    QCOMPARE(log.arrays, arrays);
    notifier->removeMeterObserver(&log);
}

QTEST_GUILESS_MAIN(TestStripModel)
#include "tst_stripmodel.moc"
