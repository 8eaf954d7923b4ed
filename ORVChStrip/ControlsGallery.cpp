#include "ORVChStrip/ControlsGallery.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMetaEnum>
#include <algorithm>

#include "Common/EffectEditor.h"
#include "Common/EffectStyle.h"
#include "Common/ParameterLookup.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/RoundMeterController.h"
#include "Common/Widgets/SvgLabel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IModelInfo.h"
#include "ORVChStrip/KneeSelector.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ui_ControlsGallery.h"

using namespace CommonController_MemAPI;

namespace {

// The form marks what it cannot say in Designer with dynamic properties:
// "parameterKey" on a control names the parameter it is bound to,
// "captionKey" on a caption the key shown dimmed on its second line, and
// "paletteRole" the palette role a label writes in or a rule is filled with.
constexpr char ParameterKeyProperty[] = "parameterKey";
constexpr char CaptionKeyProperty[] = "captionKey";
constexpr char PaletteRoleProperty[] = "paletteRole";

QLabel *scaleLabel(QWidget *parent, const QString &text, int y)
{
    auto *label = new QLabel(text, parent);
    label->setGeometry(0, y, 22, 14);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont font { QStringLiteral("M+ 1c regular") };
    font.setPointSize(7);
    label->setFont(font);
    return label;
}

} // namespace

ControlsGallery::ControlsGallery(IModelInfo *modelInfo, IMemAPI *memAPI, QWidget *parent)
    : QWidget(parent)
    , m_pUi(std::make_unique<Ui::ControlsGallery>())
    , m_pModelInfo(modelInfo)
    , m_pMemAPI(memAPI)
    , m_pStyle(new EffectStyle)
{
    initializeOrvChStripResources();
    m_pStyle->setParent(this);
    m_pUi->setupUi(this);
    setPalette(ORVChStripPalette::editorPalette());
    applyPaletteRoles();
    showCaptionKeys();

    m_pUi->m_pRatioPullDown->setTextList(valueTexts(ChannelStripKeys::CompressorRatio));
    bindControls();
    connectKneeSelector();
    addMeterScales();
    routeMeters();

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

void ControlsGallery::applyPaletteRoles()
{
    const QMetaEnum roles = QMetaEnum::fromType<QPalette::ColorRole>();
    for (QWidget *widget : findChildren<QWidget *>()) {
        const QByteArray name = widget->property(PaletteRoleProperty).toByteArray();
        bool known = false;
        const auto role = QPalette::ColorRole(roles.keyToValue(name.constData(), &known));
        if (name.isEmpty() || !known)
            continue;
        if (qobject_cast<QLabel *>(widget)) {
            widget->setForegroundRole(role);
        } else {
            widget->setAutoFillBackground(true);
            widget->setBackgroundRole(role);
        }
    }
}

void ControlsGallery::showCaptionKeys()
{
    const QString dim = palette().color(QPalette::Inactive, QPalette::PlaceholderText).name();
    for (QLabel *label : findChildren<QLabel *>()) {
        const QString key = label->property(CaptionKeyProperty).toString();
        if (key.isEmpty())
            continue;
        label->setTextFormat(Qt::RichText);
        label->setText(QStringLiteral("%1<br><span style=\"color:%2\">%3</span>")
                           .arg(label->text().toHtmlEscaped(), dim, key.toHtmlEscaped()));
    }
}

void ControlsGallery::bindControls()
{
    for (QWidget *widget : findChildren<QWidget *>()) {
        const QByteArray key = widget->property(ParameterKeyProperty).toByteArray();
        if (auto *control = dynamic_cast<AbstractController *>(widget); control && !key.isEmpty())
            bind(control, key.constData());
    }
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

void ControlsGallery::connectKneeSelector()
{
    // One lit and one pressed picture per position under the three
    // transparent buttons of the group.
    m_pKneeSelector = std::make_unique<KneeSelector>(m_pUi->m_pKneeButtonGroup);
    m_pKneeSelector->addPosition(m_pUi->m_pKneeSoftButton, m_pUi->m_pKneeSoftSelect, m_pUi->m_pKneeSoftPush);
    m_pKneeSelector->addPosition(
        m_pUi->m_pKneeMediumButton, m_pUi->m_pKneeMediumSelect, m_pUi->m_pKneeMediumPush);
    m_pKneeSelector->addPosition(m_pUi->m_pKneeHardButton, m_pUi->m_pKneeHardSelect, m_pUi->m_pKneeHardPush);
    m_pKneeSelector->connectChanges(this, &ControlsGallery::updateKnee);
}

void ControlsGallery::updateKnee()
{
    if (m_pKneeSelector)
        m_pKneeSelector->refresh();
}

// The dB marks beside the input pair and the gain-reduction meter, placed
// where each meter draws that level.
void ControlsGallery::addMeterScales()
{
    const RoundMeterController *input = m_pUi->m_pInputMeterL;
    const struct
    {
        const char *text;
        int value;
    } marks[] = { { "0", 0 }, { "-3", -30 }, { "-6", -60 }, { "-12", -120 }, { "-18", -180 }, { "-30", -300 },
        { "-40", -400 }, { "-60", -600 } };
    for (const auto &mark : marks) {
        const double y = input->y() + input->scaledMeterRect().top()
            + input->scaledMeterRect().height() * (1.0 - input->convertNormalized(mark.value));
        scaleLabel(m_pUi->m_pInputMeterScale, QString::fromLatin1(mark.text), int(y + 0.5) - 7);
    }

    const RoundGainReductionMeterController *reduction = m_pUi->m_pGainReductionMeter;
    const int scaleHeight = m_pUi->m_pGainReductionScale->height();
    const struct
    {
        const char *text;
        int value;
    } reductionMarks[]
        = { { "0", 0 }, { "-3", -30 }, { "-6", -60 }, { "-9", -90 }, { "-12", -120 }, { "-18", -180 } };
    for (const auto &mark : reductionMarks) {
        const double y = reduction->scaledMeterRect().top()
            + reduction->scaledMeterRect().height() * reduction->reductionDepth(mark.value);
        QLabel *label
            = scaleLabel(m_pUi->m_pGainReductionScale, QString::fromLatin1(mark.text), int(y + 0.5) - 7);
        label->move(0, std::clamp(label->y(), 0, scaleHeight - 14));
    }
}

void ControlsGallery::routeMeters()
{
    route(m_pUi->m_pInputMeterL, ChannelStripKeys::InputMeter, 0, false);
    route(m_pUi->m_pInputMeterR, ChannelStripKeys::InputMeter, 0, true);
    route(m_pUi->m_pOutputMeter, ChannelStripKeys::OutputMeter, 0, false);
    route(m_pUi->m_pSideChainMeter, ChannelStripKeys::SideChainMeter, 0, false);
    route(m_pUi->m_pGainReductionMeter, ChannelStripKeys::GainReductionMeter, 0, false);
    route(m_pUi->m_pBarMeter, ChannelStripKeys::OutputMeter, 0, false);
    route(m_pUi->m_pPeakMeter, ChannelStripKeys::OutputMeter, 0, true);
    route(m_pUi->m_pMinus225Meter, ChannelStripKeys::SideChainMeter, 0, true);
}
