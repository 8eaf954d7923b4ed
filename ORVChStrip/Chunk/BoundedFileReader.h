#pragma once

#include <QByteArray>
#include <QString>

// Reads a whole file of a format that bounds its size, and never more than
// that bound: a file that holds more (a 3 GB file, /dev/zero, a pipe that
// never ends) is refused after limit + 1 bytes, so no reader grows without
// end or runs out of memory. The name may hold bytes that are not UTF-8
// (NativeFileName).
class BoundedFileReader
{
public:
    // `limit` is the most the format can hold; `what` names the format for
    // the message, e.g. "a saved state".
    BoundedFileReader(qint64 limit, const QString &what);

    // False when the file does not read or holds more than the limit; then
    // errorString() says why, without the file's name, e.g. "cannot read: No
    // such file or directory" or "more than 65536 bytes, larger than a saved
    // state can be".
    bool read(const QString &path);

    const QByteArray &bytes() const { return m_bytes; }
    QString errorString() const { return m_error; }

private:
    qint64 m_limit;
    QString m_what;
    QByteArray m_bytes;
    QString m_error;
};
