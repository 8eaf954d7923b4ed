#include <QApplication>
#include <QGuiApplication>
#include <QTextStream>
#include <memory>

#include "HostCommandLine.h"
#include "HostWindow.h"
#include "Interfaces/IORVControlsGallery.h"
#include "Interfaces/IQXEffectEditor.h"
#include "MeterSignalGenerator.h"
#include "ParameterListing.h"
#include "PluginHost.h"
#include "StateFile.h"

namespace {

bool hasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int writeScreenshot(QWidget *widget, const QString &what, const QString &path, QTextStream &err)
{
    const QPixmap picture = widget->grab();
    if (!picture.save(path, "PNG")) {
        err << "orvchstrip-host: cannot write the picture to " << path << '\n';
        return 1;
    }
    QTextStream(stdout) << "Wrote the " << what << " to " << path << " (" << picture.width() << " x "
                        << picture.height() << " pixels)\n";
    return 0;
}

// The controls gallery in place of the editor. The plug-in object offers it
// through its own interface; the meters run as they do for the editor.
int runGallery(PluginHost &host, const HostCommandLine &options, QTextStream &err)
{
    auto *galleryFactory = qobject_cast<IORVControlsGallery *>(host.pluginInstance());
    if (!galleryFactory) {
        err << "orvchstrip-host: the plug-in offers no controls gallery (" IORVControlsGallery_iid ")\n";
        return 1;
    }
    std::unique_ptr<QWidget> gallery(
        galleryFactory->createControlsGallery(nullptr, &host.model(), &host.memory()));
    if (!gallery) {
        err << "orvchstrip-host: the plug-in made no controls gallery\n";
        return 1;
    }
    MeterSignalGenerator meters(&host.memory());
    if (!options.screenshotPath.isEmpty() || !hasDisplay()) {
        host.memory().publishMeters(meters.levelsAt(2.0));
        const QString path
            = options.screenshotPath.isEmpty() ? QStringLiteral("gallery.png") : options.screenshotPath;
        return writeScreenshot(gallery.get(), QStringLiteral("controls gallery"), path, err);
    }
    meters.start();
    gallery->show();
    return QApplication::exec();
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

// Without a display the host still renders pictures, offscreen.
void chooseOffscreenWithoutDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList pluginArguments = takePluginOption(argc, argv);
    chooseOffscreenWithoutDisplay();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvchstrip-host"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    HostCommandLine options;
    switch (options.parse(app.arguments() + pluginArguments)) {
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
        if (!host.memory().setValueText(key.toLatin1().constData(), text, options.plugin.channel)) {
            err << "orvchstrip-host: --set " << key << '=' << text << ": "
                << (host.model().parameterId(key.toLatin1().constData()) ? "the value text does not parse"
                                                                         : "no such parameter")
                << " (see --list-parameters)\n";
            return 2;
        }
    }

    if (options.gallery)
        return runGallery(host, options, err);

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
    MeterSignalGenerator meters(&host.memory());

    const bool screenshotOnly = !options.screenshotPath.isEmpty() || !hasDisplay();
    if (screenshotOnly) {
        // A moment into the test signal, so the meters show a level.
        host.memory().publishMeters(meters.levelsAt(2.0));
        const QString path
            = options.screenshotPath.isEmpty() ? QStringLiteral("editor.png") : options.screenshotPath;
        return writeScreenshot(editor, QStringLiteral("editor panel"), path, err);
    }
    meters.start();
    window.show();
    return app.exec();
}
