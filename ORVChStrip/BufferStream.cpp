#include "ORVChStrip/BufferStream.h"

BufferStream::BufferStream(QByteArray bytes)
    : MemoryBStream(std::move(bytes))
{ }

void BufferStream::clear()
{
    data().clear();
    seek(0, kIBSeekSet);
}
