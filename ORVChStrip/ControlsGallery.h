#pragma once

#include <QWidget>
#include <memory>

#include "Interfaces/IMeterObserver.h"
#include "ORVChStrip/MeterRouter.h"

class EffectStyle;
class IMemAPI;
class IModelInfo;
class KneeSelector;

namespace Ui {
class ControlsGallery;
}

namespace CommonController_MemAPI {
class AbstractController;
class MeterController;
} // namespace CommonController_MemAPI

// A page that shows every control of the library on the editor's palette
// and style, each bound to a parameter of the host's memory, with the meters
// fed from the host's meter notifier. It is a review bench for the artwork
// and the controls' behaviour, outside the editor's fixed form. The page is
// the Designer form ControlsGallery.ui; each control names its parameter in
// the form.
class ControlsGallery : public QWidget, public IMeterObserver
{
    Q_OBJECT

public:
    ControlsGallery(IModelInfo *modelInfo, IMemAPI *memAPI, QWidget *parent = nullptr);
    ~ControlsGallery() override;

    void notifyMeterLvlUpdated(unsigned int *, unsigned int) override { }
    void notifyMeterDbUpdated(unsigned int *values, unsigned int count) override;

private:
    void applyPaletteRoles();
    void showCaptionKeys();
    void bindControls();
    void connectKneeSelector();
    void addMeterScales();
    void routeMeters();
    void updateKnee();

    // Binds to the key on channel 0; an unknown key leaves the control unbound.
    void bind(CommonController_MemAPI::AbstractController *control, const char *key);
    // The host's text for every value of a parameter.
    QStringList valueTexts(const char *key) const;
    void route(
        CommonController_MemAPI::MeterController *meter, const char *key, unsigned short ch, bool right);

    std::unique_ptr<Ui::ControlsGallery> m_pUi;
    IModelInfo *m_pModelInfo;
    IMemAPI *m_pMemAPI;
    IMeterNotifier *m_pMeterNotifier = nullptr;
    EffectStyle *m_pStyle;
    std::unique_ptr<KneeSelector> m_pKneeSelector;
    MeterRouter m_meters;
};
