// Times one repaint of the equalizer and the compressor graph at editor
// scales 1 and 2, and the equalizer's repaint after a band change (every step
// of a drag), beside painting the equalizer's curves from points computed
// beforehand (the floor that a repaint cannot go below).

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <tuple>
#include <utility>
#include <vector>

#include "Common/EffectEditor.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "MinimalEditor.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/EqualizerGraphPainter.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ParameterMemory.h"

namespace {

constexpr int Iterations = 300;

double medianMicroseconds(const std::function<void()> &work)
{
    for (int i = 0; i < 10; ++i)
        work();
    std::vector<double> samples;
    samples.reserve(Iterations);
    QElapsedTimer timer;
    for (int i = 0; i < Iterations; ++i) {
        timer.start();
        work();
        samples.push_back(timer.nsecsElapsed() / 1000.0);
    }
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2];
}

double median(std::vector<double> samples)
{
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2];
}

// Medians of two pieces of work timed in turns, so that a machine whose load
// changes during the run slows both alike and their ratio stays meaningful.
std::pair<double, double> interleavedMedians(
    const std::function<void()> &first, const std::function<void()> &second)
{
    for (int i = 0; i < 10; ++i) {
        first();
        second();
    }
    std::vector<double> firstSamples;
    std::vector<double> secondSamples;
    QElapsedTimer timer;
    for (int i = 0; i < Iterations; ++i) {
        timer.start();
        first();
        firstSamples.push_back(timer.nsecsElapsed() / 1000.0);
        timer.start();
        second();
        secondSamples.push_back(timer.nsecsElapsed() / 1000.0);
    }
    return { median(firstSamples), median(secondSamples) };
}

struct Figures
{
    double eqRepaint;
    double eqPathsOnly;
    double eqChangedRepaint;
    double eqMath;
    double compRepaint;
};

Figures measure(double scale, ParameterMemory *memory, EffectEditor *editor)
{
    Figures figures {};

    ORVChStripEqualizerGraph eq;
    eq.setEditor(editor);
    eq.resize(QSize(450, 191) * scale);
    eq.setMemAPI(memory);
    QPixmap eqPixmap(eq.size());
    eqPixmap.fill(Qt::black);
    figures.eqRepaint
        = medianMicroseconds([&] { eq.render(&eqPixmap, QPoint(), QRegion(), QWidget::DrawChildren); });

    const EqualizerGraphGeometry geometry(eq.width(), eq.height());
    EqualizerGraphCurves curves;
    figures.eqMath = medianMicroseconds([&] { curves.compute(geometry, eq.fs(), eq.bands()); });

    // A repaint after a gain change, as at every step of a drag, beside the
    // floor: the same curves, pens and clip as the graph, from points
    // computed beforehand, without grid, handles or math.
    int step = 0;
    const EqualizerGraphPainter painter;
    QPixmap floorPixmap(eq.size());
    floorPixmap.fill(Qt::black);
    std::tie(figures.eqChangedRepaint, figures.eqPathsOnly) = interleavedMedians(
        [&] {
            memory->setValueByKey(ChannelStripKeys::EqualizerMiddleGain, 270 + (++step % 2));
            eq.render(&eqPixmap, QPoint(), QRegion(), QWidget::DrawChildren);
        },
        [&] {
            QPainter p(&floorPixmap);
            painter.paintCurves(p, eq.size(), curves);
        });

    ORVChStripCompressorGraph comp;
    comp.setEditor(editor);
    comp.resize(QSize(212, 191) * scale);
    comp.setMemAPI(memory);
    QPixmap compPixmap(comp.size());
    compPixmap.fill(Qt::black);
    figures.compRepaint
        = medianMicroseconds([&] { comp.render(&compPixmap, QPoint(), QRegion(), QWidget::DrawChildren); });
    return figures;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const bool json = app.arguments().contains(QStringLiteral("--json"));

    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    memory.setValueText(ChannelStripKeys::EqualizerLowGain, QStringLiteral("-6"));
    memory.setValueText(ChannelStripKeys::EqualizerMiddleGain, QStringLiteral("9"));
    memory.setValueText(ChannelStripKeys::EqualizerMiddleQuality, QStringLiteral("2"));
    memory.setValueText(ChannelStripKeys::EqualizerHighGain, QStringLiteral("4"));
    memory.setValueText(ChannelStripKeys::CompressorRatio, QStringLiteral("8:1"));
    memory.setValueText(ChannelStripKeys::CompressorDrive, QStringLiteral("8"));
    MinimalEditor editor;
    editor.setModelInfo(&model);

    const Figures one = measure(1.0, &memory, &editor);
    const Figures two = measure(2.0, &memory, &editor);

    if (json) {
        const QJsonObject object {
            { QStringLiteral("eq_repaint_us_scale1"), one.eqRepaint },
            { QStringLiteral("eq_repaint_us_scale2"), two.eqRepaint },
            { QStringLiteral("eq_paths_only_us_scale1"), one.eqPathsOnly },
            { QStringLiteral("eq_paths_only_us_scale2"), two.eqPathsOnly },
            { QStringLiteral("eq_change_repaint_us_scale1"), one.eqChangedRepaint },
            { QStringLiteral("eq_change_repaint_us_scale2"), two.eqChangedRepaint },
            { QStringLiteral("comp_repaint_us_scale1"), one.compRepaint },
            { QStringLiteral("comp_repaint_us_scale2"), two.compRepaint },
        };
        std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
        return 0;
    }

    std::printf("Graph repaint, median of %d (microseconds)\n\n", Iterations);
    std::printf("%-36s %12s %12s\n", "", "scale 1", "scale 2");
    std::printf("%-36s %12.1f %12.1f\n", "equalizer repaint (450 x 191)", one.eqRepaint, two.eqRepaint);
    std::printf("%-36s %12.1f %12.1f\n", "equalizer curves from points", one.eqPathsOnly, two.eqPathsOnly);
    std::printf("%-36s %12.2f %12.2f\n", "  repaint / curves (limit 1.5)", one.eqRepaint / one.eqPathsOnly,
        two.eqRepaint / two.eqPathsOnly);
    std::printf("%-36s %12.1f %12.1f\n", "equalizer repaint after a change", one.eqChangedRepaint,
        two.eqChangedRepaint);
    std::printf("%-36s %12.2f %12.2f\n", "  change / curves (limit 1.5)",
        one.eqChangedRepaint / one.eqPathsOnly, two.eqChangedRepaint / two.eqPathsOnly);
    std::printf("%-36s %12.1f %12.1f\n", "all three bands' curve math", one.eqMath, two.eqMath);
    std::printf("%-36s %12.1f %12.1f\n", "compressor repaint (212 x 191)", one.compRepaint, two.compRepaint);
    return 0;
}
