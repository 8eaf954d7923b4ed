#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "ORVChStrip/Chunk/NativeFileName.h"
#include "ORVChStrip/ORVChStripVersion.h"
#include "tools/PrintableName.h"
#include "tools/ToolCommand.h"

namespace {

QList<const ToolCommand *> &registry()
{
    static QList<const ToolCommand *> commands;
    return commands;
}

// Every command's usage, one line each, in the order of the names.
QStringList usageLines()
{
    QList<const ToolCommand *> commands = ToolCommand::all();
    std::sort(commands.begin(), commands.end(),
        [](const ToolCommand *a, const ToolCommand *b) { return qstrcmp(a->name, b->name) < 0; });
    QStringList lines;
    for (const ToolCommand *command : std::as_const(commands)) {
        for (const QString &line : QString::fromUtf8(command->usage).split(QLatin1Char('\n')))
            lines << QStringLiteral("orvchstrip-tool ") + line;
    }
    return lines << QStringLiteral("orvchstrip-tool --version [--json]")
                 << QStringLiteral("orvchstrip-tool --help [--json]");
}

void printUsage(QTextStream &stream)
{
    stream << "Usage: orvchstrip-tool COMMAND ... [--json]\n\nCommands:\n";
    for (const QString &line : usageLines())
        stream << "  " << line << '\n';
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
    err << "orvchstrip-tool: ";
    if (!command.isEmpty())
        err << command << ": ";
    if (!file.isEmpty())
        err << PrintableName::escaped(file) << ": ";
    err << message << '\n';
    err.flush();
    return status;
}

int ToolContext::failUsage(const QString &command, const QString &argument, const QString &usage)
{
    QString message;
    if (argument.startsWith(QLatin1Char('-')))
        message = QStringLiteral("unknown option '%1'").arg(PrintableName::escaped(argument));
    else if (!argument.isEmpty())
        message = QStringLiteral("unexpected argument '%1'").arg(PrintableName::escaped(argument));
    if (!usage.isEmpty())
        message += (message.isEmpty() ? QString() : QStringLiteral("; "))
            + QStringLiteral("usage: orvchstrip-tool ") + usage;
    return fail(command, QString(), message, 2);
}

int ToolContext::fail(
    const QString &command, const QString &file, qint64 offset, const QString &message, int status)
{
    return fail(command, file, QStringLiteral("offset %1: %2").arg(offset).arg(message), status);
}

namespace {

// The arguments as typed: on Unix a file name's bytes need not be UTF-8, and
// QCoreApplication::arguments() would turn such bytes into U+FFFD, which
// leads to no file.
QStringList commandLineArguments(int argc, char *argv[])
{
#ifdef Q_OS_UNIX
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << NativeFileName::fromBytes(QByteArray(argv[i]));
    return arguments;
#else
    Q_UNUSED(argc)
    Q_UNUSED(argv)
    return QCoreApplication::arguments().mid(1);
#endif
}

int printHelp(ToolContext &context)
{
    if (!context.json) {
        printUsage(context.out);
        return 0;
    }
    context.out << QJsonDocument(
        QJsonObject { { QStringLiteral("usage"), QJsonArray::fromStringList(usageLines()) } })
                       .toJson(QJsonDocument::Indented);
    return 0;
}

int printVersion(ToolContext &context)
{
    if (context.json) {
        const QJsonObject object {
            { QStringLiteral("product_version"), QString::fromLatin1(ORVChStripVersion::Product) },
            { QStringLiteral("plugin_version"), QString::fromLatin1(ORVChStripVersion::Plugin) },
        };
        context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
    } else {
        context.out << "Orvane Channel Strip " << ORVChStripVersion::Product << " (plug-in version "
                    << ORVChStripVersion::Plugin << ")\n";
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvchstrip-tool"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    ToolContext context { commandLineArguments(argc, argv), false, out, err };
    context.json = context.arguments.removeAll(QStringLiteral("--json")) > 0;
    const QString first = context.arguments.value(0);
    if (context.arguments.isEmpty()) {
        context.fail(QString(), QString(), QStringLiteral("no command given"), 2);
        printUsage(err);
        return 2;
    }
    if (first == QLatin1String("--help") || first == QLatin1String("-h"))
        return printHelp(context);
    if (first == QLatin1String("--version"))
        return context.arguments.size() == 1
            ? printVersion(context)
            : context.failUsage(QString(), context.arguments.at(1), QStringLiteral("--version [--json]"));
    const ToolCommand *command = ToolCommand::find(first);
    if (!command) {
        if (first.startsWith(QLatin1Char('-')))
            context.failUsage(QString(), first, QString());
        else
            context.fail(PrintableName::escaped(first), QString(), QStringLiteral("unknown command"), 2);
        printUsage(err);
        return 2;
    }
    context.arguments.removeFirst();
    return command->run(context);
}
