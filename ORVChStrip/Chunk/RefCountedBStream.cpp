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
