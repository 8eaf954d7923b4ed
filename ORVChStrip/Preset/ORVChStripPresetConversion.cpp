#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>

#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"

namespace {

const char *const kOrganisation = "Quenmark";
const char *const kApplication = "Orvane Channel Strip";
const char *const kAskAgainKey = "PresetConverterAgain";

const char *const kMonoSource = "/Quenmark/Orvane Ch Strip [m]";
const char *const kStereoSource = "/Quenmark/Orvane Ch Strip [s]";
const char *const kMonoDestination = "/Halvorn Corporation/Orvane Ch Strip/V1.2Mn";
const char *const kStereoDestination = "/Halvorn Corporation/Orvane Ch Strip/V1.2St";

const QString kPresetPattern = QStringLiteral("*.plxpreset");

// The absolute path with every existing part resolved through symbolic links,
// so that two spellings of one folder compare equal even before it exists.
QString resolvedPath(const QString &path)
{
    QString existing = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QString rest;
    while (!QFileInfo::exists(existing)) {
        const QFileInfo info(existing);
        const QString parent = info.absolutePath();
        if (parent == existing)
            break;
        rest = QLatin1Char('/') + info.fileName() + rest;
        existing = parent;
    }
    const QString canonical = QFileInfo(existing).canonicalFilePath();
    return QDir::cleanPath((canonical.isEmpty() ? existing : canonical) + rest);
}

bool isSameOrInside(const QString &path, const QString &folder)
{
    return path == folder
        || path.startsWith(folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/'));
}

// Size and modification time: what tells a file that changed while it was read.
struct FileStamp
{
    qint64 size = -1;
    QDateTime modified;

    static FileStamp of(const QString &path)
    {
        const QFileInfo info(path);
        return { info.exists() ? info.size() : -1, info.lastModified() };
    }
    bool operator==(const FileStamp &other) const { return size == other.size && modified == other.modified; }
    bool operator!=(const FileStamp &other) const { return !(*this == other); }
};

// The temporary file a preset is written to before the rename into place:
// the preset's name, a dot and six letters or digits.
QRegularExpression leftoverPattern(const QString &presetName)
{
    return QRegularExpression(
        QStringLiteral("^%1\\.[A-Za-z0-9]{6}$").arg(QRegularExpression::escape(presetName)));
}

// Whether a folder at this path could be made, if it is missing, and
// written into: its nearest existing part is a folder we may write in.
bool canWriteFolder(const QString &folder)
{
    QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    while (!QFileInfo::exists(path)) {
        const QString parent = QFileInfo(path).absolutePath();
        if (parent == path)
            return false;
        path = parent;
    }
    const QFileInfo existing(path);
    return existing.isDir() && existing.isWritable();
}

// A converted copy at least as new as its source: an earlier conversion's.
bool isConvertedAlready(const QFileInfo &source, const QString &target)
{
    const QFileInfo converted(target);
    return converted.isFile() && converted.lastModified() >= source.lastModified();
}

PresetConversionItem item(const QString &source, const QString &destination,
    PresetConversionItem::Outcome outcome, const QString &reason)
{
    return PresetConversionItem { source, destination, outcome, reason };
}

} // namespace

int PresetConversionReport::count(PresetConversionItem::Outcome outcome) const
{
    return int(std::count_if(items.cbegin(), items.cend(),
        [outcome](const PresetConversionItem &item) { return item.outcome == outcome; }));
}

void PresetConversionReport::append(const PresetConversionReport &other)
{
    items += other.items;
    errors += other.errors;
}

QString PresetConversionReport::summary() const
{
    using Item = PresetConversionItem;
    struct Part
    {
        Item::Outcome outcome;
        const char *one;
        const char *many;
    };
    static const Part parts[] = {
        { Item::Converted, "1 preset converted", "%1 presets converted" },
        { Item::WouldConvert, "1 preset would be converted", "%1 presets would be converted" },
        { Item::Skipped, "1 skipped", "%1 skipped" },
        { Item::Failed, "1 failed", "%1 failed" },
        { Item::Removed, "1 leftover temporary file removed", "%1 leftover temporary files removed" },
        { Item::Ignored, "1 other file left alone", "%1 other files left alone" },
    };
    QStringList said;
    for (const Part &part : parts) {
        const int n = count(part.outcome);
        if (n > 0)
            said << (n == 1 ? QString::fromLatin1(part.one) : QString::fromLatin1(part.many).arg(n));
    }
    if (said.isEmpty())
        return QStringLiteral("no old presets found");
    // What was left out always follows what was done, even when that is nothing.
    if (count(Item::Converted) == 0 && count(Item::WouldConvert) == 0)
        said.prepend(QStringLiteral("no preset converted"));
    return said.join(QStringLiteral(", "));
}

QString ORVChStripPresetConversion::presetBase()
{
#if defined(Q_OS_MACOS)
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation)
        + QStringLiteral("/Library/Audio/Presets");
#elif defined(Q_OS_WIN)
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QStringLiteral("/Audio/Presets");
#else
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/Audio/Presets");
#endif
}

