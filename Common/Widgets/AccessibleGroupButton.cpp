#include "Common/Widgets/AccessibleGroupButton.h"

#include <QAbstractButton>

namespace CommonController_MemAPI {

AccessibleGroupButton::AccessibleGroupButton(QAbstractButton *button)
    : QAccessibleWidget(button, QAccessible::RadioButton)
{ }

QAbstractButton *AccessibleGroupButton::button() const
{
    return static_cast<QAbstractButton *>(widget());
}

QString AccessibleGroupButton::text(QAccessible::Text type) const
{
    if (type == QAccessible::Name && button()->accessibleName().isEmpty())
        return QString(button()->text()).remove(QLatin1Char('&'));
    return QAccessibleWidget::text(type);
}

QAccessible::State AccessibleGroupButton::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = button()->isChecked();
    state.pressed = button()->isDown();
    return state;
}

QStringList AccessibleGroupButton::actionNames() const
{
    return QStringList { pressAction() } + QAccessibleWidget::actionNames();
}

void AccessibleGroupButton::doAction(const QString &actionName)
{
    if (actionName != pressAction())
        QAccessibleWidget::doAction(actionName);
    else if (button()->isEnabled())
        button()->click();
}

} // namespace CommonController_MemAPI
