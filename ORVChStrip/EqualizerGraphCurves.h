#pragma once

#include <QPolygonF>
#include <array>
#include <vector>

#include "ORVChStrip/EqualizerGraphBand.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"

// The equalizer graph's curves as points in widget coordinates: one response
// per band that is on and their sum. Responses are taken once per device
// pixel column, from a little left of the plot to a little past its right
// edge (the overhang is clipped when painted), then thinned where the curve
// is straight to within a tenth of a device pixel, which makes wide strokes
// much cheaper.
//
// Each band's response and points are kept, so that a change of one band
// (every step of a drag) evaluates and thins only that band and the total.
class EqualizerGraphCurves
{
public:
    static constexpr int BandCount = 3;

    // Takes every band's response anew for this plot, rate and ratio.
    void compute(const EqualizerGraphGeometry &geometry, double fs, const EqualizerGraphBands &bands,
        double devicePixelRatio = 1.0);
    // Takes one band's response anew and keeps the others' from the last
    // compute(): for a change of that band's values on the same plot and rate.
    void recomputeBand(int band, const EqualizerGraphBands &bands);
    void clear();

    // Empty for a band that is off.
    const QPolygonF &bandPoints(int index) const { return m_bands[index]; }
    // Starts and ends on the 0 dB line, so that filling it shades the area
    // between the total response and 0 dB.
    const QPolygonF &totalPoints() const { return m_total; }

private:
    void takeResponse(int band, const EqualizerGraphBand &values);
    void takeTotal();

    EqualizerGraphGeometry m_geometry { 0.0, 0.0 };
    double m_fs = 0.0;
    double m_ratio = 1.0;
    int m_firstColumn = 0;
    // Per column: its x and frequency, then each band's response in dB
    // (empty for a band that is off).
    std::vector<double> m_x;
    std::vector<double> m_frequencies;
    std::array<std::vector<double>, BandCount> m_responses;
    std::array<QPolygonF, BandCount> m_bands;
    QPolygonF m_total;
};
