#pragma once

#include <cstdint>
#include <vector>

#include "Interfaces/IComponent.h"

// A minimal component that carries a preset's state bytes in transit: setState
// takes them in, getState hands them out unchanged. Reference-counted; create
// with new and give back with release().
class ORVChStripPresetConverterComponent : public IComponent {
public:
    ORVChStripPresetConverterComponent() = default;
    virtual ~ORVChStripPresetConverterComponent() = default;

    const std::vector<uint8_t> &state() const { return m_state; }

    int32_t queryInterface(const char *iid, void **obj) override;
    uint32_t addRef() override;
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
    int32_t setState(IBStream *state) override;
    int32_t getState(IBStream *state) override;

private:
    std::vector<uint8_t> m_state;
    uint32_t m_refCount = 1;
};
