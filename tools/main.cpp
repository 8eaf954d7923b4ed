#include <QCoreApplication>
#include <algorithm>

#include "ORVChStrip/ORVChStripVersion.h"
#include "tools/PrintableName.h"
#include "tools/ToolCommand.h"

namespace {

QList<const ToolCommand *> &registry()
{
    static QList<const ToolCommand *> commands;
    return commands;
}

void printUsage(QTextStream &stream)
{
    stream << "Usage: orvchstrip-tool COMMAND ... [--json]\n\nCommands:\n";
    QList<const ToolCommand *> commands = ToolCommand::all();
    std::sort(commands.begin(), commands.end(),
        [](const ToolCommand *a, const ToolCommand *b) { return qstrcmp(a->name, b->name) < 0; });
    for (const ToolCommand *command : std::as_const(commands)) {
        for (const QString &line : QString::fromUtf8(command->usage).split(QLatin1Char('\n')))
            stream << "  orvchstrip-tool " << line << '\n';
    }
    stream << "\n--json prints one JSON object for scripts.\n";
}

} // namespace

ToolCommand::ToolCommand(const char *name, const char *usage, Runner runner)
    : name(name)
    , usage(usage)
    , run(runner)
{
    registry().append(this);
}

const ToolCommand *ToolCommand::find(const QString &name)
{
    for (const ToolCommand *command : std::as_const(registry())) {
        if (name == QLatin1String(command->name))
            return command;
    }
    return nullptr;
}

QList<const ToolCommand *> ToolCommand::all()
{
    return registry();
}

int ToolContext::fail(const QString &command, const QString &file, const QString &message, int status)
{
    out.flush();
    err << "orvchstrip-tool: " << command << ": ";
    if (!file.isEmpty())
        err << PrintableName::escaped(file) << ": ";
    err << message << '\n';
    err.flush();
    return status;
}

int ToolContext::fail(
    const QString &command, const QString &file, qint64 offset, const QString &message, int status)
{
    return fail(command, file, QStringLiteral("offset %1: %2").arg(offset).arg(message), status);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvchstrip-tool"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QStringList arguments = app.arguments().mid(1);
    if (arguments.isEmpty() || arguments.first() == QLatin1String("--help")
        || arguments.first() == QLatin1String("-h")) {
        printUsage(arguments.isEmpty() ? err : out);
        return arguments.isEmpty() ? 2 : 0;
    }
    if (arguments.first() == QLatin1String("--version")) {
        out << "Orvane Channel Strip " << ORVChStripVersion::Product << " (plug-in version "
            << ORVChStripVersion::Plugin << ")\n";
        return 0;
    }
    const ToolCommand *command = ToolCommand::find(arguments.first());
    if (!command) {
        err << "orvchstrip-tool: " << PrintableName::escaped(arguments.first()) << ": unknown command\n\n";
        printUsage(err);
        return 2;
    }
    ToolContext context { arguments.mid(1), false, out, err };
    context.json = context.arguments.removeAll(QStringLiteral("--json")) > 0;
    return command->run(context);
}
