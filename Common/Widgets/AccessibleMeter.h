#pragma once

#include <QAccessibleWidget>

namespace CommonController_MemAPI {

class MeterController;

// A read-only level indicator: its value is the reading as text ("-12.5 dB")
// and as decibels. A meter sends no value events; a reader asks for the level
// when the user wants it, not 30 to 60 times a second.
class AccessibleMeter : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleMeter(MeterController *meter);

    QString text(QAccessible::Text type) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant &) override { }
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    MeterController *meter() const;
};

} // namespace CommonController_MemAPI
