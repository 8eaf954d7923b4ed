#pragma once

#include <QVector>

#include "MeterReading.h"

class HostModel;

// Writes a meter reading into the host's meter array: tenths of a dB
// (-1270 is silence), entry base + 2 * channel + side. Each channel of the
// strip fills both sides of its own entries; the side-chain and gain
// reduction meters, linked across a stereo strip, fill both channels alike.
// Channels outside the strip read silence (no reduction on the gain
// reduction meter).
class StripMeterLayout
{
public:
    static constexpr int Silence = -1270;

    StripMeterLayout(HostModel &model, int firstChannel, bool stereo);

    QVector<unsigned int> levels(const MeterReading &reading) const;
    // dB to the meter format, rounded and held within the meters' range.
    static unsigned int tenths(double db);

private:
    // The meter's first array index and channel count; false for a key the model lacks.
    bool find(const char *key, int *base, int *channels) const;

    HostModel &m_model;
    int m_firstChannel;
    bool m_stereo;
};
