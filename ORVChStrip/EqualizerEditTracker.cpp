#include "ORVChStrip/EqualizerEditTracker.h"

#include <QEvent>
#include <QVariant>
#include <QWidget>

#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/TextEditController.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ui_ORVChStripEditor.h"

using namespace CommonController_MemAPI;

namespace {
// The band control whose cell the pointer hovers is kept on the cell.
constexpr const char *HoverControlProperty = "orvEqualizerHoverControl";
} // namespace

EqualizerEditTracker::EqualizerEditTracker(ORVChStripEqualizerGraph *graph, QObject *watcher)
    : QObject(watcher)
    , m_pGraph(graph)
    , m_pWatcher(watcher)
{ }

EqualizerEditTracker::EqualizerEditTracker(const Ui::ORVChStripEditor &ui, QObject *watcher)
    : EqualizerEditTracker(ui.m_pEqualizerGraph, watcher)
{
    using Target = EqualizerEditTarget;
    // In the order of Target::Control.
    const struct
    {
        QWidget *cell;
        KnobController *knob;
        TextEditController *field;
    } cells[] = {
        { ui.m_pEqualizerLowFrequencyArea, ui.m_pEqualizerLowFrequencyKnob,
            ui.m_pEqualizerLowFrequencyTextEdit },
        { ui.m_pEqualizerLowGainArea, ui.m_pEqualizerLowGainKnob, ui.m_pEqualizerLowGainTextEdit },
        { ui.m_pEqualizerMiddleQualityArea, ui.m_pEqualizerMiddleQualityKnob,
            ui.m_pEqualizerMiddleQualityTextEdit },
        { ui.m_pEqualizerMiddleFrequencyArea, ui.m_pEqualizerMiddleFrequencyKnob,
            ui.m_pEqualizerMiddleFrequencyTextEdit },
        { ui.m_pEqualizerMiddleGainArea, ui.m_pEqualizerMiddleGainKnob, ui.m_pEqualizerMiddleGainTextEdit },
        { ui.m_pEqualizerHighFrequencyArea, ui.m_pEqualizerHighFrequencyKnob,
            ui.m_pEqualizerHighFrequencyTextEdit },
        { ui.m_pEqualizerHighGainArea, ui.m_pEqualizerHighGainKnob, ui.m_pEqualizerHighGainTextEdit },
    };
    for (int control = 0; control < Target::ControlCount; ++control) {
        const auto &cell = cells[control];
        track(cell.cell, cell.knob, cell.field, Target::Control(control));
    }
}

void EqualizerEditTracker::track(
    QWidget *cell, KnobController *knob, TextEditController *field, EqualizerEditTarget::Control control)
{
    using Target = EqualizerEditTarget;
    connect(knob, &KnobController::drag, this,
        [this, control](bool active) { setGesture(Target::KnobDrag, control, active); });
    connect(field, &TextEditController::drag, this,
        [this, control](bool active) { setGesture(Target::TextDrag, control, active); });
    connect(field, &TextEditController::textEdit, this,
        [this, control](bool active) { setGesture(Target::TextEdit, control, active); });
    cell->setProperty(HoverControlProperty, int(control));
    cell->installEventFilter(m_pWatcher);
}

void EqualizerEditTracker::hover(QObject *watched, const QEvent *event)
{
    if (event->type() != QEvent::Enter && event->type() != QEvent::Leave)
        return;
    const QVariant control = watched->property(HoverControlProperty);
    if (control.isValid())
        setGesture(EqualizerEditTarget::Hover, EqualizerEditTarget::Control(control.toInt()),
            event->type() == QEvent::Enter);
}

void EqualizerEditTracker::setGesture(
    EqualizerEditTarget::Gesture gesture, EqualizerEditTarget::Control control, bool active)
{
    m_target.set(gesture, control, active);
    m_pGraph->setEditTarget(ORVChStripEqualizerGraph::EditTarget(m_target.band()));
}
