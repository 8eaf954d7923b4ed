// orvchstrip-tool state dump FILE: describes a saved plug-in state.
#include <QFile>
#include <QJsonDocument>

#include "ORVChStrip/Chunk/ChStripInspector.h"
#include "tools/ToolCommand.h"

namespace {

int runState(ToolContext &context)
{
    if (context.arguments.size() != 2 || context.arguments.first() != QLatin1String("dump")) {
        context.err << "orvchstrip-tool: usage: orvchstrip-tool state dump FILE [--json]\n";
        return 2;
    }
    const QString path = context.arguments.at(1);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        context.err << "orvchstrip-tool: " << path << ": " << file.errorString() << '\n';
        return 1;
    }
    ChStripInspector inspector;
    const bool valid = inspector.inspectState(file.readAll());
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
        context.err << "orvchstrip-tool: " << path << ": not a valid state: " << inspector.error() << '\n';
        return 1;
    }
    return 0;
}

const ToolCommand stateCommand("state", "state dump FILE [--json]", &runState);

} // namespace
