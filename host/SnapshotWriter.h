#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

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
    // The text of the spectrum frame last drawn, written to `path`.
    void setSpectrum(const QString &path, std::function<QByteArray()> text)
    {
        m_spectrumPath = path;
        m_spectrumText = std::move(text);
    }
    bool isEmpty() const
    {
        return m_statePath.isEmpty() && m_parametersPath.isEmpty() && m_spectrumPath.isEmpty();
    }

    // Writes the state first and the values last, so that a reader waiting
    // for the values finds both; false with the reasons when either fails.
    bool write(QString *error) const;

private:
    IComponent *m_pComponent;
    const ParameterMemory &m_memory;
    int m_channel;
    QString m_statePath;
    QString m_parametersPath;
    QString m_spectrumPath;
    std::function<QByteArray()> m_spectrumText;
};
