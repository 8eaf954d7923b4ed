#include "ORVChStrip/ORVChStripEditor.h"

#include <QKeyEvent>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/AccessibleGraph.h"
#include "ORVChStrip/CompressorOperatingPoint.h"
#include "ORVChStrip/EqualizerEditTracker.h"
#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/KneeSelector.h"
#include "ORVChStrip/MorphMatchMonitor.h"
#include "ORVChStrip/MorphSetDisplay.h"
#include "ORVChStrip/MorphingListSettings.h"
#include "ORVChStrip/MorphingPresetOverlay.h"
#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ParameterBindings.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/PresetConverterOffer.h"
#include "ORVChStrip/SectionStates.h"
#include "ORVChStrip/SpectrumSwitch.h"
#include "ui_ORVChStripEditor.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;

namespace {

// The parameters whose changes alter the panel itself, in this order, followed
// by the morphing parameters that the knee does not already cover.
enum Observed {
    CompressorBypass,
    EqualizerBypass,
    SideChainOn,
    LowOn,
    MiddleOn,
    HighOn,
    Knee,
    MorphName,
    MorphValue,
};

std::vector<const char *> observedKeys()
{
    std::vector<const char *> keys { Keys::CompressorBypass, Keys::EqualizerBypass, Keys::SideChainOn,
        Keys::EqualizerLowOn, Keys::EqualizerMiddleOn, Keys::EqualizerHighOn, Keys::CompressorKnee,
        Keys::MorphSystemName, Keys::MorphValue };
    for (const char *key : ORVChStripParameters::MorphingParameterList) {
        if (qstrcmp(key, Keys::CompressorKnee) != 0)
            keys.push_back(key);
    }
    return keys;
}

} // namespace

ORVChStripEditor::ORVChStripEditor(QWidget *parent)
    : EffectEditor(parent)
    , m_pUi(new Ui::ORVChStripEditor)
    , m_pComponent(new ORVChStripComponent)
    , m_observed(this, observedKeys())
    , m_pMorphMatch(new MorphMatchMonitor(this))
    , m_pMorphManager(new ORVD_Manager)
{
    m_pComponent->addRef();
    AccessibleGraph::install(); // before the form builds the graphs
    // Before the form: its widgets take the colours as they are made, rather
    // than through a palette change sent down the whole built tree.
    ORVChStripPalette::applyTo(this);
    m_pUi->setupUi(this);
    // The list slides up over the panel; it is part of the tree so that it
    // scales with it.
    m_pMorphingPresetList = new ORVChStripMorphingPresetList(this);
    m_pMorphingPresetList->setObjectName(QStringLiteral("m_pMorphingPresetList"));
    m_pMorphingPresetOverlay = new MorphingPresetOverlay(m_pMorphingPresetList);
    m_pMorphingPresetList->setEditor(this);
    m_pMorphManager->Collection();
    m_pMorphingPresetList->setORVDManager(m_pMorphManager.get());
    // The overlays cover the whole panel, above everything else.
    m_pAbout = new ORVChStripAbout(this);
    m_pAbout->setObjectName(QStringLiteral("m_pAbout"));
    m_pAbout->setGeometry(rect());
    m_pPresetConverter = new ORVChStripPresetConverter(this);
    m_pPresetConverter->setObjectName(QStringLiteral("m_pPresetConverter"));
    m_pPresetConverter->setGeometry(rect());
    m_pConverterOffer = std::make_unique<PresetConverterOffer>(m_pPresetConverter);
    // Explicit roles: a host's container (a scroll area with a dark
    // background role, say) must not change the panel's colours.
    setBackgroundRole(QPalette::Window);
    setForegroundRole(QPalette::WindowText);
    setAutoFillBackground(true);
    m_pUi->m_pCompressorGraph->setEditor(this);
    m_pUi->m_pEqualizerGraph->setEditor(this);
    m_pOperatingPoint = std::make_unique<CompressorOperatingPoint>(m_pUi->m_pCompressorGraph, this);
    m_pMorphSet = std::make_unique<MorphSetDisplay>(m_pUi->m_pMorphingPresetButton, m_pUi->m_pMorphingKnob);
    m_pBindings = std::make_unique<ParameterBindings>(*m_pUi);
    m_pSections = std::make_unique<SectionStates>(*m_pUi);
    buildKneeSelector();
    m_pEditTracker = new EqualizerEditTracker(*m_pUi, this);
    connectForm();
    m_pSpectrum = new SpectrumSwitch(m_pUi->m_pEqualizerSpectrumButton, m_pUi->m_pEqualizerGraph, this);
    updateKnee();
    updateSections();
    updateMorphingName();
}

