#include "Common/Widgets/WheelAccumulator.h"

#include <cstdlib>

namespace CommonController_MemAPI {

int WheelAccumulator::dominantDelta(const QPoint &angleDelta)
{
    return std::abs(angleDelta.x()) > std::abs(angleDelta.y()) ? angleDelta.x() : angleDelta.y();
}

int WheelAccumulator::take(int delta, int unit)
{
    if ((m_sum < 0 && delta > 0) || (m_sum > 0 && delta < 0))
        m_sum = 0;
    m_sum += delta;
    if (unit <= 0)
        return 0;
    const int steps = m_sum / unit;
    m_sum %= unit;
    return steps;
}

} // namespace CommonController_MemAPI
