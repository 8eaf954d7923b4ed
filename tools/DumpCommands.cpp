// orvchstrip-tool state dump FILE and chunk dump FILE: describe a saved
// plug-in state or a channel-strip chunk file, chunk by chunk.
#include <QFile>
#include <QJsonDocument>

#include "ChannelStripModel.h"
#include "tools/PrintableName.h"
#include "tools/StateInspector.h"
#include "tools/ToolCommand.h"

namespace {

using Inspect = bool (StateInspector::*)(const QByteArray &);

int dump(ToolContext &context, const char *group, const char *what, Inspect inspect)
{
    const QString command = QStringLiteral("%1 dump").arg(QLatin1String(group));
    if (context.arguments.size() != 2 || context.arguments.first() != QLatin1String("dump"))
        return context.fail(QLatin1String(group), QString(),
            QStringLiteral("usage: orvchstrip-tool %1 dump FILE [--json]").arg(QLatin1String(group)), 2);
    const QString path = context.arguments.at(1);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return context.fail(command, path, QStringLiteral("cannot read: %1").arg(file.errorString()));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return context.fail(command, path, QStringLiteral("cannot read: %1").arg(file.errorString()));

    // The reference host's parameter table gives the stored values their texts.
    StateInspector inspector(ChannelStripModel::parameters());
    const bool valid = (inspector.*inspect)(bytes);
    if (context.json) {
        QJsonObject object = inspector.toJson();
        object.insert(QStringLiteral("file"), path);
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
