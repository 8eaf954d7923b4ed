#pragma once

#include <QString>

#include "ORVChStrip/ORVD/ORVD_CollectionImp.h"

// Collects the morph data files of one folder and its sub-folders, one level
// deep (see OrvdCollectionEngine). A folder that does not exist gives
// nothing, silently.
class ORVD_FolderCollectionImp : public ORVD_CollectionImp
{
public:
    // An empty `folder` stands for the machine-wide morph folder, looked up
    // at each scan.
    explicit ORVD_FolderCollectionImp(const QString &folder = QString());

    void Collection(std::vector<ORVD_Data *> &list) override;

    // The folder a scan would walk now.
    QString Folder() const;

    static QString DefaultFolder();

private:
    QString m_folder;
};
