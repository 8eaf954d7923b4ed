#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"
#include "tools/MorphRecordCommands.h"
#include "tools/ToolCommand.h"

namespace {

constexpr const char *MorphUsage = "morph list [--folder DIR] [--json]\nmorph show FILE [--json]\nmorph make "
                                   "--from TABLE.json --out FILE.ord";

void openAllFolders(const std::vector<ORVD_Data *> &list)
{
    for (ORVD_Data *data : list) {
        if (data->IsFolder())
            data->SetFolderOpen(true);
    }
}

void printJson(ToolContext &context, const QString &folder, const std::vector<ORVD_Select *> &rows)
{
    QJsonArray array;
    for (const ORVD_Select *row : rows) {
        const ORVD_Data *data = row->GetData();
        array.append(QJsonObject {
            { QStringLiteral("name"), QString::fromUtf8(data->GetName()) },
            { QStringLiteral("depth"), row->GetLayerNo() },
            { QStringLiteral("folder"), data->IsFolder() },
            { QStringLiteral("size"), static_cast<qint64>(data->GetDataSize()) },
        });
    }
    const QJsonObject object {
        { QStringLiteral("folder_path"), QDir::toNativeSeparators(folder) },
        { QStringLiteral("rows"), array },
    };
    context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
}

void printText(ToolContext &context, const QString &folder, const std::vector<ORVD_Select *> &rows)
{
    context.out << "Morph folder: " << QDir::toNativeSeparators(folder) << '\n';
    if (rows.empty()) {
        context.out << "No morph data.\n";
        return;
    }
    int files = 0;
    for (const ORVD_Select *row : rows) {
        const ORVD_Data *data = row->GetData();
        const QString indent(2 + 2 * row->GetLayerNo(), QLatin1Char(' '));
        QString label = indent + QString::fromUtf8(data->GetName());
        if (data->IsFolder()) {
            context.out << label << "/\n";
            continue;
        }
        ++files;
        if (label.size() < 40)
            label = label.leftJustified(40);
        context.out << label << ' ' << data->GetDataSize() << " bytes\n";
    }
    context.out << files << (files == 1 ? " morph data file\n" : " morph data files\n");
}

int runList(ToolContext &context, const QStringList &arguments)
{
    QString folder;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--folder")) {
            if (++i >= arguments.size()) {
                context.err << "orvchstrip-tool morph list: --folder needs a folder\n";
                return 2;
            }
            folder = arguments.at(i);
        } else if (argument.startsWith(QLatin1String("--folder="))) {
            folder = argument.mid(9);
        } else {
            context.err << "orvchstrip-tool morph list: unexpected argument '" << argument << "'\n"
                        << "Usage: orvchstrip-tool " << MorphUsage << '\n';
            return 2;
        }
    }

    // Resolve here so that the message and the output name the folder
    // actually scanned, the environment override included.
    const QString scanned = QFileInfo(ORVD_FolderCollectionImp(folder).Folder()).absoluteFilePath();
    if (!QFileInfo(scanned).isDir()) {
        context.err << "orvchstrip-tool morph list: morph folder '" << QDir::toNativeSeparators(scanned)
                    << "' does not exist\n";
        return 1;
    }

    ORVD_Manager manager;
    manager.GetCollection().SetFolder(scanned);
    manager.Collection();
    openAllFolders(manager.GetDataList());
    manager.MakeSelectList();

    if (context.json)
        printJson(context, scanned, manager.GetSelectList());
    else
        printText(context, scanned, manager.GetSelectList());
    return 0;
}

int runMorph(ToolContext &context)
{
    if (MorphRecordCommands::handles(context.arguments.value(0)))
        return MorphRecordCommands::run(context);
    if (context.arguments.isEmpty() || context.arguments.first() != QLatin1String("list")) {
        context.err << "Usage: orvchstrip-tool " << MorphUsage << '\n';
        return 2;
    }
    return runList(context, context.arguments.mid(1));
}

const ToolCommand morphCommand("morph", MorphUsage, runMorph);

} // namespace
