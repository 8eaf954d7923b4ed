#include "GeneratedSignal.h"

#include <cmath>

namespace {

constexpr double TwoPi = 6.283185307179586;

// Pattern of one bar in sixteenth notes at 120 beats per minute.
constexpr double StepSeconds = 0.125;
constexpr int StepsPerBar = 16;
constexpr bool KickSteps[StepsPerBar] = { 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 0, 0, 0, 0, 0 };
constexpr bool SnareSteps[StepsPerBar] = { 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1 };
constexpr bool HatSteps[StepsPerBar] = { 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 1 };

// Seconds since the last step of the pattern that is set, at bar time t.
double sinceLastHit(const bool (&steps)[StepsPerBar], double t)
{
    const int step = int(t / StepSeconds);
    for (int back = 0; back < StepsPerBar; ++back) {
        const int s = (step - back + StepsPerBar) % StepsPerBar;
        if (steps[s])
            return t - (step - back) * StepSeconds;
    }
    return 1e9;
}

constexpr double SweepSeconds = 10.0;
constexpr double SweepStartHz = 20.0;
constexpr double SweepRatio = 1000.0; // 20 Hz to 20 kHz

// Speech: phrases of syllables, then a pause.
constexpr double PhraseSeconds = 2.4;
constexpr double PauseSeconds = 0.8;
constexpr double SyllablesPerSecond = 4.5;
// First and second formants of a few vowels, in Hz.
constexpr double Vowels[][2] = { { 730, 1090 }, { 270, 2290 }, { 530, 1840 }, { 570, 840 }, { 440, 1020 } };
constexpr int VowelCount = sizeof(Vowels) / sizeof(Vowels[0]);

// A fixed pseudo-random value in [0, 1) for an integer, to vary syllables.
double hashUnit(long long n)
{
    std::uint64_t x = static_cast<std::uint64_t>(n) * 0x9E3779B97F4A7C15ULL;
    x ^= x >> 29;
    x *= 0xBF58476D1CE4E5B9ULL;
    x ^= x >> 32;
    return double(x >> 11) / 9007199254740992.0;
}

// Two-pole resonator at f with bandwidth b, its state in y[2].
double resonate(double x, double f, double b, double fs, double (&y)[2])
{
    const double r = std::exp(-3.141592653589793 * b / fs);
    const double out = 2.0 * r * std::cos(TwoPi * f / fs) * y[0] - r * r * y[1] + (1.0 - r) * x;
    y[1] = y[0];
    y[0] = out;
    return out;
}

} // namespace

GeneratedSignal::GeneratedSignal(Programme programme, double sampleRate)
    : m_programme(programme)
    , m_sampleRate(sampleRate > 0.0 ? sampleRate : 48000.0)
{ }

QStringList GeneratedSignal::programmeNames()
{
    return { QStringLiteral("pink"), QStringLiteral("drums"), QStringLiteral("sweep"),
        QStringLiteral("speech") };
}

bool GeneratedSignal::programmeFromName(const QString &name, Programme *programme)
{
    const int index = int(programmeNames().indexOf(name.toLower()));
    if (index < 0)
        return false;
    *programme = static_cast<Programme>(index);
    return true;
}

double GeneratedSignal::noise()
{
    // xorshift64*: uniform in [-1, 1).
    m_noiseState ^= m_noiseState >> 12;
    m_noiseState ^= m_noiseState << 25;
    m_noiseState ^= m_noiseState >> 27;
    const std::uint64_t x = m_noiseState * 0x2545F4914F6CDD1DULL;
    return double(x >> 11) / 4503599627370496.0 - 1.0;
}

double GeneratedSignal::pinkSample(int channel)
{
    // White noise through a bank of one-pole filters whose sum falls at
    // 3 dB per octave across the audio band.
    double(&b)[7] = m_pink[channel];
    const double white = noise();
    b[0] = 0.99886 * b[0] + white * 0.0555179;
    b[1] = 0.99332 * b[1] + white * 0.0750759;
    b[2] = 0.96900 * b[2] + white * 0.1538520;
    b[3] = 0.86650 * b[3] + white * 0.3104856;
    b[4] = 0.55000 * b[4] + white * 0.5329522;
    b[5] = -0.7616 * b[5] - white * 0.0168980;
    const double pink = b[0] + b[1] + b[2] + b[3] + b[4] + b[5] + b[6] + white * 0.5362;
    b[6] = white * 0.115926;
    return pink * 0.069;
}

