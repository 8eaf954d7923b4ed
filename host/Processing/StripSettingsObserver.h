#pragma once

#include <QVector>

#include "Interfaces/IPrmObserver.h"

class ParameterMemory;
class SharedStripSettings;

// Follows every parameter of one strip in the parameter memory (GUI thread)
// and publishes a fresh copy of the settings whenever one changes, including
// the changes a morph position brings.
class StripSettingsObserver : public IPrmObserver
{
public:
    StripSettingsObserver(ParameterMemory &memory, int channel, SharedStripSettings &target);
    ~StripSettingsObserver();

    StripSettingsObserver(const StripSettingsObserver &) = delete;
    StripSettingsObserver &operator=(const StripSettingsObserver &) = delete;

    int Update(unsigned short prmId, unsigned short ch, int value, const char *text) override;
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

    void publish();

private:
    ParameterMemory &m_memory;
    int m_channel;
    SharedStripSettings &m_target;
    QVector<unsigned short> m_observed;
};
