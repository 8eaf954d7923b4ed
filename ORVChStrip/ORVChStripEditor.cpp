#include "ORVChStrip/ORVChStripEditor.h"

#include <QLabel>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"

namespace {

QWidget *filledWidget(QWidget *parent, const char *name, const QRect &rect)
{
    auto *widget = new QWidget(parent);
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(rect);
    widget->setAutoFillBackground(true);
    widget->setBackgroundRole(QPalette::Midlight);
    return widget;
}

QLabel *label(QWidget *parent, const char *name, const QString &text, const QRect &rect, int pointSize,
    const char *family = "M+ 1c medium")
{
    auto *widget = new QLabel(text, parent);
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(rect);
    widget->setAlignment(Qt::AlignCenter);
    QFont font { QString::fromLatin1(family) };
    font.setPointSize(pointSize);
    widget->setFont(font);
    return widget;
}

} // namespace

ORVChStripEditor::ORVChStripEditor(QWidget *parent)
    : EffectEditor(parent)
    , m_pComponent(new ORVChStripComponent)
    // The parameters whose changes alter the editor itself.
    , m_observed(this,
          { ChannelStripKeys::CompressorBypass, ChannelStripKeys::EqualizerBypass,
              ChannelStripKeys::SideChainOn, ChannelStripKeys::EqualizerLowOn,
              ChannelStripKeys::EqualizerMiddleOn, ChannelStripKeys::EqualizerHighOn,
              ChannelStripKeys::CompressorKnee, ChannelStripKeys::MorphSystemName,
              ChannelStripKeys::MorphValue })
{
    m_pComponent->addRef();
    setObjectName(QStringLiteral("ORVChStripEditor"));
    setPalette(ORVChStripPalette::editorPalette());
    setAutoFillBackground(true);
    setGeometry(0, 0, DesignWidth, DesignHeight);
    buildPanel();
}

ORVChStripEditor::~ORVChStripEditor()
{
    unregisterObservers();
    m_pComponent->release();
}

void ORVChStripEditor::buildPanel()
{
    filledWidget(this, "m_pHorizontalLine", QRect(0, 38, 1015, 2));
    filledWidget(this, "m_pVerticalLine1", QRect(406, 38, 2, 406));
    filledWidget(this, "m_pVerticalLine2", QRect(913, 38, 2, 534));

    label(this, "m_pMakerLabel", QStringLiteral("HALVORN"), QRect(11, 9, 93, 23), 12, "M+ 1c bold");
    label(this, "m_pProductLabel", QStringLiteral("ORVANE CHANNEL STRIP"), QRect(588, 12, 414, 19), 12,
        "M+ 1c bold")
        ->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label(this, "m_pCompressorLabel", QStringLiteral("COMP"), QRect(188, 54, 62, 20), 12);
    label(this, "m_pEqualizerLabel", QStringLiteral("EQ"), QRect(661, 54, 32, 20), 12);
    label(this, "m_pMorphingLabel", QStringLiteral("MORPHING"), QRect(436, 409, 72, 16), 9);
    label(this, "m_pOutputLabel", QStringLiteral("OUTPUT"), QRect(931, 452, 64, 14), 9);
    buildGraphs();
}

