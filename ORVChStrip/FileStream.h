#pragma once

#include <QString>
#include <cstdio>

#include "Interfaces/IBStream.h"

// An IBStream over a C file. Instances are reference-counted and created only
// through open(), which returns null when the file does not open.
class FileStream : public IBStream
{
public:
    // mode is an fopen() mode such as "rb" or "wb".
    static FileStream *open(const char *path, const char *mode);
    static FileStream *open(const QString &path, const char *mode);

    int32_t queryInterface(const char *iid, void **obj) override;
    uint32_t addRef() override;
    uint32_t release() override;

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) override;
    int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) override;
    int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) override;
    int32_t tell(int64_t *pos) override;

private:
    explicit FileStream(FILE *file);
    virtual ~FileStream();

    FILE *m_file = nullptr;
    uint32_t m_refCount = 1;
};
