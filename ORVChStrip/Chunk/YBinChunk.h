#pragma once

class YStream;

// Base of the chunk writers: the stream and the byte-order kind
// (0 little-endian host, 1 big-endian host).
class YBinChunk
{
public:
    YBinChunk(YStream &stream, int endianKind)
        : m_stream(stream)
        , m_endianKind(endianKind)
    { }

    YStream &stream() const { return m_stream; }
    int endianKind() const { return m_endianKind; }

    // Ids are stored first character first; numbers little-endian.
    static unsigned int fileId(unsigned int id, int endianKind);
    static unsigned int fileNumber(unsigned int value, int endianKind);

protected:
    YStream &m_stream;
    int m_endianKind;
};
