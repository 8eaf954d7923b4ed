#include "ORVChStrip/ORVChStripEditor.h"

#include <QEvent>
#include <QKeyEvent>
#include <QTimerEvent>
#include <algorithm>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/AccessibleGraph.h"
#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/MorphMatchMonitor.h"
#include "ORVChStrip/MorphingListSettings.h"
#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/PanelFocus.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/ReversibleProgress.h"
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

QString image(const char *name)
{
    return QStringLiteral(":/image/orvchstrip/") + QLatin1String(name);
}

void setAllEnabled(std::initializer_list<QWidget *> widgets, bool enabled)
{
    for (QWidget *widget : widgets)
        widget->setEnabled(enabled);
}

// How much of a section's captions still shows while it is dimmed.
constexpr double CompressorDimmedOpacity = 0.3;
constexpr double CompressorTitleDimmedOpacity = 0.5;
constexpr double EqualizerDimmedOpacity = 0.5;

constexpr int MorphingPresetSlideMs = 20;
// The operating point goes when no meters came for this long.
constexpr int OperatingPointTimeoutMs = 500;
// The morphing list covers the equalizer and morphing sections.
constexpr QRect MorphingPresetDesignRect(408, 40, 505, 532);

int scaled(int length, double scale)
{
    return int(length * scale + 0.5);
}

} // namespace

ORVChStripEditor::ORVChStripEditor(QWidget *parent)
    : EffectEditor(parent)
    , m_pUi(new Ui::ORVChStripEditor)
    , m_pComponent(new ORVChStripComponent)
    , m_observed(this, observedKeys())
    , m_pMorphMatch(new MorphMatchMonitor(this))
    , m_pMorphManager(new ORVD_Manager)
    // The slide gains a step when it reverses, so a reversal always moves.
    , m_pMorphingPresetSlide(new ReversibleProgress(MorphingPresetSlideMs, 0.1, this))
{
    m_pComponent->addRef();
    AccessibleGraph::install(); // before the form builds the graphs
    m_pUi->setupUi(this);
    // The list slides up over the panel; it is part of the tree so that it
    // scales with it.
    m_pMorphingPresetList = new ORVChStripMorphingPresetList(this);
    m_pMorphingPresetList->setObjectName(QStringLiteral("m_pMorphingPresetList"));
    m_pMorphingPresetList->setGeometry(MorphingPresetDesignRect);
    m_pMorphingPresetList->hide();
    m_pMorphingPresetList->setEditor(this);
    m_pMorphingPresetFocus = std::make_unique<PanelFocus>(m_pMorphingPresetList);
    m_pMorphManager->Collection();
    m_pMorphingPresetList->setORVDManager(m_pMorphManager.get());
    // The overlays cover the whole panel, above everything else.
    m_pAbout = new ORVChStripAbout(this);
    m_pAbout->setObjectName(QStringLiteral("m_pAbout"));
    m_pAbout->setGeometry(rect());
    m_pPresetConverter = new ORVChStripPresetConverter(this);
    m_pPresetConverter->setObjectName(QStringLiteral("m_pPresetConverter"));
    m_pPresetConverter->setGeometry(rect());
    setPalette(ORVChStripPalette::editorPalette());
    // Explicit roles: a host's container (a scroll area with a dark
    // background role, say) must not change the panel's colours.
    setBackgroundRole(QPalette::Window);
    setForegroundRole(QPalette::WindowText);
    setAutoFillBackground(true);
    m_pUi->m_pCompressorGraph->setEditor(this);
    m_pUi->m_pEqualizerGraph->setEditor(this);
    buildBindings();
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
    // edit. Nothing may reach the editor's slots from there.
    for (QObject *child : findChildren<QObject *>())
        child->disconnect(this);
    unregisterObservers();
    m_pComponent->release();
}

