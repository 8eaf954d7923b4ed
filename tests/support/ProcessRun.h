#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// What a program of this project that a test started left behind. exitCode
// is -1 when the program crashed or did not finish in time.
struct ProcessRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs a program to its end in the given environment (by default the
// test's own, which CTest makes headless) and working folder.
inline ProcessRun runProcess(const QString &program, const QStringList &arguments,
    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
    const QString &workingDirectory = QString(), int timeoutMs = 60000)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    process.start(program, arguments);
    ProcessRun run;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}
