#pragma once

#include "Common/Widgets/MeterController.h"

namespace CommonController_MemAPI {

// Shows the compressor's gain reduction. Readings are the gain change in
// tenths of a decibel (0 = none, -60 = 6 dB of reduction); the bar hangs
// from the top of a rounded track and grows downward as the reduction
// grows. The scale runs from 0 dB at the top over the segment positions of
// the meter type (Minus225 by default: -3, -6, -9, -12 and -18 dB sit at
// about 16 %, 35 %, 55 %, 68 % and 87 % of the height). Nothing lights at 0
// or above; there is no over lamp.
class RoundGainReductionMeterController : public MeterController
{
    Q_OBJECT
    Q_PROPERTY(int meterWidth READ meterWidth WRITE setMeterWidth)

public:
    explicit RoundGainReductionMeterController(QWidget *parent = nullptr);

    int meterWidth() const { return m_meterWidth; }
    void setMeterWidth(int width);

    // The share of the height the reduction bar covers, 0 to 1.
    double reductionDepth(int value) const;
    QRectF scaledTrackRect() const;

protected:
    void drawBackground(QPainter *painter) override;
    void drawOver(QPainter *) override { }
    void drawMeter(QPainter *painter) override;
    QRectF changedArea(const DisplayState &from, const DisplayState &to) const override;

private:
    int m_meterWidth = 4;
};

} // namespace CommonController_MemAPI
