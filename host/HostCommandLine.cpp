#include "HostCommandLine.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QImageWriter>
#include <cmath>

#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "Processing/GeneratedSignal.h"

namespace {

QStringList supportedFormats()
{
    QStringList formats;
    for (const QByteArray &format : QImageWriter::supportedImageFormats())
        formats << QString::fromLatin1(format);
    return formats;
}

// The format the file's suffix names; PNG without a suffix, empty for a
// suffix no image writer knows.
QByteArray pictureFormat(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix.isEmpty())
        return QByteArrayLiteral("png");
    return supportedFormats().contains(suffix) ? suffix.toLatin1() : QByteArray();
}

// Files are replaced whole, and a device or a FIFO is never replaced.
QString destinationError(const QString &option, const QString &path)
{
    const QString problem = AtomicFileWriter::destinationProblem(path);
    return problem.isEmpty() ? QString() : QStringLiteral("%1 %2: %3").arg(option, path, problem);
}

// A file to write when the editor closes must have its folder already: a
// typing error found at start-up costs nothing, found at the end it costs the
// session's state.
QString missingFolderError(const QString &option, const QString &path)
{
    if (path.isEmpty())
        return QString();
    const QFileInfo file(path);
    if (file.isDir())
        return QStringLiteral("%1 takes a file, and '%2' is a folder").arg(option, path);
    if (!QFileInfo(file.absolutePath()).isDir())
        return QStringLiteral("%1 %2: the folder '%3' does not exist").arg(option, path, file.absolutePath());
    return destinationError(option, path);
}

bool toNumber(const QString &text, double *number)
{
    bool ok = false;
    *number = text.toDouble(&ok);
    return ok && std::isfinite(*number);
}

} // namespace

