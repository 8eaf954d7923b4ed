#include "X11HostSession.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>
#include <cmath>
#include <csignal>
#include <sys/prctl.h>

#include "PixelChecks.h"

namespace {

const QString WindowTitle = QStringLiteral("Orvane Channel Strip - reference host");
// Room for the window at scale 2 under Qt's scale 2 as well.
const char ScreenSize[] = "2560x1600x24";
constexpr int PollIntervalMs = 20;
// The panel's design size, and its full-width separator line: the landmark
// that tells where the panel sits in the window and that it has been painted.
constexpr QSize PanelDesignSize(1015, 572);
constexpr int SeparatorDesignY = 38;
const QColor SeparatorColor(90, 94, 102);
// The compressor's title, drawn in the palette's active text colour once the
// window is active (and a lighter grey until then).
constexpr QRect TitleDesignRect(188, 54, 62, 20);
const QColor ActiveTitleColor(0xf2, 0xf3, 0xf5);
// Generous for a sanitizer build on a busy machine; a healthy run is far below.
constexpr int HostStartTimeoutMs = 30000;
constexpr int XdotoolTimeoutMs = 10000;

} // namespace

bool X11HostSession::startServer(QString *why)
{
    if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty()
        || QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty()) {
        *why = QStringLiteral("Xvfb or xdotool is not installed (scripts/setup.sh installs both)");
        return false;
    }
    // Xvfb names its display on its output once it listens. It ends with this
    // program, however that ends.
    static auto *server = new QProcess;
    server->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    server->setStandardErrorFile(QProcess::nullDevice());
    server->start("Xvfb", { "-displayfd", "1", "-screen", "0", ScreenSize, "-nolisten", "tcp", "-noreset" });
    QByteArray display;
    const QDeadlineTimer deadline(15000);
    while (!display.endsWith('\n') && server->waitForReadyRead(int(deadline.remainingTime())))
        display += server->readAllStandardOutput();
    if (display.trimmed().isEmpty()) {
        *why = QStringLiteral("Xvfb did not name its display within 15 s");
        return false;
    }
    qputenv("DISPLAY", ':' + display.trimmed());
    return true;
}