void ORVChStripEditor::buildBindings()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    m_bindings = {
        { Keys::CompressorBypass, { ui.m_pCompressorButton, nullptr } },
        { Keys::CompressorAttack, { ui.m_pCompressorAttackKnob, ui.m_pCompressorAttackTextEdit } },
        { Keys::CompressorRelease, { ui.m_pCompressorReleaseKnob, ui.m_pCompressorReleaseTextEdit } },
        { Keys::CompressorRatio, { ui.m_pCompressorRatioKnob, ui.m_pCompressorRatioTextEdit } },
        { Keys::CompressorKnee, { ui.m_pCompressorKneeButtonGroup, nullptr } },
        { Keys::SideChainQuality, { ui.m_pSideChainQualityKnob, ui.m_pSideChainQualityTextEdit } },
        { Keys::SideChainFrequency, { ui.m_pSideChainFrequencyKnob, ui.m_pSideChainFrequencyTextEdit } },
        { Keys::SideChainGain, { ui.m_pSideChainGainKnob, ui.m_pSideChainGainTextEdit } },
        { Keys::SideChainOn, { ui.m_pSideChainButton, nullptr } },
        { Keys::CompressorDrive, { ui.m_pCompressorDriveKnob, ui.m_pCompressorDriveTextEdit } },
        { Keys::EqualizerBypass, { ui.m_pEqualizerButton, nullptr } },
        { Keys::EqualizerLowFrequency,
            { ui.m_pEqualizerLowFrequencyKnob, ui.m_pEqualizerLowFrequencyTextEdit } },
        { Keys::EqualizerLowGain, { ui.m_pEqualizerLowGainKnob, ui.m_pEqualizerLowGainTextEdit } },
        { Keys::EqualizerLowOn, { ui.m_pEqualizerLowButton, nullptr } },
        { Keys::EqualizerMiddleQuality,
            { ui.m_pEqualizerMiddleQualityKnob, ui.m_pEqualizerMiddleQualityTextEdit } },
        { Keys::EqualizerMiddleFrequency,
            { ui.m_pEqualizerMiddleFrequencyKnob, ui.m_pEqualizerMiddleFrequencyTextEdit } },
        { Keys::EqualizerMiddleGain, { ui.m_pEqualizerMiddleGainKnob, ui.m_pEqualizerMiddleGainTextEdit } },
        { Keys::EqualizerMiddleOn, { ui.m_pEqualizerMiddleButton, nullptr } },
        { Keys::EqualizerHighFrequency,
            { ui.m_pEqualizerHighFrequencyKnob, ui.m_pEqualizerHighFrequencyTextEdit } },
        { Keys::EqualizerHighGain, { ui.m_pEqualizerHighGainKnob, ui.m_pEqualizerHighGainTextEdit } },
        { Keys::EqualizerHighOn, { ui.m_pEqualizerHighButton, nullptr } },
        { Keys::MorphValue, { ui.m_pMorphingKnob, nullptr } },
        { Keys::OutputLevel, { ui.m_pOutputKnob, ui.m_pOutputTextEdit } },
    };

    // Every caption of a section dims with it; the compressor's title a little less.
    m_compressorDimmer.addCaptionsOf(ui.m_pCompressorArea, CompressorDimmedOpacity);
    m_compressorDimmer.addLabel(ui.m_pCompressorLabel, CompressorTitleDimmedOpacity);
    m_equalizerDimmer.addCaptionsOf(ui.m_pEqualizerArea, EqualizerDimmedOpacity);
    m_equalizerDimmer.addLabel(ui.m_pEqualizerLabel, EqualizerDimmedOpacity);
}

void ORVChStripEditor::connectForm()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    for (QAbstractButton *button : ui.m_pCompressorKneeButtonGroup->findChildren<QAbstractButton *>()) {
        connect(button, &QAbstractButton::pressed, this, &ORVChStripEditor::updateKnee);
        connect(button, &QAbstractButton::released, this, &ORVChStripEditor::updateKnee);
    }
    connect(ui.m_pCompressorKneeButtonGroup, qOverload<int>(&ButtonGroupController::valueChanged), this,
        &ORVChStripEditor::updateKnee);
    // A knob speaks its value with the unit its field shows beside it.
    for (const Binding &binding : std::as_const(m_bindings)) {
        auto *knob = dynamic_cast<ValueController *>(binding.controls[0]);
        auto *field = dynamic_cast<TextEditController *>(binding.controls[1]);
        if (knob && field)
            knob->setValueSuffix(field->postfix());
    }
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
    connect(m_pMorphMatch, &MorphMatchMonitor::matchChanged, this, &ORVChStripEditor::showMorphMatch);
    connect(
        m_pMorphingPresetSlide, &ReversibleProgress::changed, this, &ORVChStripEditor::placeMorphingPreset);
    connect(m_pMorphingPresetSlide, &ReversibleProgress::finished, this,
        &ORVChStripEditor::finishMorphingPresetSlide);

    trackEditGestures(ui.m_pEqualizerLowFrequencyArea, ui.m_pEqualizerLowFrequencyKnob,
        ui.m_pEqualizerLowFrequencyTextEdit, EqualizerEditTarget::LowFrequency);
    trackEditGestures(ui.m_pEqualizerLowGainArea, ui.m_pEqualizerLowGainKnob, ui.m_pEqualizerLowGainTextEdit,
        EqualizerEditTarget::LowGain);
    trackEditGestures(ui.m_pEqualizerMiddleQualityArea, ui.m_pEqualizerMiddleQualityKnob,
        ui.m_pEqualizerMiddleQualityTextEdit, EqualizerEditTarget::MiddleQuality);
    trackEditGestures(ui.m_pEqualizerMiddleFrequencyArea, ui.m_pEqualizerMiddleFrequencyKnob,
        ui.m_pEqualizerMiddleFrequencyTextEdit, EqualizerEditTarget::MiddleFrequency);
    trackEditGestures(ui.m_pEqualizerMiddleGainArea, ui.m_pEqualizerMiddleGainKnob,
        ui.m_pEqualizerMiddleGainTextEdit, EqualizerEditTarget::MiddleGain);
    trackEditGestures(ui.m_pEqualizerHighFrequencyArea, ui.m_pEqualizerHighFrequencyKnob,
        ui.m_pEqualizerHighFrequencyTextEdit, EqualizerEditTarget::HighFrequency);
    trackEditGestures(ui.m_pEqualizerHighGainArea, ui.m_pEqualizerHighGainKnob,
        ui.m_pEqualizerHighGainTextEdit, EqualizerEditTarget::HighGain);
}

