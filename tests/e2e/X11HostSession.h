#pragma once

#include <QImage>
#include <QMap>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <functional>

// The reference host in a real window of a virtual X server, driven only
// through that server: pointer and keys go in with xdotool, and what comes
// out is read outside the host process, from the values it saves on request
// and from the screen.
//
// The server belongs to the test program: startServer() runs before the
// program's QGuiApplication, which then connects to it, so that grab() reads
// the host's pixels. Every action returns false with errorString() set when
// it cannot be done; every wait has a deadline and says what it awaited.
class X11HostSession
{
public:
    struct Options
    {
        double editorScale = 1.0;   // the host's --scale
        double qtScaleFactor = 1.0; // QT_SCALE_FACTOR in the host's environment
        QStringList arguments;      // further host options
        QMap<QString, QString> environment;
    };

    // Starts Xvfb on a free display and points DISPLAY at it; false with the
    // reason when the server or xdotool is missing. Stops with the program,
    // however it ends.
    static bool startServer(QString *why);

    X11HostSession();
    ~X11HostSession();

    // Starts the host and waits for its window and the panel's first paint.
    bool start(const Options &options);
    // Closes the window as a user does (Ctrl+Q) and waits for the host to end.
    bool quit();

    // Design coordinates are those of the editor's form.
    QPoint toScreen(const QPointF &design) const;
    QRect toScreen(const QRectF &design) const;

    bool click(const QPoint &position);
    // Presses at the first point, moves through the others and releases at the last.
    bool drag(const QList<QPoint> &path);
    // Positive notches turn the wheel up (away from the user).
    bool wheel(const QPoint &position, int notches);
    // Key names as xdotool takes them, separated by spaces: "Tab Tab", "Return", "ctrl+a".
    bool key(const QString &keys);

    // Asks the running host for its parameter values and returns every parameter's value text by key; empty
    // (with errorString()) when the host did not answer.
    QMap<QString, QString> parameters();
    // Saves until `accept` takes the parameter's value text or the deadline
    // passes; the failure names the text last seen.
    bool waitForParameter(const QString &key, const std::function<bool(const QString &)> &accept,
        const QString &what, int timeoutMs = 5000);

    // Screen pixels, in the screen's own resolution.
    QImage grab(const QRect &screenRect) const;
    // Polls `condition` until it holds; false after the deadline, naming `what`.
    bool waitUntil(const std::function<bool()> &condition, const QString &what, int timeoutMs = 5000);

    QString errorString() const { return m_error; }

private:
    bool xdotool(const QStringList &arguments, QByteArray *output = nullptr);
    bool fail(const QString &message);
    bool hostEnded();
    bool findWindow();
    bool findPanel();
    QString hostLog() const;

    QTemporaryDir m_dir;
    QProcess m_host;
    QRect m_panel;
    double m_scale = 1.0;
    QString m_error;
};
