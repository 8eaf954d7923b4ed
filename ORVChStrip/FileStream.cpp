#include "ORVChStrip/FileStream.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <cstdlib>
#define orv_fseek _fseeki64
#define orv_ftell _ftelli64
#else
#include <sys/types.h>
#define orv_fseek fseeko
#define orv_ftell ftello
#endif

FileStream *FileStream::open(const char *path, const char *mode)
{
    if (!path || !mode)
        return nullptr;
    return open(QFile::decodeName(path), mode);
}

FileStream *FileStream::open(const QString &path, const char *mode)
{
    if (path.isEmpty() || !mode)
        return nullptr;
#ifdef Q_OS_WIN
    FILE *file = _wfopen(reinterpret_cast<const wchar_t *>(path.utf16()),
        reinterpret_cast<const wchar_t *>(QString::fromLatin1(mode).utf16()));
#else
    FILE *file = std::fopen(QFile::encodeName(path).constData(), mode);
#endif
    return file ? new FileStream(file) : nullptr;
}

FileStream::FileStream(FILE *file)
    : m_file(file)
{ }

FileStream::~FileStream()
{
    if (m_file)
        std::fclose(m_file);
}

int32_t FileStream::queryInterface(const char *, void **obj)
{
    if (obj)
        *obj = nullptr;
    return kNoInterface;
}

uint32_t FileStream::addRef()
{
    return ++m_refCount;
}

uint32_t FileStream::release()
{
    if (--m_refCount == 0) {
        delete this;
        return 0;
    }
    return m_refCount;
}

int32_t FileStream::read(void *buffer, int32_t numBytes, int32_t *numBytesRead)
{
    if (numBytesRead)
        *numBytesRead = 0;
    if (!buffer || numBytes < 0)
        return kResultFalse;
    const size_t n = std::fread(buffer, 1, size_t(numBytes), m_file);
    if (numBytesRead)
        *numBytesRead = static_cast<int32_t>(n);
    // A short read at the end of the file is not an error; the count tells.
    return std::ferror(m_file) ? kResultFalse : kResultOk;
}

int32_t FileStream::write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten)
{
    if (numBytesWritten)
        *numBytesWritten = 0;
    if (!buffer || numBytes < 0)
        return kResultFalse;
    const size_t n = std::fwrite(buffer, 1, size_t(numBytes), m_file);
    if (numBytesWritten)
        *numBytesWritten = static_cast<int32_t>(n);
    return n == size_t(numBytes) ? kResultOk : kResultFalse;
}

int32_t FileStream::seek(int64_t pos, int32_t mode, int64_t *result)
{
    int whence;
    switch (mode) {
    case kIBSeekSet: whence = SEEK_SET; break;
    case kIBSeekCur: whence = SEEK_CUR; break;
    case kIBSeekEnd: whence = SEEK_END; break;
    default: return kResultFalse;
    }
    if (orv_fseek(m_file, pos, whence) != 0)
        return kResultFalse;
    if (result)
        *result = static_cast<int64_t>(orv_ftell(m_file));
    return kResultOk;
}

int32_t FileStream::tell(int64_t *pos)
{
    if (!pos)
        return kResultFalse;
    const int64_t position = static_cast<int64_t>(orv_ftell(m_file));
    if (position < 0)
        return kResultFalse;
    *pos = position;
    return kResultOk;
}
