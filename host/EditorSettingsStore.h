#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

// Keeps the settings an editor hands back when it closes (open folders,
// selection, scroll position) in the reference host's own settings store,
// one group per strip, and gives them back when that strip is edited again.
class EditorSettingsStore
{
public:
    // The strip is named by its first channel and whether it is stereo.
    EditorSettingsStore(int channel, bool stereo);

    QMap<QString, QVariant> load() const;
    void save(const QMap<QString, QVariant> &settings) const;

private:
    QString m_group;
};
