#include <QApplication>
#include <QGuiApplication>
#include <QTextStream>
#include <csignal>
#include <memory>

#include "EditorSettingsStore.h"
#include "HostCommandLine.h"
#include "HostWindow.h"
#include "Interfaces/IORVControlsGallery.h"
#include "Interfaces/IQXEffectEditor.h"
#include "ORVChStrip/Chunk/NativeFileName.h"
#include "ParameterListing.h"
#include "PluginHost.h"
#include "Processing/AudioFileSignal.h"
#include "Processing/AudioFileWriter.h"
#include "Processing/GeneratedSignal.h"
#include "Processing/StripModelRunner.h"
#include "SnapshotWriter.h"
#include "StateFile.h"
#include "UnixSignalNotifier.h"
#include "ValueRangeCheck.h"

namespace {

bool hasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

// Renders the widget alone at `scale` times its pixel density, so that a
// picture at scale 2 shows every line and glyph drawn at twice the detail.
int writeScreenshot(QWidget *widget, const QString &what, const QString &path, const QByteArray &format,
    double scale, QTextStream &err)
{
    QPixmap picture;
    if (scale == 1.0) {
        picture = widget->grab();
    } else {
        picture = QPixmap(widget->size() * scale);
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);
        widget->render(&picture);
    }
    if (!picture.save(path, format.isEmpty() ? "png" : format.constData())) {
        err << "orvchstrip-host: cannot write the picture to " << path << '\n';
        return 1;
    }
    QTextStream(stdout) << "Wrote the " << what << " to " << path << " (" << picture.width() << " x "
                        << picture.height() << " pixels)\n";
    return 0;
}

// The processing model behind the meters, fed by the file or programme the
// options name; null after a message when the file does not open.
std::unique_ptr<StripModelRunner> createStripModel(
    PluginHost &host, const HostCommandLine &options, QTextStream &err)
{
    QString error;
    std::unique_ptr<SignalSource> source;
    if (!options.inputPath.isEmpty()) {
        source = AudioFileSignal::open(options.inputPath, &error);
    } else {
        GeneratedSignal::Programme programme = GeneratedSignal::Drums;
        GeneratedSignal::programmeFromName(options.signalName, &programme);
        source = std::make_unique<GeneratedSignal>(programme, options.plugin.fs);
    }
    if (!source) {
        err << "orvchstrip-host: --input: " << error << '\n';
        return nullptr;
    }
    const double sampleRate = source->sampleRate();
    auto model = std::make_unique<StripModelRunner>(
        host.memory(), options.plugin.channel, options.plugin.stereo, std::move(source));
    if (!options.outputPath.isEmpty()) {
        auto writer
            = AudioFileWriter::create(options.outputPath, sampleRate, options.plugin.stereo ? 2 : 1, &error);
        if (!writer) {
            err << "orvchstrip-host: --output: " << error << '\n';
            return nullptr;
        }
        model->setOutput(std::move(writer));
    }
    QObject::connect(model.get(), &StripModelRunner::outputFailed, [&err](const QString &message) {
        err << "orvchstrip-host: --output: " << message << '\n' << Qt::flush;
    });
    return model;
}

// The controls gallery in place of the editor. The plug-in object offers it
// through its own interface; the meters run as they do for the editor. The
// gallery lives under an editor at scale 1, from which its controls take
// the edit modes, and a picture of it is drawn at the requested scale.
int runGallery(PluginHost &host, const HostCommandLine &options, QTextStream &err)
{
    auto *galleryFactory = qobject_cast<IORVControlsGallery *>(host.pluginInstance());
    if (!galleryFactory) {
        err << "orvchstrip-host: the plug-in offers no controls gallery (" IORVControlsGallery_iid ")\n";
        return 1;
    }
    PluginHost::Options editorOptions = options.plugin;
    editorOptions.scale = 1.0;
    QString error;
    std::unique_ptr<IQXEffectEditor> editor(host.createEditor(nullptr, editorOptions, &error));
    if (!editor) {
        err << "orvchstrip-host: " << error << '\n';
        return 1;
    }
    QWidget *gallery = galleryFactory->createControlsGallery(editor.get(), &host.model(), &host.memory());
    if (!gallery) {
        err << "orvchstrip-host: the plug-in made no controls gallery\n";
        return 1;
    }
    gallery->setWindowFlag(Qt::Window);
    if (!options.plugin.stereo)
        err << "orvchstrip-host: --gallery: the gallery's meters are a stereo pair; --mono applies to the "
               "editor\n";
    editor->setDialEditMode(options.plugin.dialEditMode);
    editor->setSliderEditMode(options.plugin.sliderEditMode);
    std::unique_ptr<StripModelRunner> model = createStripModel(host, options, err);
    if (!model)
        return 1;
    if (!options.screenshotPath.isEmpty() || !hasDisplay()) {
        model->runFor(2.0);
        const QString path
            = options.screenshotPath.isEmpty() ? QStringLiteral("gallery.png") : options.screenshotPath;
        return writeScreenshot(gallery, QStringLiteral("controls gallery"), path, options.screenshotFormat,
            options.plugin.scale, err);
    }
    model->start();
    gallery->show();
    const int status = QApplication::exec();
    model->stop();
    return status;
}

