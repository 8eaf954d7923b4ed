#include "ORVChStrip/EqualizerGraphGeometry.h"

#include <algorithm>
#include <cmath>

EqualizerGraphGeometry::EqualizerGraphGeometry(double width, double height, double designHeight)
    : m_width(width)
    , m_height(height)
    , m_unit(height / designHeight)
{ }

EqualizerGraphGeometry EqualizerGraphGeometry::forDrag(double width, double height)
{
    return EqualizerGraphGeometry(width, height, DragDesignHeight);
}

double EqualizerGraphGeometry::xForFrequency(double f) const
{
    return (margin() + plotWidth()) - plotWidth() * std::log(MaxFrequency / f) / Ln1000;
}

double EqualizerGraphGeometry::yForGain(double dB) const
{
    return zeroDbY() - halfHeight() * dB / RangeDb;
}

double EqualizerGraphGeometry::frequencyAtOffset(double offset) const
{
    return MinFrequency * std::pow(10.0, 3.0 * offset / plotWidth());
}

double EqualizerGraphGeometry::gainForY(double y) const
{
    return (halfHeight() + margin() - y) / halfHeight() * RangeDb;
}

double EqualizerGraphGeometry::gridX(double ratio) const
{
    return (margin() + plotWidth()) + plotWidth() * std::log(ratio) / Ln1000;
}

double EqualizerGraphGeometry::clampGain(double dB)
{
    return std::clamp(dB, -MaxGainDb, MaxGainDb);
}
