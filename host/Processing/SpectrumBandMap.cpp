#include "SpectrumBandMap.h"

#include <algorithm>
#include <cmath>

#include "Interfaces/ISpectrumSource.h"

SpectrumBandMap::SpectrumBandMap(double sampleRate, int fftSize)
{
    const double binHz = sampleRate / fftSize;
    const int lastBin = fftSize / 2;
    // Band edges lie halfway (on the log scale) between neighbouring centres.
    const double halfStep = std::pow(10.0, 1.0 / 40.0);
    m_bands.resize(SpectrumBands::Count);
    for (int b = 0; b < SpectrumBands::Count; ++b) {
        const double centre = SpectrumBands::frequency(b) / binHz;
        const double width = centre * (halfStep - 1.0 / halfStep);
        const double span = std::max(width, MinimumBins);
        // The span is centred on the band on the log scale while the band is
        // wide enough, else on its centre bin position.
        double low = width >= MinimumBins ? centre / halfStep : centre - span / 2.0;
        double high = width >= MinimumBins ? centre * halfStep : centre + span / 2.0;
        low = std::clamp(low, 0.0, lastBin + 0.5);
        high = std::clamp(high, 0.0, lastBin + 0.5);
        Band &band = m_bands[b];
        band.firstBin = std::max(0, int(std::floor(low + 0.5)));
        double sum = 0.0;
        for (int k = band.firstBin; k <= lastBin && k - 0.5 < high; ++k) {
            const double overlap = std::min(high, k + 0.5) - std::max(low, k - 0.5);
            band.weights.push_back(std::max(0.0, overlap));
            sum += band.weights.back();
        }
        // A band above the Nyquist frequency stays silent.
        band.scale = sum > 0.0 ? width / sum : 0.0;
    }
}

double SpectrumBandMap::bandPower(int band, const double *binPower) const
{
    const Band &b = m_bands[band];
    double sum = 0.0;
    for (size_t i = 0; i < b.weights.size(); ++i)
        sum += b.weights[i] * binPower[b.firstBin + int(i)];
    return sum * b.scale;
}