void ORVChStripEditor::trackEditGestures(
    QWidget *area, KnobController *knob, TextEditController *text, EqualizerEditTarget::Control control)
{
    using Target = EqualizerEditTarget;
    connect(knob, &KnobController::drag, this,
        [this, control](bool active) { setEditGesture(Target::KnobDrag, control, active); });
    connect(text, &TextEditController::drag, this,
        [this, control](bool active) { setEditGesture(Target::TextDrag, control, active); });
    connect(text, &TextEditController::textEdit, this,
        [this, control](bool active) { setEditGesture(Target::TextEdit, control, active); });
    area->setProperty(HoverControlProperty, int(control));
    area->installEventFilter(this);
}

void ORVChStripEditor::setEditGesture(
    EqualizerEditTarget::Gesture gesture, EqualizerEditTarget::Control control, bool active)
{
    m_editTarget.set(gesture, control, active);
    updateEditTarget();
}

bool ORVChStripEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
        const QVariant control = watched->property(HoverControlProperty);
        if (control.isValid())
            setEditGesture(EqualizerEditTarget::Hover, EqualizerEditTarget::Control(control.toInt()),
                event->type() == QEvent::Enter);
    }
    return EffectEditor::eventFilter(watched, event);
}

// Old presets are offered for conversion once, when the panel first shows,
// and only to a user who has some and has not declined.
void ORVChStripEditor::showEvent(QShowEvent *event)
{
    EffectEditor::showEvent(event);
    if (m_conversionOffered)
        return;
    m_conversionOffered = true;
    if (ORVChStripPresetConverter::shouldOfferConversion())
        m_pPresetConverter->open();
}

void ORVChStripEditor::updateEditTarget()
{
    m_pUi->m_pEqualizerGraph->setEditTarget(ORVChStripEqualizerGraph::EditTarget(m_editTarget.band()));
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
    // The rescale put the panel at its full size; a slide under way continues from where it is.
    if (m_pMorphingPresetSlide->isRunning())
        placeMorphingPreset(m_pMorphingPresetSlide->visibleFraction());
}

void ORVChStripEditor::updateParameters()
{
    const auto ch = static_cast<unsigned short>(m_ch1);
    for (const Binding &binding : std::as_const(m_bindings)) {
        unsigned short prmId = 0;
        const bool found = m_pMemAPI && getParameter(binding.key, &prmId);
        for (AbstractController *control : binding.controls) {
            if (control)
                control->setMemAPIValue(found ? m_pMemAPI : nullptr, found ? prmId : 0, found ? ch : 0);
        }
    }
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

    m_meters.clear();
    m_meters.add(this, Keys::InputMeter, m_ch1, false, ui.m_pInputStereoMeterL);
    m_meters.add(this, Keys::InputMeter, m_ch1, false, ui.m_pInputMonoMeter);
    m_meters.add(this, Keys::OutputMeter, m_ch1, false, ui.m_pOutputStereoMeterL);
    m_meters.add(this, Keys::OutputMeter, m_ch1, false, ui.m_pOutputMonoMeter);
    if (stereo) {
        m_meters.add(this, Keys::InputMeter, m_ch2, false, ui.m_pInputStereoMeterR);
        m_meters.add(this, Keys::OutputMeter, m_ch2, false, ui.m_pOutputStereoMeterR);
    }
    m_meters.add(this, Keys::SideChainMeter, m_ch1, false, ui.m_pSideChainMeter);
    m_meters.add(this, Keys::GainReductionMeter, m_ch1, false, ui.m_pGainReductionMeter);

    unsigned short index = 0;
    const auto ch = static_cast<unsigned short>(std::max(m_ch1, 0));
    m_detectorMeterIndex = getMeterIndex(Keys::SideChainMeter, ch, false, &index) ? index : -1;
    m_reductionMeterIndex = getMeterIndex(Keys::GainReductionMeter, ch, false, &index) ? index : -1;
}

