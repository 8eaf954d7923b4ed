#include "ORVChStrip/Filter/CompressorCurve.h"

#include <algorithm>
#include <cmath>

#include "Interfaces/ChannelStripValueTables.h"

namespace {

// The drive below which the threshold slides from 0 dB towards T - drive.
constexpr double DriveBlendDb = 6.2;

} // namespace

double CompressorCurve::ratio(int ratioIndex)
{
    if (ratioIndex < 0 || ratioIndex >= ChannelStripTables::RatioCount)
        return 0.0;
    return ChannelStripTables::RatioTable[ratioIndex];
}

double CompressorCurve::effectiveThreshold(double thresholdDb, double driveDb)
{
    double te;
    if (thresholdDb >= 0.0 || driveDb > DriveBlendDb)
        te = thresholdDb - driveDb;
    else
        te = driveDb * (thresholdDb - driveDb) / DriveBlendDb;
    return std::clamp(te, MinEffectiveThreshold, 0.0);
}

double CompressorCurve::gainFactor(double over, double slope, int knee)
{
    switch (knee) {
    case Hard: return over > 0.0 ? std::pow(10.0, over * slope) : 1.0;
    case Medium:
        if (over > 0.5)
            return std::pow(10.0, over * slope);
        if (over > -0.5)
            return std::pow(10.0, (over + 0.5) * (over + 0.5) * 0.5 * slope);
        return 1.0;
    case Soft:
        if (over > 1.3)
            return std::pow(10.0, over * slope);
        if (over > -1.3)
            return std::pow(10.0, (over + 1.3) * (over + 1.3) * 0.19231 * slope);
        return 1.0;
    default: return 0.0;
    }
}

double CompressorCurve::gain(double inputDb, double effectiveThresholdDb, double slope, int knee)
{
    const double over = std::max(inputDb - effectiveThresholdDb, -30.0) / 20.0;
    // At a threshold of exactly 0 dB there is nothing to soften.
    const int kneeInForce = effectiveThresholdDb == 0.0 ? Hard : knee;
    return gainFactor(over, slope, kneeInForce);
}

double CompressorCurve::outputLevel(double inputDb, double effectiveThresholdDb, double slope, int knee)
{
    return inputDb + 20.0 * std::log10(gain(inputDb, effectiveThresholdDb, slope, knee));
}

double CompressorCurve::outputLevel(double inputDb, const Settings &settings)
{
    const double te = effectiveThreshold(threshold(settings.thresholdOffset), drive(settings.drive));
    return outputLevel(inputDb, te, 1.0 / ratio(settings.ratioIndex) - 1.0, settings.knee);
}
