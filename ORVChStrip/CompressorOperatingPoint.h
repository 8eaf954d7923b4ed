#pragma once

#include <QBasicTimer>

class ORVChStripCompressorGraph;
class ParameterLookup;
class QObject;
class QTimerEvent;

// Places the compressor's operating point on its graph from two entries of
// the host's meter array: the side-chain detector level and the gain change.
// The point goes when no meters came for a while, as it would only show a
// stale level. The timeout is delivered to `timerOwner`, whose timerEvent()
// hands it to timeout().
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
    int m_detectorIndex = -1;
    int m_reductionIndex = -1;
};
