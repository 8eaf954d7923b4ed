#pragma once

#include <QPixmap>
#include <QPolygonF>
#include <QSize>
#include <QString>

#include "ORVChStrip/Filter/CompressorCurve.h"

class QFont;
class QPainter;

// Draws the compressor graph without a widget: the frame and the -20/-40 dB
// grid, and the static curve with the area under it. Lines sit on whole
// device pixels of the device the painter is on, so the same calls serve a
// widget, a pixmap cache and an image in a test.
class CompressorGraphPainter
{
public:
    void setEnabled(bool enabled) { m_enabled = enabled; }
    bool isEnabled() const { return m_enabled; }

    static void paintGrid(QPainter &painter, const QSize &size);
    // The curve for these settings, clipped to the plot.
    void paintCurve(QPainter &painter, const QSize &size, const CompressorCurve::Settings &settings) const;
    void paint(QPainter &painter, const QSize &size, const CompressorCurve::Settings &settings) const;
    // The offsets that move the curve but are not drawn as such, as value
    // texts with their unit ("+2.0 dB").
    struct Readout
    {
        QString thresholdOffset;
        QString makeUpOffset;
        bool operator==(const Readout &other) const
        {
            return thresholdOffset == other.thresholdOffset && makeUpOffset == other.makeUpOffset;
        }
    };
    // Labels and values in the plot's top-left corner, on a backing that
    // hides the grid beneath: the curve never comes there, since an input
    // below -20 dB never comes out above it.
    void paintReadout(QPainter &painter, const QSize &size, const QFont &font, const Readout &readout) const;
    // What the readout covers.
    static QRectF readoutBounds(const QSize &size, const QFont &font, const Readout &readout);

    // The dot that marks the operating point, drawn once per graph size and
    // device pixel ratio, and placed at (input dB, output dB) on the axes.
    static QPixmap operatingPointSprite(const QSize &size, double devicePixelRatio);
    static void paintOperatingPoint(
        QPainter &painter, const QSize &size, const QPointF &levelsDb, const QPixmap &sprite);
    // What that dot covers, pen included.
    static QRectF operatingPointBounds(const QSize &size, const QPointF &levelsDb);

    // The closed outline of the area under the curve in widget pixels (0 dB
    // at the top and right edges, -60 dB at the bottom and left), starting and
    // ending outside the widget's bottom-right corner. `devicePixelRatio` is
    // in whole device pixels.
    static QPolygonF outline(
        const QSizeF &size, int devicePixelRatio, const CompressorCurve::Settings &settings);

private:
    bool m_enabled = true;
};
