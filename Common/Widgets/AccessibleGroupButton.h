#pragma once

#include <QAccessibleWidget>

class QAbstractButton;

namespace CommonController_MemAPI {

// A button of a button group: one of several choices, so a radio button to
// assistive technology, checked while it is the group's value and pressed
// while held down.
class AccessibleGroupButton : public QAccessibleWidget
{
public:
    explicit AccessibleGroupButton(QAbstractButton *button);

    QString text(QAccessible::Text type) const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;

private:
    QAbstractButton *button() const;
};

} // namespace CommonController_MemAPI
