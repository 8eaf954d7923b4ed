#include "ORVChStrip/EqualizerGraphCurves.h"

#include <cmath>

#include "Common/VectorRegisterState.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/Filter/FILTER2PEQ.h"
#include "ORVChStrip/PolylineSimplify.h"

void EqualizerGraphCurves::clear()
{
    for (QPolygonF &band : m_bands)
        band.clear();
    m_total.clear();
}

void EqualizerGraphCurves::compute(const EqualizerGraphGeometry &geometry, double fs,
    const std::array<Band, BandCount> &bands, double devicePixelRatio)
{
    clear();
    clearUpperVectorRegisters();
    const double dpr = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    const double left = geometry.margin();
    const double pw = geometry.plotWidth();
    if (!(pw > 0.0) || !(geometry.halfHeight() > 0.0))
        return;

    // Whole device pixel columns, from 1.5 units left of the plot to 1.5
    // units past its right edge.
    const int first = -static_cast<int>(std::floor(1.5 * geometry.unit() * dpr));
    const int last = static_cast<int>(std::ceil((pw + 1.5 * geometry.unit()) * dpr));
    const int count = last - first + 1;
    for (int b = 0; b < BandCount; ++b) {
        if (bands[b].on && bands[b].filter)
            m_bands[b].reserve(count);
    }
    m_total.reserve(count + 2);

    for (int column = first; column <= last; ++column) {
        const double offset = column / dpr;
        const double x = left + offset;
        const double f = geometry.frequencyAtOffset(offset);
        double total = 0.0;
        for (int b = 0; b < BandCount; ++b) {
            if (!bands[b].on || !bands[b].filter)
                continue;
            const double dB = bands[b].filter->power(f, fs);
            total += dB;
            m_bands[b].append(QPointF(x, geometry.yForGain(dB)));
        }
        m_total.append(QPointF(x, geometry.yForGain(total)));
    }

    const double tolerance = 0.1 / dpr;
    for (QPolygonF &band : m_bands)
        band = simplifiedPolyline(band, tolerance);
    // The anchors on the 0 dB line close the body; they join after the
    // simplification, which would otherwise drop a flat start that lies on them.
    m_total = simplifiedPolyline(m_total, tolerance);
    const double zeroY = geometry.zeroDbY();
    m_total.prepend(QPointF(left + first / dpr, zeroY));
    m_total.append(QPointF(left + last / dpr, zeroY));
}
