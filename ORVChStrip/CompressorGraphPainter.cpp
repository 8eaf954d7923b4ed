#include "ORVChStrip/CompressorGraphPainter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ORVChStrip/Filter/VectorRegisterState.h"
#include "ORVChStrip/PixelGridSnap.h"
#include "ORVChStrip/PolylineSimplify.h"

namespace {

const QColor FrameColor(74, 76, 82);
const QColor CurveLineColor(247, 147, 30);
const QColor CurveDisbaleLineColor(128, 128, 128);
const QColor CurveBodyColor(247, 147, 30, 40);
const QColor CurveDisbaleBodyColor(128, 128, 128, 40);
const QColor ReadoutBackColor(0x16, 0x19, 0x1e);
const QColor ReadoutLabelColor(130, 134, 142);
const QColor ReadoutValueColor(217, 220, 225);
const QColor ReadoutDisableLabelColor(80, 82, 86);
const QColor ReadoutDisableValueColor(128, 128, 128);

constexpr double DesignHeight = 191.0;

struct PlotGeometry
{
    double unit;
    QRectF plot;
};

PlotGeometry plotGeometry(const QSize &size)
{
    const double u = size.height() / DesignHeight;
    const double margin = 5.0 * u + 0.5 * u;
    return { u, QRectF(margin, margin, size.width() - 11.0 * u, size.height() - 11.0 * u) };
}

struct ReadoutLayout
{
    QRectF box;
    double labelX;
    double valueRight;
    double firstBaseline;
    double lineHeight;
};

const char *const ReadoutLabels[] = { "THRESHOLD", "MAKE-UP" };

ReadoutLayout readoutLayout(
    const QSize &size, const QFont &font, const CompressorGraphPainter::Readout &readout)
{
    const PlotGeometry g = plotGeometry(size);
    const QFontMetricsF metrics(font);
    double labelWidth = 0.0;
    for (const char *label : ReadoutLabels)
        labelWidth = std::max(labelWidth, metrics.horizontalAdvance(QLatin1String(label)));
    // The widest value the offsets take, so that the box keeps its size as they move.
    double valueWidth = metrics.horizontalAdvance(QStringLiteral("-20.0 dB"));
    for (const QString &value : { readout.thresholdOffset, readout.makeUpOffset })
        valueWidth = std::max(valueWidth, metrics.horizontalAdvance(value));
    const double pad = 3.0 * g.unit;
    const double gap = 2.0 * metrics.horizontalAdvance(QLatin1Char(' '));
    const double lineHeight = metrics.height();
    const QRectF box(g.plot.left() + 2.0 * g.unit, g.plot.top() + 2.0 * g.unit,
        labelWidth + gap + valueWidth + 2.0 * pad, 2.0 * lineHeight + pad);
    return { box, box.left() + pad, box.right() - pad, box.top() + pad * 0.5 + metrics.ascent(), lineHeight };
}

} // namespace

