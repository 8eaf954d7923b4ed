#include <QApplication>
#include <QGuiApplication>
#include <QTextStream>

#include "HostCommandLine.h"
#include "HostWindow.h"
#include "Interfaces/IQXEffectEditor.h"
#include "MeterSignalGenerator.h"
#include "ParameterListing.h"
#include "PluginHost.h"

namespace {

bool hasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int writeScreenshot(IQXEffectEditor *editor, const QString &path, QTextStream &err)
{
    const QPixmap picture = editor->grab();
    if (!picture.save(path, "PNG")) {
        err << "orvchstrip-host: cannot write the picture to " << path << '\n';
        return 1;
    }
    QTextStream(stdout) << "Wrote the editor panel to " << path << " (" << picture.width() << " x "
                        << picture.height() << " pixels)\n";
    return 0;
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

} // namespace

int main(int argc, char *argv[])
{
    const QStringList pluginArguments = takePluginOption(argc, argv);
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

    IQXEffectEditor *editor = host.createEditor(nullptr, options.plugin, &error);
    if (!editor) {
        err << "orvchstrip-host: " << error << '\n';
        return 1;
    }
    HostWindow window(&host, editor);
    MeterSignalGenerator meters(&host.memory());

    const bool screenshotOnly = !options.screenshotPath.isEmpty() || !hasDisplay();
    if (screenshotOnly) {
        // A moment into the test signal, so the meters show a level.
        host.memory().publishMeters(meters.levelsAt(2.0));
        const QString path
            = options.screenshotPath.isEmpty() ? QStringLiteral("editor.png") : options.screenshotPath;
        return writeScreenshot(editor, path, err);
    }
    meters.start();
    window.show();
    return app.exec();
}
