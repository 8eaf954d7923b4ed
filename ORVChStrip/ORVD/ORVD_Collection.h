#pragma once

#include <QString>
#include <memory>
#include <vector>

class ORVD_CollectionImp;
class ORVD_Data;

// Runs the platform's morph data collector. By default it scans the morph
// folder (see ORVD_FolderCollectionImp::DefaultFolder()); another folder can
// be put in its place.
class ORVD_Collection
{
public:
    ORVD_Collection();
    ~ORVD_Collection();

    ORVD_Collection(const ORVD_Collection &) = delete;
    ORVD_Collection &operator=(const ORVD_Collection &) = delete;

    // Appends the entries found to `out`; existing entries stay.
    void Collection(std::vector<ORVD_Data *> &out);

    // Scans `folder` from now on; an empty path goes back to the morph folder.
    void SetFolder(const QString &folder);

private:
    std::unique_ptr<ORVD_CollectionImp> m_pImp;
};
