#include "ORVChStrip/ControlsGallery.h"

#include <QAbstractButton>
#include <QLabel>
#include <algorithm>

#include "Common/EffectEditor.h"
#include "Common/EffectStyle.h"
#include "Common/ParameterLookup.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PeakMeterController.h"
#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/RoundMeterController.h"
#include "Common/Widgets/SvgLabel.h"
#include "Common/Widgets/TextEditController.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IModelInfo.h"
#include "ORVChStrip/KneeSelector.h"
#include "ORVChStrip/ORVChStripPalette.h"

using namespace CommonController_MemAPI;

namespace {

QString image(const char *name)
{
    return QStringLiteral(":/image/orvchstrip/") + QLatin1String(name);
}

QFont designFont(const char *family, int pointSize)
{
    QFont font { QString::fromLatin1(family) };
    font.setPointSize(pointSize);
    return font;
}

KnobController *knob(
    QWidget *parent, const QRect &rect, const char *knobSvg, const char *backgroundSvg = nullptr)
{
    auto *control = new KnobController(parent);
    control->setGeometry(rect);
    control->setKnobSvg(image(knobSvg));
    if (backgroundSvg)
        control->setBackgroundSvg(image(backgroundSvg));
    return control;
}

TextEditController *textField(QWidget *parent, const QRect &rect)
{
    auto *control = new TextEditController(parent);
    control->setGeometry(rect);
    control->setAlignment(Qt::AlignCenter);
    control->setTextTrim(true);
    control->setFont(designFont("M+ 1c medium", 8));
    return control;
}

PushButtonController *switchButton(QWidget *parent, const QRect &rect)
{
    auto *button = new PushButtonController(parent);
    button->setGeometry(rect);
    button->setCheckable(true);
    button->setButtonSvg(image("btn_off.svg"));
    button->setPushButtonSvg(image("btn_off_dw.svg"));
    button->setOnButtonSvg(image("btn_on.svg"));
    button->setOnPushButtonSvg(image("btn_on_dw.svg"));
    button->setShadowSvg(image("btn_shadow.svg"));
    button->setPushShadowSvg(image("btn_shadow.svg"));
    return button;
}

// The 12 x 318 meter in its slot, as the editor's input and output meters.
RoundMeterController *slotMeter(QWidget *slot, int x, const QString &name)
{
    auto *meter = new RoundMeterController(slot);
    meter->setGeometry(x, 4, 12, 318);
    meter->setMeterTopMargin(4);
    meter->setMeterOverHeight(8);
    meter->setMeterOverMargin(6);
    // Narrow sockets, so that the two lamps of a pair do not touch.
    meter->setMeterOverBackgroundWidth(6);
    meter->setMeterOverBackgroundHeight(6);
    meter->setMeterOverWidth(4);
    meter->setAccessibleName(name);
    return meter;
}

// The 6 x 181 meters of the compressor section share these margins.
void setCompactGeometry(MeterController *meter, const QRect &rect)
{
    meter->setGeometry(rect);
    meter->setMeterTopMargin(4);
    meter->setMeterOverHeight(8);
    meter->setMeterOverMargin(6);
}

} // namespace

ControlsGallery::ControlsGallery(IModelInfo *modelInfo, IMemAPI *memAPI, QWidget *parent)
    : QWidget(parent)
    , m_pModelInfo(modelInfo)
    , m_pMemAPI(memAPI)
    , m_pStyle(new EffectStyle)
{
    m_pStyle->setParent(this);
    setObjectName(QStringLiteral("ControlsGallery"));
    setWindowTitle(tr("Orvane Channel Strip - controls gallery"));
    setFixedSize(DesignWidth, DesignHeight);
    setPalette(ORVChStripPalette::editorPalette());
    setAutoFillBackground(true);
    setFont(designFont("M+ 1c regular", 8));

    buildHeader();
    buildButtons();
    buildKnobs();
    buildFaderAndTextFields();
    buildMeters();

    EffectEditor::initializeFontStyle(this);
    EffectEditor::initializeFontSize(this);
    EffectEditor::initializeStyle(this, m_pStyle);

    if (m_pMemAPI && m_pMemAPI->getMeterNotifier(&m_pMeterNotifier) >= 0 && m_pMeterNotifier)
        m_pMeterNotifier->addMeterObserver(this);
    else
        m_pMeterNotifier = nullptr;
    updateKnee();
}

