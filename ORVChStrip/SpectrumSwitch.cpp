#include "ORVChStrip/SpectrumSwitch.h"

#include <QEvent>

#include "Common/Widgets/PushButtonController.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"

using CommonController_MemAPI::PushButtonController;

SpectrumSwitch::SpectrumSwitch(PushButtonController *button, ORVChStripEqualizerGraph *graph, QObject *parent)
    : QObject(parent)
    , m_pButton(button)
    , m_pGraph(graph)
{
    connect(button, &QAbstractButton::toggled, this, [this](bool checked) {
        if (!m_showing)
            setWanted(checked);
    });
    button->installEventFilter(this);
    if (GraphDescription *description = GraphDescription::of(graph)) {
        description->addText([graph = QPointer<ORVChStripEqualizerGraph>(graph)] {
            return graph ? graph->spectrum().description() : QString();
        });
    }
    showState();
}

SpectrumSwitch::~SpectrumSwitch()
{
    detach();
}

QString SpectrumSwitch::unavailableText()
{
    return tr("No spectrum: the host does not analyse this strip");
}

void SpectrumSwitch::setMemAPI(IMemAPI *memAPI)
{
    detach();
    m_pMemAPI = memAPI;
    m_pSource = nullptr;
    char iid[16];
    SpectrumSourceIID.toBytes(iid);
    void *source = nullptr;
    if (memAPI && memAPI->queryInterface(iid, &source) == kResultOk)
        m_pSource = static_cast<ISpectrumSource *>(source);
    attach();
}

void SpectrumSwitch::setCh(int ch1, int ch2)
{
    detach();
    m_ch1 = ch1;
    m_ch2 = ch2;
    attach();
}

void SpectrumSwitch::setWanted(bool wanted)
{
    if (m_wanted == wanted)
        return;
    m_wanted = wanted;
    detach();
    attach();
}

void SpectrumSwitch::attach()
{
    m_available = m_pSource && m_ch1 >= 0
        && m_pSource->hasSpectrum(static_cast<unsigned short>(m_ch1), m_ch2) == kResultOk;
    if (m_available && m_wanted)
        m_observing
            = m_pSource->addSpectrumObserver(static_cast<unsigned short>(m_ch1), m_ch2, this) == kResultOk;
    showState();
}

void SpectrumSwitch::detach()
{
    if (m_observing && m_pSource)
        m_pSource->removeSpectrumObserver(this);
    m_observing = false;
    if (m_pGraph)
        m_pGraph->clearSpectrum();
}

void SpectrumSwitch::notifySpectrumUpdated(const float *output, const float *input, unsigned int count)
{
    if (m_observing && m_pGraph)
        m_pGraph->setSpectrum(output, input, int(count));
}

void SpectrumSwitch::saveSettings(QMap<QString, QVariant> &settings) const
{
    settings.insert(QLatin1String(SettingsKey), m_wanted);
}

void SpectrumSwitch::restoreSettings(const QMap<QString, QVariant> &settings)
{
    const QVariant value = settings.value(QLatin1String(SettingsKey));
    if (!value.isNull())
        setWanted(value.toBool());
}

// The switch shows on only while the spectrum can be shown.
void SpectrumSwitch::showState()
{
    if (!m_pButton)
        return;
    PushButtonController *button = m_pButton;
    m_showing = true;
    button->setEnabled(m_available);
    const bool on = m_available && m_wanted;
    if (button->isChecked() != on)
        button->setValue(on ? button->maximumValue() : button->minimumValue());
    if (m_available) {
        button->setToolTip(tr("Show the spectrum behind the curve"));
        // The button says on or off again by itself.
        button->valueChanged();
    } else {
        button->setToolTip(unavailableText());
        describeUnavailable();
    }
    m_showing = false;
}

void SpectrumSwitch::describeUnavailable()
{
    if (m_pButton && !m_available)
        m_pButton->setAccessibleDescription(unavailableText());
}

bool SpectrumSwitch::eventFilter(QObject *watched, QEvent *event)
{
    // The button describes itself as on or off when it shows; the reason
    // why it is disabled goes back on once it has.
    // Only the event's type is read before comparing: a button being
    // destroyed is a plain QObject by then, not a PushButtonController.
    if (event->type() == QEvent::Show && !m_available && watched == m_pButton)
        QMetaObject::invokeMethod(this, &SpectrumSwitch::describeUnavailable, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}
