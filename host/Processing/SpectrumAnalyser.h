#pragma once

#include <vector>

#include "SpectrumBandMap.h"
#include "SpectrumFrame.h"

struct fftwf_plan_s;

// The averaged power spectrum of one or two channels, as band levels. Every
// HopSize samples the newest FftSize samples of each channel go through a
// Hann window and a real FFT (FFTW); the bins' power, averaged over the
// channels, joins an exponential average with a time constant of
// AveragingSeconds. Hann with 75 % overlap weighs every sample alike, and
// its side lobes fall fast enough that a low band is not flooded by the
// louder band below it.
//
// Runs on the processing thread; only construction plans the FFT, so create
// analysers on one thread at a time (FFTW's planner is not thread-safe).
class SpectrumAnalyser
{
public:
    static constexpr int FftSize = 8192;
    static constexpr int HopSize = FftSize / 4;
    static constexpr double AveragingSeconds = 0.3;
    using Levels = SpectrumFrame::Levels;

    SpectrumAnalyser(double sampleRate, int channelCount);
    ~SpectrumAnalyser();
    SpectrumAnalyser(const SpectrumAnalyser &) = delete;
    SpectrumAnalyser &operator=(const SpectrumAnalyser &) = delete;

    // Takes `frames` samples of each channel.
    void process(const float *const *channels, int frames);
    // Forgets everything heard: the next levels come from new audio only.
    void reset();
    // The averaged band levels in dB (SpectrumBands::SilenceDb before the
    // first full window).
    Levels levels() const;

private:
    void analyse();

    int m_channelCount;
    double m_smoothing; // the average's step per hop
    SpectrumBandMap m_bands;
    std::vector<float> m_window;
    std::vector<std::vector<float>> m_history; // a ring of FftSize samples per channel
    int m_writePosition = 0;
    int m_filled = 0;
    int m_sinceHop = 0;
    float *m_frame;     // FFTW's aligned input
    float (*m_bins)[2]; // and output, FftSize / 2 + 1 complex bins
    fftwf_plan_s *m_plan;
    std::vector<double> m_hopPower;
    std::vector<double> m_power;
    bool m_primed = false;
};
