#pragma once

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QtEndian>

#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "TestFiles.h"

// Helpers shared by the preset tests: build preset files with a known
// component state, patch their bytes, and fingerprint folder trees.
namespace PresetTestFiles {

inline constexpr const FUID &MonoID = ORVChStripClassIds::Mono;
inline constexpr const FUID &StereoID = ORVChStripClassIds::Stereo;
inline const FUID ThirdID(0x11223344, 0x55667788, 0x99AABBCC, 0xDDEEFF00);

// A state with every byte value, so that any re-encoding would show.
inline QByteArray stateBytes(int size, int seed = 0)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 7 + seed) & 0xFF);
    return bytes;
}

inline bool writePreset(const QString &path, const FUID &classID, const QByteArray &state)
{
    return MyPlxPresetFile::saveState(path, classID, state);
}

inline QByteArray presetBytes(const FUID &classID, const QByteArray &state)
{
    auto *component = new ORVChStripPresetConverterComponent;
    auto *input = new MemoryBStream(state);
    component->setState(input);
    input->release();
    auto *output = new MemoryBStream;
    PresetFile::savePreset(output, classID, component);
    const QByteArray bytes = output->data();
    output->release();
    component->release();
    return bytes;
}

inline QByteArray littleEndian64(qint64 value)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian<qint64>(value, bytes.data());
    return bytes;
}

inline QByteArray littleEndian32(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian<qint32>(value, bytes.data());
    return bytes;
}

// The component state stored in a preset file, as the converter would read it.
inline QByteArray loadState(const QString &path, const FUID &classID)
{
    auto *component = new ORVChStripPresetConverterComponent;
    QByteArray state;
    if (MyPlxPresetFile(component).load(path, classID)) {
        const auto &bytes = component->state();
        state = QByteArray(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
    }
    component->release();
    return state;
}

// Relative path -> SHA-256 of every file, link target for symbolic links.
inline QMap<QString, QByteArray> fingerprint(const QString &root)
{
    QMap<QString, QByteArray> result;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
        QDirIterator::Subdirectories);
    const QDir base(root);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        const QString relative = base.relativeFilePath(info.filePath());
        if (info.isSymLink())
            result.insert(relative, "link:" + info.symLinkTarget().toUtf8());
        else if (info.isDir())
            result.insert(relative + QLatin1Char('/'), QByteArray());
        else
            result.insert(
                relative, QCryptographicHash::hash(readFile(info.filePath()), QCryptographicHash::Sha256));
    }
    return result;
}

} // namespace PresetTestFiles
