#pragma once

#include <QPoint>

namespace CommonController_MemAPI {

// Turns wheel deltas into whole steps. Partial notches (smooth-scrolling
// devices send many small deltas) add up; turning the wheel the other way
// drops what had been gathered; the remainder of a step is kept.
class WheelAccumulator
{
public:
    // The component of an angle delta that a control follows: the larger one.
    static int dominantDelta(const QPoint &angleDelta);

    // Adds `delta` and returns the whole multiples of `unit` gathered.
    int take(int delta, int unit);
    int pending() const { return m_sum; }

private:
    int m_sum = 0;
};

} // namespace CommonController_MemAPI
