#include "ORVChStrip/EqualizerSpectrumLayer.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "Interfaces/ISpectrumSource.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/PixelGridSnap.h"

namespace {

struct SpectrumColors
{
    QColor fill;
    QColor outline;
    QColor input;
    QColor peak;
};

// A cool blue-grey that sits apart from the bands' orange, purple and blue
// and stays under the white total curve.
const SpectrumColors EnabledColors { QColor(96, 170, 214, 64), QColor(150, 205, 235, 190),
    QColor(255, 255, 255, 56), QColor(190, 225, 245, 100) };
const SpectrumColors DisabledColors { QColor(128, 128, 128, 40), QColor(150, 150, 150, 140),
    QColor(160, 160, 160, 40), QColor(160, 160, 160, 100) };

// A level that is not a number draws as silence.
std::vector<float> levelsOf(const float *levels, int count)
{
    std::vector<float> kept(levels, levels + count);
    for (float &level : kept) {
        if (!std::isfinite(level))
            level = SpectrumBands::SilenceDb;
    }
    return kept;
}

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
    count = std::min(count, SpectrumBands::Count);
    const double elapsedMs = m_peaks.size() == size_t(count) ? double(nowMs - m_lastMs) : 0.0;
    m_output = levelsOf(output, count);
    m_input = input ? levelsOf(input, count) : std::vector<float>();
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

// A smooth curve through the band levels (Catmull-Rom segments, sampled
// as short lines), carried flat to the plot's edges. Lines rather than
// Bézier curves keep a frame's fill and strokes cheap.
QPolygonF EqualizerSpectrumLayer::curveThrough(
    const EqualizerGraphGeometry &g, const std::vector<float> &levels)
{
    constexpr int Steps = 4; // lines per band, a few device pixels each
    const int count = int(levels.size());
    // Just below the plot, so that silence leaves no line along its bottom.
    const double floorY = g.margin() + g.plotHeight() + g.unit();
    std::vector<QPointF> points(levels.size());
    for (int b = 0; b < count; ++b) {
        const double y = g.yForGain(levels[b] + DisplayOffsetDb);
        points[b] = QPointF(g.xForFrequency(SpectrumBands::frequency(b)), std::min(y, floorY));
    }
    QPolygonF curve;
    curve.reserve(count * Steps + 2);
    curve << QPointF(g.margin() - g.unit(), points.front().y());
    for (int b = 0; b + 1 < count; ++b) {
        const QPointF &p0 = points[std::max(b - 1, 0)];
        const QPointF &p1 = points[b];
        const QPointF &p2 = points[b + 1];
        const QPointF &p3 = points[std::min(b + 2, count - 1)];
        for (int step = 0; step < Steps; ++step) {
            const double t = double(step) / Steps;
            const double t2 = t * t;
            const double t3 = t2 * t;
            const QPointF point = 0.5
                * (2.0 * p1 + (p2 - p0) * t + (2.0 * p0 - 5.0 * p1 + 4.0 * p2 - p3) * t2
                    + (3.0 * p1 - p0 - 3.0 * p2 + p3) * t3);
            curve << QPointF(point.x(), std::min(point.y(), floorY));
        }
    }
    curve << points.back() << QPointF(g.margin() + g.plotWidth() + g.unit(), points.back().y());
    return curve;
}

void EqualizerSpectrumLayer::paint(QPainter &painter, const QSize &size, bool enabled) const
{
    if (m_output.size() < 2)
        return;
    const EqualizerGraphGeometry g(size.width(), size.height());
    const double ratio = PixelGridSnap::devicePixelRatio(painter);
    const QRectF plot = PixelGridSnap(ratio).rect(g.plotRect());
    const SpectrumColors &colors = enabled ? EnabledColors : DisabledColors;
    // The outline is as many device pixels wide as the graph's lines.
    const int outlinePixels = std::max(1, int(g.unit() * ratio + 0.5));

    painter.save();
    painter.setClipRect(plot);
    // The faint body is filled without antialiasing, which costs a tenth as
    // much; its edge lies under the antialiased outline.
    const QPolygonF outline = curveThrough(g, m_output);
    QPolygonF body = outline;
    body << QPointF(plot.right() + g.unit(), plot.bottom() + g.unit())
         << QPointF(plot.left() - g.unit(), plot.bottom() + g.unit());
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawPolygon(body);

    // Lines one device pixel wide take the painter's fast path; a wider
    // outline is drawn as several, a device pixel apart, into the body.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    QPen pen(colors.input, 1.0);
    pen.setCosmetic(true);
    if (m_input.size() == m_output.size()) {
        painter.setPen(pen);
        painter.drawPolyline(curveThrough(g, m_input));
    }
    pen.setColor(colors.peak);
    painter.setPen(pen);
    painter.drawPolyline(curveThrough(g, m_peakLevels));
    pen.setColor(colors.outline);
    painter.setPen(pen);
    for (int line = 0; line < outlinePixels; ++line)
        painter.drawPolyline(outline.translated(0.0, line / ratio));
    painter.restore();
}
