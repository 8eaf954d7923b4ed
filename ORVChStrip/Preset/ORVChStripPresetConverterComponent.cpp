#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"

#include <algorithm>
#include <limits>

#include "Interfaces/IBStream.h"

namespace {

// The bytes from the current position to the end, or -1 when the stream
// cannot tell; the position is left where it was.
int64_t remainingLength(IBStream *stream)
{
    int64_t start = 0;
    int64_t end = 0;
    if (stream->tell(&start) != kResultOk || stream->seek(0, IBStream::kIBSeekEnd, &end) != kResultOk)
        return -1;
    int64_t back = -1;
    if (stream->seek(start, IBStream::kIBSeekSet, &back) != kResultOk || back != start || end < start)
        return -1;
    return end - start;
}

} // namespace

int32_t ORVChStripPresetConverterComponent::setState(IBStream *state)
{
    m_state.clear();
    if (!state)
        return kResultFalse;
    const int64_t expected = remainingLength(state);
    uint8_t piece[256];
    bool failed = false;
    for (;;) {
        int32_t got = 0;
        failed = state->read(piece, sizeof piece, &got) != kResultOk;
        if (failed || got <= 0)
            break;
        m_state.insert(m_state.end(), piece, piece + std::min<int32_t>(got, sizeof piece));
    }
    const bool complete = expected >= 0 ? int64_t(m_state.size()) == expected : !failed;
    if (m_state.empty() || !complete) {
        m_state.clear();
        return kResultFalse;
    }
    return kResultOk;
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