double GeneratedSignal::drumSample()
{
    const double t = std::fmod(m_position / m_sampleRate, StepSeconds * StepsPerBar);
    const double white = noise();

    // Kick: a sine falling from 140 Hz to 50 Hz.
    const double k = sinceLastHit(KickSteps, t);
    const double kickPhase = TwoPi * (50.0 * k + 90.0 * 0.03 * (1.0 - std::exp(-k / 0.03)));
    const double kick = 0.62 * std::exp(-k / 0.22) * std::sin(kickPhase);

    // Snare: a noise burst over a short tone.
    const double s = sinceLastHit(SnareSteps, t);
    const double snare
        = std::exp(-s / 0.07) * (0.3 * white + 0.2 * std::sin(TwoPi * 190.0 * s) * std::exp(-s / 0.04));

    // Hi-hat: differentiated noise, very short.
    const double h = sinceLastHit(HatSteps, t);
    const double bright = white - m_lastNoise;
    m_lastNoise = white;
    m_highState = 0.5 * m_highState + 0.5 * bright;
    const double hat = 0.12 * std::exp(-h / 0.018) * m_highState;

    return kick + snare + hat;
}

double GeneratedSignal::sweepSample()
{
    const double t = std::fmod(m_position / m_sampleRate, SweepSeconds);
    const double frequency = SweepStartHz * std::pow(SweepRatio, t / SweepSeconds);
    m_phase = std::fmod(m_phase + TwoPi * frequency / m_sampleRate, TwoPi);
    return 0.25 * std::sin(m_phase);
}

double GeneratedSignal::speechSample()
{
    const double t = std::fmod(m_position / m_sampleRate, PhraseSeconds + PauseSeconds);
    const double white = noise();
    if (t >= PhraseSeconds) {
        m_formant[0][0] *= 0.99;
        m_formant[1][0] *= 0.99;
        return 0.002 * white; // room noise in the pause
    }
    const double syllableTime = t * SyllablesPerSecond;
    const long long phrase
        = m_position / static_cast<long long>(m_sampleRate * (PhraseSeconds + PauseSeconds));
    const long long syllable = phrase * 16 + static_cast<long long>(syllableTime);
    const double within = syllableTime - std::floor(syllableTime);
    const double envelope
        = std::pow(std::sin(3.141592653589793 * within), 2.0) * (0.5 + 0.5 * hashUnit(syllable));

    // A voice around 130 Hz that glides a little within the syllable.
    const double pitch = 115.0 + 30.0 * hashUnit(syllable + 7) + 10.0 * within;
    m_phase = std::fmod(m_phase + pitch / m_sampleRate, 1.0);
    const double voice = 2.0 * m_phase - 1.0;
    const double excitation = hashUnit(syllable + 3) < 0.2 ? white : 0.8 * voice + 0.2 * white;

    const double(&vowel)[2] = Vowels[int(hashUnit(syllable + 11) * VowelCount) % VowelCount];
    const double shaped = 1.6 * resonate(excitation, vowel[0], 90.0, m_sampleRate, m_formant[0])
        + 1.0 * resonate(excitation, vowel[1], 120.0, m_sampleRate, m_formant[1]);
    return 0.088 * envelope * shaped;
}

void GeneratedSignal::render(float *left, float *right, int frames)
{
    for (int i = 0; i < frames; ++i, ++m_position) {
        switch (m_programme) {
        case Pink:
            left[i] = static_cast<float>(pinkSample(0));
            right[i] = static_cast<float>(pinkSample(1));
            continue;
        case Drums: left[i] = static_cast<float>(drumSample()); break;
        case Sweep: left[i] = static_cast<float>(sweepSample()); break;
        case Speech: left[i] = static_cast<float>(speechSample()); break;
        }
        right[i] = left[i];
    }
}
