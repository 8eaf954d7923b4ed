#pragma once

#include <QSize>
#include <QString>
#include <vector>

class QPainter;
class QPolygonF;
class EqualizerGraphGeometry;

// The live spectrum behind the equalizer graph's curves: the output's band
// levels as a softly filled area, the input's as a faint line, and a short
// peak hold above the output. Levels are drawn on the graph's own dB axis,
// moved up by DisplayOffsetDb so that programme material sits in view (a
// band at 0 dBFS touches the top, one at -48 dBFS the bottom), so a boost
// of 12 dB lifts the spectrum by as much as it lifts the curve.
//
// It keeps only the newest frame and the peaks; the graph paints it under
// its cached grid and curves, so a new frame repaints the plot alone.
class EqualizerSpectrumLayer
{
public:
    static constexpr double DisplayOffsetDb = 24.0;
    // A peak stays this long, then falls at PeakFallDbPerSecond.
    static constexpr int PeakHoldMs = 1000;
    static constexpr double PeakFallDbPerSecond = 24.0;

    // `count` levels in dB at SpectrumBands' centres (at most
    // SpectrumBands::Count are kept); `input` may be null.
    // `nowMs` is a monotonic clock that times the peak hold.
    void setFrame(const float *output, const float *input, int count, qint64 nowMs);
    void clear();
    bool isEmpty() const { return m_output.empty(); }

    // The band with the highest output level; -1 while empty.
    int loudestBand() const;
    // "Spectrum shown, highest band 1 kHz at -12 dB", or empty while empty.
    QString description() const;

    // Clipped to the plot of a graph of `size`; greys when not enabled.
    void paint(QPainter &painter, const QSize &size, bool enabled) const;

private:
    struct Peak
    {
        float level;
        qint64 heldSinceMs;
    };
    static QPolygonF curveThrough(const EqualizerGraphGeometry &g, const std::vector<float> &levels);

    std::vector<float> m_output;
    std::vector<float> m_input;
    std::vector<Peak> m_peaks;
    std::vector<float> m_peakLevels;
    qint64 m_lastMs = 0;
};
