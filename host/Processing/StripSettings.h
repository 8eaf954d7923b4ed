#pragma once

#include "ORVChStrip/Filter/CompressorCurve.h"

class ParameterMemory;

// The strip's settings in physical units, as the processing model needs
// them. The GUI thread reads them out of the parameter memory; the worker
// thread only ever sees a copy.
struct StripSettings
{
    struct Band
    {
        double frequency = 1000.0; // Hz
        double gain = 0.0;         // dB
        double quality = 1.0;      // the peaking bands only
        bool on = true;

        bool operator==(const Band &other) const
        {
            return frequency == other.frequency && gain == other.gain && quality == other.quality
                && on == other.on;
        }
        bool operator!=(const Band &other) const { return !(*this == other); }
    };

    Band low { 100.0, 0.0, 1.0, true };
    Band middle;
    Band high { 10000.0, 0.0, 1.0, true };
    bool equalizerBypass = false;

    Band sideChain { 1000.0, 0.0, 1.0, false }; // `on` switches the side-chain equaliser
    bool compressorBypass = false;
    double attackMs = 10.0;
    double releaseMs = 200.0;
    // The static curve in the steps the compressor graph draws it from.
    CompressorCurve::Settings curve;
    double makeUpDb = 0.0;

    double outputDb = 0.0;

    // The values of one channel; a key the model lacks keeps its default.
    static StripSettings fromMemory(const ParameterMemory &memory, int channel);
};