ControlsGallery::~ControlsGallery()
{
    if (m_pMeterNotifier)
        m_pMeterNotifier->removeMeterObserver(this);
}

void ControlsGallery::bind(AbstractController *control, const char *key)
{
    unsigned short prmId = 0;
    if (m_pMemAPI && EffectEditor::getParameter(m_pModelInfo, key, &prmId))
        control->setMemAPIValue(m_pMemAPI, prmId, 0, 0);
}

QStringList ControlsGallery::valueTexts(const char *key) const
{
    unsigned short prmId = 0;
    int minimum = 0;
    int maximum = -1;
    if (!m_pMemAPI || !EffectEditor::getParameter(m_pModelInfo, key, &prmId)
        || m_pMemAPI->getRange(prmId, 0, &minimum, &maximum) < 0)
        return {};
    QStringList texts;
    for (int value = minimum; value <= maximum && texts.size() < 1024; ++value) {
        char buffer[256] = {};
        if (m_pMemAPI->getValueString(prmId, 0, value, buffer, int(sizeof buffer)) < 0)
            buffer[0] = '\0';
        buffer[sizeof buffer - 1] = '\0';
        texts << QString::fromLocal8Bit(buffer).trimmed();
    }
    return texts;
}

void ControlsGallery::route(MeterController *meter, const char *key, unsigned short ch, bool right)
{
    m_meters.add(ParameterLookup(m_pModelInfo), key, ch, right, meter);
}

void ControlsGallery::notifyMeterDbUpdated(unsigned int *values, unsigned int count)
{
    m_meters.route(values, count);
}

QLabel *ControlsGallery::sectionTitle(const QString &title, int x, int y, int width)
{
    auto *label = new QLabel(title, this);
    label->setGeometry(x, y, width, 18);
    label->setFont(designFont("M+ 1c bold", 9));
    auto *line = new QWidget(this);
    line->setGeometry(x, y + 20, width, 1);
    line->setAutoFillBackground(true);
    line->setBackgroundRole(QPalette::Midlight);
    return label;
}

QLabel *ControlsGallery::caption(const QString &name, const char *key, const QRect &control, int width)
{
    const QString dim = palette().color(QPalette::Inactive, QPalette::PlaceholderText).name();
    auto *label = new QLabel(this);
    label->setTextFormat(Qt::RichText);
    label->setText(QStringLiteral("%1<br><span style=\"color:%2\">%3</span>")
                       .arg(name.toHtmlEscaped(), dim, QString::fromLatin1(key).toHtmlEscaped()));
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setGeometry(control.center().x() - width / 2 + 1, control.bottom() + 6, width, 36);
    return label;
}

QLabel *ControlsGallery::scaleLabel(QWidget *parent, const QString &text, int y)
{
    auto *label = new QLabel(text, parent);
    label->setGeometry(0, y, 22, 14);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setFont(designFont("M+ 1c regular", 7));
    return label;
}

void ControlsGallery::buildHeader()
{
    auto *logo = new SvgLabel(this);
    logo->setObjectName(QStringLiteral("m_pGalleryLogo"));
    logo->setSvg(image("logo_orvcs.svg"));
    logo->setGeometry(20, 14, 414, 15);
    logo->setAccessibleName(tr("Orvane Channel Strip"));
    auto *title = new QLabel(tr("CONTROLS GALLERY"), this);
    title->setGeometry(450, 13, 130, 18);
    title->setFont(designFont("M+ 1c bold", 8));
    auto *note = new QLabel(tr("The product logo on the left is an SvgLabel."), this);
    note->setGeometry(580, 13, 300, 18);
    note->setForegroundRole(QPalette::PlaceholderText);
}

