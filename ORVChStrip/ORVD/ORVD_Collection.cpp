#include "ORVChStrip/ORVD/ORVD_Collection.h"

#include "ORVChStrip/ORVD/ORVD_CollectionImp.h"
#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"

ORVD_Collection::ORVD_Collection()
    : m_pImp(std::make_unique<ORVD_FolderCollectionImp>())
{ }

ORVD_Collection::~ORVD_Collection() = default;

void ORVD_Collection::Collection(std::vector<ORVD_Data *> &out)
{
    if (m_pImp)
        m_pImp->Collection(out);
}

void ORVD_Collection::SetFolder(const QString &folder)
{
    m_pImp = std::make_unique<ORVD_FolderCollectionImp>(folder);
}
