#include "ORVChStrip/Chunk/RefCountedBStream.h"

int32_t RefCountedBStream::queryInterface(const char *, void **obj)
{
    if (obj)
        *obj = nullptr;
    return kNoInterface;
}

uint32_t RefCountedBStream::addRef()
{
    return ++m_refCount;
}

uint32_t RefCountedBStream::release()
{
    if (--m_refCount == 0) {
        delete this;
        return 0;
    }
    return m_refCount;
}

bool RefCountedBStream::seekTarget(
    int64_t pos, int32_t mode, int64_t position, int64_t length, int64_t *target)
{
    switch (mode) {
    case kIBSeekSet: *target = pos; return true;
    case kIBSeekCur: *target = position + pos; return true;
    case kIBSeekEnd: *target = length + pos; return true;
    default: return false;
    }
}
