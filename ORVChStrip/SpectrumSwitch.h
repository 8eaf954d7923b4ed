#pragma once

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QVariant>

#include "Interfaces/ISpectrumSource.h"

class IMemAPI;
class ORVChStripEqualizerGraph;
namespace CommonController_MemAPI {
class PushButtonController;
}

// The spectrum switch and what it feeds: while the switch is on and the host
// offers a spectrum source for the strip, the switch observes the strip's
// spectrum and hands every frame to the equalizer graph. A host without a
// source (or one that does not analyse this strip) leaves the switch
// disabled, with the reason as its tooltip and accessible description.
//
// The switch's state is kept in the editor settings under SettingsKey. The
// user's choice is kept even where no spectrum is offered, so that it comes
// back with a host that offers one.
class SpectrumSwitch : public QObject, public ISpectrumObserver
{
    Q_OBJECT

public:
    static constexpr const char *SettingsKey = "Spectrum";

    SpectrumSwitch(CommonController_MemAPI::PushButtonController *button, ORVChStripEqualizerGraph *graph,
        QObject *parent = nullptr);
    ~SpectrumSwitch() override;

    void setMemAPI(IMemAPI *memAPI);
    void setCh(int ch1, int ch2);

    bool isAvailable() const { return m_available; }
    // Whether the user wants the spectrum (shown once it is available).
    bool isWanted() const { return m_wanted; }
    bool isObserving() const { return m_observing; }

    void saveSettings(QMap<QString, QVariant> &settings) const;
    void restoreSettings(const QMap<QString, QVariant> &settings);

    void notifySpectrumUpdated(const float *output, const float *input, unsigned int count) override;

    // Why the switch is disabled, as its tooltip and accessible description say.
    static QString unavailableText();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setWanted(bool wanted);
    void attach();
    void detach();
    void showState();
    void describeUnavailable();

    QPointer<CommonController_MemAPI::PushButtonController> m_pButton;
    QPointer<ORVChStripEqualizerGraph> m_pGraph;
    IMemAPI *m_pMemAPI = nullptr;
    ISpectrumSource *m_pSource = nullptr;
    int m_ch1 = 0;
    int m_ch2 = -1;
    bool m_available = false;
    bool m_wanted = false;
    bool m_observing = false;
    bool m_showing = false; // guards the button's signals while showState() sets it
};
