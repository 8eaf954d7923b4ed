#include "Common/Widgets/WidgetScale.h"

#include <QMenu>

#include "Interfaces/IQXEffectEditor.h"

double getWidgetScale(const QWidget *widget)
{
    const QWidget *current = widget;
    while (current) {
        // The editor interface has no meta-object of its own.
        if (const auto *editor = dynamic_cast<const IQXEffectEditor *>(current))
            return editor->scale();
        if (qobject_cast<const QMenu *>(current)) {
            const QVariant owner = current->property(OwnerWidgetProperty);
            if (auto *ownerWidget = qobject_cast<QWidget *>(owner.value<QObject *>())) {
                current = ownerWidget;
                continue;
            }
        }
        current = current->parentWidget();
    }
    return 1.0;
}
