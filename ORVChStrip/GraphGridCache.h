#pragma once

#include <QPixmap>
#include <QSize>
#include <functional>

class QPainter;

// A graph's frame and grid, painted once into a transparent pixmap at the
// device pixel ratio and reused until the size or the ratio changes (the
// editor's scale reaches the graph as its size). The graph supplies what to
// draw; the cache only decides when to draw it again.
class GraphGridCache
{
public:
    // Paints the grid of a graph of `size` logical pixels.
    using Paint = std::function<void(QPainter &painter, const QSize &size)>;

    explicit GraphGridCache(Paint paint);

    // The grid for this size and ratio, painted now if the last one differs.
    const QPixmap &pixmap(const QSize &size, double devicePixelRatio);
    // How often the grid was painted; a repaint that finds it valid adds nothing.
    int paintCount() const { return m_paintCount; }

private:
    Paint m_paint;
    QPixmap m_pixmap;
    QSize m_size;
    double m_ratio = 0.0;
    int m_paintCount = 0;
};
