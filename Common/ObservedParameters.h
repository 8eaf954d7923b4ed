#pragma once

#include <vector>

class EffectEditor;
class IMemAPI;
class IPrmObserver;

// The parameters one observer follows on one channel, named by keys. attach()
// looks each key up through the editor and registers the observer for those
// the model knows; detach() unregisters exactly those again. Keys keep their
// position, so callers index them with their own enums.
class ObservedParameters
{
public:
    ObservedParameters(IPrmObserver *observer, std::vector<const char *> keys);

    ObservedParameters(const ObservedParameters &) = delete;
    ObservedParameters &operator=(const ObservedParameters &) = delete;

    void attach(const EffectEditor *editor, IMemAPI *memAPI, unsigned short ch);
    void detach();

    bool found(int index) const { return m_found[index]; }
    unsigned short id(int index) const { return m_ids[index]; }
    // The position of a found parameter with this id, or -1.
    int indexOf(unsigned short prmId) const;
    int count() const { return int(m_keys.size()); }

private:
    IPrmObserver *m_pObserver;
    std::vector<const char *> m_keys;
    std::vector<unsigned short> m_ids;
    std::vector<bool> m_found;
    IMemAPI *m_pMemAPI = nullptr;
    unsigned short m_ch = 0;
};
