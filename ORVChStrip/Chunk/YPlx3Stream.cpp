#include "ORVChStrip/Chunk/YPlx3Stream.h"

#include "Interfaces/IBStream.h"

YPlx3Stream::YPlx3Stream(IBStream *stream)
    : m_pStream(stream)
{
    if (m_pStream)
        m_pStream->addRef();
}

YPlx3Stream::~YPlx3Stream()
{
    if (m_pStream)
        m_pStream->release();
}

int YPlx3Stream::Read(void *buffer, int count)
{
    int32_t done = 0;
    if (m_pStream && count > 0)
        m_pStream->read(buffer, count, &done);
    return done;
}

int YPlx3Stream::Write(const void *data, int count)
{
    int32_t done = 0;
    if (m_pStream && count > 0)
        m_pStream->write(data, count, &done);
    return done;
}

int YPlx3Stream::SetMarker(int offset, YStreamFrom from)
{
    if (!m_pStream)
        return 0;
    int32_t mode = IBStream::kIBSeekSet;
    if (from == YStreamFromCurrent)
        mode = IBStream::kIBSeekCur;
    else if (from == YStreamFromEnd)
        mode = IBStream::kIBSeekEnd;
    int64_t result = 0;
    m_pStream->seek(offset, mode, &result);
    return static_cast<int>(static_cast<uint32_t>(result));
}

int YPlx3Stream::GetMarker()
{
    int64_t position = 0;
    if (m_pStream)
        m_pStream->tell(&position);
    return static_cast<int>(static_cast<uint32_t>(position));
}

int YPlx3Stream::GetLength()
{
    if (!m_pStream)
        return 0;
    int64_t saved = 0;
    m_pStream->tell(&saved);
    m_pStream->seek(0, IBStream::kIBSeekEnd);
    int64_t length = 0;
    m_pStream->tell(&length);
    m_pStream->seek(saved, IBStream::kIBSeekSet);
    return static_cast<int>(static_cast<uint32_t>(length));
}
