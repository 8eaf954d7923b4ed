#pragma once

#include <QMutex>
#include <atomic>

#include "StripSettings.h"

// Hands the strip's settings from the GUI thread, which reads the parameter
// memory, to the processing thread. The processing thread checks the
// generation once per block and copies the settings only when they changed.
class SharedStripSettings
{
public:
    void publish(const StripSettings &settings)
    {
        QMutexLocker locker(&m_mutex);
        m_settings = settings;
        m_generation.fetch_add(1, std::memory_order_release);
    }

    quint64 generation() const { return m_generation.load(std::memory_order_acquire); }

    StripSettings read(quint64 *generation) const
    {
        QMutexLocker locker(&m_mutex);
        *generation = m_generation.load(std::memory_order_relaxed);
        return m_settings;
    }

private:
    mutable QMutex m_mutex;
    StripSettings m_settings;
    std::atomic<quint64> m_generation { 0 };
};
