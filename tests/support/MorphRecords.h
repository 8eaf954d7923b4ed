#pragma once

#include <QDir>
#include <QStringList>

#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "TestFiles.h"

// A record whose values lie inside every column's host range and differ per
// point and column: the knee (column 3) SOFT, MEDIUM, HARD in turn, every
// other column 10 + 5 x point + column % 5.
inline OrvdMorphRecord knownMorphRecord()
{
    OrvdMorphRecord record;
    record.name = QStringLiteral("Known");
    record.systemId = "ORV-KNOWN";
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column)
            record.points[point][column] = int16_t(column == 3 ? point % 3 : 10 + point * 5 + column % 5);
    }
    return record;
}

// Fills a morph folder: "Drums/kick.ord" is a file holding the known record,
// "Drums/kick.ord:20" one of 20 bytes instead, "Pads/" an empty folder.
inline bool makeMorphFolder(const QString &root, const QStringList &entries)
{
    const QByteArray record = knownMorphRecord().write();
    for (const QString &entry : entries) {
        const qsizetype colon = entry.lastIndexOf(QLatin1Char(':'));
        const QString path = root + QLatin1Char('/') + entry.left(colon);
        const bool made = entry.endsWith(QLatin1Char('/'))
            ? QDir(root).mkpath(entry)
            : writeFile(path, colon < 0 ? record : QByteArray(entry.mid(colon + 1).toInt(), 'm'));
        if (!made)
            return false;
    }
    return true;
}