void ORVChStripEditor::notifyMeterDbUpdated(unsigned int *values, unsigned int count)
{
    m_meters.route(values, count);
    if (!values || m_detectorMeterIndex < 0 || m_reductionMeterIndex < 0
        || unsigned(m_detectorMeterIndex) >= count || unsigned(m_reductionMeterIndex) >= count)
        return;
    // Tenths of a dB; the gain change is negative while the compressor reduces.
    const double detectorDb = static_cast<int>(values[m_detectorMeterIndex]) / 10.0;
    const double changeDb = static_cast<int>(values[m_reductionMeterIndex]) / 10.0;
    m_pUi->m_pCompressorGraph->setOperatingPoint(detectorDb, detectorDb + changeDb);
    m_operatingPointTimeout.start(OperatingPointTimeoutMs, this);
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
        if (m_morphingPresetOpen) {
            closeMorphingPreset();
            event->accept();
            return;
        }
    }
    EffectEditor::keyPressEvent(event);
}

void ORVChStripEditor::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_operatingPointTimeout.timerId()) {
        EffectEditor::timerEvent(event);
        return;
    }
    // The meters stopped: the point would only show a stale level.
    m_operatingPointTimeout.stop();
    m_pUi->m_pCompressorGraph->clearOperatingPoint();
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
    m_observed.attach(this, m_pMemAPI, ch);
    m_pMorphMatch->attach(this, m_pMemAPI, ch);
}

int ORVChStripEditor::observedValue(int observed) const
{
    int value = 0;
    if (!m_pMemAPI || !m_observed.found(observed)
        || m_pMemAPI->getValue(m_observed.id(observed), static_cast<unsigned short>(m_ch1), &value) < 0)
        return -1;
    return value;
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

// Which controls take input: a bypassed section, a band switched off and
// everything behind the open morphing list is disabled, and the captions of a
// bypassed or covered section dim.
void ORVChStripEditor::updateSections()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    const bool open = m_morphingPresetOpen;
    // A switch the model lacks reads -1: sections count as running, bands as on.
    const bool compressorOn = observedValue(CompressorBypass) <= 0;
    const bool equalizerOn = observedValue(EqualizerBypass) <= 0;
    const bool compressorLive = compressorOn && !open;
    const bool equalizerLive = equalizerOn && !open;
    const bool sideChainLive = compressorLive && observedValue(SideChainOn) != 0;
    const bool lowLive = equalizerLive && observedValue(LowOn) != 0;
    const bool middleLive = equalizerLive && observedValue(MiddleOn) != 0;
    const bool highLive = equalizerLive && observedValue(HighOn) != 0;

    setAllEnabled({ ui.m_pCompressorAttackArea, ui.m_pCompressorReleaseArea, ui.m_pCompressorRatioArea,
                      ui.m_pCompressorKneeArea, ui.m_pCompressorDriveKnob, ui.m_pCompressorDriveTextEdit,
                      ui.m_pSideChainButton },
        compressorLive);
    setAllEnabled(
        { ui.m_pSideChainQualityArea, ui.m_pSideChainFrequencyArea, ui.m_pSideChainGainArea }, sideChainLive);
    setAllEnabled({ ui.m_pEqualizerLowButton, ui.m_pEqualizerMiddleButton, ui.m_pEqualizerHighButton,
                      ui.m_pEqualizerGraph },
        equalizerLive);
    setAllEnabled({ ui.m_pEqualizerLowFrequencyArea, ui.m_pEqualizerLowGainArea }, lowLive);
    setAllEnabled({ ui.m_pEqualizerMiddleQualityArea, ui.m_pEqualizerMiddleFrequencyArea,
                      ui.m_pEqualizerMiddleGainArea },
        middleLive);
    setAllEnabled({ ui.m_pEqualizerHighFrequencyArea, ui.m_pEqualizerHighGainArea }, highLive);
    setAllEnabled(
        { ui.m_pCompressorButton, ui.m_pEqualizerButton, ui.m_pMorphingKnob, ui.m_pMorphingPresetButton },
        !open);

    m_compressorDimmer.setDimmed(!compressorLive);
    m_equalizerDimmer.setDimmed(!equalizerLive);
}

