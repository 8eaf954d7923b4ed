#include "ORVChStrip/ORVD/OrvdFileReader.h"

OrvdFileReader::OrvdFileReader(const QString &path)
    : m_file(path)
{
    // Unbuffered: the data goes straight into the caller's buffer.
    m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OrvdFileReader::GetSize() const
{
    return m_file.isOpen() ? m_file.size() : 0;
}

qint64 OrvdFileReader::Read(void *buffer, qint64 count)
{
    if (!m_file.isOpen() || !buffer || count <= 0 || !m_file.seek(0))
        return 0;
    char *out = static_cast<char *>(buffer);
    qint64 done = 0;
    while (done < count) {
        const qint64 read = m_file.read(out + done, count - done);
        if (read <= 0)
            break;
        done += read;
    }
    return done;
}
