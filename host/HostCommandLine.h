#pragma once

#include <QPair>
#include <QString>
#include <QStringList>

#include "PluginHost.h"

// The reference host's options. parse() reports a clear message for anything
// it cannot use; the caller prints it and exits with a non-zero status.
struct HostCommandLine
{
    enum class Result { Run, ShowHelp, ListParameters, Error };

    PluginHost::Options plugin;
    QList<QPair<QString, QString>> settings; // --set KEY=TEXT, in order
    QString screenshotPath;
    bool gallery = false;  // --gallery: the controls gallery instead of the editor
    QString loadStatePath; // --load-state FILE: restored before the editor is shown
    QString saveStatePath; // --save-state FILE: written once the editor is set up
    // The processing model's programme: a generated --signal, or --input FILE
    // (looped); --output FILE receives the processed audio.
    QString signalName = QStringLiteral("drums");
    QString inputPath;
    QString outputPath;
    QString helpText;
    QString error;

    Result parse(const QStringList &arguments);
};
