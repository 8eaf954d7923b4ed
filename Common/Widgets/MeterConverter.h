#pragma once

#include <cstdint>

namespace CommonController_MemAPI {

// Turns a meter reading into a number of lit segments. Each table lists, in
// ascending order, the lowest reading at which a segment lights; the last
// entry is a sentinel above any real reading. The dB tables take signed
// tenths of a decibel, the level tables 16-bit linear levels.
class MeterConverter
{
public:
    static const int32_t seg30_dB_Tbl[30];
    static const int32_t seg37_dB_Tbl[37];
    static const int32_t seg49_dB_Tbl[49];
    static const int32_t seg53_dB_Tbl[53];
    static const uint16_t seg30_lvl_Tbl[30];
    static const uint16_t seg37_lvl_Tbl[37];
    static const uint16_t seg49_lvl_Tbl[49];
    static const uint16_t seg53_lvl_Tbl[53];

    // segNum = number of entries at or below the reading. False, leaving
    // segNum untouched, unless segCount is 30, 37, 49 or 53.
    static bool convertDB2SegNum(unsigned short segCount, unsigned int value, unsigned short &segNum);
    static bool convertLevel2SegNum(unsigned short segCount, unsigned int level, unsigned short &segNum);
};

} // namespace CommonController_MemAPI
