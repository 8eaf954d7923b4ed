// Times the strip model processing one second of stereo 48 kHz pink noise,
// in the host's blocks, with every section working (side chain, compression
// in a soft knee, three bands), against a plain copy of the same buffers,
// best of a few runs each; and the spectrum analysis the worker adds while
// an editor shows the spectrum (input and output, 30 frames a second).

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "ChannelStripProcessor.h"
#include "GeneratedSignal.h"
#include "ProcessingWorker.h"
#include "SpectrumAnalyser.h"

namespace {

constexpr double Fs = 48000.0;
constexpr int Frames = 48000; // one second
constexpr int Block = ProcessingWorker::BlockFrames;
constexpr int Runs = 15;

StripSettings busySettings()
{
    StripSettings s;
    s.low = { 100.0, 4.0, 1.0, true };
    s.middle = { 2500.0, -3.0, 2.0, true };
    s.high = { 8000.0, 2.5, 1.0, true };
    s.sideChain = { 3000.0, 6.0, 1.0, true };
    s.curve.thresholdOffset = 60; // -8 dB
    s.curve.drive = 50;           // 10 dB
    s.curve.ratioIndex = 60;      // 4:1
    s.curve.knee = CompressorCurve::Soft;
    s.makeUpDb = 3.0;
    s.outputDb = -1.0;
    return s;
}

double microseconds(const QElapsedTimer &timer)
{
    return timer.nsecsElapsed() / 1e3;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const bool json = app.arguments().contains(QStringLiteral("--json"));
    QTextStream out(stdout);

    std::vector<float> sourceLeft(Frames), sourceRight(Frames);
    GeneratedSignal(GeneratedSignal::Pink, Fs).render(sourceLeft.data(), sourceRight.data(), Frames);
    std::vector<float> left(Frames), right(Frames);

    ChannelStripProcessor processor(Fs, 2);
    processor.setSettings(busySettings());
    double modelBest = std::numeric_limits<double>::max();
    double copyBest = std::numeric_limits<double>::max();
    double reduction = 0.0;
    // One untimed round first, to warm the caches.
    for (int run = 0; run <= Runs; ++run) {
        std::copy(sourceLeft.begin(), sourceLeft.end(), left.begin());
        std::copy(sourceRight.begin(), sourceRight.end(), right.begin());
        QElapsedTimer timer;
        timer.start();
        for (int start = 0; start < Frames; start += Block) {
            float *const channels[2] = { left.data() + start, right.data() + start };
            processor.process(channels, std::min(Block, Frames - start));
        }
        const double modelUs = microseconds(timer);
        reduction = processor.takeMeterReading().gainReductionDb;

        timer.restart();
        for (int start = 0; start < Frames; start += Block) {
            const int n = std::min(Block, Frames - start);
            std::memcpy(left.data() + start, sourceLeft.data() + start, n * sizeof(float));
            std::memcpy(right.data() + start, sourceRight.data() + start, n * sizeof(float));
        }
        const double copyUs = microseconds(timer);
        if (run > 0) {
            modelBest = std::min(modelBest, modelUs);
            copyBest = std::min(copyBest, copyUs);
        }
    }
    // Both analysers, as the worker runs them, and a frame every 1600
    // samples (30 a second).
    SpectrumAnalyser input(Fs, 2);
    SpectrumAnalyser output(Fs, 2);
    double spectrumBest = std::numeric_limits<double>::max();
    float loudest = SpectrumBands::SilenceDb;
    for (int run = 0; run <= Runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        for (int start = 0; start < Frames; start += Block) {
            const float *const channels[2] = { sourceLeft.data() + start, sourceRight.data() + start };
            const int n = std::min(Block, Frames - start);
            input.process(channels, n);
            output.process(channels, n);
            if ((start / Block) % (Frames / Block / 30) == 0) {
                const SpectrumFrame::Levels in = input.levels();
                const SpectrumFrame::Levels out = output.levels();
                loudest = std::max({ loudest, *std::max_element(in.begin(), in.end()),
                    *std::max_element(out.begin(), out.end()) });
            }
        }
        if (run > 0)
            spectrumBest = std::min(spectrumBest, microseconds(timer));
    }
    // Keep the copy from being optimised away.
    volatile float sink = left[Frames / 2] + right[Frames / 3];
    (void)sink;

    if (json) {
        const QJsonObject object { { QStringLiteral("model_us_per_s"), modelBest },
            { QStringLiteral("copy_us_per_s"), copyBest },
            { QStringLiteral("spectrum_us_per_s"), spectrumBest } };
        out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
        return 0;
    }
    out << "bench_model: one second of stereo 48 kHz pink noise in blocks of " << Block << ", best of "
        << Runs << " runs (" << QString::number(reduction, 'f', 1) << " dB of gain reduction at the end)\n";
    out << QStringLiteral("  strip model     %1 us\n").arg(modelBest, 9, 'f', 1);
    out << QStringLiteral("  plain copy      %1 us  (baseline)\n").arg(copyBest, 9, 'f', 1);
    out << QStringLiteral("  share of real time  %1 %  (goal: below 1 %)\n").arg(modelBest / 1e4, 6, 'f', 3);
    out << QStringLiteral(
        "  spectrum        %1 us  (%2 % of real time, goal: below 1 %; loudest band %3 dB)\n")
               .arg(spectrumBest, 9, 'f', 1)
               .arg(spectrumBest / 1e4, 6, 'f', 3)
               .arg(double(loudest), 0, 'f', 1);
    return 0;
}
