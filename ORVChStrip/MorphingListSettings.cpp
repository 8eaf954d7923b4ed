#include "ORVChStrip/MorphingListSettings.h"

#include <vector>

#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"

namespace MorphingListSettings {

namespace {

const QString SelectedKey = QStringLiteral("MorphingListSelected");
const QString SelectedEntryKey = QStringLiteral("MorphingListSelectedEntry");
const QString ViewKey = QStringLiteral("MorphingListView");

QString folderKey(int number)
{
    return QStringLiteral("MorphingListFolder%1Open").arg(number);
}

// The folders among the visible rows, in display order.
std::vector<ORVD_Data *> visibleFolders(const ORVD_Manager *manager)
{
    std::vector<ORVD_Data *> folders;
    if (!manager)
        return folders;
    for (const ORVD_Select *row : manager->GetSelectList()) {
        ORVD_Data *data = row ? row->GetData() : nullptr;
        if (data && data->IsFolder())
            folders.push_back(data);
    }
    return folders;
}

// Names a row's entry independently of the rows around it: "name" for a file
// at the top, "folder/name" for a file in a folder, "folder/" for a folder.
// File and folder names never hold a '/'.
QString entryPath(const ORVD_Manager *manager, int row)
{
    const std::vector<ORVD_Select *> &rows = manager->GetSelectList();
    if (row < 0 || size_t(row) >= rows.size() || !rows[size_t(row)] || !rows[size_t(row)]->GetData())
        return QString();
    const ORVD_Data *data = rows[size_t(row)]->GetData();
    QString path = QString::fromUtf8(data->GetName()) + (data->IsFolder() ? QStringLiteral("/") : QString());
    for (int above = row - 1; above >= 0 && rows[size_t(row)]->GetLayerNo() > 0; --above) {
        const ORVD_Select *parent = rows[size_t(above)];
        if (parent && parent->GetLayerNo() < rows[size_t(row)]->GetLayerNo())
            return QString::fromUtf8(parent->GetData()->GetName()) + QLatin1Char('/') + path;
    }
    return path;
}

int rowOfEntry(const ORVD_Manager *manager, const QString &path)
{
    const int count = manager ? int(manager->GetSelectList().size()) : 0;
    for (int row = 0; row < count; ++row) {
        if (entryPath(manager, row) == path)
            return row;
    }
    return -1;
}

} // namespace

QMap<QString, QVariant> save(const ORVD_Manager *manager, const ORVChStripMorphingPresetList *list)
{
    QMap<QString, QVariant> settings;
    int number = 0;
    for (const ORVD_Data *folder : visibleFolders(manager))
        settings.insert(folderKey(++number), folder->IsFolderOpen());
    if (list) {
        settings.insert(SelectedKey, list->selectedRow());
        if (manager && list->selectedRow() >= 0)
            settings.insert(SelectedEntryKey, entryPath(manager, list->selectedRow()));
        settings.insert(ViewKey, list->viewScroll());
    }
    return settings;
}

void restore(
    const QMap<QString, QVariant> &settings, ORVD_Manager *manager, ORVChStripMorphingPresetList *list)
{
    int number = 0;
    for (ORVD_Data *folder : visibleFolders(manager)) {
        const QVariant open = settings.value(folderKey(++number));
        if (open.isValid())
            folder->SetFolderOpen(open.toBool());
    }
    if (manager)
        manager->MakeSelectList();
    if (!list)
        return;
    list->updateList();
    const QVariant entry = settings.value(SelectedEntryKey);
    const QVariant selected = settings.value(SelectedKey);
    if (entry.isValid() && !entry.isNull()) {
        const int row = rowOfEntry(manager, entry.toString());
        if (row >= 0)
            list->selectItem(row);
        else
            list->clearSelection();
    } else if (selected.isValid() && !selected.isNull()) {
        // A map without the entry: the row may now hold another folder's
        // file, so only one that can be sent is taken.
        if (list->rowProblem(selected.toInt()).isEmpty())
            list->selectItem(selected.toInt());
    }
    const QVariant view = settings.value(ViewKey);
    if (view.isValid() && !view.isNull())
        list->setViewScroll(view.toDouble());
}

} // namespace MorphingListSettings