X11HostSession::X11HostSession()
{
    // The host dies with the test program, even when that crashes.
    m_host.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

X11HostSession::~X11HostSession()
{
    m_host.kill();
    m_host.waitForFinished(5000);
}

bool X11HostSession::start(const Options &options)
{
    if (!m_dir.isValid())
        return fail(QStringLiteral("no temporary folder"));
    m_scale = options.editorScale * options.qtScaleFactor;

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The host picks its platform itself; the test program's offscreen choice
    // and scaling are not the host's.
    for (const char *name : { "QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
             "QT_ENABLE_HIGHDPI_SCALING", "WAYLAND_DISPLAY" })
        environment.remove(QString::fromLatin1(name));
    if (options.qtScaleFactor != 1.0)
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(options.qtScaleFactor));
    // No settings, presets or morph sets of the machine's user.
    for (const char *name : { "XDG_CONFIG_HOME", "XDG_DATA_HOME" })
        environment.insert(QString::fromLatin1(name), m_dir.filePath(QString::fromLatin1(name)));
    environment.insert(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"), m_dir.filePath(QStringLiteral("no morph")));
    for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
        environment.insert(it.key(), it.value());
    m_host.setProcessEnvironment(environment);
    m_host.setWorkingDirectory(m_dir.path());
    // A file, not a pipe: nobody reads a pipe while the test waits, and a full one would stall the host.
    m_host.setStandardOutputFile(m_dir.filePath(QStringLiteral("host.log")));
    m_host.setStandardErrorFile(m_dir.filePath(QStringLiteral("host.log")), QIODevice::Append);
    m_host.setProgram(QStringLiteral(ORV_HOST_PATH));
    m_host.setArguments(QStringList { "--no-settings", "--scale", QString::number(options.editorScale),
                            "--dump-parameters-on-exit", m_dir.filePath("parameters.txt") }
        + options.arguments);
    m_host.start();
    if (!m_host.waitForStarted(10000))
        return fail(QStringLiteral("the host did not start: %1").arg(m_host.errorString()));
    return findWindow() && findPanel();
}

bool X11HostSession::quit()
{
    if (!key(QStringLiteral("ctrl+q")))
        return false;
    if (!m_host.waitForFinished(HostStartTimeoutMs))
        return fail(QStringLiteral("the host did not end after Ctrl+Q"));
    if (m_host.exitStatus() != QProcess::NormalExit || m_host.exitCode() != 0)
        return fail(QStringLiteral("the host ended with status %1").arg(m_host.exitCode()));
    return true;
}

bool X11HostSession::hostEnded()
{
    // Without an event loop QProcess learns of the end only when asked to wait.
    return m_host.state() == QProcess::NotRunning || m_host.waitForFinished(0);
}

bool X11HostSession::findWindow()
{
    // The window counts as there once it is mapped under its title.
    QByteArray found;
    if (!waitUntil(
            [&] {
                return hostEnded()
                    || (xdotool(
                            { QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                QStringLiteral("--name"), QLatin1Char('^') + WindowTitle + QLatin1Char('$') },
                            &found)
                        && !found.trimmed().isEmpty());
            },
            QStringLiteral("the host's window to be mapped"), HostStartTimeoutMs))
        return false;
    if (hostEnded())
        return fail(QStringLiteral("the host ended before showing its window"));
    // Without a window manager nothing gives the window the keyboard focus
    // until a click does, and a focus change between a button's press and its
    // release cancels the click. The host's window system events come in
    // order, so focus given now is taken before any later input.
    const QString window = QString::fromLatin1(found.trimmed().split('\n').constFirst());
    return xdotool({ QStringLiteral("windowfocus"), QStringLiteral("--sync"), window });
}

bool X11HostSession::findPanel()
{
    const QSize panelSize = PanelDesignSize * m_scale;
    const auto findSeparator = [&] {
        const QImage screen = grab(QGuiApplication::primaryScreen()->geometry());
        for (int y = 0; y < screen.height(); ++y) {
            int run = 0;
            for (int x = 0; x < screen.width(); ++x) {
                run = screen.pixel(x, y) == SeparatorColor.rgb() ? run + 1 : 0;
                if (run == panelSize.width()) {
                    m_panel = QRect(
                        QPoint(x + 1 - run, y - int(std::lround(SeparatorDesignY * m_scale))), panelSize);
                    return true;
                }
            }
        }
        return false;
    };
    if (!waitUntil(findSeparator,
            QStringLiteral("the panel's first paint: a line of %1 pixels in %2")
                .arg(panelSize.width())
                .arg(SeparatorColor.name()),
            HostStartTimeoutMs))
        return false;
    // The focus given to the window reaches the widgets after the first
    // paint; a picture taken before they repaint as active would not match
    // one taken later.
    const QRect title = toScreen(QRectF(TitleDesignRect));
    return waitUntil([&] { return pixelsNear(grab(title), ActiveTitleColor) > 0; },
        QStringLiteral("the window to show itself active (its title in %1)").arg(ActiveTitleColor.name()),
        HostStartTimeoutMs);
}

QPoint X11HostSession::toScreen(const QPointF &design) const
{
    return m_panel.topLeft()
        + QPoint(int(std::floor(design.x() * m_scale)), int(std::floor(design.y() * m_scale)));
}

QRect X11HostSession::toScreen(const QRectF &design) const
{
    return QRect(toScreen(design.topLeft()), (design.size() * m_scale).toSize());
}

namespace {

QStringList moveTo(const QPoint &at)
{
    return { "mousemove", QString::number(at.x()), QString::number(at.y()) };
}

} // namespace

bool X11HostSession::click(const QPoint &position)
{
    return xdotool(moveTo(position) << "click"
                                    << "1");
}

bool X11HostSession::drag(const QList<QPoint> &path)
{
    QStringList arguments = moveTo(path.constFirst()) << "mousedown"
                                                      << "1";
    for (qsizetype i = 1; i < path.size(); ++i)
        arguments << moveTo(path.at(i));
    return xdotool(arguments << "mouseup"
                             << "1");
}

bool X11HostSession::wheel(const QPoint &position, int notches)
{
    // X reports the wheel as buttons 4 (up) and 5 (down).
    return xdotool(moveTo(position) << "click"
                                    << "--repeat" << QString::number(std::abs(notches)) << "--delay"
                                    << "20" << (notches > 0 ? "4" : "5"));
}

bool X11HostSession::key(const QString &keys)
{
    return xdotool(QStringList { "key" } + keys.split(' ', Qt::SkipEmptyParts));
}

QMap<QString, QString> X11HostSession::parameters()
{
    QMap<QString, QString> values;
    if (hostEnded()) {
        fail(QStringLiteral("the host is not running"));
        return values;
    }
    // The file is renamed into place whole; its being there again is the answer.
    QFile file(m_dir.filePath(QStringLiteral("parameters.txt")));
    file.remove();
    ::kill(pid_t(m_host.processId()), SIGUSR1);
    if (!waitUntil(
            [&] { return file.exists(); }, QStringLiteral("the host to save its parameters after SIGUSR1"))
        || !file.open(QIODevice::ReadOnly))
        return values;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const int equals = int(line.indexOf('='));
        if (equals > 0)
            values.insert(QString::fromUtf8(line.left(equals)), QString::fromUtf8(line.mid(equals + 1)));
    }
    if (values.isEmpty())
        fail(QStringLiteral("the saved parameters file holds no values"));
    return values;
}

