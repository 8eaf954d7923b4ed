#pragma once

// The compressor's static transfer curve: output level against input level,
// both from -60 to 0 dB, from the ratio, knee, threshold offset and drive
// parameters. Plain math, shared by the graph that draws the curve and by
// anything that models the compressor.
class CompressorCurve
{
public:
    enum Knee { Soft = 0, Medium = 1, Hard = 2 };

    struct Settings
    {
        int thresholdOffset = 100; // 0.2 dB steps from -20 dB
        int drive = 0;             // 0.2 dB steps
        int ratioIndex = 0;        // into RatioTable
        int knee = Soft;
    };

    static constexpr double MinLevelDb = -60.0;
    static constexpr double MinEffectiveThreshold = -54.0;
    static constexpr double StepDb = 0.1;

    static double threshold(int thresholdOffset) { return -20.0 + 0.2 * thresholdOffset; }
    static double drive(int drive) { return 0.2 * drive; }
    // 0 beyond the table, which makes the slope infinite.
    static double ratio(int ratioIndex);
    // Where compression starts once drive pushes the level up, in dB.
    static double effectiveThreshold(double thresholdDb, double driveDb);
    // The linear gain factor at `over` (level above the threshold in units of
    // 20 dB) for the slope 1/ratio - 1; a knee outside the three gives 0.
    static double gainFactor(double over, double slope, int knee);
    // The linear gain of the curve at an input level: outputLevel() is the
    // input plus this gain in dB. A processor applies it sample by sample.
    static double gain(double inputDb, double effectiveThresholdDb, double slope, int knee);
    static double outputLevel(double inputDb, double effectiveThresholdDb, double slope, int knee);
    static double outputLevel(double inputDb, const Settings &settings);
};
