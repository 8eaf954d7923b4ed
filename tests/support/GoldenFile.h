#pragma once

#include <QFileInfo>
#include <QString>

#include "TestFiles.h"

// A file of tests/data, whose bytes are the expectation.
inline QByteArray goldenFile(const QString &name)
{
    return readFile(QStringLiteral(ORV_TEST_DATA_DIR "/") + name);
}

// Empty when the bytes equal the golden file; otherwise where they first
// differ. The bytes are then kept in the working folder as NAME.actual.
inline QString goldenDifference(const QByteArray &actual, const QString &name)
{
    const QByteArray expected = goldenFile(name);
    if (actual == expected)
        return QString();
    qsizetype at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at])
        ++at;
    const QString kept = QFileInfo(name).fileName() + QStringLiteral(".actual");
    writeFile(kept, actual);
    return QStringLiteral("%1 bytes differ from %2 (%3 bytes) first at offset %4; written to %5")
        .arg(actual.size())
        .arg(name)
        .arg(expected.size())
        .arg(at)
        .arg(QFileInfo(kept).absoluteFilePath());
}
