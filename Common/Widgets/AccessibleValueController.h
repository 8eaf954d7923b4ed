#pragma once

#include <QAccessibleWidget>

namespace CommonController_MemAPI {

class ValueController;

// What assistive technology sees of a knob (a dial), a fader (a slider) or a
// value field (a spin box): its name, the value as the control shows it, the
// number with its range, and increase and decrease actions that step the
// value as one user gesture.
class AccessibleValueController : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleValueController(ValueController *control);

    QAccessible::Role role() const override;
    QString text(QAccessible::Text type) const override;
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant &value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    QStringList keyBindingsForAction(const QString &actionName) const override;

private:
    ValueController *control() const;
    void stepBy(int steps);
};

} // namespace CommonController_MemAPI
