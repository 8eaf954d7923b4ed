#pragma once

#include <QPointF>
#include <QRectF>

// The equalizer graph's plot geometry for a widget of a given size: margins,
// the logarithmic frequency axis from 20 Hz to 20 kHz and the +-24 dB gain
// axis. Every measure scales with the unit height/191 (the design height).
//
// The drag mapping uses a unit of height/181 instead; built with
// forDrag(), the same formulas give that slightly different plot, which is
// how a dragged handle follows the pointer.
class EqualizerGraphGeometry
{
public:
    static constexpr double DesignHeight = 191.0;
    static constexpr double DragDesignHeight = 181.0;
    static constexpr double MinFrequency = 20.0;
    static constexpr double MaxFrequency = 20000.0;
    static constexpr double Ln1000 = 6.907755278982137;
    static constexpr double RangeDb = 24.0;
    static constexpr double MaxGainDb = 18.0;
    // Vertical grid lines: 50 Hz ... 10 kHz as fractions of 20 kHz.
    static constexpr double GridFrequencyRatios[] = { 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1, 0.25, 0.5 };

    EqualizerGraphGeometry(double width, double height, double designHeight = DesignHeight);
    static EqualizerGraphGeometry forDrag(double width, double height);

    double width() const { return m_width; }
    double height() const { return m_height; }
    double unit() const { return m_unit; }
    double margin() const { return 5.0 * m_unit + 0.5 * m_unit; }
    double plotWidth() const { return m_width - m_unit - 10.0 * m_unit; }
    double halfHeight() const { return (m_height - m_unit - 10.0 * m_unit) / 2.0; }
    double plotHeight() const { return 2.0 * halfHeight(); }
    double zeroDbY() const { return margin() + halfHeight(); }
    QRectF plotRect() const { return QRectF(margin(), margin(), plotWidth(), plotHeight()); }

    double xForFrequency(double f) const;
    double yForGain(double dB) const;
    QPointF handleCentre(double f, double dB) const { return QPointF(xForFrequency(f), yForGain(dB)); }
    // The frequency of the column `offset` pixels right of the plot's left edge.
    double frequencyAtOffset(double offset) const;
    double frequencyForX(double x) const { return frequencyAtOffset(x - margin()); }
    double gainForY(double y) const;
    double gridX(double ratio) const;

    // Radius around a handle's centre within which a point grabs it.
    double hitRadius() const { return 8.0 * m_unit; }
    double handleRadius(bool emphasised) const { return (emphasised ? 5.0 : 4.0) * m_unit; }

    // The range a dragged gain may reach.
    static double clampGain(double dB);

private:
    double m_width;
    double m_height;
    double m_unit;
};