// QGuiApplication takes "-plugin" and "--plugin" for input plug-ins of its
// own, so the host's --plugin is taken out of argv before Qt sees it.
QStringList takePluginOption(int &argc, char *argv[])
{
    QStringList taken;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if ((argument == "--plugin" || argument == "-plugin") && i + 1 < argc) {
            taken << QStringLiteral("--plugin") << QString::fromLocal8Bit(argv[++i]);
        } else if (argument.startsWith("--plugin=")) {
            taken << QString::fromLocal8Bit(argument);
        } else {
            argv[kept++] = argv[i];
        }
    }
    argc = kept;
    argv[argc] = nullptr;
    return taken;
}

// The arguments Qt left, as typed: a file name's bytes need not be UTF-8,
// and QCoreApplication::arguments() would turn such bytes into U+FFFD.
QStringList commandLineArguments(int argc, char *argv[])
{
#ifdef Q_OS_UNIX
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << NativeFileName::fromBytes(QByteArray(argv[i]));
    return arguments;
#else
    Q_UNUSED(argc)
    Q_UNUSED(argv)
    return QCoreApplication::arguments();
#endif
}

// Without a display the host still renders pictures, offscreen. With a
// display named but out of reach, Qt tries the platforms of the list in
// turn instead of aborting, so --help, --list-parameters and --screenshot
// work wherever the host runs.
void choosePlatform()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "wayland;xcb;offscreen");
    else if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb;offscreen");
    else
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