void CompressorGraphPainter::paintGrid(QPainter &painter, const QSize &size)
{
    const PlotGeometry g = plotGeometry(size);
    const PixelGridSnap snap(PixelGridSnap::devicePixelRatio(painter));
    const QRectF plot = snap.rect(g.plot);
    const double w = snap.lineWidth(g.unit);

    painter.save();
    PixelGridSnap::framePlot(painter, plot, w, FrameColor);
    for (int k : { 1, 2 }) {
        const double y = snap.lineCentre(g.plot.top() + g.plot.height() * k / 3.0, w);
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        const double x = snap.lineCentre(g.plot.left() + g.plot.width() * k / 3.0, w);
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
    painter.restore();
}

void CompressorGraphPainter::paintCurve(
    QPainter &painter, const QSize &size, const CompressorCurve::Settings &settings) const
{
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    const PlotGeometry g = plotGeometry(size);
    // The device pixel ratio in whole pixels (the scaled metric over 65536).
    const int p = static_cast<int>(ratio);
    const QPolygonF points = simplifiedPolyline(outline(QSizeF(size), p, settings), 0.1 / ratio);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(PixelGridSnap(ratio).rect(g.plot));
    painter.setPen(QPen(m_enabled ? CurveLineColor : CurveDisbaleLineColor, 2.0 * g.unit, Qt::SolidLine,
        Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(m_enabled ? CurveBodyColor : CurveDisbaleBodyColor);
    painter.drawPolygon(points);
    painter.restore();
}

void CompressorGraphPainter::paint(
    QPainter &painter, const QSize &size, const CompressorCurve::Settings &settings) const
{
    paintGrid(painter, size);
    paintCurve(painter, size, settings);
}

QRectF CompressorGraphPainter::readoutBounds(const QSize &size, const QFont &font, const Readout &readout)
{
    return readoutLayout(size, font, readout).box;
}

void CompressorGraphPainter::paintReadout(
    QPainter &painter, const QSize &size, const QFont &font, const Readout &readout) const
{
    const ReadoutLayout layout = readoutLayout(size, font, readout);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // Framed like the plot, so the grid reads as passing behind it.
    const double unit = plotGeometry(size).unit;
    painter.setPen(QPen(FrameColor, unit));
    painter.setBrush(ReadoutBackColor);
    painter.drawRoundedRect(layout.box, 2.0 * unit, 2.0 * unit);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const QString values[] = { readout.thresholdOffset, readout.makeUpOffset };
    for (int line = 0; line < 2; ++line) {
        const double baseline = layout.firstBaseline + line * layout.lineHeight;
        painter.setPen(m_enabled ? ReadoutLabelColor : ReadoutDisableLabelColor);
        painter.drawText(QPointF(layout.labelX, baseline), QLatin1String(ReadoutLabels[line]));
        painter.setPen(m_enabled ? ReadoutValueColor : ReadoutDisableValueColor);
        painter.drawText(
            QPointF(layout.valueRight - metrics.horizontalAdvance(values[line]), baseline), values[line]);
    }
    painter.restore();
}

namespace {

QPointF operatingPointCentre(const QSize &size, const QPointF &levelsDb)
{
    const double range = -CompressorCurve::MinLevelDb;
    return QPointF(size.width() + size.width() * std::min(levelsDb.x(), 0.0) / range,
        -size.height() * std::min(levelsDb.y(), 0.0) / range);
}

// About 3.5 pixels at the graph's design size, whatever the scale.
double operatingPointRadius(const QSize &size)
{
    return std::max(2.0, size.width() * 3.5 / 191.0);
}

} // namespace

QRectF CompressorGraphPainter::operatingPointBounds(const QSize &size, const QPointF &levelsDb)
{
    const double extent = operatingPointRadius(size) * 1.25;
    const QPointF centre = operatingPointCentre(size, levelsDb);
    return QRectF(centre.x() - extent, centre.y() - extent, 2 * extent, 2 * extent);
}

QPixmap CompressorGraphPainter::operatingPointSprite(const QSize &size, double devicePixelRatio)
{
    const QRectF bounds = operatingPointBounds(size, QPointF());
    const QPointF centre(bounds.width() / 2.0, bounds.height() / 2.0);
    QPixmap sprite((bounds.size() * devicePixelRatio).toSize() + QSize(1, 1));
    sprite.setDevicePixelRatio(devicePixelRatio);
    sprite.fill(Qt::transparent);
    const double radius = operatingPointRadius(size);
    QPainter painter(&sprite);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x16, 0x19, 0x1e), radius * 0.5));
    painter.setBrush(QColor(0xff, 0xf3, 0xdc));
    painter.drawEllipse(centre, radius, radius);
    return sprite;
}

void CompressorGraphPainter::paintOperatingPoint(
    QPainter &painter, const QSize &size, const QPointF &levelsDb, const QPixmap &sprite)
{
    // On whole device pixels, the sprite is copied rather than resampled.
    const double ratio = sprite.devicePixelRatio();
    const QPointF topLeft = operatingPointBounds(size, levelsDb).topLeft();
    painter.drawPixmap(
        QPointF(std::round(topLeft.x() * ratio) / ratio, std::round(topLeft.y() * ratio) / ratio), sprite);
}

QPolygonF CompressorGraphPainter::outline(
    const QSizeF &size, int devicePixelRatio, const CompressorCurve::Settings &settings)
{
    clearUpperVectorRegisters();
    const double w = size.width();
    const double h = size.height();
    const int p = std::max(devicePixelRatio, 1);
    const double outside = 2.0 * p + 1.0;
    const double range = -CompressorCurve::MinLevelDb;
    const double te = CompressorCurve::effectiveThreshold(
        CompressorCurve::threshold(settings.thresholdOffset), CompressorCurve::drive(settings.drive));
    const double slope = 1.0 / CompressorCurve::ratio(settings.ratioIndex) - 1.0;
    // Run a little past both ends so that the clipped curve reaches the edges.
    const double extent = std::max(w, h);
    const double delta = extent > 0.0 ? 2.0 * p * range / (extent * p) : 0.0;

    QPolygonF points;
    const int steps
        = static_cast<int>(std::floor((range + 2.0 * delta) / CompressorCurve::StepDb + 1e-9)) + 1;
    points.reserve(steps + 2);
    points.append(QPointF(w + outside, h + outside));
    const double start = CompressorCurve::MinLevelDb - delta;
    for (int i = 0; i < steps; ++i) {
        const double x = start + i * CompressorCurve::StepDb;
        const double y = CompressorCurve::outputLevel(x, te, slope, settings.knee);
        points.append(QPointF(w + w * x / range, -h * y / range));
    }
    points.append(QPointF(w + outside, h + outside));
    return points;
}
