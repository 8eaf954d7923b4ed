// orvchstrip-tool preset info FILE: describes a preset container file.
// orvchstrip-tool preset convert: copies old presets into the current folders.
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"
#include "tools/ToolCommand.h"

namespace {

constexpr const char *PresetUsage = "preset info FILE [--json]\n"
                                    "preset convert [--dry-run] [--from DIR --to DIR] [--json]";

QString nativePath(const QString &path)
{
    return QDir::toNativeSeparators(path);
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
        { QStringLiteral("file"), nativePath(info.path) },
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
    out << nativePath(info.path) << ":\n";
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

int runInfo(ToolContext &context, const QStringList &arguments)
{
    if (arguments.size() != 1) {
        context.err << "orvchstrip-tool: usage: orvchstrip-tool preset info FILE [--json]\n";
        return 2;
    }
    const PresetFileInfo info = PresetFileInfo::read(arguments.first());
    if (context.json)
        context.out << QJsonDocument(infoToJson(info)).toJson(QJsonDocument::Indented);
    else
        printInfo(context.out, info);
    context.out.flush();
    if (!info.isValid()) {
        context.err << "orvchstrip-tool preset info: " << nativePath(info.path)
                    << ": not a preset file: " << info.error << '\n';
        return 1;
    }
    return 0;
}

QString outcomeName(PresetConversionItem::Outcome outcome)
{
    switch (outcome) {
    case PresetConversionItem::Converted: return QStringLiteral("converted");
    case PresetConversionItem::WouldConvert: return QStringLiteral("would convert");
    case PresetConversionItem::Skipped: return QStringLiteral("skipped");
    case PresetConversionItem::Failed: return QStringLiteral("failed");
    }
    return QString();
}

void printItem(QTextStream &out, const PresetConversionItem &item)
{
    const QString name = outcomeName(item.outcome);
    out << (name + QLatin1Char(':')).leftJustified(15) << nativePath(item.source);
    if (item.outcome != PresetConversionItem::Skipped)
        out << " -> " << nativePath(item.destination);
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
            if (++i >= arguments.size()) {
                context.err << "orvchstrip-tool preset convert: " << argument << " needs a folder\n";
                return 2;
            }
            (argument == QLatin1String("--from") ? from : to) = arguments.at(i);
        } else {
            context.err << "orvchstrip-tool preset convert: unknown option '" << argument << "'\n";
            return 2;
        }
    }
    if (from.isEmpty() != to.isEmpty()) {
        context.err << "orvchstrip-tool preset convert: --from and --to go together\n";
        return 2;
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
        context.out << "From " << nativePath(pair.source) << "\n  to " << nativePath(pair.destination)
                    << '\n';
        if (!exists)
            context.out << "  source folder does not exist; nothing to convert\n";
        for (const PresetConversionItem &item : report.items)
            printItem(context.out, item);
        for (const QString &error : report.errors)
            context.err << "orvchstrip-tool preset convert: " << error << '\n';
    }

    const int converted = total.count(PresetConversionItem::Converted);
    const int wouldConvert = total.count(PresetConversionItem::WouldConvert);
    const int skipped = total.count(PresetConversionItem::Skipped);
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
            { QStringLiteral("totals"),
                QJsonObject {
                    { QStringLiteral("converted"), converted },
                    { QStringLiteral("would_convert"), wouldConvert },
                    { QStringLiteral("skipped"), skipped },
                    { QStringLiteral("failed"), failed },
                } },
        };
        context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    } else if (options.dryRun) {
        context.out << "Dry run: " << wouldConvert << " would be converted, " << skipped << " skipped, "
                    << failed << " failed; nothing written\n";
    } else {
        context.out << converted << " converted, " << skipped << " skipped, " << failed << " failed\n";
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
    context.err << "orvchstrip-tool: usage:\n";
    for (const QString &line : QString::fromLatin1(PresetUsage).split(QLatin1Char('\n')))
        context.err << "  orvchstrip-tool " << line << '\n';
    return 2;
}

const ToolCommand presetCommand("preset", PresetUsage, &runPreset);

} // namespace