ORVChStripPresetConversion::FolderPair ORVChStripPresetConversion::monoFolders()
{
    const QString base = presetBase();
    return { base + QLatin1String(kMonoSource), base + QLatin1String(kMonoDestination) };
}

ORVChStripPresetConversion::FolderPair ORVChStripPresetConversion::stereoFolders()
{
    const QString base = presetBase();
    return { base + QLatin1String(kStereoSource), base + QLatin1String(kStereoDestination) };
}

QList<ORVChStripPresetConversion::FolderPair> ORVChStripPresetConversion::folderPairs()
{
    return { monoFolders(), stereoFolders() };
}

QString ORVChStripPresetConversion::className(const FUID &classID)
{
    if (classID == ORVChStripClassIds::Mono)
        return QStringLiteral("mono");
    if (classID == ORVChStripClassIds::Stereo)
        return QStringLiteral("stereo");
    return QStringLiteral("other");
}

PresetConversionReport ORVChStripPresetConversion::convertAll(Options options)
{
    PresetConversionReport report;
    for (const FolderPair &pair : folderPairs())
        report.append(convert(pair.source, pair.destination, options));
    return report;
}

bool ORVChStripPresetConversion::hasPendingConversion()
{
    Options options;
    options.dryRun = true;
    options.pendingOnly = true;
    return convertAll(options).count(PresetConversionItem::WouldConvert) > 0;
}

PresetConversionReport ORVChStripPresetConversion::convert(
    const QString &source, const QString &destination, Options options)
{
    PresetConversionReport report;
    const QFileInfo sourceInfo(source);
    if (!sourceInfo.isDir())
        return report; // nothing to convert

    // Writing into the source tree, or into a folder that holds it, could
    // overwrite the very files being read.
    const QString from = resolvedPath(source);
    const QString to = resolvedPath(destination);
    if (isSameOrInside(to, from) || isSameOrInside(from, to)) {
        report.errors << QStringLiteral("destination '%1' overlaps the source folder '%2'; nothing converted")
                             .arg(QDir::toNativeSeparators(destination), QDir::toNativeSeparators(source));
        return report;
    }
    convertFolder(source, destination, options, report);
    return report;
}

void ORVChStripPresetConversion::convertFolder(
    const QString &source, const QString &destination, const Options &options, PresetConversionReport &report)
{
    const QDir dir(source);
    if (!dir.isReadable()) {
        report.items << item(
            source, destination, PresetConversionItem::Skipped, QStringLiteral("folder not readable"));
        return;
    }
    const QFileInfoList entries = dir.entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name | QDir::DirsLast);

    for (const QFileInfo &entry : entries) {
        const QString target = destination + QLatin1Char('/') + entry.fileName();
        if (entry.isHidden()) {
            report.items << item(entry.filePath(), target, PresetConversionItem::Ignored,
                entry.isDir() ? QStringLiteral("hidden folder") : QStringLiteral("hidden file"));
        } else if (entry.isSymLink()) {
            report.items << item(entry.filePath(), target, PresetConversionItem::Skipped,
                entry.isDir() ? QStringLiteral("symbolic link to a folder")
                              : QStringLiteral("symbolic link"));
        } else if (entry.isDir()) {
            if (entry.isReadable() && entry.isExecutable())
                convertFolder(entry.filePath(), target, options, report);
            else
                report.items << item(entry.filePath(), target, PresetConversionItem::Skipped,
                    QStringLiteral("folder not readable"));
        } else if (!QDir::match(kPresetPattern, entry.fileName())) {
            report.items << item(entry.filePath(), target, PresetConversionItem::Ignored,
                QStringLiteral("not a .plxpreset file"));
        } else if (!entry.isFile()) {
            report.items << item(entry.filePath(), target, PresetConversionItem::Skipped,
                QStringLiteral("not a regular file"));
        } else if (!entry.isReadable()) {
            report.items << item(
                entry.filePath(), target, PresetConversionItem::Skipped, QStringLiteral("not readable"));
        } else if (!(options.pendingOnly && isConvertedAlready(entry, target))) {
            convertFile(entry.filePath(), destination, options, report);
        }
    }
}

void ORVChStripPresetConversion::removeLeftovers(const QString &target, PresetConversionReport &report)
{
    // Only what cannot hold anything else: a file whose bytes are the start
    // of (or all of) the preset just written, as a conversion killed during
    // the write or at the rename leaves it. A file of that name with other
    // contents may be the user's and stays.
    QFile written(target);
    if (!written.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = written.readAll();
    const QFileInfo info(target);
    const QRegularExpression pattern = leftoverPattern(info.fileName());
    const QFileInfoList files
        = info.dir().entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QFileInfo &file : files) {
        if (file.isSymLink() || !pattern.match(file.fileName()).hasMatch() || file.size() > bytes.size())
            continue;
        QFile leftover(file.filePath());
        if (!leftover.open(QIODevice::ReadOnly) || !bytes.startsWith(leftover.readAll()))
            continue;
        leftover.close();
        const bool removed = leftover.remove();
        report.items << item(file.filePath(), QString(),
            removed ? PresetConversionItem::Removed : PresetConversionItem::Skipped,
            removed ? QStringLiteral("temporary file left by an interrupted conversion; removed")
                    : QStringLiteral("temporary file left by an interrupted conversion; cannot remove it: %1")
                          .arg(leftover.errorString()));
    }
}