ORVChStripEditor::~ORVChStripEditor()
{
    // The form outlives this part of the editor: QWidget's destructor still
    // hides it, and a value field open for typing then reports the end of its
    // edit. Nothing may reach the editor or its edit tracker from there.
    for (QObject *child : findChildren<QObject *>()) {
        child->disconnect(this);
        child->disconnect(m_pEditTracker);
    }
    unregisterObservers();
    m_pComponent->release();
}

void ORVChStripEditor::buildKneeSelector()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    m_pKneeSelector = std::make_unique<KneeSelector>(ui.m_pCompressorKneeButtonGroup);
    m_pKneeSelector->addPosition(ui.m_pCompressorKneeSoftButton, ui.m_pCompressorKneeSelectSoftBackground,
        ui.m_pCompressorKneePushSoftBackground);
    m_pKneeSelector->addPosition(ui.m_pCompressorKneeMediumButton, ui.m_pCompressorKneeSelectMediumBackground,
        ui.m_pCompressorKneePushMediumBackground);
    m_pKneeSelector->addPosition(ui.m_pCompressorKneeHardButton, ui.m_pCompressorKneeSelectHardBackground,
        ui.m_pCompressorKneePushHardBackground);
    m_pKneeSelector->connectChanges(this, &ORVChStripEditor::updateKnee);
}

void ORVChStripEditor::connectForm()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    // The graphs are described by the values they draw.
    auto *compressorCurve = new GraphDescription(ui.m_pCompressorGraph);
    for (QWidget *control : QList<QWidget *> {
             ui.m_pCompressorRatioKnob, ui.m_pCompressorKneeButtonGroup, ui.m_pCompressorDriveKnob })
        compressorCurve->addControl(control);
    auto *equalizerCurve = new GraphDescription(ui.m_pEqualizerGraph);
    for (QWidget *control :
        QList<QWidget *> { ui.m_pEqualizerLowFrequencyKnob, ui.m_pEqualizerLowGainKnob,
            ui.m_pEqualizerMiddleFrequencyKnob, ui.m_pEqualizerMiddleGainKnob,
            ui.m_pEqualizerMiddleQualityKnob, ui.m_pEqualizerHighFrequencyKnob, ui.m_pEqualizerHighGainKnob })
        equalizerCurve->addControl(control);
    connect(
        ui.m_pMorphingPresetButton, &QAbstractButton::clicked, this, &ORVChStripEditor::openMorphingPreset);
    connect(ui.m_pAboutButton, &QAbstractButton::clicked, m_pAbout, &ORVChStripAbout::open);
    connect(ui.m_pPresetConverterButton, &QAbstractButton::clicked, m_pPresetConverter,
        &ORVChStripPresetConverter::open);
    connect(m_pMorphingPresetList, &ORVChStripMorphingPresetList::closeRequested, this,
        &ORVChStripEditor::closeMorphingPreset);
    connect(m_pMorphingPresetOverlay, &MorphingPresetOverlay::coverChanged, this,
        &ORVChStripEditor::updateSections);
    connect(m_pMorphMatch, &MorphMatchMonitor::matchChanged, this,
        [this](bool matches) { m_pMorphSet->showMatch(matches); });
}

bool ORVChStripEditor::eventFilter(QObject *watched, QEvent *event)
{
    m_pEditTracker->hover(watched, event);
    return EffectEditor::eventFilter(watched, event);
}

// Old presets are offered for conversion when the panel first shows.
void ORVChStripEditor::showEvent(QShowEvent *event)
{
    EffectEditor::showEvent(event);
    m_pConverterOffer->offerOnce();
}

FUID ORVChStripEditor::uid() const
{
    return ORVChStripClassIds::Stereo;
}

