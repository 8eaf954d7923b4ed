#include "ORVChStrip/PolylineSimplify.h"

#include <cmath>
#include <utility>
#include <vector>

QPolygonF simplifiedPolyline(const QPolygonF &points, double tolerance)
{
    const int count = int(points.size());
    if (count < 3)
        return points;
    // Ramer-Douglas-Peucker without recursion.
    std::vector<bool> keep(count, false);
    keep.front() = keep.back() = true;
    std::vector<std::pair<int, int>> spans { { 0, count - 1 } };
    while (!spans.empty()) {
        const auto [first, last] = spans.back();
        spans.pop_back();
        const QPointF a = points[first];
        const QPointF d = points[last] - a;
        const double length = std::sqrt(d.x() * d.x() + d.y() * d.y());
        // Within a span the farthest point is the one with the largest cross
        // product (or, for a closed span, distance), so the loop only compares
        // those and divides once.
        double worst = -1.0;
        int worstIndex = -1;
        for (int i = first + 1; i < last; ++i) {
            const QPointF v = points[i] - a;
            const double measure = length > 0.0 ? std::abs(d.x() * v.y() - d.y() * v.x())
                                                : std::sqrt(v.x() * v.x() + v.y() * v.y());
            if (measure > worst) {
                worst = measure;
                worstIndex = i;
            }
        }
        if (worstIndex < 0 || (length > 0.0 ? worst / length : worst) <= tolerance)
            continue;
        keep[worstIndex] = true;
        spans.push_back({ first, worstIndex });
        spans.push_back({ worstIndex, last });
    }
    QPolygonF result;
    for (int i = 0; i < count; ++i) {
        if (keep[i])
            result.append(points[i]);
    }
    return result;
}
