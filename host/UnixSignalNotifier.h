#pragma once

#include <QObject>
#include <csignal>

class QSocketNotifier;

// Turns a Unix signal into a Qt signal on the thread that created the
// notifier. The handler only writes a byte to a pipe (the one thing a signal
// handler may safely do); a socket notifier on the other end of the pipe
// emits activated() from the event loop, where any code may run.
class UnixSignalNotifier : public QObject
{
    Q_OBJECT

public:
    // Installs the handler for `signalNumber`; one notifier per signal.
    explicit UnixSignalNotifier(int signalNumber, QObject *parent = nullptr);
    ~UnixSignalNotifier() override;

    // False when the pipe or the handler could not be set up.
    bool isValid() const { return m_pNotifier != nullptr; }

signals:
    void activated();

private:
    void readPipe();

    int m_signalNumber;
    struct sigaction m_previousAction = {};
    int m_pipe[2] = { -1, -1 };
    QSocketNotifier *m_pNotifier = nullptr;
};
