#include "ORVChStrip/EqualizerGraphPainter.h"

#include <QPainter>

#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/PixelGridSnap.h"

namespace {

const QColor FrameColor(74, 76, 82);
const QColor CenterColor(0, 153, 102);
const QColor TotalBodyColor(255, 255, 255, 40);
const QColor TotalBodyDisableColor(128, 128, 128, 40);
const QColor TotalLineColor(255, 255, 255);
const QColor TotalLineDisableColor(128, 128, 128);

struct BandColors
{
    QColor normal;
    QColor highlight;
    QColor disabled;
};

const BandColors Colors[] = {
    { QColor(241, 90, 36), QColor(255, 137, 39), QColor(135, 66, 43) },   // LowColor, ...
    { QColor(146, 70, 211), QColor(239, 101, 255), QColor(74, 44, 120) }, // MiddleColor, ...
    { QColor(5, 146, 224), QColor(0, 239, 255), QColor(3, 82, 126) },     // HighColor, ...
};

QRectF snappedPlot(const QPainter &painter, const EqualizerGraphGeometry &g)
{
    return PixelGridSnap(PixelGridSnap::devicePixelRatio(painter)).rect(g.plotRect());
}

} // namespace

QColor EqualizerGraphPainter::bandColor(int band) const
{
    const BandColors &colors = Colors[band];
    if (!m_enabled)
        return colors.disabled;
    return band == m_shownBand ? colors.highlight : colors.normal;
}

void EqualizerGraphPainter::paintGrid(QPainter &painter, const QSize &size)
{
    const EqualizerGraphGeometry g(size.width(), size.height());
    const PixelGridSnap snap(PixelGridSnap::devicePixelRatio(painter));
    const QRectF plot = snap.rect(g.plotRect());
    const double w = snap.lineWidth(g.unit());

    painter.save();
    QPen pen = PixelGridSnap::framePlot(painter, plot, w, FrameColor);
    for (int k : { 1, 2, 3, 5, 6, 7 }) {
        const double y = snap.lineCentre(g.margin() + g.plotHeight() * k / 8.0, w);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
    for (double ratioOfMax : EqualizerGraphGeometry::GridFrequencyRatios) {
        const double x = snap.lineCentre(g.gridX(ratioOfMax), w);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
    pen.setColor(CenterColor);
    painter.setPen(pen);
    const double y0 = snap.lineCentre(g.zeroDbY(), w);
    painter.drawLine(QPointF(plot.left(), y0), QPointF(plot.right(), y0));
    painter.restore();
}

void EqualizerGraphPainter::paintCurves(
    QPainter &painter, const QSize &size, const EqualizerGraphCurves &curves) const
{
    const EqualizerGraphGeometry g(size.width(), size.height());
    painter.save();
    painter.setClipRect(snappedPlot(painter, g));
    painter.setRenderHint(QPainter::Antialiasing);

    painter.setPen(Qt::NoPen);
    painter.setBrush(m_enabled ? TotalBodyColor : TotalBodyDisableColor);
    painter.drawPolygon(curves.totalPoints());

    painter.setBrush(Qt::NoBrush);
    for (int band = 0; band < EqualizerGraphCurves::BandCount; ++band) {
        const QPolygonF &points = curves.bandPoints(band);
        if (points.isEmpty())
            continue;
        const bool emphasised = m_enabled && band == m_shownBand;
        painter.setPen(QPen(
            bandColor(band), (emphasised ? 1.5 : 1.0) * g.unit(), Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
        painter.drawPolyline(points);
    }
    // The total's ends lie on the 0 dB line and are left open, so its stroke
    // never draws over the centre line.
    const QPolygonF &total = curves.totalPoints();
    painter.setPen(QPen(m_enabled ? TotalLineColor : TotalLineDisableColor, 2.0 * g.unit(), Qt::SolidLine,
        Qt::FlatCap, Qt::BevelJoin));
    if (total.size() > 2)
        painter.drawPolyline(total.constData() + 1, int(total.size()) - 2);
    painter.restore();
}

void EqualizerGraphPainter::paintHandles(
    QPainter &painter, const QSize &size, const EqualizerGraphBands &bands) const
{
    const EqualizerGraphGeometry g(size.width(), size.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int band = 0; band < int(bands.size()); ++band) {
        if (!bands[band].isOn())
            continue;
        const double r = g.handleRadius(m_enabled && band == m_shownBand);
        painter.setBrush(bandColor(band));
        painter.drawEllipse(g.handleCentre(bands[band].frequency(), bands[band].gain()), r, r);
    }
    painter.restore();
}

void EqualizerGraphPainter::paint(
    QPainter &painter, const QSize &size, const EqualizerGraphBands &bands, double fs) const
{
    EqualizerGraphCurves curves;
    curves.compute(EqualizerGraphGeometry(size.width(), size.height()), fs, bands,
        PixelGridSnap::devicePixelRatio(painter));
    paintGrid(painter, size);
    paintCurves(painter, size, curves);
    paintHandles(painter, size, bands);
}
