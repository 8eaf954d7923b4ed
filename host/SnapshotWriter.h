#pragma once

#include <QString>

class IComponent;
class ParameterMemory;

// Writes what a script reads of a running host: the effect's state (as
// --save-state writes it) and the parameter values as "key=value text" lines,
// each to its file when one is named. Both files are replaced whole, so a
// reader never sees half of one.
class SnapshotWriter
{
public:
    SnapshotWriter(IComponent *component, const ParameterMemory &memory, int channel);

    void setStatePath(const QString &path) { m_statePath = path; }
    void setParametersPath(const QString &path) { m_parametersPath = path; }
    bool isEmpty() const { return m_statePath.isEmpty() && m_parametersPath.isEmpty(); }

    // Writes the state first and the values last, so that a reader waiting
    // for the values finds both; false with the reasons when either fails.
    bool write(QString *error) const;

private:
    IComponent *m_pComponent;
    const ParameterMemory &m_memory;
    int m_channel;
    QString m_statePath;
    QString m_parametersPath;
};
