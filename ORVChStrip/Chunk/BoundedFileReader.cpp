#include "ORVChStrip/Chunk/BoundedFileReader.h"

#include <QFile>

#include "ORVChStrip/Chunk/NativeFileName.h"

BoundedFileReader::BoundedFileReader(qint64 limit, const QString &what)
    : m_limit(limit)
    , m_what(what)
{ }

bool BoundedFileReader::read(const QString &path)
{
    m_bytes.clear();
    m_error.clear();
    QFile file;
    QString reason;
    if (!NativeFileName::openForReading(file, path, &reason)) {
        m_error = QStringLiteral("cannot read: %1").arg(reason);
        return false;
    }
    const auto tooLarge = [this](const QString &size) {
        m_bytes.clear();
        m_error = QStringLiteral("%1, larger than %2 can be").arg(size, m_what);
        return false;
    };
    // A regular file says its size at once; a device or a pipe only by
    // reading, one byte past the limit.
    if (!file.isSequential() && file.size() > m_limit) {
        tooLarge(QStringLiteral("%1 bytes").arg(file.size()));
        m_error += QStringLiteral(" (at most %1 bytes)").arg(m_limit);
        return false;
    }
    m_bytes = file.read(m_limit + 1);
    if (file.error() != QFileDevice::NoError) {
        m_bytes.clear();
        m_error = QStringLiteral("cannot read: %1").arg(file.errorString());
        return false;
    }
    if (m_bytes.size() > m_limit)
        return tooLarge(QStringLiteral("more than %1 bytes").arg(m_limit));
    return true;
}
