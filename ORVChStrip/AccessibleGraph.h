#pragma once

#include <QAccessibleWidget>

// What assistive technology sees of the equaliser and compressor graphs: a
// picture, named by its owner and described by the values it draws.
class AccessibleGraph : public QAccessibleWidget
{
public:
    explicit AccessibleGraph(QWidget *graph);

    QString text(QAccessible::Text type) const override;

    // Installs the factory for the graphs once per process; call it before
    // the first graph is built.
    static void install();
};
