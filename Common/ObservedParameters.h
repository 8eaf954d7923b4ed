#pragma once

#include <vector>

class IMemAPI;
class ParameterLookup;
class IPrmObserver;

// The parameters one observer follows on one channel, named by keys. attach()
// looks each key up and registers the observer for those
// the model knows; detach() unregisters exactly those again. Keys keep their
// position, so callers index them with their own enums; a null key is a
// position that stays unbound.
//
// A widget that gets its lookup, memory and channel one at a time keeps them
// here: setLookup(), setMemAPI() and setCh() each register again with what
// is known so far, and read()/write() reach the bound parameters on the bound
// channel.
class ObservedParameters
{
public:
    ObservedParameters(IPrmObserver *observer, std::vector<const char *> keys);

    ObservedParameters(const ObservedParameters &) = delete;
    ObservedParameters &operator=(const ObservedParameters &) = delete;

    // The lookup is kept, not copied: the editor's follows its model.
    void attach(const ParameterLookup *lookup, IMemAPI *memAPI, unsigned short ch);
    void detach();

    // Each returns false, and changes nothing, when the value is the same.
    bool setLookup(const ParameterLookup *lookup);
    bool setMemAPI(IMemAPI *memAPI);
    bool setCh(unsigned short ch);
    // The memory as set, also while no key could be looked up yet.
    IMemAPI *memAPI() const { return m_pMemAPI; }
    unsigned short ch() const { return m_ch; }

    bool found(int index) const { return m_found[index]; }
    unsigned short id(int index) const { return m_ids[index]; }
    // The position of a found parameter with this id, or -1.
    int indexOf(unsigned short prmId) const;
    int count() const { return int(m_keys.size()); }

    // The host's integer value; false for an unbound parameter or a failed read.
    bool read(int index, int *value) const;
    // Writes an integer value as a user edit.
    bool write(int index, int value) const;
    // Lets the host parse `text` into its integer value, then writes that.
    bool writeText(int index, const char *text) const;

private:
    void registerObserver();

    IPrmObserver *m_pObserver;
    std::vector<const char *> m_keys;
    std::vector<unsigned short> m_ids;
    std::vector<bool> m_found;
    const ParameterLookup *m_pLookup = nullptr;
    IMemAPI *m_pMemAPI = nullptr;
    unsigned short m_ch = 0;
};
