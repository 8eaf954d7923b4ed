#pragma once

#include "Interfaces/IComponent.h"

// What every component of this plug-in shares: reference counting, no further
// interfaces, and no processing side (bus, routing and activation calls answer
// "not implemented"). Subclasses add getState and setState.
class ComponentBase : public IComponent {
public:
    explicit ComponentBase(uint32_t initialReferences)
        : m_refCount(initialReferences)
    {
    }
    virtual ~ComponentBase() = default;

    ComponentBase(const ComponentBase &) = delete;
    ComponentBase &operator=(const ComponentBase &) = delete;

    // Answers no interface for every id.
    int32_t queryInterface(const char *iid, void **obj) override;
    uint32_t addRef() override;
    // Destroys the component when the count reaches 0.
    uint32_t release() override;

    int32_t initialize(FUnknown *context) override;
    int32_t terminate() override;
    int32_t getControllerClassId(char *classId) override;
    int32_t setIoMode(int32_t mode) override;
    int32_t getBusCount(int32_t type, int32_t direction) override;
    int32_t getBusInfo(int32_t type, int32_t direction, int32_t index, BusInfo &bus) override;
    int32_t getRoutingInfo(RoutingInfo &inInfo, RoutingInfo &outInfo) override;
    int32_t activateBus(int32_t type, int32_t direction, int32_t index, unsigned char state) override;
    int32_t setActive(unsigned char state) override;

private:
    uint32_t m_refCount;
};
