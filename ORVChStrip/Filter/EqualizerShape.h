#pragma once

// The fixed shape arguments of the strip's equaliser bands, for
// FILTER2PEQ's setters: everything that draws or runs the equaliser passes
// these, so a drawn curve and a processed band are the same filter.
namespace EqualizerShape {

inline constexpr double PeakingWidthExp = 0.7;
inline constexpr double ShelfSlopeExp = 0.32;
inline constexpr double ReferenceGain = 18.0;

} // namespace EqualizerShape
