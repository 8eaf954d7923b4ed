// orvchstrip-tool preset info FILE: describes a preset container file.
// orvchstrip-tool preset convert: copies old presets into the current folders.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ORVChStrip/Chunk/NativeFileName.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"
#include "tools/PrintableName.h"
#include "tools/ToolCommand.h"

namespace {

constexpr const char *PresetUsage = "preset info FILE [--json]\n"
                                    "preset convert [--dry-run] [--from DIR --to DIR] [--json]";

const QString Info = QStringLiteral("preset info");
const QString Convert = QStringLiteral("preset convert");

QString nativePath(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// A path on one line of text output, whatever its name holds.
QString shownPath(const QString &path)
{
    return PrintableName::escaped(nativePath(path));
}

QString classOf(const PresetFileInfo &info)
{
    return info.hasClassID ? ORVChStripPresetConversion::className(info.classID) : QString();
}

QJsonObject infoToJson(const PresetFileInfo &info)
{
    QJsonArray chunks;
    for (const PresetFileInfo::Chunk &chunk : info.chunks) {
        chunks.append(QJsonObject {
            { QStringLiteral("id"), PresetFileInfo::printableId(chunk.id) },
            { QStringLiteral("offset"), chunk.offset },
            { QStringLiteral("size"), chunk.size },
            { QStringLiteral("inside_file"), chunk.insideFile },
        });
    }
    QJsonObject object {
        { QStringLiteral("file"), PrintableName::forJson(nativePath(info.path)) },
        { QStringLiteral("valid"), info.isValid() },
        { QStringLiteral("file_size"), info.fileSize },
        { QStringLiteral("warnings"), QJsonArray::fromStringList(info.warnings) },
        { QStringLiteral("chunks"), chunks },
    };
    if (!info.isValid())
        object.insert(QStringLiteral("error"), info.error);
    if (!info.magic.isEmpty())
        object.insert(QStringLiteral("magic"), PresetFileInfo::printableId(info.magic));
    if (info.hasVersion) {
        object.insert(QStringLiteral("version"), info.version);
        object.insert(QStringLiteral("class_id"), PresetFileInfo::printableId(info.classIdText));
        object.insert(QStringLiteral("list_offset"), info.listOffset);
    }
    if (info.hasClassID)
        object.insert(QStringLiteral("class"), classOf(info));
    if (info.declaredCount != 0)
        object.insert(QStringLiteral("declared_entries"), info.declaredCount);
    return object;
}

void printInfo(QTextStream &out, const PresetFileInfo &info)
{
    out << shownPath(info.path) << ":\n";
    if (!info.magic.isEmpty())
        out << "  magic        '" << PresetFileInfo::printableId(info.magic) << "'\n";
    if (info.hasVersion) {
        out << "  version      " << info.version << '\n';
        out << "  class id     " << PresetFileInfo::printableId(info.classIdText);
        if (info.hasClassID)
            out << " (" << classOf(info) << ')';
        out << '\n';
        out << "  chunk list   offset " << info.listOffset;
        if (info.declaredCount != 0)
            out << ", " << info.declaredCount
                << (info.declaredCount == 1 ? " entry declared" : " entries declared");
        out << '\n';
    }
    for (const PresetFileInfo::Chunk &chunk : info.chunks) {
        out << "  chunk '" << PresetFileInfo::printableId(chunk.id) << "'  offset " << chunk.offset
            << "  size " << chunk.size << '\n';
    }
    for (const QString &warning : info.warnings)
        out << "  warning: " << warning << '\n';
}

// The header and chunk list of a preset, under a name that may hold bytes
// that are not UTF-8.
PresetFileInfo readInfo(const QString &path)
{
    QFile file;
    QString error;
    if (NativeFileName::openForReading(file, path, &error))
        return PresetFileInfo::read(file, path);
    PresetFileInfo info;
    info.path = path;
    info.error = QStringLiteral("cannot open: %1").arg(error);
    return info;
}

int runInfo(ToolContext &context, const QStringList &arguments)
{
    const QString usage = QStringLiteral("preset info FILE [--json]");
    for (const QString &argument : arguments) {
        if (argument.startsWith(QLatin1Char('-')))
            return context.failUsage(Info, argument, usage);
    }
    if (arguments.size() != 1)
        return context.failUsage(Info, arguments.value(1), usage);
    const PresetFileInfo info = readInfo(arguments.first());
    if (context.json)
        context.out << QJsonDocument(infoToJson(info)).toJson(QJsonDocument::Indented);
    else
        printInfo(context.out, info);
    if (!info.isValid())
        return context.fail(
            Info, nativePath(info.path), QStringLiteral("not a preset file: %1").arg(info.error));
    return 0;
}

QString outcomeName(PresetConversionItem::Outcome outcome)
{
    switch (outcome) {
    case PresetConversionItem::Converted: return QStringLiteral("converted");
    case PresetConversionItem::WouldConvert: return QStringLiteral("would convert");
    case PresetConversionItem::Skipped: return QStringLiteral("skipped");
    case PresetConversionItem::Failed: return QStringLiteral("failed");
    case PresetConversionItem::Ignored: return QStringLiteral("ignored");
    case PresetConversionItem::Removed: return QStringLiteral("removed");
    }
    return QString();
}

// Every outcome counted, so that what was left out adds up to the files met.
QJsonObject totalsToJson(const PresetConversionReport &report)
{
    QJsonObject totals;
    for (auto outcome :
        { PresetConversionItem::Converted, PresetConversionItem::WouldConvert, PresetConversionItem::Skipped,
            PresetConversionItem::Failed, PresetConversionItem::Ignored, PresetConversionItem::Removed })
        totals.insert(
            outcomeName(outcome).replace(QLatin1Char(' '), QLatin1Char('_')), report.count(outcome));
    return totals;
}

void printItem(QTextStream &out, const PresetConversionItem &item)
{
    const QString name = outcomeName(item.outcome);
    out << (name + QLatin1Char(':')).leftJustified(15) << shownPath(item.source);
    if (item.outcome == PresetConversionItem::Converted || item.outcome == PresetConversionItem::WouldConvert
        || item.outcome == PresetConversionItem::Failed)
        out << " -> " << shownPath(item.destination);
    out << " (" << item.reason << ")\n";
}

int runConvert(ToolContext &context, const QStringList &arguments)
{
    ORVChStripPresetConversion::Options options;
    QString from;
    QString to;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--dry-run")) {
            options.dryRun = true;
        } else if (argument == QLatin1String("--from") || argument == QLatin1String("--to")) {
            if (++i >= arguments.size() || arguments.at(i).isEmpty())
                return context.fail(Convert, QString(), argument + QStringLiteral(" needs a folder"), 2);
            (argument == QLatin1String("--from") ? from : to) = arguments.at(i);
        } else {
            return context.fail(Convert, QString(),
                QStringLiteral("unknown option '%1'").arg(PrintableName::escaped(argument)), 2);
        }
    }
    if (from.isEmpty() != to.isEmpty())
        return context.fail(Convert, QString(), QStringLiteral("--from and --to go together"), 2);
    // Only the default folders may be absent; a folder the user names must be there.
    if (!from.isEmpty()) {
        const QFileInfo source(from);
        if (!source.exists())
            return context.fail(Convert, nativePath(from), QStringLiteral("--from: no such folder"));
        if (!source.isDir())
            return context.fail(Convert, nativePath(from), QStringLiteral("--from: not a folder"));
        const QFileInfo destination(to);
        if (destination.exists() && !destination.isDir())
            return context.fail(Convert, nativePath(to), QStringLiteral("--to: not a folder"));
    }

