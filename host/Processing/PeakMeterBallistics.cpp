#include "PeakMeterBallistics.h"

#include <algorithm>
#include <cmath>

double PeakMeterBallistics::update(double peakDb, double seconds)
{
    const double fallen = m_levelDb - FallDbPerSecond * std::max(seconds, 0.0);
    const double peak = std::isnan(peakDb) ? FloorDb : peakDb;
    m_levelDb = std::max({ peak, fallen, FloorDb });
    return m_levelDb;
}
