#include "ORVChStrip/ORVD/ORVD_Manager.h"

#include <algorithm>
#include <cstring>

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"

namespace {

ORVD_Data *searchData(const char *name, const std::vector<ORVD_Data *> &list)
{
    for (ORVD_Data *data : list) {
        if (data->IsFolder()) {
            if (ORVD_Data *found = searchData(name, data->GetDataList()))
                return found;
        } else if (std::strcmp(data->GetName(), name) == 0) {
            return data;
        }
    }
    return nullptr;
}

} // namespace

ORVD_Manager::ORVD_Manager() = default;

ORVD_Manager::~ORVD_Manager()
{
    ClearSelectList();
    ClearDataList();
    m_pSelectData = nullptr;
    std::vector<ORVD_Select *>().swap(m_selectList);
    std::vector<ORVD_Data *>().swap(m_dataList);
}

void ORVD_Manager::Collection()
{
    m_collection.Collection(m_dataList);
    std::sort(m_dataList.begin(), m_dataList.end(), ORVD_Data::Small);
    MakeSelectList();
}

const std::vector<ORVD_Select *> &ORVD_Manager::GetSelectList() const
{
    return m_selectList;
}

const ORVD_Data *ORVD_Manager::GetSelectData() const
{
    return m_pSelectData;
}

void ORVD_Manager::SetSelectData(const ORVD_Data *data)
{
    m_pSelectData = data;
}

void ORVD_Manager::ChangeSelectData() { }

void ORVD_Manager::MakeSelectList()
{
    ClearSelectList();
    MakeSelectList(0, m_dataList);
}

ORVD_Data *ORVD_Manager::SearchData(const char *name) const
{
    return name ? searchData(name, m_dataList) : nullptr;
}

int ORVD_Manager::SendMorphData(const char *, const unsigned char *, unsigned int)
{
    return 0;
}

void ORVD_Manager::ClearDataList()
{
    // Rows and selection point into the entries; never leave them dangling.
    ClearSelectList();
    m_pSelectData = nullptr;
    for (ORVD_Data *data : m_dataList)
        delete data;
    m_dataList.clear();
}

void ORVD_Manager::ClearSelectList()
{
    for (ORVD_Select *select : m_selectList)
        delete select;
    m_selectList.clear();
}

ORVD_Data *ORVD_Manager::ChangeSelectData(const char *name, unsigned int nameLength,
    const unsigned char *uniqueID, const std::vector<ORVD_Data *> &list) const
{
    if (!name)
        return nullptr;
    for (ORVD_Data *data : list) {
        if (data->IsFolder()) {
            if (ORVD_Data *found = ChangeSelectData(name, nameLength, uniqueID, data->GetDataList()))
                return found;
            continue;
        }
        if (!data->GetDataBuffer())
            continue;
        unsigned char id[ORVD_Data::UniqueIDLength] = {};
        data->GetUniqueID(id);
        const unsigned char emptyID[ORVD_Data::UniqueIDLength] = {};
        const unsigned char *wanted = uniqueID ? uniqueID : emptyID;
        // strncmp stops at either terminator, so a nameLength beyond the end
        // of a name never reads past it.
        if (std::strncmp(data->GetName(), name, nameLength) == 0
            && std::memcmp(wanted, id, ORVD_Data::UniqueIDLength) == 0)
            return data;
    }
    return nullptr;
}

void ORVD_Manager::MakeSelectList(int layer, const std::vector<ORVD_Data *> &list)
{
    for (ORVD_Data *data : list) {
        m_selectList.push_back(new ORVD_Select(data, layer));
        if (data->IsFolder() && data->IsFolderOpen()) {
            std::vector<ORVD_Data *> children;
            data->GetDataList(children);
            std::sort(children.begin(), children.end(), ORVD_Data::Small);
            MakeSelectList(layer + 1, children);
        }
    }
}
