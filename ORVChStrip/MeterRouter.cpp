#include "ORVChStrip/MeterRouter.h"

#include "Common/ParameterLookup.h"
#include "Common/Widgets/MeterController.h"

void MeterRouter::add(const ParameterLookup &lookup, const char *key, int ch, bool right,
    CommonController_MemAPI::MeterController *meter)
{
    unsigned short index = 0;
    if (!meter || ch < 0 || !lookup.meterIndex(key, static_cast<unsigned short>(ch), right, &index))
        return;
    m_routes.append({ meter, index });
}

void MeterRouter::route(const unsigned int *values, unsigned int count) const
{
    if (!values)
        return;
    for (const Route &route : m_routes) {
        if (route.index < count)
            route.meter->setValue(static_cast<int>(values[route.index]));
    }
}
