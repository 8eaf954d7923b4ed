#include "ORVChStrip/MorphMatchMonitor.h"

#include <QTimerEvent>

#include "Common/ParameterLookup.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripParameters.h"

namespace {
constexpr int CoalesceMs = 10;
} // namespace

MorphMatchMonitor::MorphMatchMonitor(QObject *parent)
    : QObject(parent)
{ }

void MorphMatchMonitor::attach(const ParameterLookup &lookup, IMemAPI *memAPI, unsigned short ch)
{
    detach();
    if (!memAPI)
        return;
    m_pMemAPI = memAPI;
    m_ch = ch;
    for (const char *key : ORVChStripParameters::MorphingParameterList) {
        unsigned short id = 0;
        if (lookup.parameter(key, &id))
            m_ids.push_back(id);
    }
}

void MorphMatchMonitor::detach()
{
    m_pMemAPI = nullptr;
    m_ids.clear();
}

void MorphMatchMonitor::request()
{
    if (m_pending)
        return;
    m_pending = true;
    m_timer.start(CoalesceMs, Qt::PreciseTimer, this);
}

void MorphMatchMonitor::compareNow()
{
    m_timer.stop();
    m_pending = false;
    ++m_comparisons;
    setMatches(compare());
}

void MorphMatchMonitor::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    m_timer.stop();
    if (m_pending)
        compareNow();
}

// The base value is what the morph position gives; a difference means the
// user has turned the parameter away from it since.
bool MorphMatchMonitor::compare() const
{
    if (!m_pMemAPI)
        return true;
    for (unsigned short id : m_ids) {
        int base = 0;
        int value = 0;
        if (m_pMemAPI->getBaseValue(id, m_ch, &base) >= 0 && m_pMemAPI->getValue(id, m_ch, &value) >= 0
            && base != value)
            return false;
    }
    return true;
}

void MorphMatchMonitor::setMatches(bool matches)
{
    if (m_matches == matches)
        return;
    m_matches = matches;
    emit matchChanged(matches);
}
