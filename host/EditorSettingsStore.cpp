#include "EditorSettingsStore.h"

#include <QSettings>

#include <memory>

namespace {

std::unique_ptr<QSettings> openStore()
{
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Orvane"),
        QStringLiteral("orvchstrip-host"));
}

} // namespace

EditorSettingsStore::EditorSettingsStore(int channel, bool stereo)
    : m_group(QStringLiteral("EditorSettings/%1-%2").arg(stereo ? "stereo" : "mono").arg(channel))
{ }

QMap<QString, QVariant> EditorSettingsStore::load() const
{
    const std::unique_ptr<QSettings> settings = openStore();
    settings->beginGroup(m_group);
    QMap<QString, QVariant> map;
    for (const QString &key : settings->childKeys())
        map.insert(key, settings->value(key));
    return map;
}

void EditorSettingsStore::save(const QMap<QString, QVariant> &map) const
{
    const std::unique_ptr<QSettings> settings = openStore();
    // The editor's map replaces what was kept: a folder gone from the
    // catalogue must not come back as a stale key.
    settings->remove(m_group);
    settings->beginGroup(m_group);
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        settings->setValue(it.key(), it.value());
}
