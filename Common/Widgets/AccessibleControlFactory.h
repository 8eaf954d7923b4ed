#pragma once

#include <QString>

class QAccessibleInterface;
class QObject;

namespace CommonController_MemAPI {

// Gives the controls their accessible interfaces: a knob is a dial, a fader a
// slider, a value field a spin box, a meter a progress bar and a button of a
// button group a radio button, each with the value a person reads on it.
// Every control installs the factory when it is built, so any program that
// uses the controls gets it.
class AccessibleControlFactory
{
public:
    // Installs the factory once per process; later calls do nothing.
    static void install();
    static QAccessibleInterface *create(const QString &className, QObject *object);
};

} // namespace CommonController_MemAPI
