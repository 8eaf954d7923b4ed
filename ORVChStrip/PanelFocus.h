#pragma once

#include <QPointer>

class QWidget;

// Keeps the keyboard inside a panel that covers the editor while it is open:
// the panel takes the focus when it opens, Tab cycles through the panel's own
// controls only, and the control that had the focus before gets it back when
// the panel closes.
class PanelFocus
{
public:
    explicit PanelFocus(QWidget *panel)
        : m_pPanel(panel)
    { }

    void enter();
    void leave();
    // For the panel's focusNextPrevChild(): moves within the panel; true when
    // the focus is inside it, so that it never leaves for the editor beneath.
    bool cycle(bool next);

private:
    bool contains(const QWidget *widget) const;

    QWidget *m_pPanel;
    QPointer<QWidget> m_pReturnTo;
};
