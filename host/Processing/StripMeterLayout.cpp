#include "StripMeterLayout.h"

#include <algorithm>
#include <cmath>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"

namespace {

// The highest value a meter shows (its over range ends well below this).
constexpr int Ceiling = 200;

} // namespace

StripMeterLayout::StripMeterLayout(HostModel &model, int firstChannel, bool stereo)
    : m_model(model)
    , m_firstChannel(firstChannel)
    , m_stereo(stereo)
{ }

unsigned int StripMeterLayout::tenths(double db)
{
    const double value
        = std::isnan(db) ? double(Silence) : std::clamp(db * 10.0, double(Silence), double(Ceiling));
    return static_cast<unsigned int>(static_cast<int>(std::lround(value)));
}

bool StripMeterLayout::find(const char *key, int *base, int *channels) const
{
    unsigned short index = 0;
    unsigned short first = 0;
    unsigned short count = 0;
    if (!m_model.findMeter(&index, key) || !m_model.getMeterInfo(&first, &count, index))
        return false;
    *base = first;
    *channels = count;
    return true;
}

QVector<unsigned int> StripMeterLayout::levels(const MeterReading &reading) const
{
    using namespace ChannelStripKeys;
    const int size = int(m_model.meterArraySize());
    QVector<unsigned int> values(size, static_cast<unsigned int>(Silence));
    const int strips = m_stereo ? 2 : 1;
    // Fills both sides of every channel of the meter, the strip's channels
    // with `strip(c)`, the others with `outside`.
    auto fill = [&](const char *key, auto strip, double outside) {
        int base = 0;
        int channels = 0;
        if (!find(key, &base, &channels))
            return;
        for (int channel = 0; channel < channels; ++channel) {
            const int c = channel - m_firstChannel;
            const double db = c >= 0 && c < strips ? strip(std::min(c, reading.channelCount - 1)) : outside;
            for (int side = 0; side < 2; ++side) {
                const int position = base + 2 * channel + side;
                if (position < size)
                    values[position] = tenths(db);
            }
        }
    };
    const double silence = Silence / 10.0;
    fill(
        InputMeter, [&](int c) { return reading.inputDb[c]; }, silence);
    fill(
        OutputMeter, [&](int c) { return reading.outputDb[c]; }, silence);
    fill(
        SideChainMeter, [&](int) { return reading.detectorLevelDb; }, silence);
    // The gain reduction meter reads 0 for no reduction, and negative values for reduction.
    fill(
        GainReductionMeter, [&](int) { return -reading.gainReductionDb; }, 0.0);
    return values;
}