void ControlsGallery::buildButtons()
{
    sectionTitle(tr("BUTTONS"), 20, 44, 920);

    auto *bypass = switchButton(this, QRect(44, 84, 22, 22));
    bypass->setObjectName(QStringLiteral("m_pBypassSwitch"));
    bypass->setAccessibleName(tr("Compressor bypass"));
    bind(bypass, ChannelStripKeys::CompressorBypass);
    caption(tr("Switch"), ChannelStripKeys::CompressorBypass, bypass->geometry(), 90);

    auto *momentary = new PushButtonController(this);
    momentary->setObjectName(QStringLiteral("m_pMomentaryButton"));
    momentary->setGeometry(140, 84, 22, 22);
    momentary->setButtonSvg(image("btn_off.svg"));
    momentary->setPushButtonSvg(image("btn_on_dw.svg"));
    momentary->setShadowSvg(image("btn_shadow.svg"));
    momentary->setPushShadowSvg(image("btn_shadow.svg"));
    momentary->setAccessibleName(tr("Side chain on while held"));
    bind(momentary, ChannelStripKeys::SideChainOn);
    caption(tr("Push button"), ChannelStripKeys::SideChainOn, momentary->geometry(), 90);

    auto *checkbox = new PushButtonController(this);
    checkbox->setObjectName(QStringLiteral("m_pLowBandCheckBox"));
    checkbox->setGeometry(240, 87, 16, 16);
    checkbox->setCheckable(true);
    checkbox->setButtonSvg(image("checkbox_off_up.svg"));
    checkbox->setPushButtonSvg(image("checkbox_off_dw.svg"));
    checkbox->setOnButtonSvg(image("checkbox_on_up.svg"));
    checkbox->setOnPushButtonSvg(image("checkbox_on_dw.svg"));
    checkbox->setAccessibleName(tr("Low band on"));
    bind(checkbox, ChannelStripKeys::EqualizerLowOn);
    caption(tr("Check box"), ChannelStripKeys::EqualizerLowOn, checkbox->geometry(), 90);

    auto *ratio = new PullDownButtonController(this);
    ratio->setObjectName(QStringLiteral("m_pRatioPullDown"));
    ratio->setGeometry(310, 81, 120, 28);
    ratio->setButtonSvg(image("btn_morph_preset.svg"));
    ratio->setPushButtonSvg(image("btn_morph_preset_dw.svg"));
    ratio->setSvgAlignment(Qt::AlignJustify);
    ratio->setTextLeftMargin(12);
    ratio->setTextRightMargin(12);
    ratio->setFont(designFont("M+ 1c medium", 8));
    ratio->setAccessibleName(tr("Compressor ratio"));
    ratio->setTextList(valueTexts(ChannelStripKeys::CompressorRatio));
    bind(ratio, ChannelStripKeys::CompressorRatio);
    caption(tr("Pull-down button"), ChannelStripKeys::CompressorRatio, ratio->geometry(), 120);

    // The knee selector: a frame, one lit and one pressed picture per
    // position, and three transparent buttons in a group on top.
    const QRect knee(470, 81, 157, 29);
    auto *frame = new SvgLabel(this);
    frame->setGeometry(knee);
    frame->setSvg(image("btn_knee_frame.svg"));
    const char *const lit[] = { "btn_knee_soft.svg", "btn_knee_medium.svg", "btn_knee_hard.svg" };
    const char *const pushed[] = { "btn_knee_soft_dw.svg", "btn_knee_medium_dw.svg", "btn_knee_hard_dw.svg" };
    SvgLabel *litBackgrounds[3];
    SvgLabel *pushedBackgrounds[3];
    for (int i = 0; i < 3; ++i) {
        auto *select = new SvgLabel(this);
        select->setGeometry(knee);
        select->setSvg(image(lit[i]));
        select->hide();
        litBackgrounds[i] = select;
        auto *push = new SvgLabel(this);
        push->setGeometry(knee);
        push->setSvg(image(pushed[i]));
        push->hide();
        pushedBackgrounds[i] = push;
    }
    auto *kneeGroup = new ButtonGroupController(this);
    kneeGroup->setObjectName(QStringLiteral("m_pKneeButtonGroup"));
    kneeGroup->setGeometry(knee.adjusted(0, 0, 0, 0));
    kneeGroup->setFlat(true);
    kneeGroup->setAccessibleName(tr("Compressor knee"));
    m_pKneeSelector = std::make_unique<KneeSelector>(kneeGroup);
    const QString names[] = { tr("SOFT"), tr("MEDIUM"), tr("HARD") };
    for (int i = 0; i < 3; ++i) {
        auto *button = new PushButtonController(kneeGroup);
        button->setGeometry(1 + 52 * i, 1, 51, 27);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setText(names[i]);
        button->setFont(designFont("M+ 1c medium", 7));
        m_pKneeSelector->addPosition(button, litBackgrounds[i], pushedBackgrounds[i]);
    }
    m_pKneeSelector->connectChanges(this, &ControlsGallery::updateKnee);
    bind(kneeGroup, ChannelStripKeys::CompressorKnee);
    caption(tr("Button group"), ChannelStripKeys::CompressorKnee, knee, 157);
}

