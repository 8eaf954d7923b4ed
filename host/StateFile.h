#pragma once

#include <QString>

class IComponent;
class ParameterMemory;

// Saves the effect's state to a file and restores it, through the editor's
// component, as a host does with its project files. Saving goes through a
// temporary file that replaces the target only when complete; a file that
// does not restore leaves the parameter memory as it was.
class StateFile
{
public:
    static bool save(IComponent *component, const QString &path, QString *error);
    // warning, when given, receives what the plug-in kept of the current
    // settings although the file restored (empty when it took everything).
    static bool load(IComponent *component, ParameterMemory &memory, const QString &path, QString *error,
        QString *warning = nullptr);

private:
    // What looks wrong with bytes the component refused, if the host can tell.
    static QString diagnose(const QByteArray &bytes);
};
