// Times one repaint of the equalizer and the compressor graph at editor
// scales 1 and 2, beside painting the equalizer's curves from points computed
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
#include <vector>

#include "Common/EffectEditor.h"
#include "HostModel.h"
#include "MinimalEditor.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
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

struct Figures
{
    double eqRepaint;
    double eqPathsOnly;
    double eqChangedRepaint;
    double eqMath;
    double compRepaint;
};

// The same curves, pens and clip as the graph, without its grid, handles or math.
void paintCurves(
    QPaintDevice *device, const EqualizerGraphGeometry &geometry, const EqualizerGraphCurves &curves)
{
    static const QColor bandColors[] = { { 241, 90, 36 }, { 146, 70, 211 }, { 5, 146, 224 } };
    QPainter painter(device);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(geometry.plotRect());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 40));
    painter.drawPolygon(curves.totalPoints());
    painter.setBrush(Qt::NoBrush);
    for (int b = 0; b < EqualizerGraphCurves::BandCount; ++b) {
        painter.setPen(QPen(bandColors[b], geometry.unit(), Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
        painter.drawPolyline(curves.bandPoints(b));
    }
    const QPolygonF &total = curves.totalPoints();
    painter.setPen(QPen(Qt::white, 2.0 * geometry.unit(), Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    painter.drawPolyline(total.constData() + 1, int(total.size()) - 2);
}

Figures measure(double scale, ParameterMemory *memory, EffectEditor *editor)
{
    Figures figures {};

    ORVChStripEqualizerGraph eq(nullptr, editor);
    eq.resize(QSize(450, 191) * scale);
    eq.setMemAPI(memory);
    QPixmap eqPixmap(eq.size());
    eqPixmap.fill(Qt::black);
    figures.eqRepaint
        = medianMicroseconds([&] { eq.render(&eqPixmap, QPoint(), QRegion(), QWidget::DrawChildren); });

    // A repaint after a gain change: the curves are computed and drawn anew.
    int step = 0;
    figures.eqChangedRepaint = medianMicroseconds([&] {
        memory->setValueByKey("fx_eq_midgain", 270 + (++step % 2));
        eq.render(&eqPixmap, QPoint(), QRegion(), QWidget::DrawChildren);
    });

    const EqualizerGraphGeometry geometry(eq.width(), eq.height());
    EqualizerGraphCurves curves;
    curves.compute(geometry, eq.fs(),
        { { { &eq.filter(ORVChStripEqualizerGraph::TargetLow), true },
            { &eq.filter(ORVChStripEqualizerGraph::TargetMiddle), true },
            { &eq.filter(ORVChStripEqualizerGraph::TargetHigh), true } } });
    figures.eqMath = medianMicroseconds([&] {
        curves.compute(geometry, eq.fs(),
            { { { &eq.filter(ORVChStripEqualizerGraph::TargetLow), true },
                { &eq.filter(ORVChStripEqualizerGraph::TargetMiddle), true },
                { &eq.filter(ORVChStripEqualizerGraph::TargetHigh), true } } });
    });
    QPixmap floorPixmap(eq.size());
    floorPixmap.fill(Qt::black);
    figures.eqPathsOnly = medianMicroseconds([&] { paintCurves(&floorPixmap, geometry, curves); });

    ORVChStripCompressorGraph comp(nullptr, editor);
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
    memory.setValueText("fx_eq_lsvgain", QStringLiteral("-6"));
    memory.setValueText("fx_eq_midgain", QStringLiteral("9"));
    memory.setValueText("fx_eq_midqual", QStringLiteral("2"));
    memory.setValueText("fx_eq_hsvgain", QStringLiteral("4"));
    memory.setValueText("fx_cmp_rto", QStringLiteral("8:1"));
    memory.setValueText("fx_cmp_drv", QStringLiteral("8"));
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
    std::printf("%-36s %12.1f %12.1f\n", "  of which the curve math", one.eqMath, two.eqMath);
    std::printf("%-36s %12.1f %12.1f\n", "compressor repaint (212 x 191)", one.compRepaint, two.compRepaint);
    return 0;
}
