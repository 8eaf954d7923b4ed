#pragma once

// The channel strip's value tables: the physical value behind each integer
// step of the frequency, gain, Q and ratio parameters. The hardware, the host
// and the editor all count steps with these tables, so they live here.

namespace ChannelStripTables {

inline constexpr int FreqCount = 125;
inline constexpr double FreqTable[FreqCount] = { 16, 17, 18, 19, 20, 21.2, 22.4, 23.6, 25, 26.5, 28, 30, 31.5,
    33.5, 35.5, 37.5, 40, 42.5, 45, 47.5, 50, 53, 56, 60, 63, 67, 71, 75, 80, 85, 90, 95, 100, 106, 112, 118,
    125, 132, 140, 150, 160, 170, 180, 190, 200, 212, 224, 236, 250, 265, 280, 300, 315, 335, 355, 375, 400,
    425, 450, 475, 500, 530, 560, 600, 630, 670, 710, 750, 800, 850, 900, 950, 1000, 1060, 1120, 1180, 1250,
    1320, 1400, 1500, 1600, 1700, 1800, 1900, 2000, 2120, 2240, 2360, 2500, 2650, 2800, 3000, 3150, 3350,
    3550, 3750, 4000, 4250, 4500, 4750, 5000, 5300, 5600, 6000, 6300, 6700, 7100, 7500, 8000, 8500, 9000,
    9500, 10000, 10600, 11200, 11800, 12500, 13200, 14000, 15000, 16000, 17000, 18000, 19000, 20000 };

// -18.0 dB to +18.0 dB in steps of 0.1 dB; step 180 is 0 dB.
inline constexpr int GainCount = 361;
struct GainSteps
{
    double values[GainCount];
    constexpr GainSteps()
        : values()
    {
        for (int i = 0; i < GainCount; ++i)
            values[i] = -18.0 + 0.1 * i;
    }
    constexpr double operator[](int i) const { return values[i]; }
};
inline constexpr GainSteps GainTable;

// Twelve steps per doubling, rounded to two decimals.
inline constexpr int QCount = 61;
inline constexpr double QTable[QCount] = { 0.5, 0.53, 0.56, 0.59, 0.63, 0.67, 0.71, 0.75, 0.79, 0.84, 0.89,
    0.94, 1.0, 1.06, 1.12, 1.19, 1.26, 1.33, 1.41, 1.5, 1.59, 1.68, 1.78, 1.89, 2.0, 2.12, 2.24, 2.38, 2.52,
    2.67, 2.83, 3.0, 3.17, 3.36, 3.56, 3.78, 4.0, 4.24, 4.49, 4.76, 5.04, 5.34, 5.66, 5.99, 6.35, 6.73, 7.13,
    7.55, 8.0, 8.48, 8.98, 9.51, 10.08, 10.68, 11.31, 11.99, 12.7, 13.45, 14.25, 15.1, 16.0 };

// The last step (3000:1) stands for limiting.
inline constexpr int RatioCount = 121;
inline constexpr double RatioTable[RatioCount] = { 1.0, 1.05, 1.1, 1.15, 1.2, 1.25, 1.3, 1.35, 1.4, 1.45, 1.5,
    1.55, 1.6, 1.65, 1.7, 1.75, 1.8, 1.85, 1.9, 1.95, 2.0, 2.05, 2.1, 2.15, 2.2, 2.25, 2.3, 2.35, 2.4, 2.45,
    2.5, 2.55, 2.6, 2.65, 2.7, 2.75, 2.8, 2.85, 2.9, 2.95, 3.0, 3.05, 3.1, 3.15, 3.2, 3.25, 3.3, 3.35, 3.4,
    3.45, 3.5, 3.55, 3.6, 3.65, 3.7, 3.75, 3.8, 3.85, 3.9, 3.95, 4.0, 4.1, 4.2, 4.3, 4.4, 4.5, 4.6, 4.7, 4.8,
    4.9, 5.0, 5.2, 5.4, 5.6, 5.8, 6.0, 6.2, 6.4, 6.6, 6.8, 7.0, 7.5, 8.0, 8.5, 9.0, 9.5, 10.0, 11.0, 12.0,
    13.0, 14.0, 15.0, 16.0, 17.0, 18.0, 19.0, 20.0, 22.0, 24.0, 26.0, 28.0, 30.0, 32.0, 34.0, 36.0, 38.0,
    40.0, 45.0, 50.0, 55.0, 60.0, 65.0, 70.0, 80.0, 90.0, 100.0, 150.0, 200.0, 300.0, 500.0, 3000.0 };

} // namespace ChannelStripTables
