#pragma once

#include <QBrush>
#include <QHash>
#include <QPixmap>
#include <QRectF>

class QPainter;

namespace CommonController_MemAPI {

// A rounded bar (see fillRoundBar) drawn once at its full length, from which
// a meter copies the part that is lit. A rounded end that moves is drawn
// once per position it takes (a meter's segments give a few dozen) into a
// band of its own radius: at the meters' rate a paint is a few copies
// instead of antialiased path fills.
class RoundBarLayer
{
public:
    // Draws what fillRoundBar(painter, span, brush) draws, where `span` runs
    // along `bar` (same left edge and width, inside its top and bottom).
    void paint(QPainter *painter, const QRectF &bar, const QBrush &brush, const QRectF &span);
    // The whole bar.
    void paint(QPainter *painter, const QRectF &bar, const QBrush &brush) { paint(painter, bar, brush, bar); }

private:
    const QPixmap &layer(const QRectF &bar, const QBrush &brush, double devicePixelRatio);
    // The rounded end of `span` that lies inside `band` (whole device pixels).
    void paintEnd(QPainter *painter, const QRectF &span, const QRectF &band, bool top);

    QPixmap m_layer;
    QHash<qint64, QPixmap> m_ends;
    QRectF m_bar;
    QBrush m_brush;
    bool m_paintedOnce = false;
};

} // namespace CommonController_MemAPI
