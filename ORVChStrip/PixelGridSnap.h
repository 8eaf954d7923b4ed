#pragma once

#include <QPen>
#include <QRectF>

class QPainter;

// Places thin lines on whole device pixels so that frames and grids stay
// crisp at every editor scale and device pixel ratio. Positions and widths
// are in logical pixels.
class PixelGridSnap
{
public:
    explicit PixelGridSnap(double devicePixelRatio);

    // The ratio of the device that a painter really draws on (a widget
    // rendered into a pixmap paints at the pixmap's ratio, not its own).
    static double devicePixelRatio(const QPainter &painter);
    // Clips to a snapped plot and draws its frame, `width` wide, just inside
    // it (so the clip keeps all of it); the painter keeps the square-ended
    // pen for the grid lines that follow. The caller saves and restores.
    static QPen framePlot(QPainter &painter, const QRectF &plot, double width, const QColor &colour);

    // A width of whole device pixels, at least one.
    double lineWidth(double width) const;
    // The centre nearest `position` at which a line of the (snapped) width
    // covers whole device pixels.
    double lineCentre(double position, double width) const;
    // The device pixel boundary nearest `position`.
    double edge(double position) const;
    QRectF rect(const QRectF &rect) const;

private:
    double m_ratio;
};
