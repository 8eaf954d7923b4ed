#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>

class ORVChStripCompressorGraph;
class ParameterLookup;
class QObject;
class QTimerEvent;

// Places the compressor's operating point on its graph from two entries of
// the host's meter array: the side-chain detector level and the gain change.
// The point goes when no meters came for a while, as it would only show a
// stale level. The timeout is delivered to `timerOwner`, whose timerEvent()
// hands it to timeout(). It is not restarted by every meter array (thirty a
// second): when it fires while meters still come, it waits for the rest.
class CompressorOperatingPoint
{
public:
    // The point goes when no meters came for this long.
    static constexpr int TimeoutMs = 500;

    CompressorOperatingPoint(ORVChStripCompressorGraph *graph, QObject *timerOwner);

    // Finds the two meter entries of channel `ch`.
    void locate(const ParameterLookup &lookup, int ch);
    void show(const unsigned int *values, unsigned int count);
    // True when `event` is this timeout; the point is gone then.
    bool timeout(QTimerEvent *event);

private:
    ORVChStripCompressorGraph *m_pGraph;
    QObject *m_pTimerOwner;
    QBasicTimer m_timeout;
    QElapsedTimer m_sinceMeters; // since the last meter array
    int m_detectorIndex = -1;
    int m_reductionIndex = -1;
};
