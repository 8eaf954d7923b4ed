#pragma once

#include <QList>
#include <functional>

#include "Interfaces/ISpectrumSource.h"

// The host's side of ISpectrumSource: the editors' spectrum observers, each
// for a channel pair, and the hand-over of frames to them. It lives with the
// parameter memory, so an editor's pointer to it stays valid as long as the
// memory does, whatever analyses the strip.
class SpectrumObservers : public ISpectrumSource
{
public:
    int32_t queryInterface(const char *, void **obj) override;
    uint32_t addRef() override { return 1; }
    uint32_t release() override { return 1; }
    int32_t hasSpectrum(unsigned short ch1, int ch2) override;
    int32_t addSpectrumObserver(unsigned short ch1, int ch2, ISpectrumObserver *observer) override;
    int32_t removeSpectrumObserver(ISpectrumObserver *observer) override;

    // The strips whose spectrum the host can deliver; others are refused.
    void setAnalysedStrip(int ch1, int ch2);
    // Called whenever the observers change, so an analyser runs only while
    // someone watches.
    void setObserversChanged(std::function<void()> changed) { m_changed = std::move(changed); }
    bool isObserved() const { return !m_observers.isEmpty(); }
    int observerCount() const { return int(m_observers.size()); }

    // Sends a frame of SpectrumBands::Count levels to every observer.
    void publish(const float *output, const float *input);

private:
    QList<ISpectrumObserver *> m_observers;
    int m_ch1 = -1;
    int m_ch2 = -1;
    std::function<void()> m_changed;
};
