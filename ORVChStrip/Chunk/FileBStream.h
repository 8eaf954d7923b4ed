#pragma once

#include <QFile>
#include <QString>

#include "ORVChStrip/Chunk/RefCountedBStream.h"

// An IBStream over a file. open() fails cleanly; reads and writes report the
// bytes actually moved, so a caller can tell a short read from a full one.
class FileBStream : public RefCountedBStream
{
public:
    FileBStream() = default;
    // A new stream over an opened file, or null when the file does not open.
    static FileBStream *openFile(const QString &path, QIODevice::OpenMode mode);

    bool open(const QString &path, QIODevice::OpenMode mode);
    void close() { m_file.close(); }
    QString errorString() const { return m_file.errorString(); }
    QFile &file() { return m_file; }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override;
    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override;
    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override;
    int32_t tell(int64_t *pos) override;

private:
    QFile m_file;
};
