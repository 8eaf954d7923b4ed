#pragma once

// Called by the host on its user-interface thread whenever an observed
// parameter changes on an observed channel.
class IPrmObserver
{
public:
    virtual int Update(unsigned short prmId, unsigned short ch, int value, const char *text) = 0;
    virtual int UpdateProperty(
        unsigned short prmId, unsigned short ch, int min, int max, int def, bool enabled, const char *text)
        = 0;

protected:
    ~IPrmObserver() = default;
};
