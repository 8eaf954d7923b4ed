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

    // The knob and fader edit modes the host may pass to the editor.
    static constexpr int MaxDialEditMode = 2;
    static constexpr int MaxSliderEditMode = 3;

    PluginHost::Options plugin;
    QList<QPair<QString, QString>> settings; // --set KEY=TEXT, in order
    QString screenshotPath;
    QByteArray screenshotFormat; // named by the suffix: "png", "jpg", "bmp", ...
    bool gallery = false;        // --gallery: the controls gallery instead of the editor
    QString loadStatePath;       // --load-state FILE: restored before the editor is shown
    QString saveStatePath;       // --save-state FILE: written once the editor is set up
    // Written when the editor closes, and whenever the host receives SIGUSR1.
    QString saveStateOnExitPath;      // --save-state-on-exit FILE
    QString dumpParametersOnExitPath; // --dump-parameters-on-exit FILE: "key=value text" lines
    bool keepEditorSettings = true;   // false with --no-settings: start clean, keep nothing
    // The processing model's programme: a generated --signal, or --input FILE
    // (looped); --output FILE receives the processed audio.
    QString signalName = QStringLiteral("drums");
    QString inputPath;
    QString outputPath;
    bool spectrum = false;    // --spectrum: the editor starts with its spectrum switched on
    QString dumpSpectrumPath; // --dump-spectrum FILE: the last frame, at the same moments as the exit files
    QString helpText;
    QString error;

    Result parse(const QStringList &arguments);
};
