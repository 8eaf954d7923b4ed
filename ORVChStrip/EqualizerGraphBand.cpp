#include "ORVChStrip/EqualizerGraphBand.h"

#include <algorithm>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/ChannelStripValueTables.h"

using namespace ChannelStripKeys;
using namespace ChannelStripTables;

namespace {

// Fixed shape arguments of the band filters.
constexpr double PeakingWidthExp = 0.7;
constexpr double ShelfSlopeExp = 0.32;
constexpr double ReferenceGain = 18.0;
constexpr double InitialSampleRate = 44100.0;

constexpr double MinFrequency = 20.0;
constexpr double MaxFrequency = 20000.0;

struct ShapeData
{
    std::array<const char *, EqualizerGraphBand::FieldCount> keys;
    double initialFrequency;
    double defaultFrequency;
    double minFrequency;
    double maxFrequency;
};

// The high band starts at a placeholder of 1 Hz that the first registration
// replaces; a value outside the table gives 10 kHz.
const ShapeData Shapes[] = {
    { { EqualizerLowOn, nullptr, EqualizerLowFrequency, EqualizerLowGain }, 100.0, 100.0, MinFrequency,
        1000.0 },
    { { EqualizerMiddleOn, EqualizerMiddleQuality, EqualizerMiddleFrequency, EqualizerMiddleGain }, 1000.0,
        1000.0, MinFrequency, MaxFrequency },
    { { EqualizerHighOn, nullptr, EqualizerHighFrequency, EqualizerHighGain }, 1.0, 10000.0, 500.0,
        MaxFrequency },
};

} // namespace

EqualizerGraphBand::EqualizerGraphBand(Shape shape)
    : m_shape(shape)
    , m_keys(Shapes[shape].keys)
    , m_defaultFrequency(Shapes[shape].defaultFrequency)
    , m_minFrequency(Shapes[shape].minFrequency)
    , m_maxFrequency(Shapes[shape].maxFrequency)
    , m_frequency(Shapes[shape].initialFrequency)
{
    m_filter.initializeFilterProc(InitialSampleRate);
}

void EqualizerGraphBand::applyValue(Field field, int value)
{
    switch (field) {
    case On: m_on = value != 0; break;
    case Quality: m_quality = value >= 0 && value < QCount ? QTable[value] : 1.0; break;
    case Frequency:
        m_frequency = value >= 0 && value < FreqCount ? FreqTable[value] : m_defaultFrequency;
        break;
    case Gain: m_gain = value >= 0 && value < GainCount ? GainTable[value] : 0.0; break;
    case FieldCount: break;
    }
}

void EqualizerGraphBand::updateCoefficients(double fs)
{
    switch (m_shape) {
    case LowShelf: m_filter.setCoefLowShelf_C(fs, m_frequency, m_gain, ShelfSlopeExp, ReferenceGain); break;
    case Peak:
        m_filter.setCoefPEQ_C(fs, m_frequency, m_gain, m_quality, PeakingWidthExp, ReferenceGain);
        break;
    case HighShelf: m_filter.setCoefHiShelf_C(fs, m_frequency, m_gain, ShelfSlopeExp, ReferenceGain); break;
    }
}

void EqualizerGraphBand::setSampleRate(double fs)
{
    m_filter.initializeFilterProc(fs);
    updateCoefficients(fs);
}

double EqualizerGraphBand::clampFrequency(double f) const
{
    return std::clamp(f, m_minFrequency, m_maxFrequency);
}
