#include "ORVChStrip/Chunk/MemoryBStream.h"

#include <algorithm>
#include <cstring>

MemoryBStream::MemoryBStream(QByteArray bytes)
    : m_bytes(std::move(bytes))
{ }

void MemoryBStream::clear()
{
    m_bytes.clear();
    m_position = 0;
}

int32_t MemoryBStream::read(void *buffer, int32_t numBytes, int32_t *numBytesRead)
{
    if (numBytesRead)
        *numBytesRead = 0;
    if (!buffer || numBytes < 0)
        return kResultFalse;
    const int64_t available = std::max<int64_t>(0, m_bytes.size() - m_position);
    const auto n = static_cast<int32_t>(std::min<int64_t>(numBytes, available));
    if (n > 0)
        std::memcpy(buffer, m_bytes.constData() + m_position, size_t(n));
    m_position += n;
    if (numBytesRead)
        *numBytesRead = n;
    return kResultOk;
}

int32_t MemoryBStream::write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten)
{
    if (numBytesWritten)
        *numBytesWritten = 0;
    if (!buffer || numBytes < 0)
        return kResultFalse;
    const int64_t end = m_position + numBytes;
    if (end > m_bytes.size())
        m_bytes.resize(qsizetype(end), '\0');
    if (numBytes > 0)
        std::memcpy(m_bytes.data() + m_position, buffer, size_t(numBytes));
    m_position = end;
    if (numBytesWritten)
        *numBytesWritten = numBytes;
    return kResultOk;
}

int32_t MemoryBStream::seek(int64_t pos, int32_t mode, int64_t *result)
{
    int64_t target = 0;
    if (!seekTarget(pos, mode, m_position, m_bytes.size(), &target))
        return kResultFalse;
    if (target < 0)
        return kResultFalse;
    m_position = target;
    if (result)
        *result = m_position;
    return kResultOk;
}

int32_t MemoryBStream::tell(int64_t *pos)
{
    if (!pos)
        return kResultFalse;
    *pos = m_position;
    return kResultOk;
}