void ORVChStripPresetConversion::convertFile(
    const QString &source, const QString &destination, const Options &options, PresetConversionReport &report)
{
    const QString target = destination + QLatin1Char('/') + QFileInfo(source).fileName();
    const auto skip = [&](const QString &reason) {
        report.items << item(source, target, PresetConversionItem::Skipped, reason);
    };

    const FileStamp before = FileStamp::of(source);
    const PresetFileInfo info = PresetFileInfo::read(source);
    if (!info.isValid())
        return skip(QStringLiteral("not a preset: ") + info.error);
    const FUID classID = info.classID;
    if (classID != ORVChStripClassIds::Mono && classID != ORVChStripClassIds::Stereo)
        return skip(QStringLiteral("class id %1 is neither the mono nor the stereo class")
                        .arg(QString::fromLatin1(info.classIdText)));
    const QString kind = className(classID) + QStringLiteral(" preset");

    auto *component = new ORVChStripPresetConverterComponent;
    MyPlxPresetFile preset(component);
    const bool loaded = preset.load(source, classID);
    const qint64 stateSize = qint64(component->state().size());
    if (options.sourceRead)
        options.sourceRead(source);
    const bool changed = FileStamp::of(source) != before;
    const qint64 statedSize = info.componentState()->size;
    if (changed || !loaded || stateSize != statedSize) {
        component->release();
        if (changed)
            return skip(kind
                + QStringLiteral(" that changed while it was read; convert it again once it is complete"));
        if (!loaded)
            return skip(kind + QStringLiteral(" whose component state cannot be read"));
        return skip(kind
            + QStringLiteral(" whose component state read %1 of the %2 bytes its chunk list states")
                  .arg(stateSize)
                  .arg(statedSize));
    }

    const bool replaces = QFileInfo::exists(target);
    QString done = kind;
    if (classID != ORVChStripClassIds::Stereo)
        done += QStringLiteral(", re-written under the stereo class id");
    if (replaces)
        done += QStringLiteral(", replaces the existing file");
    PresetConversionItem result;
    if (QFileInfo(destination).isSymLink() || QFileInfo(target).isSymLink()) {
        // Writing through a link could land anywhere, the source tree included.
        result = item(source, target, PresetConversionItem::Failed,
            QStringLiteral("destination is a symbolic link; not written"));
    } else if (QFileInfo(target).isDir()) {
        result
            = item(source, target, PresetConversionItem::Failed, QStringLiteral("destination is a folder"));
    } else if (options.dryRun) {
        // What the conversion itself would run into, so that a dry run does
        // not promise a file that cannot be written.
        result = canWriteFolder(destination) ? item(source, target, PresetConversionItem::WouldConvert, done)
                                             : item(source, target, PresetConversionItem::Failed,
                                                 QStringLiteral("cannot create or write the folder '%1'")
                                                     .arg(QDir::toNativeSeparators(destination)));
    } else if (!createDirectory(destination)) {
        result = item(source, target, PresetConversionItem::Failed,
            QStringLiteral("cannot create the folder '%1'").arg(QDir::toNativeSeparators(destination)));
    } else if (QString error; !preset.save(target, ORVChStripClassIds::Stereo, &error)) {
        result = item(source, target, PresetConversionItem::Failed,
            replaces ? error + QStringLiteral("; the existing file is left as it was") : error);
    } else {
        result = item(source, target, PresetConversionItem::Converted, done);
    }
    component->release();
    report.items << result;
    if (result.outcome == PresetConversionItem::Converted)
        removeLeftovers(target, report);
}

bool ORVChStripPresetConversion::createDirectory(const QString &dir)
{
    if (dir.isEmpty())
        return false;
    const QFileInfo info(dir);
    if (info.isDir())
        return true;
    if (info.exists())
        return false; // a file stands where the folder should be
    const QString path = QDir::cleanPath(info.absoluteFilePath());
    const QString parent = QFileInfo(path).absolutePath();
    if (parent == path || !createDirectory(parent))
        return false;
    return QDir(parent).mkdir(QFileInfo(path).fileName()) || QFileInfo(path).isDir();
}

bool ORVChStripPresetConversion::askAgain()
{
    const QSettings settings { QLatin1String(kOrganisation), QLatin1String(kApplication) };
    return settings.value(QLatin1String(kAskAgainKey), true).toBool();
}

void ORVChStripPresetConversion::setAskAgain(bool again)
{
    QSettings settings { QLatin1String(kOrganisation), QLatin1String(kApplication) };
    settings.setValue(QLatin1String(kAskAgainKey), again);
}
