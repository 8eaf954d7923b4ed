// The processing model inside the reference host: the meter array it
// publishes, the peak meters' fall, the settings it follows, the audio files
// it reads and writes, and the worker thread feeding the meter observers.

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <vector>

#include "AudioFileSignal.h"
#include "AudioFileWriter.h"
#include "GeneratedSignal.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMeterObserver.h"
#include "ParameterMemory.h"
#include "PeakMeterBallistics.h"
#include "SharedStripSettings.h"
#include "StripMeterLayout.h"
#include "StripModelRunner.h"
#include "StripSettingsObserver.h"
#include "TestFiles.h"

using namespace ChannelStripKeys;

namespace {

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

class TestStripModelHost : public QObject
{
    Q_OBJECT

private slots:
    void meterArrayFollowsTheStrip_data();
    void meterArrayFollowsTheStrip();
    void peakMeterFallsTwentyDecibelsInOnePointSevenSeconds_data();
    void peakMeterFallsTwentyDecibelsInOnePointSevenSeconds();
    void settingsFollowTheParameterMemory();
    void audioFileRoundTripsAndLoops_data();
    void audioFileRoundTripsAndLoops();
    void unreadableAudioFileIsReported();
    void workerFeedsTheMetersAndFollowsTheDrive();
};

void TestStripModelHost::meterArrayFollowsTheStrip_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<bool>("stereo");
    QTest::newRow("mono strip on channel 3") << 3 << false;
    QTest::newRow("stereo strip on channels 3 and 4") << 3 << true;
    QTest::newRow("stereo strip whose right channel is past the meters") << 15 << true;
}

void TestStripModelHost::meterArrayFollowsTheStrip()
{
    QFETCH(int, channel);
    QFETCH(bool, stereo);
    HostModel model = HostModel::channelStrip();
    MeterReading reading;
    reading.inputDb[0] = -12.04;
    reading.inputDb[1] = -6.0;
    reading.outputDb[0] = -3.0;
    reading.outputDb[1] = 1.26; // over 0 dBFS
    reading.detectorLevelDb = -8.0;
    reading.gainReductionDb = 4.56;
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

void TestStripModelHost::peakMeterFallsTwentyDecibelsInOnePointSevenSeconds_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("newPeakDb");
    QTest::addColumn<double>("shownDb");
    QTest::newRow("the return time") << 1.7 << -127.0 << -20.0;
    QTest::newRow("a quieter peak than the fall") << 0.85 << -30.0 << -10.0;
    QTest::newRow("a louder peak shows at once") << 0.85 << -2.0 << -2.0;
    QTest::newRow("long silence ends at the floor") << 60.0 << -127.0 << -127.0;
    QTest::newRow("a NaN peak is silence") << 0.85 << qQNaN() << -10.0;
}

void TestStripModelHost::peakMeterFallsTwentyDecibelsInOnePointSevenSeconds()
{
    QFETCH(double, seconds);
    QFETCH(double, newPeakDb);
    QFETCH(double, shownDb);
    PeakMeterBallistics meter;
    QCOMPARE(meter.update(0.0, 0.03), 0.0);
    QVERIFY(std::abs(meter.update(newPeakDb, seconds) - shownDb) < 1e-9);
}

void TestStripModelHost::settingsFollowTheParameterMemory()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    SharedStripSettings shared;
    quint64 generation = 0;
    {
        StripSettingsObserver observer(memory, 2, shared);
        const quint64 first = shared.generation();
        QVERIFY(first > 0);

        memory.setValueByKey(EqualizerMiddleFrequency, 73, 2);
        memory.setValueByKey(CompressorMakeUpOffset, 150, 2);
        memory.setValueByKey(OutputLevel, 0, 2);
        memory.setValueByKey(CompressorAttack, 37, 2);
        memory.setValueByKey(CompressorDrive, 80, 5); // another channel
        QCOMPARE(shared.generation(), first + 4);

        const StripSettings settings = shared.read(&generation);
        QCOMPARE(settings.middle.frequency, 1060.0);
        QCOMPARE(settings.makeUpDb, 5.0);
        QCOMPARE(settings.outputDb, -18.0);
        QCOMPARE(settings.attackMs, 37.0);
        QCOMPARE(settings.curve.drive, 0);
    }
    QCOMPARE(memory.totalObserverCount(), 0);
}

void TestStripModelHost::audioFileRoundTripsAndLoops_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("channels");
    QTest::addColumn<float>("tolerance");
    QTest::newRow("stereo float WAV") << QStringLiteral("out.wav") << 2 << 0.0f;
    QTest::newRow("mono 24-bit FLAC") << QStringLiteral("out.flac") << 1 << 2e-7f;
    QTest::newRow("stereo 24-bit AIFF") << QStringLiteral("out.aiff") << 2 << 2e-7f;
}

void TestStripModelHost::audioFileRoundTripsAndLoops()
{
    QFETCH(QString, name);
    QFETCH(int, channels);
    QFETCH(float, tolerance);
    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    constexpr int Frames = 4800;
    std::vector<float> left(Frames), right(Frames);
    GeneratedSignal(GeneratedSignal::Drums, 44100.0).render(left.data(), right.data(), Frames);
    for (float &x : right)
        x *= -0.5f;

    QString error;
    std::unique_ptr<AudioFileWriter> writer = AudioFileWriter::create(path, 44100.0, channels, &error);
    QVERIFY2(writer, qPrintable(error));
    const float *const data[2] = { left.data(), right.data() };
    writer->write(data, 1000);
    writer->write(data, 0);
    const float *const rest[2] = { left.data() + 1000, right.data() + 1000 };
    QVERIFY(!QFile::exists(path)); // nothing in place until finished
    writer->write(rest, Frames - 1000);
    QVERIFY2(writer->finish(&error), qPrintable(error));

    std::unique_ptr<AudioFileSignal> signal = AudioFileSignal::open(path, &error);
    QVERIFY2(signal, qPrintable(error));
    QCOMPARE(signal->sampleRate(), 44100.0);
    QCOMPARE(signal->fileChannels(), channels);
    QCOMPARE(signal->fileFrames(), Frames);
    // One and a half passes: the file starts over where it ends.
    std::vector<float> readLeft(Frames * 3 / 2), readRight(Frames * 3 / 2);
    signal->render(readLeft.data(), readRight.data(), int(readLeft.size()));
    for (int i = 0; i < int(readLeft.size()); ++i) {
        const int j = i % Frames;
        QVERIFY(std::abs(readLeft[i] - left[j]) <= tolerance);
        QVERIFY(std::abs(readRight[i] - (channels == 2 ? right[j] : left[j])) <= tolerance);
    }
}

void TestStripModelHost::unreadableAudioFileIsReported()
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

void TestStripModelHost::workerFeedsTheMetersAndFollowsTheDrive()
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

QTEST_GUILESS_MAIN(TestStripModelHost)
#include "tst_stripmodelhost.moc"
