#pragma once

#include <cstdint>
#include <vector>

#include "Common/ComponentBase.h"

// A minimal component that carries a preset's state bytes in transit: setState
// takes them in, getState hands them out unchanged. setState takes all of the
// stream or nothing: when the stream tells its length, a read that stops short
// of it (a file that shrank, a failed read) is refused rather than carried
// across as a truncated state. Reference-counted; create with new and give
// back with release().
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
