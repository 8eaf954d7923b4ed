#pragma once

// The channel strip's parameter keys in the order the saved state stores
// them, as the host's model names them.
namespace ORVChStripParameters {

// The generic state block: the first ParameterListCount keys of
// ParameterListEx. Entry 22 is an empty slot (a null key) that still takes
// its 4 bytes in the state stream.
inline constexpr int ParameterListCount = 22;
extern const char *const *const ParameterList;

// ParameterList followed by the four band switches.
inline constexpr int ParameterListExCount = 26;
extern const char *const ParameterListEx[ParameterListExCount];

// The morph table's columns. Note the spellings: "fx_mrpeq_lsvfrq" against
// "fx_eq_lsvfreq", "fx_mrpeq_mdfrq" against "fx_eq_midfrq".
inline constexpr int OrvaneDataParameterCount = 17;
extern const char *const OrvaneDataParameterList[OrvaneDataParameterCount];

inline constexpr int MorphSystemNameLength = 256;
// The nine morph points of channel ch live on channels ch * 9 to ch * 9 + 8.
inline constexpr int MorphPointCount = 9;

} // namespace ORVChStripParameters
