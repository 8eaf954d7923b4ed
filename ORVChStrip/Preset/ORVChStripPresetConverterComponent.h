#pragma once

#include <cstdint>
#include <vector>

#include "Common/ComponentBase.h"

// A minimal component that carries a preset's state bytes in transit: setState
// takes them in, getState hands them out unchanged. Reference-counted; create
// with new and give back with release().
class ORVChStripPresetConverterComponent : public ComponentBase
{
public:
    ORVChStripPresetConverterComponent()
        : ComponentBase(1)
    { }

    const std::vector<uint8_t> &state() const { return m_state; }

    int32_t setState(IBStream *state) override;
    int32_t getState(IBStream *state) override;

private:
    std::vector<uint8_t> m_state;
};
