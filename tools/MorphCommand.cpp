// orvchstrip-tool morph list: the morph data catalogue as the editor shows
// it, every folder open, with the files the editor would refuse to send
// marked and their reason.
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#ifdef Q_OS_UNIX
#include <dirent.h>
#endif

#include "ORVChStrip/Chunk/NativeFileName.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "tools/MorphRecordCommands.h"
#include "tools/PrintableName.h"
#include "tools/ToolCommand.h"

namespace {

constexpr const char *MorphUsage
    = "morph list [--folder DIR] [--json] | morph show FILE [--json] | morph make "
      "--from TABLE.json --out FILE.ord [--json]";
const QString Command = QStringLiteral("morph list");

constexpr int NameColumns = 40;

struct Row
{
    const ORVD_Select *select;
    QString name;  // as the catalogue holds it: NFC
    QString shown; // escaped for one line of terminal text
    QStringList problems;
};

void openAllFolders(const std::vector<ORVD_Data *> &list)
{
    for (ORVD_Data *data : list) {
        if (data->IsFolder())
            data->SetFolderOpen(true);
    }
}

// Why the editor would not send this file to the host; empty when it would.
QString refusal(const ORVD_Data *data)
{
    // The same reading of the record as the morphing list's before it sends.
    const OrvdMorphRecord::ReadResult result
        = OrvdMorphRecord::read(data->GetDataBuffer(), data->GetDataSize(), nullptr);
    if (result == OrvdMorphRecord::ReadResult::Ok)
        return QString();
    return QStringLiteral("not sent: ") + OrvdMorphRecord::describe(result, data->GetDataSize());
}

// The scan holds names as Unicode, so a file whose name is not valid UTF-8
// does not lead back to its file and is left out of the catalogue. These are
// the names of such ".ord" files in the folder and one level down, as raw
// bytes, so that the listing can name them.
QList<QByteArray> undecodableFileNames(const QString &folder)
{
    QList<QByteArray> names;
#ifdef Q_OS_UNIX
    const auto walk
        = [&](const QByteArray &path, const QByteArray &prefix, int depth, const auto &self) -> void {
        DIR *directory = opendir(path.constData());
        if (!directory)
            return;
        while (const dirent *entry = readdir(directory)) {
            const QByteArray name(entry->d_name);
            if (name.startsWith('.'))
                continue;
            const QByteArray child = path + '/' + name;
            const bool valid = QUtf8StringView(name).isValidUtf8();
            if (depth > 0 && valid && QFileInfo(QFile::decodeName(child)).isDir()
                && !QFileInfo(QFile::decodeName(child)).isSymLink())
                self(child, prefix + name + '/', depth - 1, self);
            else if (!valid && name.toLower().endsWith(".ord"))
                names << prefix + name;
        }
        closedir(directory);
    };
    walk(QFile::encodeName(folder), QByteArray(), 1, walk);
    std::sort(names.begin(), names.end());
#else
    Q_UNUSED(folder)
#endif
    return names;
}

QString escapedBytes(const QByteArray &name)
{
    return PrintableName::escaped(NativeFileName::fromBytes(name));
}

QList<Row> describe(const std::vector<ORVD_Select *> &selects)
{
    QList<Row> rows;
    // Names are stored in NFC, so files whose names differ only in their
    // Unicode normalisation come out alike; count them per folder.
    QHash<QString, int> seen;
    QString parent;
    for (const ORVD_Select *select : selects) {
        const ORVD_Data *data = select->GetData();
        Row row { select, QString::fromUtf8(data->GetName()), QString(), {} };
        row.shown = PrintableName::escaped(row.name);
        if (select->GetLayerNo() == 0 && data->IsFolder())
            parent = row.name;
        const QString scope = select->GetLayerNo() == 0 ? QString() : parent;
        if (!data->IsFolder()) {
            if (const QString reason = refusal(data); !reason.isEmpty())
                row.problems << reason;
        }
        const int twins = ++seen[scope + QLatin1Char('/') + row.name];
        if (twins > 1)
            row.problems << QStringLiteral(
                "name alike to an earlier entry: the names on the disk differ only in "
                "Unicode normalisation (NFC/NFD), entry %1 of this name")
                                .arg(twins);
        rows.append(row);
    }
    return rows;
}

void printJson(ToolContext &context, const QString &folder, bool exists, const QList<Row> &rows,
    const QList<QByteArray> &leftOut)
{
    QJsonArray array;
    for (const Row &row : rows) {
        const ORVD_Data *data = row.select->GetData();
        QJsonObject object {
            { QStringLiteral("name"), row.name },
            { QStringLiteral("depth"), row.select->GetLayerNo() },
            { QStringLiteral("folder"), data->IsFolder() },
            { QStringLiteral("size"), static_cast<qint64>(data->GetDataSize()) },
            { QStringLiteral("problems"), QJsonArray::fromStringList(row.problems) },
        };
        if (!data->IsFolder())
            object.insert(QStringLiteral("sendable"), refusal(data).isEmpty());
        array.append(object);
    }
    QJsonArray leftOutJson;
    for (const QByteArray &name : leftOut) {
        leftOutJson.append(QJsonObject {
            { QStringLiteral("name"), escapedBytes(name) },
            { QStringLiteral("name_hex"), QString::fromLatin1(name.toHex()) },
            { QStringLiteral("reason"), QStringLiteral("the name is not valid UTF-8") },
        });
    }
    const QJsonObject object {
        { QStringLiteral("folder_path"), PrintableName::forJson(QDir::toNativeSeparators(folder)) },
        { QStringLiteral("folder_exists"), exists },
        { QStringLiteral("rows"), array },
        { QStringLiteral("left_out"), leftOutJson },
    };
    context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
}

void printRows(ToolContext &context, const QList<Row> &rows);

void printText(ToolContext &context, const QString &folder, bool exists, const QList<Row> &rows,
    const QList<QByteArray> &leftOut)
{
    context.out << "Morph folder: " << PrintableName::escaped(QDir::toNativeSeparators(folder)) << '\n';
    if (!exists)
        context.out << "The folder does not exist: an empty catalogue.\n";
    if (rows.isEmpty())
        context.out << "No morph data.\n";
    else
        printRows(context, rows);
    if (!leftOut.isEmpty()) {
        context.out << "Left out, their names are not valid UTF-8 (bytes shown as \\xNN):\n";
        for (const QByteArray &name : leftOut)
            context.out << "  " << escapedBytes(name) << '\n';
    }
}

void printRows(ToolContext &context, const QList<Row> &rows)
{
    int files = 0;
    int refused = 0;
    for (const Row &row : rows) {
        const ORVD_Data *data = row.select->GetData();
        const QString label = QString(2 + 2 * row.select->GetLayerNo(), QLatin1Char(' ')) + row.shown;
        if (data->IsFolder()) {
            context.out << label << '/';
        } else {
            ++files;
            if (!refusal(data).isEmpty())
                ++refused;
            context.out << PrintableName::padded(label, NameColumns) << ' '
                        << QStringLiteral("%1 bytes").arg(data->GetDataSize(), 9);
        }
        for (const QString &problem : row.problems)
            context.out << "  [" << problem << ']';
        context.out << '\n';
    }
    context.out << files << (files == 1 ? " morph data file" : " morph data files");
    if (refused > 0)
        context.out << ", " << refused << " of them not sent by the editor";
    context.out << '\n';
}

int runList(ToolContext &context, const QStringList &arguments)
{
    QString folder;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--folder")) {
            if (++i >= arguments.size())
                return context.fail(Command, QString(), QStringLiteral("--folder needs a folder"), 2);
            folder = arguments.at(i);
            if (folder.isEmpty())
                return context.fail(Command, QString(), QStringLiteral("--folder needs a folder"), 2);
        } else if (argument.startsWith(QLatin1String("--folder="))) {
            folder = argument.mid(9);
        } else {
            return context.failUsage(Command, argument, QLatin1String(MorphUsage));
        }
    }

    // Resolve here so that the message and the output name the folder
    // actually scanned, the environment override included.
    const QString scanned = QFileInfo(ORVD_FolderCollectionImp(folder).Folder()).absoluteFilePath();
    const QFileInfo info(scanned);
    if (info.exists() && !info.isDir())
        return context.fail(Command, QDir::toNativeSeparators(scanned), QStringLiteral("not a folder"));
    // The default folder may be absent (an empty catalogue, as the editor
    // shows it); a folder the user names must be there.
    if (!info.exists() && !folder.isEmpty())
        return context.fail(Command, QDir::toNativeSeparators(scanned), QStringLiteral("no such folder"));

    ORVD_Manager manager;
    manager.GetCollection().SetFolder(scanned);
    manager.Collection();
    openAllFolders(manager.GetDataList());
    manager.MakeSelectList();
    const QList<Row> rows = describe(manager.GetSelectList());
    const QList<QByteArray> leftOut = undecodableFileNames(scanned);

    if (context.json)
        printJson(context, scanned, info.exists(), rows, leftOut);
    else
        printText(context, scanned, info.exists(), rows, leftOut);
    return 0;
}

int runMorph(ToolContext &context)
{
    if (MorphRecordCommands::handles(context.arguments.value(0)))
        return MorphRecordCommands::run(context);
    if (context.arguments.isEmpty() || context.arguments.first() != QLatin1String("list"))
        return context.failUsage(
            QStringLiteral("morph"), context.arguments.value(0), QLatin1String(MorphUsage));
    return runList(context, context.arguments.mid(1));
}

const ToolCommand morphCommand("morph", MorphUsage, runMorph);

} // namespace