bool X11HostSession::waitForParameter(const QString &key, const std::function<bool(const QString &)> &accept,
    const QString &what, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        const QMap<QString, QString> values = parameters();
        if (values.isEmpty())
            return false;
        const QString last = values.value(key, QStringLiteral("(missing)"));
        if (values.contains(key) && accept(last))
            return true;
        if (deadline.hasExpired())
            return fail(
                QStringLiteral("waited %1 ms for %2; %3 read '%4'").arg(timeoutMs).arg(what, key, last));
        QThread::msleep(PollIntervalMs);
    }
}

QImage X11HostSession::grab(const QRect &screenRect) const
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, screenRect.x(), screenRect.y(), screenRect.width(), screenRect.height())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

bool X11HostSession::waitUntil(const std::function<bool()> &condition, const QString &what, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return fail(QStringLiteral("waited %1 ms for %2").arg(timeoutMs).arg(what));
        QThread::msleep(PollIntervalMs);
    }
    return true;
}

bool X11HostSession::xdotool(const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    if (!process.waitForFinished(XdotoolTimeoutMs)) {
        process.kill();
        process.waitForFinished();
        return fail(QStringLiteral("xdotool %1 did not finish").arg(arguments.join(QLatin1Char(' '))));
    }
    if (output)
        *output = process.readAllStandardOutput();
    // `search` ends with 1 when nothing matches yet; the caller decides.
    if (process.exitStatus() != QProcess::NormalExit
        || (process.exitCode() != 0 && arguments.constFirst() != QLatin1String("search")))
        return fail(QStringLiteral("xdotool %1 failed: %2")
                        .arg(arguments.join(QLatin1Char(' ')),
                            QString::fromLocal8Bit(process.readAllStandardError())));
    return true;
}

bool X11HostSession::fail(const QString &message)
{
    m_error = message;
    // What the screen showed, for the one who reads the failure.
    static int failures = 0;
    const QRect shown = m_panel.isValid() ? m_panel : QGuiApplication::primaryScreen()->geometry();
    const QString picture
        = QDir::current().absoluteFilePath(QStringLiteral("realwindow-failure-%1.png").arg(++failures));
    if (shown.isValid() && grab(shown).save(picture))
        m_error += QStringLiteral("\nthe window at the time: %1").arg(picture);
    const QString log = hostLog();
    if (!log.isEmpty())
        m_error += QStringLiteral("\nhost output:\n") + log;
    return false;
}

QString X11HostSession::hostLog() const
{
    QFile log(m_dir.filePath(QStringLiteral("host.log")));
    return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll().right(2000)) : QString();
}
