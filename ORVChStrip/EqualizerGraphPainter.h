#pragma once

#include <QColor>
#include <QSize>

#include "ORVChStrip/EqualizerGraphBand.h"

class EqualizerGraphCurves;
class QPainter;

// Draws the equalizer graph without a widget: the frame and grid, the band
// and total responses, and a handle per band that is on. The options say how
// the graph looks (enabled, which band is emphasised); the band values come
// with each call. Every step draws at the device pixel ratio of the device
// the painter is on, so the same calls serve a widget, a pixmap cache and an
// image in a test.
class EqualizerGraphPainter
{
public:
    static constexpr int NoBand = -1;

    void setEnabled(bool enabled) { m_enabled = enabled; }
    bool isEnabled() const { return m_enabled; }
    // The band drawn highlighted and wider (0 low, 1 middle, 2 high), or NoBand.
    void setShownBand(int band) { m_shownBand = band; }
    int shownBand() const { return m_shownBand; }

    // The colour of a band's curve and handle under the current options.
    QColor bandColor(int band) const;

    // Frame, grid and 0 dB line of a graph of `size`, clipped to the plot.
    static void paintGrid(QPainter &painter, const QSize &size);
    // The total's body and outline and each band's curve, clipped to the plot.
    void paintCurves(QPainter &painter, const QSize &size, const EqualizerGraphCurves &curves) const;
    // A handle for each band that is on; not clipped to the plot.
    void paintHandles(QPainter &painter, const QSize &size, const EqualizerGraphBands &bands) const;

    // All of the above, computing the curves from the bands' filters at `fs`.
    void paint(QPainter &painter, const QSize &size, const EqualizerGraphBands &bands, double fs) const;

private:
    bool m_enabled = true;
    int m_shownBand = NoBand;
};
