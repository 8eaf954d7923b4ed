#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class ParameterMemory;

// Feeds the meter observers about 30 times a second with levels of a slowly
// moving test signal: a swelling input, the side chain following it, a gain
// reduction from the compressor's threshold and ratio, and the output.
class MeterSignalGenerator : public QObject
{
    Q_OBJECT

public:
    static constexpr int IntervalMs = 33;
    static constexpr int Silence = -1270; // tenths of a dB

    explicit MeterSignalGenerator(ParameterMemory *memory, QObject *parent = nullptr);

    void start() { m_timer.start(); }
    void stop() { m_timer.stop(); }
    // The meter array at a given time in seconds (also used for screenshots).
    QVector<unsigned int> levelsAt(double seconds) const;

public slots:
    void tick();

private:
    ParameterMemory *m_pMemory;
    QTimer m_timer;
    QElapsedTimer m_clock;
};
