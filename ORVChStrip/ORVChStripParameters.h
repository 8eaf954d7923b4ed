#pragma once

#include "ORVChStrip/Chunk/StateParameterLists.h"

// The channel strip's parameter keys, as the host's model names them: the
// saved state's lists and what the editor adds to them.
namespace ORVChStripParameters {

// The parameters that the morph knob moves.
inline constexpr int MorphingParameterCount = 15;
extern const char *const MorphingParameterList[MorphingParameterCount];

} // namespace ORVChStripParameters
