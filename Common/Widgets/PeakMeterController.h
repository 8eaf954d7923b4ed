#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>

#include "Common/Widgets/MeterController.h"

namespace CommonController_MemAPI {

// A bar meter with a peak mark: a line of height meterPeakHeight that holds
// the highest recent reading for peakHoldTime milliseconds and then falls at
// peakFallRate decibels per second until it meets the bar again.
class PeakMeterController : public MeterController
{
    Q_OBJECT
    Q_PROPERTY(int meterPeakHeight READ meterPeakHeight WRITE setMeterPeakHeight)
    Q_PROPERTY(int peakHoldTime READ peakHoldTime WRITE setPeakHoldTime)
    Q_PROPERTY(int peakFallRate READ peakFallRate WRITE setPeakFallRate)

public:
    explicit PeakMeterController(QWidget *parent = nullptr);

    int meterPeakHeight() const { return m_peakHeight; }
    void setMeterPeakHeight(int height);
    int peakHoldTime() const { return m_holdTime; }
    void setPeakHoldTime(int milliseconds);
    int peakFallRate() const { return m_fallRate; }
    void setPeakFallRate(int decibelsPerSecond);

    // The reading the mark stands at, in tenths of a decibel.
    int peakValue() const { return m_peakValue; }
    // Drops the mark to the current reading.
    void resetPeak();

protected:
    void valueChanged() override;
    void drawMeter(QPainter *painter) override;
    DisplayState displayState() const override;
    QRectF changedArea(const DisplayState &from, const DisplayState &to) const override;
    void timerEvent(QTimerEvent *event) override;

private:
    // Moves the mark to where the reading and the clock put it.
    void followPeak();
    QRectF peakRect(int segments) const;

    int m_peakHeight = 2;
    int m_holdTime = 1500;
    int m_fallRate = 20;
    int m_peakValue = SilenceValue;
    int m_fallFrom = SilenceValue;
    QElapsedTimer m_holdClock; // since the mark was last raised
    QElapsedTimer m_fallClock; // since the mark last fell
    QBasicTimer m_fallTimer;   // keeps the mark moving when readings stop
};

} // namespace CommonController_MemAPI
