#include "ORVChStrip/Chunk/YNullStream.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace {

int clampToInt(int64_t value)
{
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

} // namespace

int YNullStream::Read(void *, int count)
{
    if (count < 1)
        return 0;
    m_position = clampToInt(std::min<int64_t>(int64_t(m_position) + count, m_length));
    return 0;
}

int YNullStream::Write(const void *, int count)
{
    if (count < 1)
        return 0;
    m_position = clampToInt(int64_t(m_position) + count);
    m_length = std::max(m_length, m_position);
    return count;
}

int YNullStream::SetMarker(int offset, YStreamFrom from)
{
    int64_t target = m_position;
    switch (from) {
    case YStreamFromStart: target = offset; break;
    case YStreamFromCurrent: target = int64_t(m_position) + offset; break;
    case YStreamFromEnd: target = int64_t(m_length) + offset; break;
    }
    m_position = static_cast<int>(std::clamp<int64_t>(target, 0, m_length));
    return m_position;
}
