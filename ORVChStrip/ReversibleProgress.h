#pragma once

#include <QBasicTimer>
#include <QObject>

// The progress of an overlay that opens or closes in steps of 0.1 on a timer
// (the morphing list's slide, the about panel's and the converter's fades). A
// request in the opposite direction while running reverses from where the
// overlay stands; a request in the same direction is ignored. The timer runs
// only while moving, so a settled overlay costs no wake-ups.
class ReversibleProgress : public QObject
{
    Q_OBJECT

public:
    // reversalHeadStart is added to the mirrored progress on a reversal (the
    // slide gains one step, the fades none).
    explicit ReversibleProgress(int intervalMs, double reversalHeadStart = 0.0, QObject *parent = nullptr);

    bool isRunning() const { return m_timer.isActive(); }
    bool isOpening() const { return m_opening; }
    double progress() const { return m_progress; }
    // How much of the overlay shows: progress while opening, 1 - progress
    // while closing, kept within 0 and 1.
    double visibleFraction() const;

public slots:
    void open();
    void close();
    // One step; the timer calls it, tests may call it directly.
    void advance();
    // Stops at once, open or closed, without signals: for an overlay that was
    // shown or hidden directly, so that the next request starts from there.
    void settle(bool opened);

signals:
    // A new visible fraction, at the start, on a reversal and after each step.
    void changed(double visibleFraction);
    // The movement ended open (true) or closed (false).
    void finished(bool opened);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void request(bool opening);
    void finish();

    QBasicTimer m_timer;
    int m_intervalMs;
    double m_reversalHeadStart;
    double m_progress = 0.0;
    bool m_opening = false;
    bool m_settledOpen = false;
};
