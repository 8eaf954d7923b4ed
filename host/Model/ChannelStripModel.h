#pragma once

#include "ParameterDefinition.h"

// The channel strip as the reference host simulates it: every parameter and
// meter key the editor uses, with ranges, defaults and units. This table is
// the one place where they are written down; `orvchstrip-host
// --list-parameters` prints it.
namespace ChannelStripModel {

inline constexpr unsigned short ChannelStripFxId = 32;
inline constexpr unsigned short ChannelStripFxKind = 1;
// Channels of the simulated console; morph points live on ch * 9 + point.
inline constexpr int ChannelCount = 16;
inline constexpr int MorphPointCount = 9;

QList<ParameterDefinition> parameters();
QList<MeterDefinition> meters();
QList<FxEntry> effects();

} // namespace ChannelStripModel
