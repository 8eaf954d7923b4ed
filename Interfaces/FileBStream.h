#pragma once

#include <QFile>
#include <QString>

#include "IBStream.h"

// An IBStream over a file. open() fails cleanly; reads and writes report the
// bytes actually moved, so a caller can tell a short read from a full one.
class FileBStream : public IBStream
{
public:
    FileBStream() = default;
    virtual ~FileBStream() = default;

    bool open(const QString &path, QIODevice::OpenMode mode)
    {
        m_file.setFileName(path);
        return m_file.open(mode);
    }
    void close() { m_file.close(); }
    QString errorString() const { return m_file.errorString(); }
    QFile &file() { return m_file; }

    int32_t queryInterface(const char *, void **obj) override
    {
        if (obj)
            *obj = nullptr;
        return kNoInterface;
    }
    uint32_t addRef() override { return ++m_refCount; }
    uint32_t release() override
    {
        if (--m_refCount == 0) {
            delete this;
            return 0;
        }
        return m_refCount;
    }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override
    {
        if (numBytesRead)
            *numBytesRead = 0;
        if (!buffer || numBytes < 0 || !m_file.isReadable())
            return kResultFalse;
        const qint64 n = m_file.read(static_cast<char *>(buffer), numBytes);
        if (n < 0)
            return kResultFalse;
        if (numBytesRead)
            *numBytesRead = static_cast<int32_t>(n);
        return kResultOk;
    }

    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override
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

    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override
    {
        qint64 target;
        switch (mode) {
        case kIBSeekSet: target = pos; break;
        case kIBSeekCur: target = m_file.pos() + pos; break;
        case kIBSeekEnd: target = m_file.size() + pos; break;
        default: return kResultFalse;
        }
        if (target < 0 || !m_file.seek(target))
            return kResultFalse;
        if (result)
            *result = m_file.pos();
        return kResultOk;
    }

    int32_t tell(int64_t *pos) override
    {
        if (!pos || !m_file.isOpen())
            return kResultFalse;
        *pos = m_file.pos();
        return kResultOk;
    }

private:
    QFile m_file;
    uint32_t m_refCount = 1;
};
