#include "Common/Widgets/RoundGainReductionMeterController.h"

#include <QPainter>
#include <algorithm>

#include "Common/Widgets/RoundMeterController.h"

namespace CommonController_MemAPI {

RoundGainReductionMeterController::RoundGainReductionMeterController(QWidget *parent)
    : MeterController(parent)
{
    setAccessibleName(tr("Gain reduction meter"));
    setMeterType(Minus225);
    setMeterOverHeight(0);
    setMeterOverMargin(0);
    setDefaultValue(0);
    setValue(0); // no reduction until the host says otherwise
}

void RoundGainReductionMeterController::setMeterWidth(int width)
{
    width = std::max(0, width);
    if (width == m_meterWidth)
        return;
    m_meterWidth = width;
    refresh();
}

double RoundGainReductionMeterController::reductionDepth(int value) const
{
    return 1.0 - convertNormalized(std::min(value, 0));
}

QRectF RoundGainReductionMeterController::scaledTrackRect() const
{
    const QRectF bar = scaledMeterRect();
    const double width = m_meterWidth * scale();
    return QRectF(bar.center().x() - width / 2.0, bar.top(), width, bar.height());
}

void RoundGainReductionMeterController::drawBackground(QPainter *painter)
{
    fillRoundBar(painter, scaledTrackRect(), palette().brush(colorGroup(), QPalette::AlternateBase));
}

void RoundGainReductionMeterController::drawMeter(QPainter *painter)
{
    const double depth = reductionDepth(value());
    if (depth <= 0.0)
        return;
    const QRectF track = scaledTrackRect();
    const double bottom = levelY(1.0 - depth);
    fillRoundBar(painter, QRectF(track.left(), track.top(), track.width(), bottom - track.top()),
        palette().brush(colorGroup(), QPalette::Mid));
}

QRectF RoundGainReductionMeterController::changedArea(const DisplayState &from, const DisplayState &to) const
{
    const QRectF area = MeterController::changedArea(from, to);
    if (!area.isValid() || area == QRectF(rect()))
        return area;
    const double cap = m_meterWidth * scale();
    return area.adjusted(0, -cap, 0, cap);
}

} // namespace CommonController_MemAPI
