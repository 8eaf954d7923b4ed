#include "ORVChStrip/Preset/PresetFileInfo.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>

#include "ORVChStrip/Preset/PresetFile.h"

namespace {

const QByteArray kMagic("PLX3", 4);
const QByteArray kListID("List", 4);
constexpr int kEntrySize = 20;

} // namespace

QString PresetFileInfo::printableId(const QByteArray &bytes)
{
    QString text;
    for (const char c : bytes) {
        const auto u = static_cast<uchar>(c);
        if (u >= 0x20 && u < 0x7F && u != '\\')
            text += QLatin1Char(c);
        else
            text += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
    }
    return text;
}

PresetFileInfo PresetFileInfo::read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        PresetFileInfo info;
        info.path = path;
        info.error = QStringLiteral("cannot open: %1").arg(file.errorString());
        return info;
    }
    return read(file, path);
}

PresetFileInfo PresetFileInfo::read(QIODevice &file, const QString &path)
{
    PresetFileInfo info;
    info.path = path;
    info.fileSize = file.size();
    file.seek(0);

    info.magic = file.read(4);
    if (info.magic.size() < 4) {
        info.error
            = QStringLiteral("file is %1 bytes long, too short for the magic 'PLX3'").arg(info.fileSize);
        return info;
    }
    if (info.magic != kMagic) {
        info.error
            = QStringLiteral("bad magic '%1' at offset 0, expected 'PLX3'").arg(printableId(info.magic));
        return info;
    }
    if (info.fileSize < PresetFile::kHeaderSize) {
        info.error = QStringLiteral("file is %1 bytes long, shorter than the %2-byte header")
                         .arg(info.fileSize)
                         .arg(PresetFile::kHeaderSize);
        return info;
    }

    uchar header[PresetFile::kHeaderSize - 4];
    if (file.read(reinterpret_cast<char *>(header), sizeof header) != qint64(sizeof header)) {
        info.error = QStringLiteral("cannot read the header: %1").arg(file.errorString());
        return info;
    }
    info.hasVersion = true;
    info.version = qFromLittleEndian<qint32>(header);
    info.classIdText = QByteArray(reinterpret_cast<const char *>(header + 4), PresetFile::kClassIDSize);
    info.hasClassID = info.classID.fromString(info.classIdText.constData());
    info.listOffset = qFromLittleEndian<qint64>(header + 36);

    if (!info.hasClassID) {
        info.error = QStringLiteral("class id in bytes 8-39 is not 32 hexadecimal digits: '%1'")
                         .arg(printableId(info.classIdText));
        return info;
    }
    if (info.listOffset < 1) {
        info.error = QStringLiteral("chunk list offset %1 in bytes 40-47, expected a positive offset")
                         .arg(info.listOffset);
        return info;
    }
    if (info.listOffset >= info.fileSize) {
        info.error
            = QStringLiteral("chunk list offset %1 in bytes 40-47 lies past the end of the file (%2 bytes)")
                  .arg(info.listOffset)
                  .arg(info.fileSize);
        return info;
    }

    const QString where = QStringLiteral("chunk list at offset %1").arg(info.listOffset);
    file.seek(info.listOffset);
    const QByteArray listID = file.read(4);
    if (listID != kListID) {
        info.error = listID.size() < 4
            ? QStringLiteral("%1: file ends before 'List'").arg(where)
            : QStringLiteral("%1: expected 'List', found '%2'").arg(where, printableId(listID));
        return info;
    }
    const QByteArray countBytes = file.read(4);
    if (countBytes.size() < 4) {
        info.error = QStringLiteral("%1: file ends before the entry count").arg(where);
        return info;
    }
    info.declaredCount = qFromLittleEndian<qint32>(countBytes.constData());
    if (info.declaredCount < 1) {
        info.error = QStringLiteral("%1 declares %2 entries").arg(where).arg(info.declaredCount);
        return info;
    }
    int wanted = info.declaredCount;
    if (wanted > PresetFile::kMaxEntries) {
        info.warnings << QStringLiteral("chunk list declares %1 entries; only the first %2 are read")
                             .arg(info.declaredCount)
                             .arg(PresetFile::kMaxEntries);
        wanted = PresetFile::kMaxEntries;
    }

    for (int i = 0; i < wanted; ++i) {
        const QByteArray entry = file.read(kEntrySize);
        if (entry.size() < kEntrySize)
            break;
        Chunk chunk;
        chunk.id = entry.left(4);
        chunk.offset = qFromLittleEndian<qint64>(entry.constData() + 4);
        chunk.size = qFromLittleEndian<qint64>(entry.constData() + 12);
        chunk.insideFile = chunk.offset >= 0 && chunk.size >= 0 && chunk.offset <= info.fileSize
            && chunk.size <= info.fileSize - chunk.offset;
        if (!chunk.insideFile)
            info.warnings << QStringLiteral("chunk '%1' (offset %2, size %3) runs past the end of the file")
                                 .arg(printableId(chunk.id))
                                 .arg(chunk.offset)
                                 .arg(chunk.size);
        info.chunks.append(chunk);
    }
    if (info.chunks.isEmpty()) {
        info.error = QStringLiteral("%1: file ends before the first entry").arg(where);
        return info;
    }
    if (info.chunks.size() < wanted)
        info.warnings << QStringLiteral("chunk list declares %1 entries but the file ends after %2")
                             .arg(info.declaredCount)
                             .arg(info.chunks.size());

    const Chunk *component = info.componentState();
    if (!component) {
        info.error
            = QStringLiteral("%1: no 'Comp' chunk, so there is no component state to restore").arg(where);
    } else if (!PresetFile::isRestorableChunk(component->offset, component->size, info.fileSize)) {
        info.error = component->size == 0
            ? QStringLiteral("'Comp' chunk at offset %1 is empty").arg(component->offset)
            : QStringLiteral("'Comp' chunk (offset %1, size %2) does not lie inside the file (%3 bytes)")
                  .arg(component->offset)
                  .arg(component->size)
                  .arg(info.fileSize);
    }
    return info;
}

const PresetFileInfo::Chunk *PresetFileInfo::componentState() const
{
    const auto found = std::find_if(chunks.cbegin(), chunks.cend(), [](const Chunk &chunk) {
        return chunk.id == QByteArray(PresetFile::getChunkID(PresetFile::kComponentState), 4);
    });
    return found == chunks.cend() ? nullptr : &*found;
}
