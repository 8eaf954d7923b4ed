// orvchstrip-tool state dump FILE and chunk dump FILE: describe a saved
// plug-in state or a channel-strip chunk file, chunk by chunk.
#include <QJsonDocument>

#include "ChannelStripModel.h"
#include "ORVChStrip/Chunk/BoundedFileReader.h"
#include "tools/PrintableName.h"
#include "tools/StateInspector.h"
#include "tools/ToolCommand.h"

namespace {

using Inspect = bool (StateInspector::*)(const QByteArray &);

// Far more than any state or chunk file holds (a state is 1,664 bytes), and
// little enough that /dev/zero or a wrong file is refused at once.
constexpr qint64 ReadLimit = 64 * 1024;

int dump(ToolContext &context, const char *group, const char *what, Inspect inspect)
{
    const QString command = QStringLiteral("%1 dump").arg(QLatin1String(group));
    const QString usage = QStringLiteral("%1 dump FILE [--json]").arg(QLatin1String(group));
    if (context.arguments.value(0) != QLatin1String("dump"))
        return context.failUsage(QLatin1String(group), context.arguments.value(0), usage);
    for (const QString &argument : context.arguments.mid(1)) {
        if (argument.startsWith(QLatin1Char('-')))
            return context.failUsage(command, argument, usage);
    }
    if (context.arguments.size() != 2)
        return context.failUsage(command, context.arguments.value(2), usage);
    const QString path = context.arguments.at(1);
    BoundedFileReader reader(ReadLimit, QStringLiteral("a %1").arg(QLatin1String(what)));
    if (!reader.read(path))
        return context.fail(command, path, reader.errorString());
    const QByteArray &bytes = reader.bytes();

    // The reference host's parameter table gives the stored values their texts.
    StateInspector inspector(ChannelStripModel::parameters());
    const bool valid = (inspector.*inspect)(bytes);
    if (context.json) {
        QJsonObject object = inspector.toJson();
        object.insert(QStringLiteral("file"), PrintableName::forJson(path));
        context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    } else {
        context.out << PrintableName::escaped(path) << ":\n";
        inspector.writeText(context.out);
    }
    if (!valid)
        return context.fail(command, path, inspector.errorOffset(),
            QStringLiteral("not a valid %1: %2").arg(QLatin1String(what), inspector.error()));
    return 0;
}

int runState(ToolContext &context)
{
    return dump(context, "state", "state", &StateInspector::inspectState);
}

int runChunk(ToolContext &context)
{
    return dump(context, "chunk", "chunk file", &StateInspector::inspectChunk);
}

const ToolCommand stateCommand("state", "state dump FILE [--json]", &runState);
const ToolCommand chunkCommand("chunk", "chunk dump FILE [--json]", &runChunk);

} // namespace