    const QList<ORVChStripPresetConversion::FolderPair> pairs = from.isEmpty()
        ? ORVChStripPresetConversion::folderPairs()
        : QList<ORVChStripPresetConversion::FolderPair> { { from, to } };

    PresetConversionReport total;
    QJsonArray jsonPairs;
    for (const ORVChStripPresetConversion::FolderPair &pair : pairs) {
        const bool exists = QFileInfo(pair.source).isDir();
        const PresetConversionReport report
            = ORVChStripPresetConversion::convert(pair.source, pair.destination, options);
        total.append(report);
        if (context.json) {
            jsonPairs.append(QJsonObject {
                { QStringLiteral("from"), nativePath(pair.source) },
                { QStringLiteral("to"), nativePath(pair.destination) },
                { QStringLiteral("source_exists"), exists },
            });
            continue;
        }
        context.out << "From " << shownPath(pair.source) << "\n  to " << shownPath(pair.destination) << '\n';
        if (!exists)
            context.out << "  source folder does not exist; nothing to convert\n";
        for (const PresetConversionItem &item : report.items)
            printItem(context.out, item);
        for (const QString &error : report.errors)
            context.fail(Convert, QString(), error);
    }

    const int failed = total.count(PresetConversionItem::Failed);
    if (context.json) {
        QJsonArray files;
        for (const PresetConversionItem &item : std::as_const(total.items)) {
            files.append(QJsonObject {
                { QStringLiteral("source"), nativePath(item.source) },
                { QStringLiteral("destination"), nativePath(item.destination) },
                { QStringLiteral("outcome"), outcomeName(item.outcome) },
                { QStringLiteral("reason"), item.reason },
            });
        }
        const QJsonObject object {
            { QStringLiteral("dry_run"), options.dryRun },
            { QStringLiteral("pairs"), jsonPairs },
            { QStringLiteral("files"), files },
            { QStringLiteral("errors"), QJsonArray::fromStringList(total.errors) },
            { QStringLiteral("totals"), totalsToJson(total) },
            { QStringLiteral("summary"), total.summary() },
        };
        context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    } else if (options.dryRun) {
        context.out << "Dry run: " << total.summary() << "; nothing written\n";
    } else {
        context.out << total.summary() << '\n';
    }
    context.out.flush();
    return failed > 0 || !total.errors.isEmpty() ? 1 : 0;
}

int runPreset(ToolContext &context)
{
    const QString action = context.arguments.value(0);
    const QStringList rest = context.arguments.mid(1);
    if (action == QLatin1String("info"))
        return runInfo(context, rest);
    if (action == QLatin1String("convert"))
        return runConvert(context, rest);
    const QString usage = QString::fromLatin1(PresetUsage).replace(QLatin1Char('\n'), QLatin1String(" | "));
    return context.failUsage(QStringLiteral("preset"), action, usage);
}

const ToolCommand presetCommand("preset", PresetUsage, &runPreset);

} // namespace