void ControlsGallery::updateKnee()
{
    if (m_pKneeSelector)
        m_pKneeSelector->refresh();
}

void ControlsGallery::buildKnobs()
{
    sectionTitle(tr("KNOBS"), 20, 150, 920);

    struct Cell
    {
        const char *svg;
        const char *key;
        const char *name;
        const char *postfix;
    };
    const Cell cells[] = {
        { "knob_comp.svg", ChannelStripKeys::CompressorAttack, "Compressor knob", nullptr },
        { "knob_sidechain.svg", ChannelStripKeys::SideChainFrequency, "Side-chain knob", " Hz" },
        { "knob_eq_low.svg", ChannelStripKeys::EqualizerLowFrequency, "Low band knob", " Hz" },
        { "knob_eq_mid.svg", ChannelStripKeys::EqualizerMiddleFrequency, "Middle band knob", " Hz" },
        { "knob_eq_high.svg", ChannelStripKeys::EqualizerHighFrequency, "High band knob", " Hz" },
    };
    int x = 30;
    for (const Cell &cell : cells) {
        const QRect rect(x + 12, 214, 36, 36);
        KnobController *control = knob(this, rect, cell.svg);
        control->setShadowSvg(image("knob_shadow.svg"));
        control->setObjectName(QStringLiteral("m_pKnob_%1").arg(QLatin1String(cell.key)));
        control->setAccessibleName(tr(cell.name));
        bind(control, cell.key);
        TextEditController *text = textField(this, QRect(x, 252, 60, 14));
        text->setObjectName(QStringLiteral("m_pText_%1").arg(QLatin1String(cell.key)));
        if (cell.postfix)
            text->setPostfix(QString::fromLatin1(cell.postfix));
        bind(text, cell.key);
        caption(tr(cell.name), cell.key, QRect(x, 252, 60, 14), 96);
        x += 96;
    }

    KnobController *drive = knob(this, QRect(510, 180, 102, 102), "knob_compdrive.svg", "back_compdrive.svg");
    drive->setObjectName(QStringLiteral("m_pDriveKnob"));
    drive->setStartAngle(220.0);
    drive->setSpanAngle(280.0);
    drive->setInside(20.0);
    drive->setOutside(32.0);
    drive->setAccessibleName(tr("Compressor drive"));
    bind(drive, ChannelStripKeys::CompressorDrive);
    caption(tr("Drive knob"), ChannelStripKeys::CompressorDrive, drive->geometry(), 110);

    KnobController *morph = knob(this, QRect(636, 166, 128, 128), "knob_morphing.svg", "back_morphing.svg");
    morph->setObjectName(QStringLiteral("m_pMorphKnob"));
    morph->setInside(26.0);
    morph->setOutside(40.0);
    morph->setThick(3.0);
    morph->setAccessibleName(tr("Morph position"));
    bind(morph, ChannelStripKeys::MorphValue);
    caption(tr("Morph knob"), ChannelStripKeys::MorphValue, QRect(636, 166, 128, 122), 110);

    KnobController *output = knob(this, QRect(800, 200, 56, 56), "knob_output.svg", "back_output.svg");
    output->setObjectName(QStringLiteral("m_pOutputKnob"));
    output->setInside(6.0);
    output->setOutside(23.0);
    output->setAccessibleName(tr("Output level"));
    bind(output, ChannelStripKeys::OutputLevel);
    TextEditController *outputText = textField(this, QRect(798, 258, 60, 14));
    outputText->setObjectName(QStringLiteral("m_pOutputText"));
    bind(outputText, ChannelStripKeys::OutputLevel);
    caption(tr("Output knob"), ChannelStripKeys::OutputLevel, outputText->geometry(), 110);
}