void ORVChStripEditor::buildGraphs()
{
    // The graphs' plots line up with their scale labels: 60 pixels per 20 dB
    // for the compressor, 142 pixels per decade and 22.5 per 6 dB for the
    // equalizer.
    const QPoint compressor(0, 40);
    m_pCompressorGraph = new ORVChStripCompressorGraph(this, this);
    m_pCompressorGraph->setObjectName(QStringLiteral("m_pCompressorGraph"));
    m_pCompressorGraph->setGeometry(QRect(compressor + QPoint(127, 41), QSize(191, 191)));
    const struct
    {
        const char *name;
        const char *text;
        QPoint pos;
        Qt::Alignment alignment;
    } compressorLabels[] = {
        { "m_pCompressorGraphVertical0Label", "0", { 98, 42 }, Qt::AlignRight | Qt::AlignVCenter },
        { "m_pCompressorGraphVerticalMinus20Label", "-20", { 98, 100 }, Qt::AlignRight | Qt::AlignVCenter },
        { "m_pCompressorGraphVerticalMinus40Label", "-40", { 98, 160 }, Qt::AlignRight | Qt::AlignVCenter },
        { "m_pCompressorGraphMinus60Label", "-60", { 98, 234 }, Qt::AlignRight | Qt::AlignVCenter },
        { "m_pCompressorGraphHorizontalMinus40Label", "-40", { 180, 234 }, Qt::AlignCenter },
        { "m_pCompressorGraphHorizontalMinus20Label", "-20", { 240, 234 }, Qt::AlignCenter },
        { "m_pCompressorGraphHorizontal0Label", "0", { 300, 234 }, Qt::AlignCenter },
    };
    for (const auto &scale : compressorLabels) {
        label(this, scale.name, QString::fromLatin1(scale.text), QRect(compressor + scale.pos, QSize(24, 14)),
            7)
            ->setAlignment(scale.alignment);
    }

    const QPoint equalizer(408, 40);
    m_pEqualizerGraph = new ORVChStripEqualizerGraph(this, this);
    m_pEqualizerGraph->setObjectName(QStringLiteral("m_pEqualizerGraph"));
    m_pEqualizerGraph->setGeometry(QRect(equalizer + QPoint(46, 41), QSize(437, 191)));
    const struct
    {
        const char *name;
        const char *text;
        int y;
    } equalizerVertical[] = {
        { "m_pEqualizerGraphVerticalPlus24Label", "+24", 42 },
        { "m_pEqualizerGraphVerticalPlus18Label", "+18", 62 },
        { "m_pEqualizerGraphVerticalPlus12Label", "+12", 84 },
        { "m_pEqualizerGraphVerticalPlus6Label", "+6", 107 },
        { "m_pEqualizerGraphVertical0Label", "0", 129 },
        { "m_pEqualizerGraphVerticalMinus6Label", "-6", 152 },
        { "m_pEqualizerGraphVerticalMinus12Label", "-12", 174 },
        { "m_pEqualizerGraphVerticalMinus18Label", "-18", 197 },
        { "m_pEqualizerGraphVerticalMinus24Label", "-24", 216 },
        { "m_pEqualizerGraphVerticaldBLabel", "dB", 234 },
    };
    for (const auto &scale : equalizerVertical) {
        label(this, scale.name, QString::fromLatin1(scale.text),
            QRect(equalizer + QPoint(18, scale.y), QSize(24, 14)), 7)
            ->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    const struct
    {
        const char *name;
        const char *text;
        int x;
    } equalizerHorizontal[] = {
        { "m_pEqualizerGraphHorizontal20Label", "20", 46 },
        { "m_pEqualizerGraphHorizontalHzLabel", "Hz", 62 },
        { "m_pEqualizerGraphHorizontal50Label", "50", 96 },
        { "m_pEqualizerGraphHorizontal100Label", "100", 139 },
        { "m_pEqualizerGraphHorizontal200Label", "200", 182 },
        { "m_pEqualizerGraphHorizontal500Label", "500", 238 },
        { "m_pEqualizerGraphHorizontal1KLabel", "1k", 281 },
        { "m_pEqualizerGraphHorizontal2KLabel", "2k", 323 },
        { "m_pEqualizerGraphHorizontal5KLabel", "5k", 381 },
        { "m_pEqualizerGraphHorizontal10KLabel", "10k", 423 },
        { "m_pEqualizerGraphHorizontal20KLabel", "20k", 464 },
    };
    for (const auto &scale : equalizerHorizontal) {
        label(this, scale.name, QString::fromLatin1(scale.text),
            QRect(equalizer + QPoint(scale.x, 234), QSize(24, 14)), 7);
    }
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
    m_pCompressorGraph->setMemAPI(memAPI);
    m_pEqualizerGraph->setMemAPI(memAPI);
    registerObservers();
}

void ORVChStripEditor::setCh(int ch1, int ch2)
{
    unregisterObservers();
    m_ch1 = ch1;
    m_ch2 = ch2;
    m_pComponent->setCh(ch1);
    m_pCompressorGraph->setCh(ch1);
    m_pEqualizerGraph->setCh(ch1);
    registerObservers();
}

void ORVChStripEditor::setFs(int fs)
{
    m_pEqualizerGraph->setFs(fs);
}

void ORVChStripEditor::unregisterObservers()
{
    if (!m_pMemAPI)
        return;
    const auto ch = static_cast<unsigned short>(m_ch1);
    IMeterNotifier *notifier = nullptr;
    if (m_pMemAPI->getMeterNotifier(&notifier) >= 0 && notifier)
        notifier->removeMeterObserver(this);
    m_observed.detach();
    // The host answers 0 here while this editor still follows the parameter.
    for (const char *key : ORVChStripParameters::MorphingParameterList) {
        unsigned short id = 0;
        if (getParameter(key, &id) && m_pMemAPI->queryPrmObserver(id, ch, this) == 0)
            m_pMemAPI->removePrmObserver(id, ch, this);
    }
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
    for (const char *key : ORVChStripParameters::MorphingParameterList) {
        unsigned short id = 0;
        if (getParameter(key, &id) && m_pMemAPI->queryPrmObserver(id, ch, this) != 0)
            m_pMemAPI->addPrmObserver(id, ch, this);
    }
}

int ORVChStripEditor::Update(unsigned short, unsigned short, int, const char *)
{
    return 0;
}

void ORVChStripEditor::notifyMeterDbUpdated(unsigned int *, unsigned int) { }
