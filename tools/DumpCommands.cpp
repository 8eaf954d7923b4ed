// orvchstrip-tool state dump FILE and chunk dump FILE: describe a saved
// plug-in state or a channel-strip chunk file, chunk by chunk.
#include <QFile>
#include <QJsonDocument>

#include "ORVChStrip/Chunk/ChStripInspector.h"
#include "tools/ToolCommand.h"

namespace {

using Inspect = bool (ChStripInspector::*)(const QByteArray &);

int dump(ToolContext &context, const char *group, const char *what, Inspect inspect)
{
    if (context.arguments.size() != 2 || context.arguments.first() != QLatin1String("dump")) {
        context.err << "orvchstrip-tool: usage: orvchstrip-tool " << group << " dump FILE [--json]\n";
        return 2;
    }
    const QString path = context.arguments.at(1);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        context.err << "orvchstrip-tool: " << path << ": " << file.errorString() << '\n';
        return 1;
    }
    ChStripInspector inspector;
    const bool valid = (inspector.*inspect)(file.readAll());
    if (context.json) {
        QJsonObject object = inspector.toJson();
        object.insert(QStringLiteral("file"), path);
        context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    } else {
        context.out << path << ":\n";
        inspector.writeText(context.out);
    }
    context.out.flush();
    if (!valid) {
        context.err << "orvchstrip-tool: " << path << ": not a valid " << what << ": " << inspector.error()
                    << '\n';
        return 1;
    }
    return 0;
}

int runState(ToolContext &context)
{
    return dump(context, "state", "state", &ChStripInspector::inspectState);
}

int runChunk(ToolContext &context)
{
    return dump(context, "chunk", "chunk file", &ChStripInspector::inspectChunk);
}

const ToolCommand stateCommand("state", "state dump FILE [--json]", &runState);
const ToolCommand chunkCommand("chunk", "chunk dump FILE [--json]", &runChunk);

} // namespace
