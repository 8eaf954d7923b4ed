#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "SignalSource.h"

struct sf_private_tag;

// An audio file read through libsndfile (WAV, FLAC, AIFF, Ogg and whatever
// else the library reads), looped without end. A mono file feeds both
// channels; of a file with more channels the first two are used.
class AudioFileSignal : public SignalSource
{
public:
    ~AudioFileSignal() override;

    // Null, with a message naming the file and the reason, for a file that
    // does not open or holds no audio.
    static std::unique_ptr<AudioFileSignal> open(const QString &path, QString *error);

    double sampleRate() const override { return m_sampleRate; }
    int fileChannels() const { return m_fileChannels; }
    long long fileFrames() const { return m_fileFrames; }
    void render(float *left, float *right, int frames) override;

private:
    AudioFileSignal() = default;
    // Reads up to `frames` interleaved frames, going back to the start at the end.
    long long readLooped(float *interleaved, long long frames);

    sf_private_tag *m_file = nullptr;
    double m_sampleRate = 0.0;
    int m_fileChannels = 0;
    long long m_fileFrames = 0;
    std::vector<float> m_interleaved;
};
