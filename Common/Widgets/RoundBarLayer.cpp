#include "Common/Widgets/RoundBarLayer.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <cmath>

#include "Common/Widgets/RoundMeterController.h"

namespace CommonController_MemAPI {

const QPixmap &RoundBarLayer::layer(const QRectF &bar, const QBrush &brush, double devicePixelRatio)
{
    if (!m_layer.isNull() && m_bar == bar && m_brush == brush
        && m_layer.devicePixelRatio() == devicePixelRatio)
        return m_layer;
    // The layer keeps the painter's origin, so its pixels fall on the same
    // device pixels as a fill would.
    const QRectF extent(QPointF(0, 0), bar.bottomRight() + QPointF(1, 1));
    m_layer = QPixmap((extent.size() * devicePixelRatio).toSize());
    m_layer.setDevicePixelRatio(devicePixelRatio);
    m_layer.fill(Qt::transparent);
    m_ends.clear();
    QPainter painter(&m_layer);
    painter.setRenderHint(QPainter::Antialiasing);
    fillRoundBar(&painter, bar, brush);
    m_bar = bar;
    m_brush = brush;
    return m_layer;
}

void RoundBarLayer::paint(QPainter *painter, const QRectF &bar, const QBrush &brush, const QRectF &span)
{
    if (span.width() <= 0 || span.height() <= 0)
        return;
    // The device painted on: a widget rendered into an image of another
    // scale paints through that image's engine.
    const QPaintEngine *engine = painter->paintEngine();
    const QPaintDevice *device = engine && engine->paintDevice() ? engine->paintDevice() : painter->device();
    const double ratio = device ? device->devicePixelRatio() : 1.0;
    const double radius = std::min(span.width(), span.height()) / 2.0;
    // The straight part between the ends, widened to whole device pixels
    // inward; an end that is the bar's own comes from the layer as well.
    const bool ownTop = span.top() <= bar.top();
    const bool ownBottom = span.bottom() >= bar.bottom();
    const double copyTop = ownTop ? bar.top() - 1.0 : std::ceil((span.top() + radius) * ratio) / ratio;
    const double copyBottom
        = ownBottom ? bar.bottom() + 1.0 : std::floor((span.bottom() - radius) * ratio) / ratio;
    // A bar painted once (a panel opened for a glance) does not pay for a
    // layer; the second paint builds it.
    const bool firstPaint = m_layer.isNull() && !m_paintedOnce;
    m_paintedOnce = true;
    if (firstPaint || copyBottom - copyTop < 1.0 / ratio) {
        fillRoundBar(painter, span, brush);
        return;
    }
    const QPixmap &full = layer(bar, brush, ratio);
    const double width = full.width() / ratio;
    painter->save();
    painter->setClipRect(QRectF(0, copyTop, width, copyBottom - copyTop), Qt::IntersectClip);
    painter->drawPixmap(QPointF(0, 0), full);
    painter->restore();
    if (!ownTop) {
        const double bandTop = std::floor(span.top() * ratio) / ratio;
        paintEnd(painter, span, QRectF(0, bandTop, width, copyTop - bandTop), true);
    }
    if (!ownBottom) {
        const double bandBottom = std::ceil(span.bottom() * ratio) / ratio;
        paintEnd(painter, span, QRectF(0, copyBottom, width, bandBottom - copyBottom), false);
    }
}

void RoundBarLayer::paintEnd(QPainter *painter, const QRectF &span, const QRectF &band, bool top)
{
    if (band.height() <= 0)
        return;
    const double ratio = m_layer.devicePixelRatio();
    // What an end looks like depends only on where it lies: the bar's edges,
    // width and brush are the layer's.
    const qint64 key
        = qint64(std::llround((top ? span.top() : span.bottom()) * ratio * 256.0)) * 2 + (top ? 1 : 0);
    QPixmap &end = m_ends[key];
    if (end.isNull()) {
        end = QPixmap((band.size() * ratio).toSize());
        end.setDevicePixelRatio(ratio);
        end.fill(Qt::transparent);
        QPainter endPainter(&end);
        endPainter.setRenderHint(QPainter::Antialiasing);
        endPainter.translate(-band.topLeft());
        fillRoundBar(&endPainter, span, m_brush);
    }
    painter->drawPixmap(band.topLeft(), end);
}

} // namespace CommonController_MemAPI
