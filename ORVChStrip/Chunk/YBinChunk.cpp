#include "ORVChStrip/Chunk/YBinChunk.h"

namespace {

unsigned int reversed(unsigned int v)
{
    return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
}

} // namespace

unsigned int YBinChunk::fileId(unsigned int id, int endianKind)
{
    return endianKind == 0 ? reversed(id) : id;
}

unsigned int YBinChunk::fileNumber(unsigned int value, int endianKind)
{
    return endianKind == 1 ? reversed(value) : value;
}
