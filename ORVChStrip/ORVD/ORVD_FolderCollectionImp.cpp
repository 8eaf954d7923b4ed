#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"

#include <QFileInfo>

#include "ORVChStrip/ORVD/OrvdCollectionEngine.h"

ORVD_FolderCollectionImp::ORVD_FolderCollectionImp(const QString &folder)
    : m_folder(folder)
{ }

void ORVD_FolderCollectionImp::Collection(std::vector<ORVD_Data *> &list)
{
    const QString folder = Folder();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return;
    OrvdCollectionEngine(folder).Collection(list, 1);
}

QString ORVD_FolderCollectionImp::Folder() const
{
    return m_folder.isEmpty() ? DefaultFolder() : m_folder;
}

QString ORVD_FolderCollectionImp::DefaultFolder()
{
    return OrvdCollectionEngine::GetOrvdFolder();
}