HostCommandLine::Result HostCommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Reference host of the Orvane Channel Strip editor: loads the plug-in, simulates the "
                       "host's parameter memory and meters, and shows the editor."));
    const QCommandLineOption helpOption(
        { QStringLiteral("h"), QStringLiteral("help") }, QStringLiteral("Show this help."));
    const QCommandLineOption pluginOption(QStringLiteral("plugin"),
        QStringLiteral("The plug-in file to load (default: the one installed "
                       "with the host, or built beside it)."),
        QStringLiteral("path"));
    const QCommandLineOption scaleOption(QStringLiteral("scale"),
        QStringLiteral("Editor scale, 0.5 to 4 (default 1)."), QStringLiteral("factor"), QStringLiteral("1"));
    const QCommandLineOption monoOption(QStringLiteral("mono"), QStringLiteral("Edit a mono strip."));
    const QCommandLineOption stereoOption(
        QStringLiteral("stereo"), QStringLiteral("Edit a stereo strip (the default)."));
    const QCommandLineOption fsOption(QStringLiteral("fs"),
        QStringLiteral("Sample rate in Hz (default 48000)."), QStringLiteral("hz"), QStringLiteral("48000"));
    const QCommandLineOption channelOption(QStringLiteral("ch"),
        QStringLiteral("First channel of the strip, 0 to 14 (default 0)."), QStringLiteral("channel"),
        QStringLiteral("0"));
    const QCommandLineOption dialOption(QStringLiteral("dial-mode"),
        QStringLiteral("Knob edit mode: 0 circular, 1 relative circular, 2 "
                       "linear (default 0)."),
        QStringLiteral("mode"), QStringLiteral("0"));
    const QCommandLineOption sliderOption(QStringLiteral("slider-mode"),
        QStringLiteral("Fader edit mode 0 to 3 (default 0)."), QStringLiteral("mode"), QStringLiteral("0"));
    const QCommandLineOption setOption(QStringLiteral("set"),
        QStringLiteral("Set a parameter from its value text before the editor "
                       "is shown, e.g. fx_eq_midfrq=1.2k. Repeatable."),
        QStringLiteral("key=text"));
    const QCommandLineOption screenshotOption(QStringLiteral("screenshot"),
        QStringLiteral("Render the editor panel to a PNG file and exit."), QStringLiteral("file"));
    const QCommandLineOption listOption(QStringLiteral("list-parameters"),
        QStringLiteral("Print the simulated parameters and meters and exit."));
    parser.addOptions({ helpOption, pluginOption, scaleOption, monoOption, stereoOption, fsOption,
        channelOption, dialOption, sliderOption, setOption, screenshotOption, listOption });
    const QCommandLineOption loadStateOption(QStringLiteral("load-state"),
        QStringLiteral("Restore the effect's state from a file before the editor is shown."),
        QStringLiteral("file"));
    const QCommandLineOption saveStateOption(QStringLiteral("save-state"),
        QStringLiteral("Save the effect's state to a file once the editor is set up (after --load-state "
                       "and --set)."),
        QStringLiteral("file"));
    const QCommandLineOption saveStateOnExitOption(QStringLiteral("save-state-on-exit"),
        QStringLiteral("Save the effect's state to a file when the editor closes, and again whenever the "
                       "host receives SIGUSR1."),
        QStringLiteral("file"));
    const QCommandLineOption dumpParametersOption(QStringLiteral("dump-parameters-on-exit"),
        QStringLiteral("Write every parameter of the strip as a 'key=value text' line to a file when the "
                       "editor closes, and again whenever the host receives SIGUSR1 (after the state)."),
        QStringLiteral("file"));
    parser.addOptions({ loadStateOption, saveStateOption, saveStateOnExitOption, dumpParametersOption });
    const QCommandLineOption galleryOption(QStringLiteral("gallery"),
        QStringLiteral("Show the gallery of the plug-in's controls, bound to the simulated memory, instead "
                       "of the editor (with --screenshot: render it to a file)."));
    parser.addOption(galleryOption);
    const QCommandLineOption noSettingsOption(QStringLiteral("no-settings"),
        QStringLiteral("Start with no kept editor settings (open folders, selection) and keep none."));
    parser.addOption(noSettingsOption);
    const QCommandLineOption signalOption(QStringLiteral("signal"),
        QStringLiteral("The generated programme behind the meters: %1 (default drums).")
            .arg(GeneratedSignal::programmeNames().join(QStringLiteral(", "))),
        QStringLiteral("name"), QStringLiteral("drums"));
    const QCommandLineOption inputOption(QStringLiteral("input"),
        QStringLiteral("An audio file (WAV, FLAC, AIFF, Ogg) to play, looped, instead of a generated "
                       "programme."),
        QStringLiteral("file"));
    const QCommandLineOption outputOption(QStringLiteral("output"),
        QStringLiteral("Write the processed audio to a file (WAV; FLAC or AIFF by extension) until the "
                       "host closes."),
        QStringLiteral("file"));
    parser.addOptions({ signalOption, inputOption, outputOption });
    const QCommandLineOption spectrumOption(QStringLiteral("spectrum"),
        QStringLiteral("Start with the equaliser's spectrum switched on (kept in the editor settings)."));
    const QCommandLineOption dumpSpectrumOption(QStringLiteral("dump-spectrum"),
        QStringLiteral("Write the last spectrum frame of the strip's output as 'frequency_hz db' lines to a "
                       "file when the editor closes, and again whenever the host receives SIGUSR1."),
        QStringLiteral("file"));
    parser.addOptions({ spectrumOption, dumpSpectrumOption });
    helpText = parser.helpText();

    if (!parser.parse(arguments)) {
        error = parser.errorText();
        return Result::Error;
    }
    if (!parser.positionalArguments().isEmpty()) {
        error = QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().first());
        return Result::Error;
    }
    if (parser.isSet(helpOption))
        return Result::ShowHelp;
    if (parser.isSet(listOption))
        return Result::ListParameters;

    plugin.pluginPath
        = parser.isSet(pluginOption) ? parser.value(pluginOption) : PluginHost::defaultPluginPath();
    if (!toNumber(parser.value(scaleOption), &plugin.scale) || plugin.scale < 0.5 || plugin.scale > 4.0) {
        error
            = QStringLiteral("--scale takes a number from 0.5 to 4, not '%1'").arg(parser.value(scaleOption));
        return Result::Error;
    }
    if (parser.isSet(monoOption) && parser.isSet(stereoOption)) {
        error = QStringLiteral("--mono and --stereo exclude each other");
        return Result::Error;
    }
    plugin.stereo = !parser.isSet(monoOption);

    bool ok = false;
    plugin.fs = parser.value(fsOption).toInt(&ok);
    if (!ok || plugin.fs < 8000 || plugin.fs > 768000) {
        error = QStringLiteral("--fs takes a sample rate from 8000 to 768000 Hz, not '%1'")
                    .arg(parser.value(fsOption));
        return Result::Error;
    }
    plugin.channel = parser.value(channelOption).toInt(&ok);
    if (!ok || plugin.channel < 0 || plugin.channel > 14) {
        error
            = QStringLiteral("--ch takes a channel from 0 to 14, not '%1'").arg(parser.value(channelOption));
        return Result::Error;
    }
    plugin.dialEditMode = parser.value(dialOption).toInt(&ok);
    if (!ok || plugin.dialEditMode < 0 || plugin.dialEditMode > MaxDialEditMode) {
        error
            = QStringLiteral("--dial-mode takes 0 (circular), 1 (relative circular) or 2 (linear), not '%1'")
                  .arg(parser.value(dialOption));
        return Result::Error;
    }
    plugin.sliderEditMode = parser.value(sliderOption).toInt(&ok);
    if (!ok || plugin.sliderEditMode < 0 || plugin.sliderEditMode > MaxSliderEditMode) {
        error = QStringLiteral("--slider-mode takes 0, 1, 2 or 3, not '%1'").arg(parser.value(sliderOption));
        return Result::Error;
    }
    for (const QString &assignment : parser.values(setOption)) {
        const int equals = int(assignment.indexOf(QLatin1Char('=')));
        if (equals <= 0) {
            error = QStringLiteral("--set takes KEY=TEXT, not '%1'").arg(assignment);
            return Result::Error;
        }
        settings.append({ assignment.left(equals), assignment.mid(equals + 1) });
    }
    screenshotPath = parser.value(screenshotOption);
    if (parser.isSet(screenshotOption)) {
        screenshotFormat = pictureFormat(screenshotPath);
        if (screenshotFormat.isEmpty()) {
            error = QStringLiteral("--screenshot %1: cannot write '%2' pictures; the suffix names one of %3")
                        .arg(screenshotPath, QFileInfo(screenshotPath).suffix(),
                            supportedFormats().join(QStringLiteral(", ")));
            return Result::Error;
        }
        error = destinationError(QStringLiteral("--screenshot"), screenshotPath);
        if (!error.isEmpty())
            return Result::Error;
    }
    gallery = parser.isSet(galleryOption);
    loadStatePath = parser.value(loadStateOption);
    saveStatePath = parser.value(saveStateOption);
    saveStateOnExitPath = parser.value(saveStateOnExitOption);
    dumpParametersOnExitPath = parser.value(dumpParametersOption);
    error = destinationError(QStringLiteral("--save-state"), saveStatePath);
    if (error.isEmpty())
        error = missingFolderError(QStringLiteral("--save-state-on-exit"), saveStateOnExitPath);
    if (error.isEmpty())
        error = missingFolderError(QStringLiteral("--dump-parameters-on-exit"), dumpParametersOnExitPath);
    if (error.isEmpty() && gallery && !(saveStateOnExitPath.isEmpty() && dumpParametersOnExitPath.isEmpty()))
        error = QStringLiteral(
            "--save-state-on-exit and --dump-parameters-on-exit save the editor's strip, and "
            "--gallery shows no editor");
    if (!error.isEmpty())
        return Result::Error;
    keepEditorSettings = !parser.isSet(noSettingsOption);
    GeneratedSignal::Programme programme {};
    if (!GeneratedSignal::programmeFromName(parser.value(signalOption), &programme)) {
        error = QStringLiteral("--signal takes one of %1, not '%2'")
                    .arg(GeneratedSignal::programmeNames().join(QStringLiteral(", ")),
                        parser.value(signalOption));
        return Result::Error;
    }
    if (parser.isSet(signalOption) && parser.isSet(inputOption)) {
        error = QStringLiteral("--signal and --input exclude each other");
        return Result::Error;
    }
    signalName = parser.value(signalOption).toLower();
    inputPath = parser.value(inputOption);
    outputPath = parser.value(outputOption);
    error = destinationError(QStringLiteral("--output"), outputPath);
    if (!error.isEmpty())
        return Result::Error;
    spectrum = parser.isSet(spectrumOption);
    dumpSpectrumPath = parser.value(dumpSpectrumOption);
    error = missingFolderError(QStringLiteral("--dump-spectrum"), dumpSpectrumPath);
    if (error.isEmpty() && gallery && (spectrum || !dumpSpectrumPath.isEmpty()))
        error
            = QStringLiteral("--spectrum and --dump-spectrum belong to the editor, and --gallery shows none");
    return error.isEmpty() ? Result::Run : Result::Error;
}
