#include "ORVChStrip/Chunk/NativeFileName.h"

#include <QStringView>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#endif

namespace {

constexpr char16_t EscapeBase = 0xDC00;

// The length of the valid UTF-8 sequence at `at`, or 0.
qsizetype validSequenceLength(const QByteArray &bytes, qsizetype at)
{
    for (qsizetype length = 1; length <= 4 && at + length <= bytes.size(); ++length) {
        if (QUtf8StringView(bytes.constData() + at, length).isValidUtf8())
            return length;
    }
    return 0;
}

} // namespace

QString NativeFileName::fromBytes(const QByteArray &name)
{
    if (QUtf8StringView(name).isValidUtf8())
        return QString::fromUtf8(name);
    QString text;
    text.reserve(name.size());
    for (qsizetype i = 0; i < name.size();) {
        const qsizetype length = validSequenceLength(name, i);
        if (length == 0) {
            text += QChar(char16_t(EscapeBase + uchar(name.at(i))));
            ++i;
        } else {
            text += QString::fromUtf8(name.constData() + i, length);
            i += length;
        }
    }
    return text;
}

QByteArray NativeFileName::toBytes(const QString &name)
{
    if (!hasUndecodedBytes(name))
        return QFile::encodeName(name);
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const int byte = undecodedByte(name, i);
        if (byte < 0)
            continue;
        bytes += QStringView(name).mid(start, i - start).toUtf8();
        bytes += char(byte);
        start = i + 1;
    }
    return bytes + QStringView(name).mid(start).toUtf8();
}

bool NativeFileName::hasUndecodedBytes(const QString &name)
{
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (undecodedByte(name, i) >= 0)
            return true;
    }
    return false;
}

int NativeFileName::undecodedByte(const QString &name, qsizetype at)
{
    // Only bytes 0x80 to 0xFF are ever left undecoded, and only a lone low
    // surrogate stands for one: after a high surrogate it is half of a
    // character (U+10080 is D800 DC80).
    const char16_t unit = name.at(at).unicode();
    if (unit < EscapeBase + 0x80 || unit > EscapeBase + 0xFF)
        return -1;
    if (at > 0 && name.at(at - 1).isHighSurrogate())
        return -1;
    return int(unit - EscapeBase);
}

bool NativeFileName::openForReading(QFile &file, const QString &name, QString *error)
{
#ifdef Q_OS_UNIX
    if (hasUndecodedBytes(name)) {
        // QFile encodes names as UTF-8, which cannot spell these bytes.
        const int descriptor = ::open(toBytes(name).constData(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) {
            *error = qt_error_string(errno);
            return false;
        }
        if (file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return true;
        *error = file.errorString();
        return false;
    }
#endif
    file.setFileName(name);
    if (file.open(QIODevice::ReadOnly))
        return true;
    *error = file.errorString();
    return false;
}
