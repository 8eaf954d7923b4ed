#include "SpectrumAnalyser.h"

#include <algorithm>
#include <cmath>
#include <fftw3.h>

namespace {

constexpr double TwoPi = 6.283185307179586;

} // namespace

SpectrumAnalyser::SpectrumAnalyser(double sampleRate, int channelCount)
    : m_channelCount(std::clamp(channelCount, 1, 2))
    , m_smoothing(1.0 - std::exp(-HopSize / (AveragingSeconds * sampleRate)))
    , m_bands(sampleRate, FftSize)
    , m_window(FftSize)
    , m_history(m_channelCount, std::vector<float>(FftSize, 0.0f))
    , m_frame(fftwf_alloc_real(FftSize))
    , m_bins(fftwf_alloc_complex(FftSize / 2 + 1))
    , m_plan(fftwf_plan_dft_r2c_1d(FftSize, m_frame, m_bins, FFTW_ESTIMATE))
    , m_hopPower(FftSize / 2 + 1)
    , m_power(FftSize / 2 + 1)
{
    // Hann, periodic; the power of each bin is scaled so that a sine of peak
    // amplitude A sums to A^2 over its bins.
    double energy = 0.0;
    for (int i = 0; i < FftSize; ++i) {
        m_window[i] = float(0.5 - 0.5 * std::cos(TwoPi * i / FftSize));
        energy += double(m_window[i]) * m_window[i];
    }
    const double scale = std::sqrt(4.0 / (double(FftSize) * energy));
    for (float &w : m_window)
        w = float(w * scale);
}

SpectrumAnalyser::~SpectrumAnalyser()
{
    fftwf_destroy_plan(m_plan);
    fftwf_free(m_bins);
    fftwf_free(m_frame);
}

void SpectrumAnalyser::reset()
{
    for (std::vector<float> &history : m_history)
        std::fill(history.begin(), history.end(), 0.0f);
    m_writePosition = 0;
    m_filled = 0;
    m_sinceHop = 0;
    m_primed = false;
}

void SpectrumAnalyser::process(const float *const *channels, int frames)
{
    int done = 0;
    while (done < frames) {
        const int chunk = std::min({ frames - done, HopSize - m_sinceHop, FftSize - m_writePosition });
        for (int c = 0; c < m_channelCount; ++c)
            std::copy_n(channels[c] + done, chunk, m_history[c].begin() + m_writePosition);
        m_writePosition = (m_writePosition + chunk) % FftSize;
        m_filled = std::min(FftSize, m_filled + chunk);
        m_sinceHop += chunk;
        done += chunk;
        if (m_sinceHop == HopSize) {
            m_sinceHop = 0;
            if (m_filled == FftSize)
                analyse();
        }
    }
}

void SpectrumAnalyser::analyse()
{
    const int bins = FftSize / 2 + 1;
    std::fill(m_hopPower.begin(), m_hopPower.end(), 0.0);
    for (const std::vector<float> &history : m_history) {
        // The ring's oldest sample is at the write position.
        const int tail = FftSize - m_writePosition;
        for (int i = 0; i < tail; ++i)
            m_frame[i] = history[m_writePosition + i] * m_window[i];
        for (int i = 0; i < m_writePosition; ++i)
            m_frame[tail + i] = history[i] * m_window[tail + i];
        fftwf_execute(m_plan);
        for (int k = 0; k < bins; ++k)
            m_hopPower[k] += double(m_bins[k][0]) * m_bins[k][0] + double(m_bins[k][1]) * m_bins[k][1];
    }
    const double perChannel = 1.0 / m_channelCount;
    if (!m_primed) {
        for (int k = 0; k < bins; ++k)
            m_power[k] = m_hopPower[k] * perChannel;
        m_primed = true;
        return;
    }
    for (int k = 0; k < bins; ++k)
        m_power[k] += m_smoothing * (m_hopPower[k] * perChannel - m_power[k]);
}

SpectrumAnalyser::Levels SpectrumAnalyser::levels() const
{
    Levels levels = SpectrumFrame::silence();
    if (!m_primed)
        return levels;
    // Below the silence floor's power, 10 log10 would only add noise.
    const double floor = std::pow(10.0, SpectrumBands::SilenceDb / 10.0);
    for (int b = 0; b < SpectrumBands::Count; ++b) {
        const double power = m_bands.bandPower(b, m_power.data());
        if (power > floor)
            levels[b] = float(10.0 * std::log10(power));
    }
    return levels;
}
