#pragma once

#include "ORVChStrip/Chunk/YBinChunk.h"

// Writes one chunk for as long as it lives: the header on construction, the
// size (of the contents only) patched on destruction.
class YWriteBinChunk : public YBinChunk
{
public:
    YWriteBinChunk(YStream &stream, int endianKind, int id);
    ~YWriteBinChunk();

    YWriteBinChunk(const YWriteBinChunk &) = delete;
    YWriteBinChunk &operator=(const YWriteBinChunk &) = delete;

    void WriteID(int id);
    void WriteStringData(const char *bytes, int count);
    void WriteNumber(int value);

private:
    int m_start;
};
