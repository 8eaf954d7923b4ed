#pragma once

#include <QStringList>
#include <QTextStream>

// A command group of orvchstrip-tool ("state", "chunk", "preset", "morph").
// Each group lives in its own source file and registers itself with a static
// ToolCommand object; main() dispatches on the first argument.
struct ToolContext
{
    // After the group name, options included; a file name keeps the bytes
    // that are not UTF-8 as NativeFileName does.
    QStringList arguments;
    bool json = false; // --json was given anywhere
    QTextStream &out;
    QTextStream &err;

    // Every message of the tool has one form:
    //   orvchstrip-tool: COMMAND: FILE: offset N: what was expected
    // with the parts that do not apply left out. Returns `status`.
    int fail(const QString &command, const QString &file, const QString &message, int status = 1);
    int fail(
        const QString &command, const QString &file, qint64 offset, const QString &message, int status = 1);
    // A command line the command cannot use, with status 2: names the
    // unknown option or unexpected argument (when given) and the usage.
    int failUsage(const QString &command, const QString &argument, const QString &usage);
};

class ToolCommand
{
public:
    using Runner = int (*)(ToolContext &context);

    ToolCommand(const char *name, const char *usage, Runner runner);

    static const ToolCommand *find(const QString &name);
    static QList<const ToolCommand *> all();

    const char *name;
    const char *usage; // one or more lines: "state dump FILE [--json]"
    Runner run;
};
