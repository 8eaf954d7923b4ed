#include "Common/Widgets/AccessibleValueController.h"

#include <QKeySequence>

#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/TextEditController.h"

namespace CommonController_MemAPI {

AccessibleValueController::AccessibleValueController(ValueController *control)
    : QAccessibleWidget(control)
{ }

// Asked each time rather than fixed when built: a control sends its first
// accessibility events from the base class's constructor, when it cannot yet
// tell what it will be.
QAccessible::Role AccessibleValueController::role() const
{
    if (qobject_cast<KnobController *>(control()))
        return QAccessible::Dial;
    if (qobject_cast<FaderController *>(control()))
        return QAccessible::Slider;
    if (qobject_cast<TextEditController *>(control()))
        return QAccessible::SpinBox;
    return QAccessible::Slider;
}

ValueController *AccessibleValueController::control() const
{
    return static_cast<ValueController *>(widget());
}

QString AccessibleValueController::text(QAccessible::Text type) const
{
    if (type == QAccessible::Value)
        return control()->accessibleValueText();
    return QAccessibleWidget::text(type);
}

QAccessible::State AccessibleValueController::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    // A value field is typed into after a double click or Return.
    state.editable = role() == QAccessible::SpinBox;
    return state;
}

void *AccessibleValueController::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QVariant AccessibleValueController::currentValue() const
{
    return control()->value();
}

void AccessibleValueController::setCurrentValue(const QVariant &value)
{
    bool isNumber = false;
    const int target = value.toInt(&isNumber);
    if (!isNumber || !control()->isEnabled())
        return;
    control()->beginEdit();
    control()->setValue(target); // clamped to the range
    control()->endEdit();
}

QVariant AccessibleValueController::maximumValue() const
{
    return control()->maximumValue();
}

QVariant AccessibleValueController::minimumValue() const
{
    return control()->minimumValue();
}

QVariant AccessibleValueController::minimumStepSize() const
{
    return 1;
}

QStringList AccessibleValueController::actionNames() const
{
    return QStringList { increaseAction(), decreaseAction() } + QAccessibleWidget::actionNames();
}

void AccessibleValueController::doAction(const QString &actionName)
{
    if (actionName == increaseAction())
        stepBy(1);
    else if (actionName == decreaseAction())
        stepBy(-1);
    else
        QAccessibleWidget::doAction(actionName);
}

QStringList AccessibleValueController::keyBindingsForAction(const QString &actionName) const
{
    if (actionName == increaseAction())
        return { QKeySequence(Qt::Key_Up).toString(QKeySequence::NativeText) };
    if (actionName == decreaseAction())
        return { QKeySequence(Qt::Key_Down).toString(QKeySequence::NativeText) };
    return QAccessibleWidget::keyBindingsForAction(actionName);
}

void AccessibleValueController::stepBy(int steps)
{
    setCurrentValue(control()->value() + steps);
}

} // namespace CommonController_MemAPI
