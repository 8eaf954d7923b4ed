#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

// One run of a command-line program of the project: exit status (-1 when it
// crashed or hung) and everything it printed.
struct CommandRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    static CommandRun start(const QString &program, const QStringList &arguments,
        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
        const QString &workingDirectory = QString())
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        if (!workingDirectory.isEmpty())
            process.setWorkingDirectory(workingDirectory);
        process.start(program, arguments);
        CommandRun run;
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished();
            return run;
        }
        run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        run.out = process.readAllStandardOutput();
        run.err = process.readAllStandardError();
        return run;
    }
};
