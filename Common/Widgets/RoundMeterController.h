#pragma once

#include "Common/Widgets/MeterController.h"

namespace CommonController_MemAPI {

// A slim bar meter with rounded ends: a dim track of meterWidth, centred
// between the side margins, lit from the bottom in the meter's two zones,
// and a round over lamp (meterOverWidth wide) sitting in a dim socket of
// meterOverBackgroundWidth x meterOverBackgroundHeight, centred in the over
// row.
class RoundMeterController : public MeterController
{
    Q_OBJECT
    Q_PROPERTY(int meterWidth READ meterWidth WRITE setMeterWidth)
    Q_PROPERTY(int meterOverWidth READ meterOverWidth WRITE setMeterOverWidth)
    Q_PROPERTY(int meterOverBackgroundWidth READ meterOverBackgroundWidth WRITE setMeterOverBackgroundWidth)
    Q_PROPERTY(
        int meterOverBackgroundHeight READ meterOverBackgroundHeight WRITE setMeterOverBackgroundHeight)

public:
    explicit RoundMeterController(QWidget *parent = nullptr);

    int meterWidth() const { return m_meterWidth; }
    void setMeterWidth(int width);
    int meterOverWidth() const { return m_overWidth; }
    void setMeterOverWidth(int width);
    int meterOverBackgroundWidth() const { return m_overBackgroundWidth; }
    void setMeterOverBackgroundWidth(int width);
    int meterOverBackgroundHeight() const { return m_overBackgroundHeight; }
    void setMeterOverBackgroundHeight(int height);

    // The track of the bar, meterWidth wide, over the bar's height.
    QRectF scaledTrackRect() const;
    QRectF scaledOverBackgroundRect() const;
    QRectF scaledOverLampRect() const;

protected:
    void drawBackground(QPainter *painter) override;
    void drawOver(QPainter *painter) override;
    void drawMeter(QPainter *painter) override;
    QRectF changedArea(const DisplayState &from, const DisplayState &to) const override;

private:
    int m_meterWidth = 4;
    int m_overWidth = 4;
    int m_overBackgroundWidth = 8;
    int m_overBackgroundHeight = 8;
};

// Fills a rounded bar whose ends are half circles.
void fillRoundBar(QPainter *painter, const QRectF &rect, const QBrush &brush);

} // namespace CommonController_MemAPI
