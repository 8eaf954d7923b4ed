#include "ORVChStrip/MorphingListSettings.h"

#include <vector>

#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"

namespace MorphingListSettings {

namespace {

const QString SelectedKey = QStringLiteral("MorphingListSelected");
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

} // namespace

QMap<QString, QVariant> save(const ORVD_Manager *manager, const ORVChStripMorphingPresetList *list)
{
    QMap<QString, QVariant> settings;
    int number = 0;
    for (const ORVD_Data *folder : visibleFolders(manager))
        settings.insert(folderKey(++number), folder->IsFolderOpen());
    if (list) {
        settings.insert(SelectedKey, list->selectedRow());
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
    const QVariant selected = settings.value(SelectedKey);
    if (selected.isValid() && !selected.isNull())
        list->selectItem(selected.toInt());
    const QVariant view = settings.value(ViewKey);
    if (view.isValid() && !view.isNull())
        list->setViewScroll(view.toDouble());
}

} // namespace MorphingListSettings