// A --set text outside the parameter's range is a typing error, not a
// value to clamp silently.
bool applySetting(PluginHost &host, const QString &key, const QString &text, int channel, QTextStream &err)
{
    const QByteArray latinKey = key.toLatin1();
    const ParameterDefinition *parameter
        = host.model().parameter(host.model().parameterId(latinKey.constData()));
    QString problem;
    if (!parameter)
        problem = QStringLiteral("no such parameter");
    else if (!ValueRangeCheck::contains(*parameter, text))
        problem = QStringLiteral("outside the range %1").arg(ValueRangeCheck::describe(*parameter));
    else if (!host.memory().setValueText(latinKey.constData(), text, channel))
        problem = QStringLiteral("the value text does not parse; the values are %1")
                      .arg(ValueRangeCheck::describe(*parameter));
    if (problem.isEmpty())
        return true;
    err << "orvchstrip-host: --set " << key << '=' << text << ": " << problem << " (see --list-parameters)\n";
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    // SIGUSR1 asks for the exit files; until the event loop answers it, and
    // in a run that writes none, it must not end the host as it would by
    // default.
    std::signal(SIGUSR1, SIG_IGN);
    const QStringList pluginArguments = takePluginOption(argc, argv);
    choosePlatform();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvchstrip-host"));
    // Desktops match the window to the installed menu entry (and its icon).
    QApplication::setDesktopFileName(QStringLiteral("orvchstrip-host"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    HostCommandLine options;
    switch (options.parse(commandLineArguments(argc, argv) + pluginArguments)) {
    case HostCommandLine::Result::Error:
        err << "orvchstrip-host: " << options.error << "\nTry 'orvchstrip-host --help'.\n";
        return 2;
    case HostCommandLine::Result::ShowHelp: out << options.helpText; return 0;
    case HostCommandLine::Result::ListParameters: {
        PluginHost host;
        printParameterListing(host.model(), out);
        return 0;
    }
    case HostCommandLine::Result::Run: break;
    }

    PluginHost host;
    QString error;
    if (!host.load(options.plugin.pluginPath, &error)) {
        err << "orvchstrip-host: " << error << '\n';
        return 1;
    }
    for (const auto &[key, text] : std::as_const(options.settings)) {
        if (!applySetting(host, key, text, options.plugin.channel, err))
            return 2;
    }

    if (options.gallery)
        return runGallery(host, options, err);

    const EditorSettingsStore editorSettings(options.plugin.channel, options.plugin.stereo);
    if (options.keepEditorSettings)
        options.plugin.editorSettings = editorSettings.load();
    // The strip model analyses its output for an editor that shows a spectrum.
    host.memory().offerSpectrum(
        options.plugin.channel, options.plugin.stereo ? options.plugin.channel + 1 : -1);
    if (options.spectrum)
        options.plugin.editorSettings.insert(QStringLiteral("Spectrum"), true);
    IQXEffectEditor *editor = host.createEditor(nullptr, options.plugin, &error);
    if (!editor) {
        err << "orvchstrip-host: " << error << '\n';
        return 1;
    }
    if (!options.loadStatePath.isEmpty()) {
        QString warning;
        if (!StateFile::load(
                editor->getPlxComponent(), host.memory(), options.loadStatePath, &error, &warning)) {
            err << "orvchstrip-host: --load-state: " << error << '\n';
            return 1;
        }
        if (!warning.isEmpty())
            err << "orvchstrip-host: --load-state: warning: " << warning << '\n';
        // --set refines the restored state.
        for (const auto &[key, text] : std::as_const(options.settings))
            host.memory().setValueText(key.toLatin1().constData(), text, options.plugin.channel);
    }
    if (!options.saveStatePath.isEmpty()) {
        if (!StateFile::save(editor->getPlxComponent(), options.saveStatePath, &error)) {
            err << "orvchstrip-host: --save-state: " << error << '\n';
            return 1;
        }
        out << "Saved the effect's state to " << options.saveStatePath << '\n';
    }
    HostWindow window(&host, editor);
    std::unique_ptr<StripModelRunner> model = createStripModel(host, options, err);
    if (!model)
        return 1;

    SnapshotWriter snapshot(editor->getPlxComponent(), host.memory(), options.plugin.channel);
    snapshot.setStatePath(options.saveStateOnExitPath);
    snapshot.setParametersPath(options.dumpParametersOnExitPath);
    if (!options.dumpSpectrumPath.isEmpty()) {
        model->keepSpectrum();
        snapshot.setSpectrum(
            options.dumpSpectrumPath, [&model] { return model->lastSpectrumFrame().outputText(); });
    }
    const auto writeSnapshot = [&snapshot, &err] {
        QString error;
        if (!snapshot.isEmpty() && !snapshot.write(&error))
            err << "orvchstrip-host: " << error << '\n' << Qt::flush;
        return error.isEmpty();
    };

    // Without a display the editor is rendered to a picture, unless the run
    // only saves a state.
    const bool screenshotOnly = !options.screenshotPath.isEmpty() || !hasDisplay();
    if (screenshotOnly && options.screenshotPath.isEmpty() && !options.saveStatePath.isEmpty())
        return writeSnapshot() ? 0 : 1;
    if (screenshotOnly) {
        // Two seconds into the programme, so the meters show a level.
        model->runFor(2.0);
        const QString path
            = options.screenshotPath.isEmpty() ? QStringLiteral("editor.png") : options.screenshotPath;
        const int status = writeScreenshot(
            editor, QStringLiteral("editor panel"), path, options.screenshotFormat, 1.0, err);
        return writeSnapshot() ? status : 1;
    }
    // A script asks the running host for the files with SIGUSR1; without
    // them named, the signal saves nothing and the session goes on.
    UnixSignalNotifier snapshotRequest(SIGUSR1);
    QObject::connect(&snapshotRequest, &UnixSignalNotifier::activated, [&snapshot, &err, &writeSnapshot] {
        if (snapshot.isEmpty())
            err << "orvchstrip-host: SIGUSR1: nothing to save (no --save-state-on-exit or "
                   "--dump-parameters-on-exit)\n"
                << Qt::flush;
        else
            writeSnapshot();
    });
    if (!snapshot.isEmpty() && !snapshotRequest.isValid())
        err << "orvchstrip-host: cannot listen for SIGUSR1; the files are written when the editor "
               "closes\n";
    model->start();
    window.show();
    if (options.keepEditorSettings) {
        QObject::connect(&app, &QCoreApplication::aboutToQuit,
            [&editorSettings, editor] { editorSettings.save(editor->getEditorSettings()); });
    }
    const int status = app.exec();
    model->stop();
    return writeSnapshot() ? status : 1;
}
