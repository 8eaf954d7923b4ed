#pragma once

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#define ORV_HAVE_FILE_SIZE_LIMIT 1
#endif

// Limits the size of every file this process (and any child it starts) may
// write, the way a full disk does: a write past the limit fails with EFBIG
// instead of raising SIGXFSZ. Undone when the guard goes out of scope.
class FileSizeLimit
{
public:
#ifdef ORV_HAVE_FILE_SIZE_LIMIT
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_active = getrlimit(RLIMIT_FSIZE, &m_saved) == 0;
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limited = m_saved;
        limited.rlim_cur = bytes;
        m_active = m_active && setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FileSizeLimit()
    {
        if (m_active)
            setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    bool isActive() const
    {
        return m_active;
    }

private:
    rlimit m_saved {};
    void (*m_oldHandler)(int) = SIG_DFL;
    bool m_active = false;
#else
    explicit FileSizeLimit(quint64) { }
    bool isActive() const
    {
        return false;
    }
#endif

public:
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
};
