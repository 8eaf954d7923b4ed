#pragma once

#include "ORVChStrip/Chunk/StateParameterLists.h"

// The layout of the channel strip's saved state, all in one place.
//
// A state starts with the 4-byte data version and the generic block: one
// big-endian float per entry of ParameterList. From version "2621" on (the
// newer layout) a first channel-strip chunk follows as a "CHST" form (the
// 4-byte id and a 4-byte little-endian size, counted after the header),
// then the "prms" marker, a 4-byte float count and that many big-endian
// floats of ParameterListEx, the "chnk" marker, and the channel-strip chunk
// that a restore reads. In the older layout that chunk follows the generic
// block at once.
namespace SavedStateLayout {

inline constexpr char DataVersion[] = "3690";
inline constexpr char ParameterMarker[] = "prms";
inline constexpr char ChunkMarker[] = "chnk";
inline constexpr char FormMagic[] = "CHST";

inline constexpr int DataVersionSize = 4;
inline constexpr int MarkerSize = 4;
inline constexpr int CountSize = 4;
inline constexpr int GenericBlockOffset = DataVersionSize;
inline constexpr int GenericBlockSize = 4 * ORVChStripParameters::ParameterListCount;
inline constexpr int FirstChunkOffset = GenericBlockOffset + GenericBlockSize;
// Form headers of the chunk's 32-bit and 64-bit layouts.
inline constexpr int FormHeaderSize = 8;
inline constexpr int WideFormHeaderSize = 16;

// Versions below this ("2621" read as raw character codes) carry the chunk
// right after the generic block.
inline constexpr int FirstDoubleChunkVersion = 55949;

// b0 * 1000 + b1 * 100 + b2 * 10 + b3 over the raw byte values.
constexpr int versionNumber(const unsigned char *version)
{
    return version[0] * 1000 + version[1] * 100 + version[2] * 10 + version[3];
}

} // namespace SavedStateLayout
