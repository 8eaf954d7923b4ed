#pragma once

#include <QSaveFile>
#include <QString>
#include <memory>
#include <vector>

struct sf_private_tag;

// Writes the processed audio to a file through libsndfile: 32-bit float WAV,
// or by the file's extension 24-bit FLAC or AIFF. The file appears only once
// finish() succeeds, written beside its place and renamed into it.
class AudioFileWriter
{
public:
    ~AudioFileWriter();

    static std::unique_ptr<AudioFileWriter> create(
        const QString &path, double sampleRate, int channels, QString *error);

    void write(const float *const *channels, int frames);
    bool finish(QString *error);

private:
    AudioFileWriter() = default;

    QSaveFile m_saveFile;
    sf_private_tag *m_file = nullptr;
    int m_channels = 0;
    std::vector<float> m_interleaved;
    bool m_failed = false;
};
