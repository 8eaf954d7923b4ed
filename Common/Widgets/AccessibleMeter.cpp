#include "Common/Widgets/AccessibleMeter.h"

#include "Common/Widgets/MeterController.h"

namespace CommonController_MemAPI {

AccessibleMeter::AccessibleMeter(MeterController *meter)
    : QAccessibleWidget(meter, QAccessible::ProgressBar)
{ }

MeterController *AccessibleMeter::meter() const
{
    return static_cast<MeterController *>(widget());
}

QString AccessibleMeter::text(QAccessible::Text type) const
{
    // The level is also the description, which readers speak when they
    // review the panel; the bridge carries no value text.
    if (type == QAccessible::Value
        || (type == QAccessible::Description && meter()->accessibleDescription().isEmpty()))
        return meter()->levelText();
    return QAccessibleWidget::text(type);
}

void *AccessibleMeter::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

// Readings are tenths of a decibel.
QVariant AccessibleMeter::currentValue() const
{
    return meter()->value() / 10.0;
}

QVariant AccessibleMeter::maximumValue() const
{
    return meter()->maximumValue() / 10.0;
}

QVariant AccessibleMeter::minimumValue() const
{
    return meter()->minimumValue() / 10.0;
}

QVariant AccessibleMeter::minimumStepSize() const
{
    return 0.1;
}

} // namespace CommonController_MemAPI
