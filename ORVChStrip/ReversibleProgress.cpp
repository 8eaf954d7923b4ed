#include "ORVChStrip/ReversibleProgress.h"

#include <QTimerEvent>
#include <algorithm>

namespace {
constexpr double Step = 0.1;
} // namespace

ReversibleProgress::ReversibleProgress(int intervalMs, double reversalHeadStart, QObject *parent)
    : QObject(parent)
    , m_intervalMs(intervalMs)
    , m_reversalHeadStart(reversalHeadStart)
{ }

double ReversibleProgress::visibleFraction() const
{
    if (!isRunning())
        return m_settledOpen ? 1.0 : 0.0;
    return std::clamp(m_opening ? m_progress : 1.0 - m_progress, 0.0, 1.0);
}

void ReversibleProgress::open()
{
    request(true);
}

void ReversibleProgress::close()
{
    request(false);
}

void ReversibleProgress::request(bool opening)
{
    if (isRunning()) {
        if (m_opening == opening)
            return;
        m_opening = opening;
        m_progress = 1.0 - m_progress + m_reversalHeadStart;
        if (m_progress >= 1.0) {
            finish();
            return;
        }
        emit changed(visibleFraction());
        return;
    }
    if (m_settledOpen == opening)
        return;
    m_opening = opening;
    m_progress = Step;
    m_timer.start(m_intervalMs, Qt::CoarseTimer, this);
    emit changed(visibleFraction());
}

void ReversibleProgress::advance()
{
    if (!isRunning())
        return;
    m_progress += Step;
    // Ten steps of 0.1 add up to slightly less than 1.
    if (m_progress >= 1.0 - 1e-9) {
        finish();
        return;
    }
    emit changed(visibleFraction());
}

void ReversibleProgress::settle(bool opened)
{
    m_timer.stop();
    m_opening = opened;
    m_settledOpen = opened;
    m_progress = 1.0;
}

void ReversibleProgress::finish()
{
    m_timer.stop();
    m_settledOpen = m_opening;
    emit changed(visibleFraction());
    emit finished(m_settledOpen);
}

void ReversibleProgress::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId())
        advance();
    else
        QObject::timerEvent(event);
}
