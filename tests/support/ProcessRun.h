#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// What a program that a test started left behind. exitCode is -1 when the
// program crashed or did not finish in time.
struct ProcessRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs a program of this project to its end, headless.
inline ProcessRun runProcess(const QString &program, const QStringList &arguments,
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment(), int timeoutMs = 60000)
{
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ProcessRun run;
    if (!process.waitForFinished(timeoutMs))
        return run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}
