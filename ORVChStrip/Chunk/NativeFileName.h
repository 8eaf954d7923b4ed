#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// File names as the Unix file system holds them: bytes, which need not be
// valid UTF-8. A name read from the command line or a folder keeps each byte
// that does not decode as a lone surrogate (U+DC00 + byte), so the name leads
// back to its file and can print the byte as "\xNN"; a valid name is plain
// Unicode and passes through unchanged.
class NativeFileName
{
public:
    static QString fromBytes(const QByteArray &name);
    static QByteArray toBytes(const QString &name);
    // Whether the name holds bytes that are not valid UTF-8.
    static bool hasUndecodedBytes(const QString &name);
    // The byte that the unit at `at` stands for, or -1 for a character.
    static int undecodedByte(const QString &name, qsizetype at);

    // Opens `file` for reading under a name that may hold undecoded bytes;
    // false with the system's reason otherwise.
    static bool openForReading(QFile &file, const QString &name, QString *error);
};
