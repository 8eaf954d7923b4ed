#pragma once

#include <memory>

#include "Common/EffectEditor.h"
#include "Common/ObservedParameters.h"
#include "Interfaces/IMeterObserver.h"
#include "Interfaces/IPrmObserver.h"
#include "ORVChStrip/MeterRouter.h"

namespace Ui {
class ORVChStripEditor;
}
class CompressorOperatingPoint;
class EqualizerEditTracker;
class KneeSelector;
class MorphMatchMonitor;
class MorphSetDisplay;
class MorphingPresetOverlay;
class ParameterBindings;
class SectionStates;
class ORVChStripAbout;
class ORVChStripPresetConverter;
class ORVChStripMorphingPresetList;
class ORVD_Manager;
class ORVChStripComponent;
class PresetConverterOffer;
class SpectrumSwitch;

// The channel strip's editor panel (1015 x 572 design pixels, built by the
// form in ORVChStripEditor.ui) and its boundary with the host. It hands the
// host's calls to the parts that do the work: the bindings of the form's
// controls, the section states, the knee selector, the meter routes and the
// compressor's operating point, the equalizer's edit target, the morph set's
// name and match, and the morphing list's overlay. It observes the few
// parameters that change the panel itself (bypasses, band switches, knee,
// morph name and position, the morphing parameters).
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
    bool isMorphingPresetOpen() const;
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
    // Enter and leave of the equalizer's band cells.
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    // Escape closes the panel on top wherever the focus is.
    void keyPressEvent(QKeyEvent *event) override;

private:
    void buildKneeSelector();
    void connectForm();

    void updateParameters();
    void updateMeterRoutes();
    void registerObservers();
    void unregisterObservers();
    int observedValue(int observed) const;

    void updateSections();
    void updateMorphingName();

    std::unique_ptr<Ui::ORVChStripEditor> m_pUi;
    ORVChStripComponent *m_pComponent;
    IMemAPI *m_pMemAPI = nullptr;
    int m_ch1 = 0;
    int m_ch2 = -1;
    ObservedParameters m_observed;
    std::unique_ptr<ParameterBindings> m_pBindings;
    std::unique_ptr<SectionStates> m_pSections;
    std::unique_ptr<KneeSelector> m_pKneeSelector;
    MeterRouter m_meters;
    std::unique_ptr<CompressorOperatingPoint> m_pOperatingPoint;
    EqualizerEditTracker *m_pEditTracker = nullptr;
    MorphMatchMonitor *m_pMorphMatch;
    std::unique_ptr<MorphSetDisplay> m_pMorphSet;
    std::unique_ptr<ORVD_Manager> m_pMorphManager;
    ORVChStripMorphingPresetList *m_pMorphingPresetList;
    MorphingPresetOverlay *m_pMorphingPresetOverlay;
    ORVChStripAbout *m_pAbout;
    ORVChStripPresetConverter *m_pPresetConverter;
    std::unique_ptr<PresetConverterOffer> m_pConverterOffer;
    SpectrumSwitch *m_pSpectrum;
};
