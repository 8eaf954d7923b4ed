#include "ORVChStrip/CompressorOperatingPoint.h"

#include <QTimerEvent>
#include <algorithm>

#include "Common/ParameterLookup.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"

CompressorOperatingPoint::CompressorOperatingPoint(ORVChStripCompressorGraph *graph, QObject *timerOwner)
    : m_pGraph(graph)
    , m_pTimerOwner(timerOwner)
{ }

void CompressorOperatingPoint::locate(const ParameterLookup &lookup, int ch)
{
    unsigned short index = 0;
    const auto meterCh = static_cast<unsigned short>(std::max(ch, 0));
    m_detectorIndex
        = lookup.meterIndex(ChannelStripKeys::SideChainMeter, meterCh, false, &index) ? index : -1;
    m_reductionIndex
        = lookup.meterIndex(ChannelStripKeys::GainReductionMeter, meterCh, false, &index) ? index : -1;
}

void CompressorOperatingPoint::show(const unsigned int *values, unsigned int count)
{
    if (!values || m_detectorIndex < 0 || m_reductionIndex < 0 || unsigned(m_detectorIndex) >= count
        || unsigned(m_reductionIndex) >= count)
        return;
    // Tenths of a dB; the gain change is negative while the compressor reduces.
    const double detectorDb = static_cast<int>(values[m_detectorIndex]) / 10.0;
    const double changeDb = static_cast<int>(values[m_reductionIndex]) / 10.0;
    m_pGraph->setOperatingPoint(detectorDb, detectorDb + changeDb);
    m_sinceMeters.start();
    if (!m_timeout.isActive())
        m_timeout.start(TimeoutMs, m_pTimerOwner);
}

bool CompressorOperatingPoint::timeout(QTimerEvent *event)
{
    if (event->timerId() != m_timeout.timerId())
        return false;
    const qint64 quiet = m_sinceMeters.elapsed();
    if (quiet < TimeoutMs) {
        m_timeout.start(int(TimeoutMs - quiet), m_pTimerOwner);
        return true;
    }
    m_timeout.stop();
    m_pGraph->clearOperatingPoint();
    return true;
}
