#pragma once

#include <QObject>

#include "ORVChStrip/EqualizerEditTarget.h"

class ORVChStripEqualizerGraph;
class QEvent;
class QWidget;
namespace Ui {
class ORVChStripEditor;
}
namespace CommonController_MemAPI {
class KnobController;
class TextEditController;
} // namespace CommonController_MemAPI

// Tells the equalizer graph which band the user is working on, from the
// drags and typing on the seven band controls and the pointer over their
// cells. The cells' enter and leave events go to the event filter of the
// watcher given at construction, which hands them to hover().
class EqualizerEditTracker : public QObject
{
    Q_OBJECT

public:
    EqualizerEditTracker(ORVChStripEqualizerGraph *graph, QObject *watcher);
    // Tracks the seven band controls of the editor's form.
    EqualizerEditTracker(const Ui::ORVChStripEditor &form, QObject *watcher);

    void track(QWidget *cell, CommonController_MemAPI::KnobController *knob,
        CommonController_MemAPI::TextEditController *field, EqualizerEditTarget::Control control);
    // An event of a watched object; enter and leave of a tracked cell count.
    void hover(QObject *watched, const QEvent *event);

    EqualizerEditTarget::Band band() const { return m_target.band(); }

private:
    void setGesture(EqualizerEditTarget::Gesture gesture, EqualizerEditTarget::Control control, bool active);

    ORVChStripEqualizerGraph *m_pGraph;
    QObject *m_pWatcher;
    EqualizerEditTarget m_target;
};
