#include "AudioFileSignal.h"

#include <QFile>
#include <algorithm>
#include <sndfile.h>

AudioFileSignal::~AudioFileSignal()
{
    if (m_file)
        sf_close(m_file);
}

std::unique_ptr<AudioFileSignal> AudioFileSignal::open(const QString &path, QString *error)
{
    SF_INFO info {};
    SNDFILE *file = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file) {
        *error = QStringLiteral("cannot read %1 as audio: %2")
                     .arg(path, QString::fromLocal8Bit(sf_strerror(nullptr)));
        return nullptr;
    }
    if (info.frames <= 0 || info.channels <= 0 || info.samplerate <= 0) {
        sf_close(file);
        *error = QStringLiteral("%1 holds no audio").arg(path);
        return nullptr;
    }
    std::unique_ptr<AudioFileSignal> signal(new AudioFileSignal);
    signal->m_file = file;
    signal->m_sampleRate = info.samplerate;
    signal->m_fileChannels = info.channels;
    signal->m_fileFrames = info.frames;
    return signal;
}

long long AudioFileSignal::readLooped(float *interleaved, long long frames)
{
    long long done = 0;
    // Two tries per pass: a read at the end of the file rewinds once.
    for (int attempt = 0; done < frames && attempt < 2;) {
        const sf_count_t got = sf_readf_float(m_file, interleaved + done * m_fileChannels, frames - done);
        if (got > 0) {
            done += got;
            attempt = 0;
        } else {
            sf_seek(m_file, 0, SEEK_SET);
            ++attempt;
        }
    }
    return done;
}

void AudioFileSignal::render(float *left, float *right, int frames)
{
    m_interleaved.resize(static_cast<size_t>(frames) * m_fileChannels);
    const long long got = readLooped(m_interleaved.data(), frames);
    const int rightChannel = m_fileChannels > 1 ? 1 : 0;
    for (int i = 0; i < frames; ++i) {
        if (i < got) {
            left[i] = m_interleaved[size_t(i) * m_fileChannels];
            right[i] = m_interleaved[size_t(i) * m_fileChannels + rightChannel];
        } else {
            left[i] = right[i] = 0.0f; // a file that stopped reading plays silence
        }
    }
}