void ControlsGallery::buildFaderAndTextFields()
{
    sectionTitle(tr("FADER AND TEXT FIELDS"), 20, 330, 300);

    auto *fader = new FaderController(this);
    fader->setObjectName(QStringLiteral("m_pOutputFader"));
    fader->setGeometry(46, 366, 28, 160);
    fader->setKnobSvg(image("fader_knob.svg"));
    fader->setBackgroundSvg(image("fader_back.svg"));
    fader->setEnableDoubleClick(true);
    fader->setAccessibleName(tr("Output level"));
    bind(fader, ChannelStripKeys::OutputLevel);
    caption(tr("Fader"), ChannelStripKeys::OutputLevel, fader->geometry(), 90);

    struct Field
    {
        const char *key;
        const char *name;
        const char *postfix;
    };
    const Field fields[] = {
        { ChannelStripKeys::EqualizerMiddleFrequency, "Frequency", " Hz" },
        { ChannelStripKeys::CompressorRatio, "Ratio", nullptr },
        { ChannelStripKeys::CompressorKnee, "Knee", nullptr },
        { ChannelStripKeys::CompressorThresholdOffset, "Threshold offset", nullptr },
    };
    int y = 372;
    for (const Field &field : fields) {
        auto *name = new QLabel(tr(field.name), this);
        name->setGeometry(120, y, 96, 14);
        name->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        TextEditController *text = textField(this, QRect(224, y, 70, 14));
        text->setObjectName(QStringLiteral("m_pField_%1").arg(QLatin1String(field.key)));
        text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        text->setAccessibleName(tr(field.name));
        if (field.postfix)
            text->setPostfix(QString::fromLatin1(field.postfix));
        bind(text, field.key);
        auto *key = new QLabel(QString::fromLatin1(field.key), this);
        key->setGeometry(224, y + 14, 90, 14);
        key->setForegroundRole(QPalette::PlaceholderText);
        y += 38;
    }
    auto *hint = new QLabel(tr("Text fields: drag, wheel, or double-click to type."), this);
    hint->setGeometry(120, y, 230, 28);
    hint->setWordWrap(true);
    hint->setForegroundRole(QPalette::PlaceholderText);
}

