#pragma once

#include <QPolygonF>

// Drops the points of a polyline that lie within `tolerance` of the line
// through their kept neighbours (Ramer-Douglas-Peucker); the first and last
// points always stay. Smooth response curves drawn with wide pens get much
// cheaper to stroke without a visible change.
QPolygonF simplifiedPolyline(const QPolygonF &points, double tolerance);
