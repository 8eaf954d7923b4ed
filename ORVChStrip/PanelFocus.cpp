#include "ORVChStrip/PanelFocus.h"

#include <QApplication>
#include <QWidget>

bool PanelFocus::contains(const QWidget *widget) const
{
    return widget && (widget == m_pPanel || m_pPanel->isAncestorOf(widget));
}

void PanelFocus::enter()
{
    QWidget *focus = QApplication::focusWidget();
    if (focus && !contains(focus) && focus->window() == m_pPanel->window())
        m_pReturnTo = focus;
    m_pPanel->setFocus(Qt::OtherFocusReason);
}

void PanelFocus::leave()
{
    QWidget *returnTo = m_pReturnTo;
    m_pReturnTo = nullptr;
    QWidget *focus = QApplication::focusWidget();
    if (focus && !contains(focus))
        return; // the user has moved on already
    if (returnTo && returnTo->isVisible() && returnTo->isEnabled())
        returnTo->setFocus(Qt::OtherFocusReason);
    else if (focus)
        focus->clearFocus();
}

bool PanelFocus::cycle(bool next)
{
    QWidget *start = QApplication::focusWidget();
    if (!contains(start))
        return false;
    QWidget *candidate = start;
    for (;;) {
        candidate = next ? candidate->nextInFocusChain() : candidate->previousInFocusChain();
        if (candidate == start)
            return true; // nothing else in the panel takes Tab: stay
        if (contains(candidate) && candidate->isVisible() && candidate->isEnabled()
            && (candidate->focusPolicy() & Qt::TabFocus)) {
            candidate->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            return true;
        }
    }
}
