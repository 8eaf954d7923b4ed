#include "ORVChStrip/EqualizerSpectrumLayer.h"

#include <QCoreApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "Interfaces/ISpectrumSource.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/PixelGridSnap.h"

namespace {

struct SpectrumColors
{
    QColor fillTop;
    QColor fillBottom;
    QColor outline;
    QColor input;
    QColor peak;
};

// A cool blue-grey that sits apart from the bands' orange, purple and blue
// and stays under the white total curve.
const SpectrumColors EnabledColors { QColor(96, 170, 214, 120), QColor(96, 170, 214, 28),
    QColor(150, 205, 235, 190), QColor(255, 255, 255, 56), QColor(190, 225, 245, 150) };
const SpectrumColors DisabledColors { QColor(128, 128, 128, 80), QColor(128, 128, 128, 20),
    QColor(150, 150, 150, 140), QColor(160, 160, 160, 40), QColor(160, 160, 160, 100) };

QString frequencyText(double hz)
{
    if (hz >= 1000.0)
        return QStringLiteral("%1 kHz").arg(QString::number(hz / 1000.0, 'g', 3));
    return QStringLiteral("%1 Hz").arg(QString::number(hz, 'g', 3));
}

} // namespace

void EqualizerSpectrumLayer::setFrame(const float *output, const float *input, int count, qint64 nowMs)
{
    if (!output || count <= 0) {
        clear();
        return;
    }
    const double elapsedMs = m_peaks.size() == size_t(count) ? double(nowMs - m_lastMs) : 0.0;
    m_output.assign(output, output + count);
    if (input)
        m_input.assign(input, input + count);
    else
        m_input.clear();
    if (m_peaks.size() != size_t(count)) {
        m_peaks.assign(size_t(count), Peak { SpectrumBands::SilenceDb, nowMs });
        m_peakLevels.assign(size_t(count), SpectrumBands::SilenceDb);
    }
    for (int b = 0; b < count; ++b) {
        Peak &peak = m_peaks[b];
        // Past its hold time a peak falls for the time since the last frame.
        if (nowMs - peak.heldSinceMs > PeakHoldMs) {
            const double falling = std::min(elapsedMs, double(nowMs - peak.heldSinceMs - PeakHoldMs));
            peak.level = float(peak.level - PeakFallDbPerSecond * falling / 1000.0);
        }
        if (m_output[b] >= peak.level)
            peak = Peak { m_output[b], nowMs };
        m_peakLevels[b] = peak.level;
    }
    m_lastMs = nowMs;
}

void EqualizerSpectrumLayer::clear()
{
    m_output.clear();
    m_input.clear();
    m_peaks.clear();
    m_peakLevels.clear();
}

int EqualizerSpectrumLayer::loudestBand() const
{
    if (m_output.empty())
        return -1;
    return int(std::max_element(m_output.begin(), m_output.end()) - m_output.begin());
}

QString EqualizerSpectrumLayer::description() const
{
    const int band = loudestBand();
    if (band < 0)
        return QString();
    if (m_output[band] <= SpectrumBands::SilenceDb)
        return QCoreApplication::translate("EqualizerSpectrumLayer", "Spectrum shown, silent");
    return QCoreApplication::translate("EqualizerSpectrumLayer", "Spectrum shown, highest band %1 at %2 dB")
        .arg(frequencyText(SpectrumBands::frequency(band)), QString::number(m_output[band], 'f', 0));
}

// A smooth curve through the band levels (Catmull-Rom segments as cubic
// Béziers), carried flat to the plot's edges.
QPainterPath EqualizerSpectrumLayer::curveThrough(
    const EqualizerGraphGeometry &g, const std::vector<float> &levels) const
{
    const int count = int(levels.size());
    // Just below the plot, so that silence leaves no line along its bottom.
    const double floorY = g.margin() + g.plotHeight() + g.unit();
    std::vector<QPointF> points(levels.size());
    for (int b = 0; b < count; ++b) {
        const double y = g.yForGain(levels[b] + DisplayOffsetDb);
        points[b] = QPointF(g.xForFrequency(SpectrumBands::frequency(b)), std::min(y, floorY));
    }
    QPainterPath path(QPointF(g.margin() - g.unit(), points.front().y()));
    path.lineTo(points.front());
    for (int b = 0; b + 1 < count; ++b) {
        const QPointF &before = points[std::max(b - 1, 0)];
        const QPointF &after = points[std::min(b + 2, count - 1)];
        path.cubicTo(points[b] + (points[b + 1] - before) / 6.0, points[b + 1] - (after - points[b]) / 6.0,
            points[b + 1]);
    }
    path.lineTo(QPointF(g.margin() + g.plotWidth() + g.unit(), points.back().y()));
    return path;
}

void EqualizerSpectrumLayer::paint(QPainter &painter, const QSize &size, bool enabled) const
{
    if (m_output.size() < 2)
        return;
    const EqualizerGraphGeometry g(size.width(), size.height());
    const PixelGridSnap snap(PixelGridSnap::devicePixelRatio(painter));
    const QRectF plot = snap.rect(g.plotRect());
    const SpectrumColors &colors = enabled ? EnabledColors : DisabledColors;
    const double lineWidth = snap.lineWidth(g.unit());

    painter.save();
    painter.setClipRect(plot);
    painter.setRenderHint(QPainter::Antialiasing);

    const QPainterPath outline = curveThrough(g, m_output);
    QPainterPath body = outline;
    body.lineTo(QPointF(plot.right() + g.unit(), plot.bottom() + g.unit()));
    body.lineTo(QPointF(plot.left() - g.unit(), plot.bottom() + g.unit()));
    body.closeSubpath();
    QLinearGradient gradient(plot.topLeft(), plot.bottomLeft());
    gradient.setColorAt(0.0, colors.fillTop);
    gradient.setColorAt(1.0, colors.fillBottom);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawPath(body);

    painter.setBrush(Qt::NoBrush);
    if (m_input.size() == m_output.size()) {
        painter.setPen(QPen(colors.input, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        painter.drawPath(curveThrough(g, m_input));
    }
    painter.setPen(QPen(colors.outline, lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPath(outline);
    // Thinner than the outline: the peaks are a hint above the body, not a second curve.
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    painter.setPen(
        QPen(colors.peak, std::max(1.0 / ratio, 0.6 * g.unit()), Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPath(curveThrough(g, m_peakLevels));
    painter.restore();
}
