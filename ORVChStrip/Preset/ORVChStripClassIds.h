#pragma once

#include "Interfaces/FUID.h"

// The two class ids under which hosts file the channel strip's state and
// presets: the mono strip's and the stereo strip's. The editor reports the
// stereo id as its own, and converted presets are written under it.
namespace ORVChStripClassIds {

inline constexpr FUID Mono { 0x504C5863, 0x73744D75, 0x72206368, 0x20737472 };
inline constexpr FUID Stereo { 0x504C5863, 0x73745375, 0x72206368, 0x20737472 };

} // namespace ORVChStripClassIds
