#include "UnixSignalNotifier.h"

#include <QSocketNotifier>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

// The write end of each signal's pipe, read by the handler.
volatile sig_atomic_t writeEnds[NSIG] = {};

void writeToPipe(int signalNumber)
{
    const int savedErrno = errno;
    const char byte = 1;
    // A full pipe already holds a pending wake-up; losing this byte loses nothing.
    [[maybe_unused]] const ssize_t written = ::write(writeEnds[signalNumber], &byte, 1);
    errno = savedErrno;
}

} // namespace

UnixSignalNotifier::UnixSignalNotifier(int signalNumber, QObject *parent)
    : QObject(parent)
    , m_signalNumber(signalNumber)
{
    if (signalNumber <= 0 || signalNumber >= NSIG || ::pipe(m_pipe) != 0)
        return;
    for (int fd : m_pipe) {
        ::fcntl(fd, F_SETFD, FD_CLOEXEC);
        ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    }
    writeEnds[signalNumber] = m_pipe[1];

    struct sigaction action = {};
    action.sa_handler = writeToPipe;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    if (::sigaction(signalNumber, &action, &m_previousAction) != 0)
        return;
    m_pNotifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(m_pNotifier, &QSocketNotifier::activated, this, &UnixSignalNotifier::readPipe);
}

UnixSignalNotifier::~UnixSignalNotifier()
{
    if (m_pNotifier)
        ::sigaction(m_signalNumber, &m_previousAction, nullptr);
    for (int fd : m_pipe) {
        if (fd >= 0)
            ::close(fd);
    }
}

void UnixSignalNotifier::readPipe()
{
    // Signals that arrived together are answered once.
    char bytes[64];
    while (::read(m_pipe[0], bytes, sizeof bytes) > 0) { }
    emit activated();
}
