#include "Common/Widgets/PeakMeterController.h"

#include <QPainter>
#include <QTimerEvent>
#include <algorithm>

namespace CommonController_MemAPI {

namespace {
constexpr int FallIntervalMs = 33;
}

PeakMeterController::PeakMeterController(QWidget *parent)
    : MeterController(parent)
{
    setAccessibleName(tr("Peak level meter"));
}

void PeakMeterController::setMeterPeakHeight(int height)
{
    height = std::max(0, height);
    if (height == m_peakHeight)
        return;
    m_peakHeight = height;
    refresh();
}

void PeakMeterController::setPeakHoldTime(int milliseconds)
{
    m_holdTime = std::max(0, milliseconds);
}

void PeakMeterController::setPeakFallRate(int decibelsPerSecond)
{
    m_fallRate = std::max(1, decibelsPerSecond);
}

void PeakMeterController::resetPeak()
{
    m_fallTimer.stop();
    m_peakValue = value();
    m_holdClock.start();
    refresh();
}

void PeakMeterController::followPeak()
{
    const int reading = value();
    if (reading >= m_peakValue || !m_holdClock.isValid()) {
        m_peakValue = reading;
        m_holdClock.start();
        m_fallClock.invalidate();
        m_fallTimer.stop();
        return;
    }
    if (!m_fallTimer.isActive())
        m_fallTimer.start(FallIntervalMs, Qt::CoarseTimer, this);
    if (m_holdClock.elapsed() < m_holdTime)
        return;
    if (!m_fallClock.isValid()) {
        m_fallFrom = m_peakValue;
        m_fallClock.start();
    }
    const qint64 fallen = m_fallClock.elapsed() * m_fallRate / 100;
    m_peakValue = int(std::max<qint64>(reading, m_fallFrom - fallen));
    if (m_peakValue == reading) {
        // The mark met the bar: it rides on it from here, held afresh.
        m_holdClock.start();
        m_fallClock.invalidate();
        m_fallTimer.stop();
    }
}

void PeakMeterController::valueChanged()
{
    followPeak();
    MeterController::valueChanged();
}

void PeakMeterController::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_fallTimer.timerId()) {
        MeterController::timerEvent(event);
        return;
    }
    followPeak();
    MeterController::valueChanged();
}

MeterController::DisplayState PeakMeterController::displayState() const
{
    DisplayState state = MeterController::displayState();
    state.extra = clampedSegments(m_peakValue);
    return state;
}

QRectF PeakMeterController::peakRect(int segments) const
{
    const double normalized = normalizedFromSegments(segments);
    if (normalized <= 0.0 || m_peakHeight <= 0)
        return QRectF();
    const QRectF bar = scaledMeterRect();
    const double y = levelY(normalized);
    return QRectF(bar.left(), y, bar.width(), std::min(m_peakHeight * scale(), bar.bottom() - y));
}

QRectF PeakMeterController::changedArea(const DisplayState &from, const DisplayState &to) const
{
    QRectF area = MeterController::changedArea(from, to);
    if (from.extra != to.extra) {
        for (const QRectF &mark : { peakRect(from.extra), peakRect(to.extra) }) {
            if (mark.isValid())
                area = area.isValid() ? area.united(mark) : mark;
        }
    }
    return area;
}

void PeakMeterController::drawMeter(QPainter *painter)
{
    painter->save();
    MeterController::drawMeter(painter);
    painter->restore();
    const QRectF mark = peakRect(clampedSegments(m_peakValue));
    if (!mark.isValid())
        return;
    const QPalette::ColorRole role = m_peakValue > 0 ? QPalette::Light
        : m_peakValue >= SplitValue                  ? QPalette::Mid
                                                     : QPalette::Dark;
    painter->fillRect(mark, palette().brush(colorGroup(), role));
}

} // namespace CommonController_MemAPI
