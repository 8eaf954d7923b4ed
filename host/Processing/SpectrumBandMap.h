#pragma once

#include <vector>

// Turns the power of FFT bins into the power of the sixth-octave bands of
// SpectrumBands. A band's power is the mean power density over its width
// times that width; a band narrower than MinimumBins bins (below about
// 150 Hz at 8192 points and 48 kHz) takes its density from MinimumBins bins
// around its centre, which steadies the low bands without changing their
// level. Each bin covers half a bin either side of its centre, so a band
// edge may take part of a bin.
class SpectrumBandMap
{
public:
    static constexpr double MinimumBins = 3.0;

    SpectrumBandMap(double sampleRate, int fftSize);

    // `binPower` holds fftSize / 2 + 1 values; returns the band's power.
    double bandPower(int band, const double *binPower) const;

private:
    struct Band
    {
        int firstBin = 0;
        std::vector<double> weights; // from firstBin on
        double scale = 0.0;          // band width over the weights' sum
    };
    std::vector<Band> m_bands;
};
