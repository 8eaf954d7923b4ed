#include "ORVChStrip/AccessibleGraph.h"

#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"

namespace {

QAccessibleInterface *createGraphInterface(const QString &, QObject *object)
{
    if (qobject_cast<ORVChStripEqualizerGraph *>(object) || qobject_cast<ORVChStripCompressorGraph *>(object))
        return new AccessibleGraph(static_cast<QWidget *>(object));
    return nullptr;
}

} // namespace

AccessibleGraph::AccessibleGraph(QWidget *graph)
    : QAccessibleWidget(graph, QAccessible::Graphic)
{ }

QString AccessibleGraph::text(QAccessible::Text type) const
{
    if (type == QAccessible::Description) {
        if (const GraphDescription *description = GraphDescription::of(widget()))
            return description->text();
    }
    return QAccessibleWidget::text(type);
}

void AccessibleGraph::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(createGraphInterface);
        return true;
    }();
    Q_UNUSED(installed)
}
