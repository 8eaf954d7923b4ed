#include "ORVChStrip/Chunk/ReadOnlyBStream.h"

#include <algorithm>

ReadOnlyBStream::ReadOnlyBStream(IBStream *source, int64_t offset, int64_t size)
    : m_source(source)
    , m_offset(std::max<int64_t>(0, offset))
    , m_size(std::max<int64_t>(0, size))
{
    if (m_source)
        m_source->addRef();
}

ReadOnlyBStream::~ReadOnlyBStream()
{
    if (m_source)
        m_source->release();
}

int32_t ReadOnlyBStream::read(void *buffer, int32_t numBytes, int32_t *numBytesRead)
{
    if (numBytesRead)
        *numBytesRead = 0;
    if (!m_source || !buffer || numBytes < 0)
        return kResultFalse;
    const int32_t wanted = static_cast<int32_t>(std::min<int64_t>(numBytes, m_size - m_position));
    if (wanted <= 0)
        return kResultOk;
    // The source may have been moved by someone else: always position it.
    int64_t landed = -1;
    if (m_source->seek(m_offset + m_position, kIBSeekSet, &landed) != kResultOk
        || landed != m_offset + m_position)
        return kResultFalse;
    int32_t got = 0;
    const int32_t result = m_source->read(buffer, wanted, &got);
    got = std::clamp<int32_t>(got, 0, wanted);
    m_position += got;
    if (numBytesRead)
        *numBytesRead = got;
    return result;
}

int32_t ReadOnlyBStream::write(const void *, int32_t, int32_t *numBytesWritten)
{
    if (numBytesWritten)
        *numBytesWritten = 0;
    return kResultFalse;
}

int32_t ReadOnlyBStream::seek(int64_t pos, int32_t mode, int64_t *result)
{
    int64_t target = 0;
    if (!seekTarget(pos, mode, m_position, m_size, &target))
        return kResultFalse;
    m_position = std::clamp<int64_t>(target, 0, m_size);
    if (result)
        *result = m_position;
    return kResultOk;
}

int32_t ReadOnlyBStream::tell(int64_t *pos)
{
    if (!pos)
        return kResultFalse;
    *pos = m_position;
    return kResultOk;
}
