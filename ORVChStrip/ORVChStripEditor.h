#pragma once

#include <QBasicTimer>
#include <QList>
#include <memory>

#include "Common/EffectEditor.h"
#include "Common/ObservedParameters.h"
#include "Interfaces/IMeterObserver.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/EqualizerEditTarget.h"
#include "ORVChStrip/MeterRouter.h"
#include "ORVChStrip/SectionDimmer.h"

namespace Ui {
class ORVChStripEditor;
}
namespace CommonController_MemAPI {
class AbstractController;
class KnobController;
class TextEditController;
} // namespace CommonController_MemAPI
class MorphMatchMonitor;
class ORVChStripAbout;
class ORVChStripPresetConverter;
class ORVChStripMorphingPresetList;
class ORVD_Manager;
class ORVChStripComponent;
class PanelFocus;
class ReversibleProgress;
class SpectrumSwitch;

// The channel strip's editor panel (1015 x 572 design pixels, built by the
// form in ORVChStripEditor.ui). It binds every control of the form to its
// parameter, follows the few parameters that change the panel itself
// (bypasses, band switches, knee, morph name and position), routes the
// host's meter array, shows whether the strip still matches the morph
// position and tells the equalizer graph which band is being edited.
class ORVChStripEditor : public EffectEditor, public IPrmObserver, public IMeterObserver
{
    Q_OBJECT

public:
    static constexpr int DesignWidth = 1015;
    static constexpr int DesignHeight = 572;

    explicit ORVChStripEditor(QWidget *parent = nullptr);
    ~ORVChStripEditor() override;

    FUID uid() const override;
    void loadUids(std::vector<FUID> &uids) const override;
    // The editor's state component; it follows the editor's model, memory and channel.
    IComponent *getPlxComponent() const override;
    void setModelInfo(IModelInfo *modelInfo) override;
    void setMemAPI(IMemAPI *memAPI) override;
    void setCh(int ch1, int ch2) override;
    void setFs(int fs) override;
    void setScale(double scale) override;
    QMap<QString, QVariant> getEditorSettings() const override;
    void setEditorSettings(const QMap<QString, QVariant> &settings) override;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }
    void notifyMeterLvlUpdated(unsigned int *, unsigned int) override { }
    void notifyMeterDbUpdated(unsigned int *values, unsigned int count) override;

    IMemAPI *memAPI() const { return m_pMemAPI; }
    int ch1() const { return m_ch1; }
    int ch2() const { return m_ch2; }
    bool isMono() const { return m_ch2 < 0; }
    bool isMorphingPresetOpen() const { return m_morphingPresetOpen; }
    // The panel that slides up over the equalizer and morphing sections.
    ORVChStripMorphingPresetList *morphingPresetList() const { return m_pMorphingPresetList; }
    ORVD_Manager *morphManager() const { return m_pMorphManager.get(); }
    // Where that panel sits when fully open, at the current scale.
    QRect morphingPresetGeometry() const;
    // False while a morphing parameter has been turned away from the morph position.
    bool morphMatches() const;

public slots:
    void updateKnee();
    void openMorphingPreset();
    void closeMorphingPreset();
    void compareMorphingParametersRequest();

    ORVChStripAbout *aboutPanel() const { return m_pAbout; }
    ORVChStripPresetConverter *presetConverter() const { return m_pPresetConverter; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    // Escape closes the panel on top wherever the focus is.
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Binding
    {
        const char *key;
        CommonController_MemAPI::AbstractController *controls[2];
    };
    // The band control whose cell the pointer hovers is kept on the cell.
    static constexpr const char *HoverControlProperty = "orvEqualizerHoverControl";

    void buildBindings();
    void connectForm();
    void trackEditGestures(QWidget *area, CommonController_MemAPI::KnobController *knob,
        CommonController_MemAPI::TextEditController *text, EqualizerEditTarget::Control control);
    void setEditGesture(
        EqualizerEditTarget::Gesture gesture, EqualizerEditTarget::Control control, bool active);

    void updateParameters();
    void updateMeterRoutes();
    void registerObservers();
    void unregisterObservers();
    int observedValue(int observed) const;

    void updateSections();
    void updateMorphingName();
    void updateEditTarget();
    void showMorphMatch(bool matches);
    void placeMorphingPreset(double openFraction);
    void finishMorphingPresetSlide(bool opened);

    std::unique_ptr<Ui::ORVChStripEditor> m_pUi;
    ORVChStripComponent *m_pComponent;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch1 = 0;
    int m_ch2 = -1;
    ObservedParameters m_observed;
    MorphMatchMonitor *m_pMorphMatch;
    MeterRouter m_meters;
    // The side-chain detector and gain-reduction entries of the meter array,
    // which place the operating point on the compressor graph; -1 if unknown.
    int m_detectorMeterIndex = -1;
    int m_reductionMeterIndex = -1;
    QBasicTimer m_operatingPointTimeout;
    EqualizerEditTarget m_editTarget;
    QList<Binding> m_bindings;
    SectionDimmer m_compressorDimmer;
    SectionDimmer m_equalizerDimmer;
    std::unique_ptr<ORVD_Manager> m_pMorphManager;
    ORVChStripMorphingPresetList *m_pMorphingPresetList;
    ReversibleProgress *m_pMorphingPresetSlide;
    bool m_morphingPresetOpen = false;
    std::unique_ptr<PanelFocus> m_pMorphingPresetFocus;
    ORVChStripAbout *m_pAbout;
    ORVChStripPresetConverter *m_pPresetConverter;
    bool m_conversionOffered = false;
    SpectrumSwitch *m_pSpectrum;
};
