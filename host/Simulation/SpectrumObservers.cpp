#include "SpectrumObservers.h"

int32_t SpectrumObservers::queryInterface(const char *, void **obj)
{
    if (obj)
        *obj = nullptr;
    return kNoInterface;
}

void SpectrumObservers::setAnalysedStrip(int ch1, int ch2)
{
    m_ch1 = ch1;
    m_ch2 = ch2 < 0 ? -1 : ch2;
}

int32_t SpectrumObservers::hasSpectrum(unsigned short ch1, int ch2)
{
    return m_ch1 >= 0 && int(ch1) == m_ch1 && (ch2 < 0 ? -1 : ch2) == m_ch2 ? kResultOk : kResultFalse;
}

int32_t SpectrumObservers::addSpectrumObserver(unsigned short ch1, int ch2, ISpectrumObserver *observer)
{
    if (!observer || hasSpectrum(ch1, ch2) != kResultOk)
        return kResultFalse;
    if (!m_observers.contains(observer)) {
        m_observers.append(observer);
        if (m_changed)
            m_changed();
    }
    return kResultOk;
}

int32_t SpectrumObservers::removeSpectrumObserver(ISpectrumObserver *observer)
{
    if (!m_observers.removeOne(observer))
        return kResultFalse;
    if (m_changed)
        m_changed();
    return kResultOk;
}

void SpectrumObservers::publish(const float *output, const float *input)
{
    // An observer may remove itself while it is notified.
    const QList<ISpectrumObserver *> observers = m_observers;
    for (ISpectrumObserver *observer : observers) {
        if (m_observers.contains(observer))
            observer->notifySpectrumUpdated(output, input, SpectrumBands::Count);
    }
}
