#include "ORVChStrip/PixelGridSnap.h"

#include <QPaintEngine>
#include <QPainter>
#include <algorithm>
#include <cmath>

PixelGridSnap::PixelGridSnap(double devicePixelRatio)
    : m_ratio(devicePixelRatio > 0.0 ? devicePixelRatio : 1.0)
{ }

double PixelGridSnap::devicePixelRatio(const QPainter &painter)
{
    const QPaintEngine *engine = painter.paintEngine();
    const QPaintDevice *device = engine && engine->paintDevice() ? engine->paintDevice() : painter.device();
    return device ? device->devicePixelRatioF() : 1.0;
}

double PixelGridSnap::lineWidth(double width) const
{
    return std::max(1.0, std::round(width * m_ratio)) / m_ratio;
}

double PixelGridSnap::lineCentre(double position, double width) const
{
    const long devicePixels = std::lround(width * m_ratio);
    const double device = position * m_ratio;
    // An odd width centres on a pixel's middle, an even one on a boundary.
    const double centre = devicePixels % 2 ? std::floor(device) + 0.5 : std::round(device);
    return centre / m_ratio;
}

double PixelGridSnap::edge(double position) const
{
    return std::round(position * m_ratio) / m_ratio;
}

QRectF PixelGridSnap::rect(const QRectF &rect) const
{
    const double left = edge(rect.left());
    const double top = edge(rect.top());
    return QRectF(left, top, edge(rect.right()) - left, edge(rect.bottom()) - top);
}

QPen PixelGridSnap::framePlot(QPainter &painter, const QRectF &plot, double width, const QColor &colour)
{
    painter.setClipRect(plot);
    QPen pen(colour, width);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot.adjusted(width / 2, width / 2, -width / 2, -width / 2));
    return pen;
}
