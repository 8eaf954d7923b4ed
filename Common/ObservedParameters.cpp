#include "Common/ObservedParameters.h"

#include <cstddef>

#include "Common/ParameterLookup.h"
#include "Interfaces/IMemAPI.h"

ObservedParameters::ObservedParameters(IPrmObserver *observer, std::vector<const char *> keys)
    : m_pObserver(observer)
    , m_keys(std::move(keys))
    , m_ids(m_keys.size(), 0)
    , m_found(m_keys.size(), false)
{ }

void ObservedParameters::attach(const ParameterLookup *lookup, IMemAPI *memAPI, unsigned short ch)
{
    detach();
    m_pLookup = lookup;
    m_pMemAPI = memAPI;
    m_ch = ch;
    registerObserver();
}

void ObservedParameters::registerObserver()
{
    if (!m_pLookup || !m_pMemAPI)
        return;
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        unsigned short id = 0;
        if (!m_keys[i] || !m_pLookup->parameter(m_keys[i], &id))
            continue;
        m_ids[i] = id;
        m_found[i] = true;
        m_pMemAPI->addPrmObserver(id, m_ch, m_pObserver);
    }
}

void ObservedParameters::detach()
{
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        if (m_found[i] && m_pMemAPI)
            m_pMemAPI->removePrmObserver(m_ids[i], m_ch, m_pObserver);
        m_found[i] = false;
    }
    m_pMemAPI = nullptr;
}

bool ObservedParameters::setLookup(const ParameterLookup *lookup)
{
    if (m_pLookup == lookup)
        return false;
    attach(lookup, m_pMemAPI, m_ch);
    return true;
}

bool ObservedParameters::setMemAPI(IMemAPI *memAPI)
{
    if (m_pMemAPI == memAPI)
        return false;
    attach(m_pLookup, memAPI, m_ch);
    return true;
}

bool ObservedParameters::setCh(unsigned short ch)
{
    if (m_ch == ch)
        return false;
    attach(m_pLookup, m_pMemAPI, ch);
    return true;
}

int ObservedParameters::indexOf(unsigned short prmId) const
{
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        if (m_found[i] && m_ids[i] == prmId)
            return int(i);
    }
    return -1;
}

bool ObservedParameters::read(int index, int *value) const
{
    return m_pMemAPI && m_found[index] && m_pMemAPI->getValue(m_ids[index], m_ch, value) >= 0;
}

bool ObservedParameters::write(int index, int value) const
{
    return m_pMemAPI && m_found[index] && m_pMemAPI->setValue(m_ids[index], m_ch, value, 0, 0, 1) >= 0;
}

bool ObservedParameters::writeText(int index, const char *text) const
{
    if (!m_pMemAPI || !m_found[index])
        return false;
    int value = 0;
    return m_pMemAPI->setValueString(m_ids[index], m_ch, text, &value) >= 0 && write(index, value);
}