void ControlsGallery::buildMeters()
{
    sectionTitle(tr("METERS"), 360, 330, 620);

    // The editor's stereo input pair in its slot, with the shared scale.
    auto *pairSlot = new SvgLabel(this);
    pairSlot->setGeometry(384, 362, 20, 326);
    pairSlot->setSvg(image("back_meter.svg"));
    RoundMeterController *inputLeft = slotMeter(pairSlot, 0, tr("Input level, left"));
    RoundMeterController *inputRight = slotMeter(pairSlot, 8, tr("Input level, right"));
    route(inputLeft, ChannelStripKeys::InputMeter, 0, false);
    route(inputRight, ChannelStripKeys::InputMeter, 0, true);

    auto *scale = new QWidget(this);
    scale->setGeometry(404, 362, 24, 326);
    const struct
    {
        const char *text;
        int value;
    } marks[] = { { "0", 0 }, { "-3", -30 }, { "-6", -60 }, { "-12", -120 }, { "-18", -180 }, { "-30", -300 },
        { "-40", -400 }, { "-60", -600 } };
    for (const auto &mark : marks) {
        const double y = 4 + inputLeft->scaledMeterRect().top()
            + inputLeft->scaledMeterRect().height() * (1.0 - inputLeft->convertNormalized(mark.value));
        scaleLabel(scale, QString::fromLatin1(mark.text), int(y + 0.5) - 7);
    }
    caption(tr("Round meters"), ChannelStripKeys::InputMeter, QRect(384, 362, 44, 326), 110);

    auto *monoSlot = new SvgLabel(this);
    monoSlot->setGeometry(480, 362, 12, 326);
    monoSlot->setSvg(image("back_meter_mono.svg"));
    RoundMeterController *output = slotMeter(monoSlot, 0, tr("Output level"));
    route(output, ChannelStripKeys::OutputMeter, 0, false);
    caption(tr("Mono round"), ChannelStripKeys::OutputMeter, monoSlot->geometry(), 80);

    auto *sideChain = new RoundMeterController(this);
    sideChain->setObjectName(QStringLiteral("m_pSideChainMeter"));
    setCompactGeometry(sideChain, QRect(560, 380, 6, 181));
    sideChain->setMeterOverWidth(4);
    sideChain->setMeterOverBackgroundWidth(6);
    sideChain->setMeterOverBackgroundHeight(6);
    sideChain->setAccessibleName(tr("Side-chain level"));
    route(sideChain, ChannelStripKeys::SideChainMeter, 0, false);
    caption(tr("Side-chain"), ChannelStripKeys::SideChainMeter, sideChain->geometry(), 80);

    auto *reduction = new RoundGainReductionMeterController(this);
    reduction->setObjectName(QStringLiteral("m_pGainReductionMeter"));
    reduction->setGeometry(640, 380, 6, 181);
    reduction->setMeterWidth(4);
    route(reduction, ChannelStripKeys::GainReductionMeter, 0, false);
    auto *reductionScale = new QWidget(this);
    reductionScale->setGeometry(650, 380, 24, 181);
    const struct
    {
        const char *text;
        int value;
    } reductionMarks[]
        = { { "0", 0 }, { "-3", -30 }, { "-6", -60 }, { "-9", -90 }, { "-12", -120 }, { "-18", -180 } };
    for (const auto &mark : reductionMarks) {
        const double y = reduction->scaledMeterRect().top()
            + reduction->scaledMeterRect().height() * reduction->reductionDepth(mark.value);
        QLabel *label = scaleLabel(reductionScale, QString::fromLatin1(mark.text), int(y + 0.5) - 7);
        label->move(0, std::clamp(label->y(), 0, 181 - 14));
    }
    caption(tr("Gain reduction"), ChannelStripKeys::GainReductionMeter, QRect(640, 380, 34, 181), 90);

    auto *bar = new MeterController(this);
    bar->setObjectName(QStringLiteral("m_pBarMeter"));
    bar->setGeometry(740, 380, 8, 181);
    bar->setAccessibleName(tr("Output level, left"));
    route(bar, ChannelStripKeys::OutputMeter, 0, false);
    caption(tr("Bar meter"), "meter_eq L", bar->geometry(), 80);

    auto *peak = new PeakMeterController(this);
    peak->setObjectName(QStringLiteral("m_pPeakMeter"));
    peak->setGeometry(820, 380, 8, 181);
    peak->setAccessibleName(tr("Output level, right"));
    route(peak, ChannelStripKeys::OutputMeter, 0, true);
    caption(tr("Peak meter"), "meter_eq R", peak->geometry(), 80);

    auto *minus225 = new MeterController(this);
    minus225->setObjectName(QStringLiteral("m_pMinus225Meter"));
    minus225->setGeometry(900, 380, 8, 181);
    minus225->setMeterType(MeterController::Minus225);
    minus225->setAccessibleName(tr("Side-chain level from -22.5 dB"));
    route(minus225, ChannelStripKeys::SideChainMeter, 0, true);
    caption(tr("-22.5 dB bar"), "meter_sc_out R", minus225->geometry(), 96);
}
