#pragma once

#include "Interfaces/IBStream.h"

// What every byte stream here shares: a reference count that starts at one
// and deletes the stream when it reaches zero, and no further interfaces.
// Create streams with new and give them back with release().
class RefCountedBStream : public IBStream
{
public:
    RefCountedBStream() = default;
    virtual ~RefCountedBStream() = default;

    RefCountedBStream(const RefCountedBStream &) = delete;
    RefCountedBStream &operator=(const RefCountedBStream &) = delete;

    int32_t queryInterface(const char *iid, void **obj) override;
    uint32_t addRef() override;
    uint32_t release() override;

protected:
    // Where a seek of `pos` from `mode` lands, given the current position and
    // the length; false for an origin the stream does not know.
    static bool seekTarget(int64_t pos, int32_t mode, int64_t position, int64_t length, int64_t *target);

private:
    uint32_t m_refCount = 1;
};
