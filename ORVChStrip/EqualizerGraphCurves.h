#pragma once

#include <QPolygonF>
#include <array>

class EqualizerGraphGeometry;
class FILTER2PEQ;

// The equalizer graph's curves as points in widget coordinates: one response
// per band that is on and their sum. Points are taken once per device pixel
// column, from a little left of the plot to a little past its right edge (the
// overhang is clipped when painted), then thinned where the curve is straight
// to within a tenth of a device pixel, which makes wide strokes much cheaper.
class EqualizerGraphCurves
{
public:
    static constexpr int BandCount = 3;

    struct Band
    {
        const FILTER2PEQ *filter = nullptr;
        bool on = false;
    };

    void compute(const EqualizerGraphGeometry &geometry, double fs, const std::array<Band, BandCount> &bands,
        double devicePixelRatio = 1.0);
    void clear();

    // Empty for a band that is off.
    const QPolygonF &bandPoints(int index) const { return m_bands[index]; }
    // Starts and ends on the 0 dB line, so that filling it shades the area
    // between the total response and 0 dB.
    const QPolygonF &totalPoints() const { return m_total; }

private:
    std::array<QPolygonF, BandCount> m_bands;
    QPolygonF m_total;
};
