#include "Common/Widgets/RoundMeterController.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace CommonController_MemAPI {

void fillRoundBar(QPainter *painter, const QRectF &rect, const QBrush &brush)
{
    if (rect.width() <= 0 || rect.height() <= 0)
        return;
    const double radius = std::min(rect.width(), rect.height()) / 2.0;
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    painter->fillPath(path, brush);
}

RoundMeterController::RoundMeterController(QWidget *parent)
    : MeterController(parent)
{ }

void RoundMeterController::setMeterWidth(int width)
{
    width = std::max(0, width);
    if (width == m_meterWidth)
        return;
    m_meterWidth = width;
    refresh();
}

void RoundMeterController::setMeterOverWidth(int width)
{
    width = std::max(0, width);
    if (width == m_overWidth)
        return;
    m_overWidth = width;
    refresh();
}

void RoundMeterController::setMeterOverBackgroundWidth(int width)
{
    width = std::max(0, width);
    if (width == m_overBackgroundWidth)
        return;
    m_overBackgroundWidth = width;
    refresh();
}

void RoundMeterController::setMeterOverBackgroundHeight(int height)
{
    height = std::max(0, height);
    if (height == m_overBackgroundHeight)
        return;
    m_overBackgroundHeight = height;
    refresh();
}

QRectF RoundMeterController::scaledTrackRect() const
{
    const QRectF bar = scaledMeterRect();
    const double width = m_meterWidth * scale();
    return QRectF(bar.center().x() - width / 2.0, bar.top(), width, bar.height());
}

QRectF RoundMeterController::scaledOverBackgroundRect() const
{
    const QRectF row = scaledOverRect();
    const QSizeF size(m_overBackgroundWidth * scale(), m_overBackgroundHeight * scale());
    return QRectF(row.center() - QPointF(size.width(), size.height()) / 2.0, size);
}

QRectF RoundMeterController::scaledOverLampRect() const
{
    const QRectF socket = scaledOverBackgroundRect();
    const double inset = std::max(0.0, (socket.width() - m_overWidth * scale()) / 2.0);
    return socket.adjusted(inset, inset, -inset, -inset);
}

void RoundMeterController::drawBackground(QPainter *painter)
{
    const QBrush track = palette().brush(colorGroup(), QPalette::AlternateBase);
    fillRoundBar(painter, scaledTrackRect(), track);
    fillRoundBar(painter, scaledOverBackgroundRect(), track);
}

void RoundMeterController::drawOver(QPainter *painter)
{
    fillRoundBar(painter, scaledOverLampRect(), palette().brush(colorGroup(), QPalette::Light));
}

void RoundMeterController::drawMeter(QPainter *painter)
{
    const double lit = convertNormalized(value());
    if (lit <= 0.0)
        return;
    const QRectF track = scaledTrackRect();
    const double top = levelY(lit);
    const double split = levelY(convertNormalized(SplitValue));

    // One hard colour stop at the -18 dB line: Mid above it, Dark below.
    const QPalette::ColorGroup group = colorGroup();
    QLinearGradient zones(0, track.top(), 0, track.bottom());
    const double stop = track.height() > 0 ? (split - track.top()) / track.height() : 0.0;
    zones.setColorAt(0.0, palette().color(group, QPalette::Mid));
    zones.setColorAt(stop, palette().color(group, QPalette::Mid));
    zones.setColorAt(std::min(1.0, stop + 1e-6), palette().color(group, QPalette::Dark));
    zones.setColorAt(1.0, palette().color(group, QPalette::Dark));
    fillRoundBar(painter, QRectF(track.left(), top, track.width(), track.bottom() - top), zones);
}

QRectF RoundMeterController::changedArea(const DisplayState &from, const DisplayState &to) const
{
    const QRectF area = MeterController::changedArea(from, to);
    if (!area.isValid() || area == QRectF(rect()))
        return area;
    // The rounded cap reaches half a bar width past the level on both sides.
    const double cap = m_meterWidth * scale();
    QRectF grown = area.adjusted(0, -cap, 0, cap);
    if (from.over != to.over)
        grown = grown.united(scaledOverBackgroundRect());
    return grown;
}

} // namespace CommonController_MemAPI