void ORVChStripEditor::loadUids(std::vector<FUID> &uids) const
{
    uids.push_back(ORVChStripClassIds::Mono);
    uids.push_back(ORVChStripClassIds::Stereo);
}

IComponent *ORVChStripEditor::getPlxComponent() const
{
    return m_pComponent;
}

void ORVChStripEditor::setModelInfo(IModelInfo *modelInfo)
{
    EffectEditor::setModelInfo(modelInfo);
    m_pComponent->setModelInfo(modelInfo);
}

void ORVChStripEditor::setMemAPI(IMemAPI *memAPI)
{
    unregisterObservers();
    m_pMemAPI = memAPI;
    m_pComponent->setMemAPI(memAPI);
    m_pUi->m_pCompressorGraph->setMemAPI(memAPI);
    m_pUi->m_pEqualizerGraph->setMemAPI(memAPI);
    m_pMorphingPresetList->setMemAPI(memAPI);
    m_pSpectrum->setMemAPI(memAPI);
    updateParameters();
}

void ORVChStripEditor::setCh(int ch1, int ch2)
{
    unregisterObservers();
    m_ch1 = ch1;
    m_ch2 = ch2;
    m_pComponent->setCh(ch1);
    m_pUi->m_pCompressorGraph->setCh(ch1);
    m_pUi->m_pEqualizerGraph->setCh(ch1);
    m_pMorphingPresetList->setCh(ch1);
    m_pSpectrum->setCh(ch1, ch2);
    updateParameters();
}

void ORVChStripEditor::setFs(int fs)
{
    m_pUi->m_pEqualizerGraph->setFs(fs);
}

void ORVChStripEditor::setScale(double scale)
{
    EffectEditor::setScale(scale);
    m_pMorphingPresetList->setScale(scale);
    m_pMorphingPresetOverlay->setScale(scale);
}

void ORVChStripEditor::updateParameters()
{
    m_pBindings->bind(parameterLookup(), m_pMemAPI, static_cast<unsigned short>(m_ch1));
    registerObservers();
    updateMeterRoutes();
    updateSections();
    updateKnee();
    updateMorphingName();
    m_pMorphMatch->compareNow();
}

void ORVChStripEditor::updateMeterRoutes()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    const bool stereo = !isMono();
    ui.m_pInputStereoMeterBackground->setVisible(stereo);
    ui.m_pOutputStereoMeterBackground->setVisible(stereo);
    ui.m_pInputMonoMeterBackground->setVisible(!stereo);
    ui.m_pOutputMonoMeterBackground->setVisible(!stereo);

    const ParameterLookup &lookup = parameterLookup();
    m_meters.clear();
    m_meters.add(lookup, Keys::InputMeter, m_ch1, false, ui.m_pInputStereoMeterL);
    m_meters.add(lookup, Keys::InputMeter, m_ch1, false, ui.m_pInputMonoMeter);
    m_meters.add(lookup, Keys::OutputMeter, m_ch1, false, ui.m_pOutputStereoMeterL);
    m_meters.add(lookup, Keys::OutputMeter, m_ch1, false, ui.m_pOutputMonoMeter);
    if (stereo) {
        m_meters.add(lookup, Keys::InputMeter, m_ch2, false, ui.m_pInputStereoMeterR);
        m_meters.add(lookup, Keys::OutputMeter, m_ch2, false, ui.m_pOutputStereoMeterR);
    }
    m_meters.add(lookup, Keys::SideChainMeter, m_ch1, false, ui.m_pSideChainMeter);
    m_meters.add(lookup, Keys::GainReductionMeter, m_ch1, false, ui.m_pGainReductionMeter);
    m_pOperatingPoint->locate(lookup, m_ch1);
}

void ORVChStripEditor::notifyMeterDbUpdated(unsigned int *values, unsigned int count)
{
    m_meters.route(values, count);
    m_pOperatingPoint->show(values, count);
}

void ORVChStripEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        for (FadingOverlay *panel :
            { static_cast<FadingOverlay *>(m_pAbout), static_cast<FadingOverlay *>(m_pPresetConverter) }) {
            if (panel->isVisible()) {
                panel->escape();
                event->accept();
                return;
            }
        }
        if (isMorphingPresetOpen()) {
            closeMorphingPreset();
            event->accept();
            return;
        }
    }
    EffectEditor::keyPressEvent(event);
}

// The compressor's operating point times out here.
void ORVChStripEditor::timerEvent(QTimerEvent *event)
{
    if (!m_pOperatingPoint->timeout(event))
        EffectEditor::timerEvent(event);
}

void ORVChStripEditor::unregisterObservers()
{
    if (!m_pMemAPI)
        return;
    IMeterNotifier *notifier = nullptr;
    if (m_pMemAPI->getMeterNotifier(&notifier) >= 0 && notifier)
        notifier->removeMeterObserver(this);
    m_observed.detach();
    m_pMorphMatch->detach();
}

void ORVChStripEditor::registerObservers()
{
    if (!m_pMemAPI)
        return;
    const auto ch = static_cast<unsigned short>(m_ch1);
    IMeterNotifier *notifier = nullptr;
    if (m_pMemAPI->getMeterNotifier(&notifier) >= 0 && notifier)
        notifier->addMeterObserver(this);
    m_observed.attach(&parameterLookup(), m_pMemAPI, ch);
    m_pMorphMatch->attach(parameterLookup(), m_pMemAPI, ch);
}

int ORVChStripEditor::observedValue(int observed) const
{
    int value = 0;
    return m_observed.read(observed, &value) ? value : -1;
}

int ORVChStripEditor::Update(unsigned short prmId, unsigned short, int, const char *)
{
    const int observed = m_observed.indexOf(prmId);
    switch (observed) {
    case -1: break;
    case CompressorBypass:
    case EqualizerBypass:
    case SideChainOn:
    case LowOn:
    case MiddleOn:
    case HighOn: updateSections(); break;
    case Knee:
        updateKnee();
        m_pMorphMatch->request();
        break;
    case MorphName: updateMorphingName(); break;
    default: m_pMorphMatch->request(); break; // the morph position or a morphing parameter
    }
    return 0;
}

void ORVChStripEditor::updateSections()
{
    m_pSections->apply(
        { observedValue(CompressorBypass), observedValue(EqualizerBypass), observedValue(SideChainOn),
            observedValue(LowOn), observedValue(MiddleOn), observedValue(HighOn) },
        isMorphingPresetOpen());
}

void ORVChStripEditor::updateKnee()
{
    m_pKneeSelector->refresh(m_pMemAPI != nullptr);
}

void ORVChStripEditor::updateMorphingName()
{
    const bool known = m_pMemAPI && m_observed.found(MorphName);
    m_pMorphSet->showName(known ? MorphSetDisplay::readName(
                              m_pMemAPI, m_observed.id(MorphName), static_cast<unsigned short>(m_ch1))
                                : QByteArray());
}

void ORVChStripEditor::compareMorphingParametersRequest()
{
    if (m_pMorphMatch->isPending())
        m_pMorphMatch->compareNow();
}

bool ORVChStripEditor::morphMatches() const
{
    return m_pMorphMatch->matches();
}

bool ORVChStripEditor::isMorphingPresetOpen() const
{
    return m_pMorphingPresetOverlay->isOpen();
}

QRect ORVChStripEditor::morphingPresetGeometry() const
{
    return m_pMorphingPresetOverlay->fullGeometry();
}

void ORVChStripEditor::openMorphingPreset()
{
    m_pMorphingPresetOverlay->open();
}

void ORVChStripEditor::closeMorphingPreset()
{
    m_pMorphingPresetOverlay->close();
}

QMap<QString, QVariant> ORVChStripEditor::getEditorSettings() const
{
    QMap<QString, QVariant> settings
        = MorphingListSettings::save(m_pMorphManager.get(), m_pMorphingPresetList);
    m_pSpectrum->saveSettings(settings);
    return settings;
}

void ORVChStripEditor::setEditorSettings(const QMap<QString, QVariant> &settings)
{
    MorphingListSettings::restore(settings, m_pMorphManager.get(), m_pMorphingPresetList);
    m_pSpectrum->restoreSettings(settings);
}
