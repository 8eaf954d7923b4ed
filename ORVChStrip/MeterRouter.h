#pragma once

#include <QList>

namespace CommonController_MemAPI {
class MeterController;
}
class ParameterLookup;

// Hands the entries of the host's meter array to the meters that show them.
// A route is made only for a meter key and channel that the model knows; an
// entry whose index is not below the count the host sends leaves its meter
// at its last value.
class MeterRouter
{
public:
    void clear() { m_routes.clear(); }
    // Routes the left (or right) entry of `key` on `ch` to `meter`.
    void add(const ParameterLookup &lookup, const char *key, int ch, bool right,
        CommonController_MemAPI::MeterController *meter);
    void route(const unsigned int *values, unsigned int count) const;
    int count() const { return int(m_routes.size()); }

private:
    struct Route
    {
        CommonController_MemAPI::MeterController *meter;
        unsigned short index;
    };
    QList<Route> m_routes;
};
