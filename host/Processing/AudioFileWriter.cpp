#include "AudioFileWriter.h"

#include <QFileInfo>
#include <sndfile.h>

namespace {

// libsndfile's file access, routed through the QSaveFile.
sf_count_t fileLength(void *device)
{
    return static_cast<QSaveFile *>(device)->size();
}

sf_count_t seekFile(sf_count_t offset, int whence, void *device)
{
    auto *file = static_cast<QSaveFile *>(device);
    const qint64 base = whence == SEEK_CUR ? file->pos() : whence == SEEK_END ? file->size() : 0;
    return file->seek(base + offset) ? file->pos() : -1;
}

sf_count_t readFile(void *data, sf_count_t count, void *device)
{
    return static_cast<QSaveFile *>(device)->read(static_cast<char *>(data), count);
}

sf_count_t writeFile(const void *data, sf_count_t count, void *device)
{
    return static_cast<QSaveFile *>(device)->write(static_cast<const char *>(data), count);
}

sf_count_t tellFile(void *device)
{
    return static_cast<QSaveFile *>(device)->pos();
}

int formatFor(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("flac"))
        return SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    if (suffix == QLatin1String("aiff") || suffix == QLatin1String("aif"))
        return SF_FORMAT_AIFF | SF_FORMAT_PCM_24;
    return SF_FORMAT_WAV | SF_FORMAT_FLOAT;
}

} // namespace

AudioFileWriter::~AudioFileWriter()
{
    if (m_file)
        sf_close(m_file);
    // An unfinished file is dropped; the QSaveFile discards its temporary.
}

std::unique_ptr<AudioFileWriter> AudioFileWriter::create(
    const QString &path, double sampleRate, int channels, QString *error)
{
    std::unique_ptr<AudioFileWriter> writer(new AudioFileWriter);
    writer->m_saveFile.setFileName(path);
    if (!writer->m_saveFile.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("cannot write %1: %2").arg(path, writer->m_saveFile.errorString());
        return nullptr;
    }
    SF_INFO info {};
    info.samplerate = int(sampleRate);
    info.channels = channels;
    info.format = formatFor(path);
    static SF_VIRTUAL_IO io = { fileLength, seekFile, readFile, writeFile, tellFile };
    writer->m_file = sf_open_virtual(&io, SFM_WRITE, &info, &writer->m_saveFile);
    if (!writer->m_file) {
        *error
            = QStringLiteral("cannot write %1: %2").arg(path, QString::fromLocal8Bit(sf_strerror(nullptr)));
        return nullptr;
    }
    writer->m_channels = channels;
    return writer;
}

void AudioFileWriter::write(const float *const *channels, int frames)
{
    if (!m_file || m_failed || frames <= 0)
        return;
    m_interleaved.resize(size_t(frames) * m_channels);
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < m_channels; ++c)
            m_interleaved[size_t(i) * m_channels + c] = channels[c][i];
    if (sf_writef_float(m_file, m_interleaved.data(), frames) != frames)
        m_failed = true;
}

bool AudioFileWriter::finish(QString *error)
{
    if (!m_file)
        return false;
    sf_close(m_file); // writes the header's final sizes
    m_file = nullptr;
    if (m_failed || !m_saveFile.commit()) {
        *error = QStringLiteral("cannot write %1: %2").arg(m_saveFile.fileName(), m_saveFile.errorString());
        return false;
    }
    return true;
}
