#include "Common/Widgets/AccessibleControlFactory.h"

#include <QAbstractButton>
#include <QAccessible>

#include "Common/Widgets/AccessibleGroupButton.h"
#include "Common/Widgets/AccessibleMeter.h"
#include "Common/Widgets/AccessibleValueController.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/ValueController.h"

namespace CommonController_MemAPI {

void AccessibleControlFactory::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(&AccessibleControlFactory::create);
        return true;
    }();
    Q_UNUSED(installed)
}

QAccessibleInterface *AccessibleControlFactory::create(const QString &, QObject *object)
{
    // Asked once per class of the object's ancestry, most derived first: an
    // answer to the first question covers every subclass.
    if (auto *meter = qobject_cast<MeterController *>(object))
        return new AccessibleMeter(meter);
    if (auto *control = qobject_cast<ValueController *>(object))
        return new AccessibleValueController(control);
    if (auto *button = qobject_cast<QAbstractButton *>(object)) {
        if (qobject_cast<ButtonGroupController *>(button->parent()))
            return new AccessibleGroupButton(button);
    }
    return nullptr;
}

} // namespace CommonController_MemAPI
