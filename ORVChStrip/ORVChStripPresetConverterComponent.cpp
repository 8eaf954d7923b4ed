#include "ORVChStrip/ORVChStripPresetConverterComponent.h"

#include <algorithm>
#include <limits>

#include "Interfaces/IBStream.h"

int32_t ORVChStripPresetConverterComponent::queryInterface(const char *, void **obj)
{
    if (obj)
        *obj = nullptr;
    return kNoInterface;
}

uint32_t ORVChStripPresetConverterComponent::addRef()
{
    return ++m_refCount;
}

uint32_t ORVChStripPresetConverterComponent::release()
{
    if (--m_refCount == 0) {
        delete this;
        return 0;
    }
    return m_refCount;
}

int32_t ORVChStripPresetConverterComponent::initialize(FUnknown *)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::terminate()
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::getControllerClassId(char *)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::setIoMode(int32_t)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::getBusCount(int32_t, int32_t)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::getBusInfo(int32_t, int32_t, int32_t, BusInfo &)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::getRoutingInfo(RoutingInfo &, RoutingInfo &)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::activateBus(int32_t, int32_t, int32_t, unsigned char)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::setActive(unsigned char)
{
    return kNotImplemented;
}

int32_t ORVChStripPresetConverterComponent::setState(IBStream *state)
{
    m_state.clear();
    if (!state)
        return kResultFalse;
    uint8_t piece[256];
    for (;;) {
        int32_t got = 0;
        if (state->read(piece, sizeof piece, &got) != kResultOk || got <= 0)
            break;
        m_state.insert(m_state.end(), piece, piece + std::min<int32_t>(got, sizeof piece));
    }
    return m_state.empty() ? kResultFalse : kResultOk;
}

int32_t ORVChStripPresetConverterComponent::getState(IBStream *state)
{
    if (!state || m_state.empty() || m_state.size() > size_t(std::numeric_limits<int32_t>::max()))
        return kResultFalse;
    const auto size = static_cast<int32_t>(m_state.size());
    int32_t written = 0;
    if (state->write(m_state.data(), size, &written) != kResultOk || written != size)
        return kResultFalse;
    return kResultOk;
}
