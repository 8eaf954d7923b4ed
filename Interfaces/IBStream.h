#pragma once

#include "FUnknown.h"

// The plug-in standard's byte stream. Hosts hand one to getState/setState.
class IBStream : public FUnknown
{
public:
    enum SeekMode : int32_t { kIBSeekSet = 0, kIBSeekCur = 1, kIBSeekEnd = 2 };

    // Each call reports the bytes actually moved through the optional counter.
    virtual int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead = nullptr) = 0;
    virtual int32_t write(const void *buffer, int32_t numBytes, int32_t *numBytesWritten = nullptr) = 0;
    virtual int32_t seek(int64_t pos, int32_t mode, int64_t *result = nullptr) = 0;
    virtual int32_t tell(int64_t *pos) = 0;

protected:
    ~IBStream() = default;
};
