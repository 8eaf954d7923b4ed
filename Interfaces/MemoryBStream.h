#pragma once

#include <QByteArray>
#include <algorithm>
#include <cstring>

#include "IBStream.h"

// An IBStream over a growable byte array. Writing past the end extends the
// array (with zeros across a gap made by seeking); reads stop at the end.
class MemoryBStream : public IBStream
{
public:
    MemoryBStream() = default;
    explicit MemoryBStream(QByteArray bytes)
        : m_bytes(std::move(bytes))
    { }
    virtual ~MemoryBStream() = default;

    const QByteArray &data() const { return m_bytes; }
    QByteArray &data() { return m_bytes; }
    int64_t position() const { return m_position; }

    int32_t queryInterface(const char *, void **obj) override
    {
        if (obj)
            *obj = nullptr;
        return kNoInterface;
    }
    uint32_t addRef() override { return ++m_refCount; }
    uint32_t release() override
    {
        if (--m_refCount == 0) {
            delete this;
            return 0;
        }
        return m_refCount;
    }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override
    {
        if (numBytesRead)
            *numBytesRead = 0;
        if (!buffer || numBytes < 0)
            return kResultFalse;
        const int64_t available = std::max<int64_t>(0, m_bytes.size() - m_position);
        const int32_t n = static_cast<int32_t>(std::min<int64_t>(numBytes, available));
        if (n > 0)
            std::memcpy(buffer, m_bytes.constData() + m_position, size_t(n));
        m_position += n;
        if (numBytesRead)
            *numBytesRead = n;
        return kResultOk;
    }

    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override
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

    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override
    {
        int64_t target;
        switch (mode) {
        case kIBSeekSet: target = pos; break;
        case kIBSeekCur: target = m_position + pos; break;
        case kIBSeekEnd: target = m_bytes.size() + pos; break;
        default: return kResultFalse;
        }
        if (target < 0)
            return kResultFalse;
        m_position = target;
        if (result)
            *result = m_position;
        return kResultOk;
    }

    int32_t tell(int64_t *pos) override
    {
        if (!pos)
            return kResultFalse;
        *pos = m_position;
        return kResultOk;
    }

private:
    QByteArray m_bytes;
    int64_t m_position = 0;
    uint32_t m_refCount = 1;
};
