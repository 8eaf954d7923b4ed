#pragma once

#include "ORVChStrip/Chunk/RefCountedBStream.h"

// A read-only window of `size` bytes at `offset` in another stream. Positions
// are relative to the window; reads and seeks never leave it. The window holds
// a reference on its source for its whole life.
class ReadOnlyBStream : public RefCountedBStream
{
public:
    ReadOnlyBStream(IBStream *source, int64_t offset, int64_t size);
    ~ReadOnlyBStream() override;

    int64_t size() const { return m_size; }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override;
    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override;
    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override;
    int32_t tell(int64_t *pos) override;

private:
    IBStream *m_source;
    int64_t m_offset;
    int64_t m_size;
    int64_t m_position = 0;
};
