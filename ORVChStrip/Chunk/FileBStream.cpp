#include "ORVChStrip/Chunk/FileBStream.h"

FileBStream *FileBStream::openFile(const QString &path, QIODevice::OpenMode mode)
{
    auto *stream = new FileBStream;
    if (stream->open(path, mode))
        return stream;
    stream->release();
    return nullptr;
}

bool FileBStream::open(const QString &path, QIODevice::OpenMode mode)
{
    m_file.close();
    m_file.setFileName(path);
    return !path.isEmpty() && m_file.open(mode);
}

int32_t FileBStream::read(void *buffer, int32_t numBytes, int32_t *numBytesRead)
{
    if (numBytesRead)
        *numBytesRead = 0;
    if (!buffer || numBytes < 0 || !m_file.isReadable())
        return kResultFalse;
    // A short read at the end of the file is not an error; the count tells.
    const qint64 n = m_file.read(static_cast<char *>(buffer), numBytes);
    if (n < 0)
        return kResultFalse;
    if (numBytesRead)
        *numBytesRead = static_cast<int32_t>(n);
    return kResultOk;
}

int32_t FileBStream::write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten)
{
    if (numBytesWritten)
        *numBytesWritten = 0;
    if (!buffer || numBytes < 0 || !m_file.isWritable())
        return kResultFalse;
    const qint64 n = m_file.write(static_cast<const char *>(buffer), numBytes);
    if (n < 0)
        return kResultFalse;
    if (numBytesWritten)
        *numBytesWritten = static_cast<int32_t>(n);
    return n == numBytes ? kResultOk : kResultFalse;
}

int32_t FileBStream::seek(int64_t pos, int32_t mode, int64_t *result)
{
    int64_t target = 0;
    if (!seekTarget(pos, mode, m_file.pos(), m_file.size(), &target))
        return kResultFalse;
    if (target < 0 || !m_file.isOpen() || !m_file.seek(target))
        return kResultFalse;
    if (result)
        *result = m_file.pos();
    return kResultOk;
}

int32_t FileBStream::tell(int64_t *pos)
{
    if (!pos || !m_file.isOpen())
        return kResultFalse;
    *pos = m_file.pos();
    return kResultOk;
}
