#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"

#include <algorithm>
#include <limits>

#include "Interfaces/IBStream.h"

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
