#pragma once

#include <vector>

#include "ORVChStrip/ORVD/ORVD_Collection.h"

class ORVD_Data;
class ORVD_Select;

// The morph data catalogue: the top-level entries found by the scan, the
// flattened list of visible rows in display order, and the selected entry.
class ORVD_Manager
{
public:
    ORVD_Manager();
    virtual ~ORVD_Manager();

    ORVD_Manager(const ORVD_Manager &) = delete;
    ORVD_Manager &operator=(const ORVD_Manager &) = delete;

    // Appends what the scan finds to the data list, sorts it and rebuilds
    // the rows. Call ClearDataList() first to rescan.
    virtual void Collection();
    virtual const std::vector<ORVD_Select *> &GetSelectList() const;
    virtual const ORVD_Data *GetSelectData() const;
    virtual void SetSelectData(const ORVD_Data *data);
    virtual void ChangeSelectData();
    // Rebuilds the rows: every open folder is followed by its sorted contents.
    virtual void MakeSelectList();
    // Depth-first search for the file named `name` exactly; never a folder.
    virtual ORVD_Data *SearchData(const char *name) const;
    // Hook for sending a data set to the hardware; does nothing here.
    virtual int SendMorphData(const char *name, const unsigned char *data, unsigned int size);
    // Deletes every entry. The rows and the selection referred to them and
    // are dropped too; re-find the selection with ChangeSelectData() after
    // the rescan.
    virtual void ClearDataList();
    virtual void ClearSelectList();
    // Finds the file a stored selection refers to: the first whose name
    // agrees with `name` in the first `nameLength` bytes and whose id agrees
    // with `uniqueID` in UniqueIDLength bytes (a null id counts as all zero).
    virtual ORVD_Data *ChangeSelectData(const char *name, unsigned int nameLength,
        const unsigned char *uniqueID, const std::vector<ORVD_Data *> &list) const;
    virtual void MakeSelectList(int layer, const std::vector<ORVD_Data *> &list);

    const std::vector<ORVD_Data *> &GetDataList() const { return m_dataList; }
    // The scan source; by default the morph folder.
    ORVD_Collection &GetCollection() { return m_collection; }

private:
    ORVD_Collection m_collection;
    std::vector<ORVD_Data *> m_dataList;
    std::vector<ORVD_Select *> m_selectList;
    const ORVD_Data *m_pSelectData = nullptr;
};
