#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

#include "SignalSource.h"

// The built-in test programmes, generated so the host needs no audio file.
// All are reproducible: the noise comes from a fixed seed.
// - Pink: pink noise at about -18 dBFS RMS, the two channels uncorrelated.
// - Drums: a kick, snare and hi-hat pattern at 120 beats per minute, peaks near -3 dBFS.
// - Sweep: a sine at -12 dBFS gliding from 20 Hz to 20 kHz over ten seconds (log scale).
// - Speech: vowel-like bursts at a spoken level, phrases of syllables between pauses.
class GeneratedSignal : public SignalSource
{
public:
    enum Programme { Pink, Drums, Sweep, Speech };

    GeneratedSignal(Programme programme, double sampleRate);

    // "pink", "drums", "sweep", "speech"
    static QStringList programmeNames();
    static bool programmeFromName(const QString &name, Programme *programme);

    double sampleRate() const override { return m_sampleRate; }
    void render(float *left, float *right, int frames) override;

private:
    double noise();
    double pinkSample(int channel);
    double drumSample();
    double sweepSample();
    double speechSample();

    Programme m_programme;
    double m_sampleRate;
    std::uint64_t m_noiseState = 0x2545F4914F6CDD1DULL;
    long long m_position = 0;
    double m_phase = 0.0;
    // Pink noise filter states, per channel.
    double m_pink[2][7] = {};
    // Drum voices: envelope times since their last hit and the filter state.
    double m_highState = 0.0;
    double m_lastNoise = 0.0;
    // Speech: two resonators shaping the noise and the voice.
    double m_formant[2][2] = {};
};
