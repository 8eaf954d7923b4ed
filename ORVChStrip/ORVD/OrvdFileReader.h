#pragma once

#include <QFile>

// Reads one morph data file whole. The file is opened at construction and
// closed with the reader.
class OrvdFileReader
{
public:
    explicit OrvdFileReader(const QString &path);

    OrvdFileReader(const OrvdFileReader &) = delete;
    OrvdFileReader &operator=(const OrvdFileReader &) = delete;

    bool IsOpen() const { return m_file.isOpen(); }
    // The file's length, or 0 if it is not open.
    qint64 GetSize() const;
    // Reads up to `count` bytes from the start; returns the bytes actually
    // read, or 0 if the file is not open.
    qint64 Read(void *buffer, qint64 count);

private:
    QFile m_file;
};
