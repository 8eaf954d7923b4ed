#include "ORVChStrip/Chunk/YWriteBinChunk.h"

#include "ORVChStrip/Chunk/YStream.h"

YWriteBinChunk::YWriteBinChunk(YStream &stream, int endianKind, int id)
    : YBinChunk(stream, endianKind)
{
    WriteID(id);
    WriteNumber(0);
    m_start = m_stream.GetMarker();
}

YWriteBinChunk::~YWriteBinChunk()
{
    const int size = m_stream.GetMarker() - m_start;
    m_stream.SetMarker(-4 - size, YStreamFromCurrent);
    WriteNumber(size);
    m_stream.SetMarker(size, YStreamFromCurrent);
}

void YWriteBinChunk::WriteID(int id)
{
    const unsigned int stored = fileId(static_cast<unsigned int>(id), m_endianKind);
    m_stream.Write(&stored, 4);
}

void YWriteBinChunk::WriteStringData(const char *bytes, int count)
{
    if (bytes && count > 0)
        m_stream.Write(bytes, count);
}

void YWriteBinChunk::WriteNumber(int value)
{
    const unsigned int stored = fileNumber(static_cast<unsigned int>(value), m_endianKind);
    m_stream.Write(&stored, 4);
}
