#include "Common/ObservedParameters.h"

#include "Common/EffectEditor.h"
#include "Interfaces/IMemAPI.h"

ObservedParameters::ObservedParameters(IPrmObserver *observer, std::vector<const char *> keys)
    : m_pObserver(observer)
    , m_keys(std::move(keys))
    , m_ids(m_keys.size(), 0)
    , m_found(m_keys.size(), false)
{ }

void ObservedParameters::attach(const EffectEditor *editor, IMemAPI *memAPI, unsigned short ch)
{
    detach();
    if (!editor || !memAPI)
        return;
    m_pMemAPI = memAPI;
    m_ch = ch;
    for (size_t i = 0; i < m_keys.size(); ++i) {
        unsigned short id = 0;
        if (!editor->getParameter(m_keys[i], &id))
            continue;
        m_ids[i] = id;
        m_found[i] = true;
        memAPI->addPrmObserver(id, ch, m_pObserver);
    }
}

void ObservedParameters::detach()
{
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (m_found[i] && m_pMemAPI)
            m_pMemAPI->removePrmObserver(m_ids[i], m_ch, m_pObserver);
        m_found[i] = false;
    }
    m_pMemAPI = nullptr;
}

int ObservedParameters::indexOf(unsigned short prmId) const
{
    for (size_t i = 0; i < m_keys.size(); ++i) {
        if (m_found[i] && m_ids[i] == prmId)
            return int(i);
    }
    return -1;
}
