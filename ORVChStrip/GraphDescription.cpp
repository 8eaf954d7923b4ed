#include "ORVChStrip/GraphDescription.h"

#include <QStringList>
#include <QWidget>

#include "Common/Widgets/ValueController.h"

GraphDescription::GraphDescription(QWidget *graph)
    : QObject(graph)
{ }

void GraphDescription::addControl(QWidget *control)
{
    m_controls.append(control);
}

void GraphDescription::addText(std::function<QString()> part)
{
    m_texts.append(std::move(part));
}

QString GraphDescription::text() const
{
    QStringList parts;
    const QString readout = parent()->property("readout").toString();
    if (!readout.isEmpty())
        parts.append(readout);
    for (const QPointer<QWidget> &control : m_controls) {
        if (!control)
            continue;
        // A value control says its value with the unit; others (a button
        // group) describe what they select.
        const auto *valueControl = qobject_cast<const CommonController_MemAPI::ValueController *>(control);
        const QString value
            = valueControl ? valueControl->accessibleValueText() : control->accessibleDescription();
        parts.append(value.isEmpty() ? control->accessibleName() : control->accessibleName() + u' ' + value);
    }
    for (const std::function<QString()> &part : m_texts) {
        const QString text = part();
        if (!text.isEmpty())
            parts.append(text);
    }
    return parts.join(QStringLiteral(", "));
}

GraphDescription *GraphDescription::of(const QWidget *graph)
{
    return graph->findChild<GraphDescription *>(QString(), Qt::FindDirectChildrenOnly);
}
