#include "Common/Widgets/MeterConverter.h"

#include <algorithm>
#include <iterator>

namespace CommonController_MemAPI {

const int32_t MeterConverter::seg30_dB_Tbl[30]
    = { -600, -560, -520, -480, -440, -400, -360, -330, -300, -270, -240, -210, -180, -160, -140, -130, -120,
          -110, -100, -90, -80, -70, -60, -50, -40, -30, -20, -10, 0, 8191 };

// This table's sentinel is 131071, unlike the others'.
const int32_t MeterConverter::seg37_dB_Tbl[37] = { -600, -560, -520, -480, -450, -420, -390, -360, -340, -320,
    -300, -280, -260, -240, -225, -210, -195, -180, -170, -160, -150, -140, -130, -120, -110, -100, -90, -80,
    -70, -60, -50, -40, -30, -20, -10, 0, 131071 };

const int32_t MeterConverter::seg49_dB_Tbl[49]
    = { -480, -460, -440, -420, -405, -390, -375, -360, -345, -330, -315, -300, -285, -270, -255, -240, -225,
          -210, -195, -180, -170, -160, -150, -140, -130, -120, -110, -100, -95, -90, -85, -80, -75, -70, -65,
          -60, -55, -50, -45, -40, -35, -30, -25, -20, -15, -10, -5, 0, 8191 };

const int32_t MeterConverter::seg53_dB_Tbl[53]
    = { -600, -560, -520, -500, -480, -460, -440, -420, -405, -390, -375, -360, -345, -330, -315, -300, -285,
          -270, -255, -240, -225, -210, -195, -180, -170, -160, -150, -140, -130, -120, -110, -100, -95, -90,
          -85, -80, -75, -70, -65, -60, -55, -50, -45, -40, -35, -30, -25, -20, -15, -10, -5, 0, 8191 };

const uint16_t MeterConverter::seg30_lvl_Tbl[30]
    = { 2026, 2435, 2845, 3255, 3664, 4073, 4483, 4790, 5098, 5404, 5712, 6019, 6326, 6531, 6736, 6838, 6941,
          7043, 7145, 7247, 7350, 7453, 7555, 7657, 7760, 7862, 7965, 8067, 8169, 32768 };

const uint16_t MeterConverter::seg37_lvl_Tbl[37] = { 2026, 2435, 2845, 3255, 3562, 3869, 4176, 4483, 4688,
    4893, 5098, 5302, 5507, 5712, 5865, 6019, 6173, 6326, 6429, 6531, 6633, 6736, 6838, 6941, 7043, 7145,
    7247, 7350, 7453, 7555, 7657, 7760, 7862, 7965, 8067, 8169, 32768 };

const uint16_t MeterConverter::seg49_lvl_Tbl[49]
    = { 3255, 3459, 3664, 3869, 4022, 4176, 4329, 4483, 4637, 4790, 4944, 5098, 5251, 5404, 5558, 5712, 5865,
          6019, 6173, 6326, 6429, 6531, 6633, 6736, 6838, 6941, 7043, 7145, 7196, 7247, 7299, 7350, 7401,
          7453, 7504, 7555, 7606, 7657, 7708, 7760, 7811, 7862, 7913, 7965, 8016, 8067, 8118, 8169, 32768 };

const uint16_t MeterConverter::seg53_lvl_Tbl[53] = { 2026, 2435, 2845, 3050, 3255, 3459, 3664, 3869, 4022,
    4176, 4329, 4483, 4637, 4790, 4944, 5098, 5251, 5404, 5558, 5712, 5865, 6019, 6173, 6326, 6429, 6531,
    6633, 6736, 6838, 6941, 7043, 7145, 7196, 7247, 7299, 7350, 7401, 7453, 7504, 7555, 7606, 7657, 7708,
    7760, 7811, 7862, 7913, 7965, 8016, 8067, 8118, 8169, 32768 };

namespace {

// Entries at or below `reading` in an ascending table.
template<typename T, std::size_t N> unsigned short countAtOrBelow(const T (&table)[N], T reading)
{
    return static_cast<unsigned short>(std::upper_bound(std::begin(table), std::end(table), reading) - table);
}

} // namespace

bool MeterConverter::convertDB2SegNum(unsigned short segCount, unsigned int value, unsigned short &segNum)
{
    const auto reading = static_cast<int32_t>(value);
    switch (segCount) {
    case 30: segNum = countAtOrBelow(seg30_dB_Tbl, reading); return true;
    case 37: segNum = countAtOrBelow(seg37_dB_Tbl, reading); return true;
    case 49: segNum = countAtOrBelow(seg49_dB_Tbl, reading); return true;
    case 53: segNum = countAtOrBelow(seg53_dB_Tbl, reading); return true;
    default: return false;
    }
}

bool MeterConverter::convertLevel2SegNum(unsigned short segCount, unsigned int level, unsigned short &segNum)
{
    const auto reading = static_cast<uint16_t>(level);
    switch (segCount) {
    case 30: segNum = countAtOrBelow(seg30_lvl_Tbl, reading); return true;
    case 37: segNum = countAtOrBelow(seg37_lvl_Tbl, reading); return true;
    case 49: segNum = countAtOrBelow(seg49_lvl_Tbl, reading); return true;
    case 53: segNum = countAtOrBelow(seg53_lvl_Tbl, reading); return true;
    default: return false;
    }
}

} // namespace CommonController_MemAPI
