#pragma once

#include <cmath>
#include <cstdint>

#include "FUID.h"
#include "FUnknown.h"

// The strip's live spectrum, for an editor that draws it behind its curves.
// The hardware computes nothing of the kind, so this is an optional host
// extension: an editor asks IMemAPI::queryInterface for SpectrumSourceIID
// and, when the host answers kNoInterface, goes without.
//
// A frame holds SpectrumBands::Count levels in dB, one per sixth-octave band
// at the fixed centres SpectrumBands::frequency(i), 20 Hz to 20 kHz. A level
// is the band's power relative to a full-scale sine (a sine of peak amplitude
// A anywhere in the band reads 20 log10 A), summed over the channels of the
// pair, so pink noise reads flat. Silence reads SpectrumBands::SilenceDb.
namespace SpectrumBands {
inline constexpr int Count = 61;
inline constexpr float SilenceDb = -140.0f;
// Band i is centred on 1 kHz * 10^((i - 34) / 20): 19.95 Hz, 22.4 Hz, ...
// 1 kHz (i = 34) ... 19.95 kHz, a sixth of an octave apart.
inline constexpr int OneKilohertzBand = 34;
inline double frequency(int band)
{
    return 1000.0 * std::pow(10.0, (band - OneKilohertzBand) / 20.0);
}
} // namespace SpectrumBands

// Receives frames on the host's user-interface thread, about 30 times a
// second while the strip runs. `input` (the strip's input, before the
// compressor and equaliser) may be null; `output` is the strip's output.
// Both hold `count` levels; the arrays live only for the call.
class ISpectrumObserver
{
public:
    virtual void notifySpectrumUpdated(const float *output, const float *input, unsigned int count) = 0;

protected:
    ~ISpectrumObserver() = default;
};

class ISpectrumSource : public FUnknown
{
public:
    // kResultOk when the host analyses the strip on ch1 and ch2 (ch2
    // negative for a mono strip), else kResultFalse.
    virtual int32_t hasSpectrum(unsigned short ch1, int ch2) = 0;
    // Registers `observer` for the strip whose channels are ch1 and ch2
    // (ch2 negative for a mono strip). kResultFalse when the host analyses no
    // such strip; adding an observer twice changes nothing.
    virtual int32_t addSpectrumObserver(unsigned short ch1, int ch2, ISpectrumObserver *observer) = 0;
    // Must be called before the observer goes away.
    virtual int32_t removeSpectrumObserver(ISpectrumObserver *observer) = 0;

protected:
    ~ISpectrumSource() = default;
};

// 7C1E5A93-0B64-4D2F-9E38-51A6C0F2B7D4
inline constexpr FUID SpectrumSourceIID(0x7C1E5A93, 0x0B644D2F, 0x9E3851A6, 0xC0F2B7D4);
