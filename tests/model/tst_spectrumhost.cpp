// What the reference host's analyser reports, read from --dump-spectrum as a
// script reads it: a steady tone peaks at its frequency, pink noise reads
// flat, and an equaliser boost lifts the spectrum by as much as the curve.

#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "AudioFileWriter.h"
#include "ProcessRun.h"
#include "TestFiles.h"

namespace {

using Frame = QList<QPair<double, double>>; // frequency in Hz, level in dB

// Runs the host for its picture (two seconds into the programme) and reads
// the dumped frame.
Frame dumpedFrame(const QString &folder, const QStringList &arguments)
{
    const QString dump = folder + QStringLiteral("/spectrum.txt");
    QFile::remove(dump);
    const ProcessRun run = runProcess(QStringLiteral(ORV_HOST_PATH),
        QStringList { "--plugin", ORV_PLUGIN_DIR "/orvchstrip.so", "--no-settings", "--screenshot",
            folder + "/editor.png", "--dump-spectrum", dump }
            + arguments);
    if (run.exitCode != 0)
        qWarning("host: %s", run.err.constData());
    Frame frame;
    for (const QByteArray &line : readFile(dump).split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() == 2)
            frame.append({ fields[0].toDouble(), fields[1].toDouble() });
    }
    return frame;
}

QString writeSine(const QString &path, double frequency, double levelDb)
{
    constexpr double Fs = 48000.0;
    QString error;
    auto writer = AudioFileWriter::create(path, Fs, 1, &error);
    if (!writer)
        return error;
    std::vector<float> samples(48000);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = float(std::pow(10.0, levelDb / 20.0) * std::sin(6.283185307179586 * frequency * i / Fs));
    const float *channels[] = { samples.data() };
    writer->write(channels, int(samples.size()));
    writer->finish(&error);
    return error;
}

} // namespace

class TestSpectrumHost : public QObject
{
    Q_OBJECT

private slots:
    void sinePeaksAtItsFrequency();
    void pinkNoiseReadsFlatAndABoostLiftsIt();

private:
    QTemporaryDir m_dir;
};

void TestSpectrumHost::sinePeaksAtItsFrequency()
{
    const QString sine = m_dir.filePath(QStringLiteral("sine.wav"));
    QCOMPARE(writeSine(sine, 1000.0, -12.0), QString());
    const Frame frame = dumpedFrame(m_dir.path(), { "--input", sine });
    QCOMPARE(frame.size(), 61);
    const auto highest = std::max_element(
        frame.begin(), frame.end(), [](const auto &a, const auto &b) { return a.second < b.second; });
    // Within a sixth of an octave of 1 kHz, at the sine's peak level.
    QVERIFY2(std::abs(std::log2(highest->first / 1000.0)) <= 1.0 / 6.0,
        qPrintable(QString::number(highest->first)));
    QVERIFY2(std::abs(highest->second + 12.0) < 0.5, qPrintable(QString::number(highest->second)));
}

// Pink noise reads flat: every band from 50 Hz to 10 kHz within 3 dB of their
// mean. A 12 dB boost at 1 kHz lifts it by as much as the curve there (a Q of
// 1 keeps the boost within 1.5 dB of 12 dB over a third of an octave).
void TestSpectrumHost::pinkNoiseReadsFlatAndABoostLiftsIt()
{
    const QStringList pink { "--signal", "pink", "--set", "fx_cmp_byps=on" };
    const Frame flat = dumpedFrame(m_dir.path(), pink);
    const Frame boosted = dumpedFrame(m_dir.path(), pink + QStringList { "--set", "fx_eq_midgain=12" });
    QCOMPARE(flat.size(), 61);
    QCOMPARE(boosted.size(), 61);
    QList<double> levels;
    for (const auto &[frequency, level] : flat) {
        if (frequency >= 50.0 && frequency <= 10100.0)
            levels.append(level);
    }
    const double mean = std::accumulate(levels.begin(), levels.end(), 0.0) / levels.size();
    for (int b = 0; b < flat.size(); ++b) {
        const auto [frequency, level] = flat[b];
        const QByteArray where
            = QStringLiteral("%1 Hz: %2 dB, mean %3 dB").arg(frequency).arg(level).arg(mean).toUtf8();
        if (frequency >= 50.0 && frequency <= 10100.0)
            QVERIFY2(std::abs(level - mean) <= 3.0, where);
        if (std::abs(std::log2(frequency / 1000.0)) <= 1.0 / 3.0 + 0.01)
            QVERIFY2(std::abs(boosted[b].second - level - 12.0) <= 1.5, where);
    }
}

QTEST_GUILESS_MAIN(TestSpectrumHost)
#include "tst_spectrumhost.moc"
