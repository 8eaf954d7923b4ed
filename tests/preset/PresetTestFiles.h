#pragma once

#include <QCryptographicHash>
#include <QDirIterator>
#include <QMap>
#include <QtEndian>

#include "GoldenFile.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"

// Preset files for the preset tests, and fingerprints of folder trees.
namespace PresetTestFiles {

inline constexpr const FUID &MonoID = ORVChStripClassIds::Mono;
inline constexpr const FUID &StereoID = ORVChStripClassIds::Stereo;
inline const FUID ThirdID(0x11223344, 0x55667788, 0x99AABBCC, 0xDDEEFF00);

// The golden presets hold the golden saved state, 1664 bytes at offset 48,
// and their chunk list at 1712.
inline constexpr int ListOffset = 1712;
inline QByteArray goldenState()
{
    return goldenFile(QStringLiteral("state/saved.state"));
}
inline QByteArray goldenPreset(const FUID &classID = StereoID)
{
    return goldenFile(QStringLiteral("preset/stereo.plxpreset")).replace(8, 32, classID.toString().c_str());
}

inline QByteArray le(qint64 value, int width)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes.left(width);
}

// A preset of any state, laid out as the golden ones, and the state of one.
inline QByteArray presetBytes(const FUID &classID, const QByteArray &state)
{
    return "PLX3" + le(1, 4) + classID.toString().c_str() + le(48 + state.size(), 8) + state + "List"
        + le(1, 4) + "Comp" + le(48, 8) + le(state.size(), 8);
}
inline bool writePreset(const QString &path, const FUID &classID, const QByteArray &state)
{
    return writeFile(path, presetBytes(classID, state));
}
inline QByteArray loadState(const QString &path, const FUID &classID)
{
    const QByteArray bytes = readFile(path);
    if (bytes.size() < 48 || bytes.mid(8, 32) != classID.toString().c_str())
        return QByteArray();
    return bytes.mid(48, qFromLittleEndian<qint64>(bytes.constData() + 40) - 48);
}

// A state with every byte value, so that any re-encoding would show.
inline QByteArray stateBytes(int size, int seed = 0)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 7 + seed) & 0xFF);
    return bytes;
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
