#include "ORVChStrip/EqualizerGraphCurves.h"

#include <cmath>

#include "ORVChStrip/Filter/VectorRegisterState.h"
#include "ORVChStrip/PolylineSimplify.h"

void EqualizerGraphCurves::clear()
{
    m_x.clear();
    m_frequencies.clear();
    for (std::vector<double> &response : m_responses)
        response.clear();
    for (QPolygonF &band : m_bands)
        band.clear();
    m_total.clear();
}

void EqualizerGraphCurves::compute(const EqualizerGraphGeometry &geometry, double fs,
    const EqualizerGraphBands &bands, double devicePixelRatio)
{
    clear();
    m_geometry = geometry;
    m_fs = fs;
    m_ratio = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    const double pw = geometry.plotWidth();
    if (!(pw > 0.0) || !(geometry.halfHeight() > 0.0))
        return;

    clearUpperVectorRegisters();
    // Whole device pixel columns, from 1.5 units left of the plot to 1.5
    // units past its right edge.
    m_firstColumn = -static_cast<int>(std::floor(1.5 * geometry.unit() * m_ratio));
    const int last = static_cast<int>(std::ceil((pw + 1.5 * geometry.unit()) * m_ratio));
    const int count = last - m_firstColumn + 1;
    m_x.resize(count);
    m_frequencies.resize(count);
    for (int i = 0; i < count; ++i) {
        const double offset = (m_firstColumn + i) / m_ratio;
        m_x[i] = geometry.margin() + offset;
        m_frequencies[i] = geometry.frequencyAtOffset(offset);
    }
    for (int b = 0; b < BandCount; ++b)
        takeResponse(b, bands[b]);
    takeTotal();
}

void EqualizerGraphCurves::recomputeBand(int band, const EqualizerGraphBands &bands)
{
    if (m_x.empty())
        return;
    clearUpperVectorRegisters();
    takeResponse(band, bands[band]);
    takeTotal();
}

void EqualizerGraphCurves::takeResponse(int band, const EqualizerGraphBand &values)
{
    std::vector<double> &response = m_responses[band];
    if (!values.isOn()) {
        response.clear();
        m_bands[band].clear();
        return;
    }
    const int count = int(m_frequencies.size());
    response.resize(count);
    const FILTER2PEQ &filter = values.filter();
    QPolygonF points(count);
    for (int i = 0; i < count; ++i) {
        response[i] = filter.power(m_frequencies[i], m_fs);
        points[i] = QPointF(m_x[i], m_geometry.yForGain(response[i]));
    }
    m_bands[band] = simplifiedPolyline(points, 0.1 / m_ratio);
}

void EqualizerGraphCurves::takeTotal()
{
    const int count = int(m_x.size());
    std::vector<double> total(count, 0.0);
    for (const std::vector<double> &response : m_responses) {
        if (response.empty())
            continue;
        for (int i = 0; i < count; ++i)
            total[i] += response[i];
    }
    QPolygonF points(count);
    for (int i = 0; i < count; ++i)
        points[i] = QPointF(m_x[i], m_geometry.yForGain(total[i]));
    // The anchors on the 0 dB line close the body; they join after the
    // simplification, which would otherwise drop a flat start that lies on them.
    m_total = simplifiedPolyline(points, 0.1 / m_ratio);
    const double zeroY = m_geometry.zeroDbY();
    m_total.prepend(QPointF(m_x.front(), zeroY));
    m_total.append(QPointF(m_x.back(), zeroY));
}
