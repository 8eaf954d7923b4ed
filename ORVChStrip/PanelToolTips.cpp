#include "ORVChStrip/PanelToolTips.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetricsF>
#include <QWidget>

PanelToolTips::PanelToolTips(QWidget *panel)
    : QObject(panel)
    , m_pPanel(panel)
{
    // A tip is asked of the widget under the pointer, and of its parents in
    // turn, so only the application sees every request of the panel.
    qApp->installEventFilter(this);
}

QWidget *PanelToolTips::shownTip()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->inherits("QTipLabel") && window->isVisible())
            return window;
    }
    return nullptr;
}

bool PanelToolTips::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip || m_forwarding || !isInPanel(watched))
        return false;
    // Let the widget and its parents answer as they would, then dress what
    // they showed. The request is answered here: the parents have had it.
    m_forwarding = true;
    QCoreApplication::sendEvent(watched, event);
    m_forwarding = false;
    if (QWidget *tip = shownTip())
        dress(tip);
    event->accept();
    return true;
}

bool PanelToolTips::isInPanel(QObject *object) const
{
    if (!object->isWidgetType())
        return false;
    const auto *widget = static_cast<QWidget *>(object);
    return widget == m_pPanel || m_pPanel->isAncestorOf(widget);
}

void PanelToolTips::dress(QWidget *tip) const
{
    const QColor base = m_pPanel->palette().color(QPalette::Active, QPalette::ToolTipBase);
    const QColor text = m_pPanel->palette().color(QPalette::Active, QPalette::ToolTipText);
    QPalette palette = tip->palette();
    for (auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        palette.setColor(group, QPalette::ToolTipBase, base);
        palette.setColor(group, QPalette::ToolTipText, text);
        palette.setColor(group, QPalette::Window, base);
        palette.setColor(group, QPalette::WindowText, text);
    }
    tip->setPalette(palette);
    if (tip->font() != m_pPanel->font()) {
        // The panel's face at the panel's scale, with room to breathe.
        tip->setFont(m_pPanel->font());
        const int pad = qRound(QFontMetricsF(tip->font()).height() * 0.3);
        tip->setContentsMargins(pad, pad / 2, pad, pad / 2);
        tip->adjustSize();
    }
}
