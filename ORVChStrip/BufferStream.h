#pragma once

#include "Interfaces/MemoryBStream.h"

// A growable in-memory stream. Like every stream here it is reference-counted:
// create it with new and give it back with release().
class BufferStream : public MemoryBStream
{
public:
    BufferStream() = default;
    explicit BufferStream(QByteArray bytes);

    qsizetype size() const { return data().size(); }
    // Empties the buffer and rewinds.
    void clear();
};
