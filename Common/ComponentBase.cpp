#include "Common/ComponentBase.h"

int32_t ComponentBase::queryInterface(const char *, void **obj)
{
    if (obj)
        *obj = nullptr;
    return kNoInterface;
}

uint32_t ComponentBase::addRef()
{
    return ++m_refCount;
}

uint32_t ComponentBase::release()
{
    // A component made with no reference is destroyed by its first release.
    if (m_refCount == 0 || --m_refCount == 0) {
        delete this;
        return 0;
    }
    return m_refCount;
}

int32_t ComponentBase::initialize(FUnknown *)
{
    return kNotImplemented;
}

int32_t ComponentBase::terminate()
{
    return kNotImplemented;
}

int32_t ComponentBase::getControllerClassId(char *)
{
    return kNotImplemented;
}

int32_t ComponentBase::setIoMode(int32_t)
{
    return kNotImplemented;
}

int32_t ComponentBase::getBusCount(int32_t, int32_t)
{
    return kNotImplemented;
}

int32_t ComponentBase::getBusInfo(int32_t, int32_t, int32_t, BusInfo &)
{
    return kNotImplemented;
}

int32_t ComponentBase::getRoutingInfo(RoutingInfo &, RoutingInfo &)
{
    return kNotImplemented;
}

int32_t ComponentBase::activateBus(int32_t, int32_t, int32_t, unsigned char)
{
    return kNotImplemented;
}

int32_t ComponentBase::setActive(unsigned char)
{
    return kNotImplemented;
}