// The lit knee button follows the value; a button held down shows pressed
// instead, so the press is visible before the host confirms.
void ORVChStripEditor::updateKnee()
{
    const Ui::ORVChStripEditor &ui = *m_pUi;
    SvgLabel *const lit[] = { ui.m_pCompressorKneeSelectSoftBackground,
        ui.m_pCompressorKneeSelectMediumBackground, ui.m_pCompressorKneeSelectHardBackground };
    SvgLabel *const pushed[] = { ui.m_pCompressorKneePushSoftBackground,
        ui.m_pCompressorKneePushMediumBackground, ui.m_pCompressorKneePushHardBackground };
    const QAbstractButton *const buttons[] = { ui.m_pCompressorKneeSoftButton,
        ui.m_pCompressorKneeMediumButton, ui.m_pCompressorKneeHardButton };
    ButtonGroupController *group = ui.m_pCompressorKneeButtonGroup;
    const int selected = m_pMemAPI ? group->value() - group->minimumValue() : -1;
    int held = -1;
    for (int i = 0; i < 3; ++i) {
        if (buttons[i]->isDown())
            held = i;
    }
    for (int i = 0; i < 3; ++i) {
        pushed[i]->setVisible(i == held);
        lit[i]->setVisible(held < 0 && i == selected);
    }
}

void ORVChStripEditor::updateMorphingName()
{
    QByteArray name;
    if (m_pMemAPI && m_observed.found(MorphName)) {
        const auto ch = static_cast<unsigned short>(m_ch1);
        for (int i = 0; i < ORVChStripParameters::MorphSystemNameLength; ++i) {
            int character = 0;
            if (m_pMemAPI->getValue(m_observed.id(MorphName), ch, &character, i) < 0 || character == 0)
                break;
            name.append(char(character));
        }
    }
    PushButtonController *button = m_pUi->m_pMorphingPresetButton;
    // Without a set the button says what it is for.
    button->setText(name.isEmpty() ? tr("Choose a morph set...") : QString::fromUtf8(name));
    button->setToolTip(name.isEmpty() ? tr("Choose a morph set") : QString::fromUtf8(name));
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

void ORVChStripEditor::showMorphMatch(bool matches)
{
    m_pUi->m_pMorphingKnob->setBackgroundSvg(image(matches ? "back_morphing.svg" : "back_morphing_off.svg"));
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

QRect ORVChStripEditor::morphingPresetGeometry() const
{
    const QRect &design = MorphingPresetDesignRect;
    const double s = scale();
    return QRect(scaled(design.left(), s), scaled(design.top(), s), scaled(design.width(), s),
        scaled(design.height(), s));
}

void ORVChStripEditor::openMorphingPreset()
{
    if (m_morphingPresetOpen)
        return;
    m_morphingPresetOpen = true;
    m_pMorphingPresetList->raise();
    m_pMorphingPresetList->show();
    // Before the controls behind the list are disabled, which moves the focus.
    m_pMorphingPresetFocus->enter();
    updateSections();
    m_pMorphingPresetSlide->open();
}

void ORVChStripEditor::closeMorphingPreset()
{
    if (!m_morphingPresetOpen)
        return;
    m_morphingPresetOpen = false;
    updateSections();
    m_pMorphingPresetFocus->leave();
    m_pMorphingPresetSlide->close();
}

// The panel grows upwards from its bottom edge.
void ORVChStripEditor::placeMorphingPreset(double openFraction)
{
    const QRect full = morphingPresetGeometry();
    const int bottom = full.bottom() + 1;
    const int top = bottom - int((bottom - full.top()) * openFraction + 0.5);
    m_pMorphingPresetList->setGeometry(full.left(), top, full.width(), bottom - top);
}

void ORVChStripEditor::finishMorphingPresetSlide(bool opened)
{
    if (opened) {
        m_pMorphingPresetList->setGeometry(morphingPresetGeometry());
        m_pMorphingPresetList->setFocus();
    } else {
        m_pMorphingPresetList->hide();
    }
}
