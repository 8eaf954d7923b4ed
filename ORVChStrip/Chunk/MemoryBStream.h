#pragma once

#include <QByteArray>

#include "ORVChStrip/Chunk/RefCountedBStream.h"

// An IBStream over a growable byte array. Writing past the end extends the
// array (with zeros across a gap made by seeking); reads stop at the end.
class MemoryBStream : public RefCountedBStream
{
public:
    MemoryBStream() = default;
    explicit MemoryBStream(QByteArray bytes);

    const QByteArray &data() const { return m_bytes; }
    QByteArray &data() { return m_bytes; }
    qsizetype size() const { return m_bytes.size(); }
    int64_t position() const { return m_position; }
    // Empties the buffer and rewinds.
    void clear();

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override;
    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override;
    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override;
    int32_t tell(int64_t *pos) override;

private:
    QByteArray m_bytes;
    int64_t m_position = 0;
};
