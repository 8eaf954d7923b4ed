#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>
#include <QStringList>

#include "Interfaces/FUID.h"

// A description of a preset container file for people: the header fields, the
// chunk list with positions, and, when the file would not load, the first
// reason why. A file is valid exactly when PresetFile::readChunkList accepts it
// and its first 'Comp' chunk is one that PresetFile::isRestorableChunk accepts:
// the one rule for the converter and for anyone describing a preset.
struct PresetFileInfo
{
    struct Chunk
    {
        QByteArray id;
        qint64 offset = 0;
        qint64 size = 0;
        bool insideFile = true;
    };

    static PresetFileInfo read(const QString &path);
    // The same from an open, seekable device; path only names it.
    static PresetFileInfo read(QIODevice &file, const QString &path);
    // Four bytes as text, printable ASCII kept and other bytes as \xNN.
    static QString printableId(const QByteArray &bytes);

    bool isValid() const { return error.isEmpty(); }
    // The first 'Comp' chunk of the list, or null.
    const Chunk *componentState() const;

    QString path;
    QString error;        // empty when the chunk list reads
    QStringList warnings; // oddities that do not stop the list from reading
    qint64 fileSize = -1;
    QByteArray magic;
    bool hasVersion = false;
    qint32 version = 0;
    QByteArray classIdText; // the 32 characters as stored
    bool hasClassID = false;
    FUID classID;
    qint64 listOffset = 0;
    qint32 declaredCount = 0;
    QList<Chunk> chunks;
};
