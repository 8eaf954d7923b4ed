#include "ORVChStrip/Filter/CompressorCurve.h"

#include <algorithm>
#include <cmath>

#include "Common/VectorRegisterState.h"
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

QPolygonF CompressorCurve::outline(const QSizeF &size, int devicePixelRatio, const Settings &settings)
{
    clearUpperVectorRegisters();
    const double w = size.width();
    const double h = size.height();
    const int p = std::max(devicePixelRatio, 1);
    const double outside = 2.0 * p + 1.0;
    const double te = effectiveThreshold(threshold(settings.thresholdOffset), drive(settings.drive));
    const double slope = 1.0 / ratio(settings.ratioIndex) - 1.0;
    // Run a little past both ends so that the clipped curve reaches the edges.
    const double extent = std::max(w, h);
    const double delta = extent > 0.0 ? 2.0 * p * -MinLevelDb / (extent * p) : 0.0;

    QPolygonF points;
    const int steps = static_cast<int>(std::floor((-MinLevelDb + 2.0 * delta) / StepDb + 1e-9)) + 1;
    points.reserve(steps + 2);
    points.append(QPointF(w + outside, h + outside));
    const double start = MinLevelDb - delta;
    for (int i = 0; i < steps; ++i) {
        const double x = start + i * StepDb;
        const double y = outputLevel(x, te, slope, settings.knee);
        points.append(QPointF(w + w * x / -MinLevelDb, -h * y / -MinLevelDb));
    }
    points.append(QPointF(w + outside, h + outside));
    return points;
}
