#include "ORVChStrip/ORVChStripEditor.h"

#include <QLabel>

#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripParameters.h"

namespace {

// The parameters whose changes alter the editor itself.
const char *const ObservedKeys[] = {
    "fx_cmp_byps",
    "fx_eq_byps",
    "fx_cmp_sc_onf",
    "fx_eq_lsv_onf",
    "fx_eq_mid_onf",
    "fx_eq_hsv_onf",
    "fx_cmp_kne",
    "fx_mrp_systmname",
    "fx_mrp_vl",
};

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

const FUID ORVChStripEditor::FirstUid(0x504C5863, 0x73744D75, 0x72206368, 0x20737472);
const FUID ORVChStripEditor::SecondUid(0x504C5863, 0x73745375, 0x72206368, 0x20737472);

ORVChStripEditor::ORVChStripEditor(QWidget *parent)
    : EffectEditor(parent)
{
    setObjectName(QStringLiteral("ORVChStripEditor"));
    setPalette(ORVChStripPalette::editorPalette());
    setAutoFillBackground(true);
    setGeometry(0, 0, DesignWidth, DesignHeight);
    buildPanel();
}

ORVChStripEditor::~ORVChStripEditor()
{
    unregisterObservers();
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
}

void ORVChStripEditor::loadUids(std::vector<FUID> &uids) const
{
    uids.push_back(FirstUid);
    uids.push_back(SecondUid);
}

IComponent *ORVChStripEditor::getPlxComponent() const
{
    return nullptr;
}

void ORVChStripEditor::setMemAPI(IMemAPI *memAPI)
{
    unregisterObservers();
    m_pMemAPI = memAPI;
    registerObservers();
}

void ORVChStripEditor::setCh(int ch1, int ch2)
{
    unregisterObservers();
    m_ch1 = ch1;
    m_ch2 = ch2;
    registerObservers();
}

void ORVChStripEditor::unregisterObservers()
{
    if (!m_pMemAPI)
        return;
    const auto ch = static_cast<unsigned short>(m_ch1);
    IMeterNotifier *notifier = nullptr;
    if (m_pMemAPI->getMeterNotifier(&notifier) >= 0 && notifier)
        notifier->removeMeterObserver(this);
    for (unsigned short id : std::as_const(m_observedIds))
        m_pMemAPI->removePrmObserver(id, ch, this);
    m_observedIds.clear();
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
    for (const char *key : ObservedKeys) {
        unsigned short id = 0;
        if (getParameter(key, &id)) {
            m_pMemAPI->addPrmObserver(id, ch, this);
            m_observedIds.append(id);
        }
    }
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
