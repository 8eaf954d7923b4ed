#include "ORVChStrip/GraphGridCache.h"

#include <QPainter>

GraphGridCache::GraphGridCache(Paint paint)
    : m_paint(std::move(paint))
{ }

const QPixmap &GraphGridCache::pixmap(const QSize &size, double devicePixelRatio)
{
    const double ratio = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    if (size == m_size && ratio == m_ratio && !m_pixmap.isNull())
        return m_pixmap;
    m_size = size;
    m_ratio = ratio;
    m_pixmap = QPixmap((QSizeF(size) * ratio).toSize());
    m_pixmap.setDevicePixelRatio(ratio);
    m_pixmap.fill(Qt::transparent);
    if (!m_pixmap.isNull()) {
        QPainter painter(&m_pixmap);
        m_paint(painter, size);
        ++m_paintCount;
    }
    return m_pixmap;
}
