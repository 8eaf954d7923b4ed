#include <QDateTime>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include "ProcessRun.h"
#include "TestFiles.h"

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/stat.h>
#endif

namespace {

QProcessEnvironment offscreen()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

ProcessRun runHost(const QStringList &arguments, const QProcessEnvironment &environment = offscreen(),
    const QString &workingDirectory = QString())
{
    return runProcess(QStringLiteral(ORV_HOST_PATH), arguments, environment, workingDirectory);
}

#ifdef Q_OS_LINUX
// Whether the process has a handler of its own for the signal.
bool catchesSignal(qint64 pid, int signal)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("SigCgt:"))
            return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (signal - 1)) & 1;
    }
    return false;
}
#endif

} // namespace

class TestHostCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refusedOptions_data();
    void refusedOptions();
    void acceptedEdges_data();
    void acceptedEdges();
    void screenshotFormat_data();
    void screenshotFormat();
    void galleryHonoursScale();
    void unreachableDisplay();
    void saveStateWithoutDisplayRendersNothing();
    void exitFilesHoldTheEditedStrip();
    void sigusr1KeepsTheSession_data();
    void sigusr1KeepsTheSession();

private:
    QTemporaryDir m_dir;
};

void TestHostCommandLine::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QVERIFY(writeFile(m_dir.filePath(QStringLiteral("notes.txt")), "not a plug-in\n"));
    QFile sparse(m_dir.filePath(QStringLiteral("huge.orvstate")));
    QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(3) << 30));
#ifdef Q_OS_UNIX
    QVERIFY(::mkfifo(QFile::encodeName(m_dir.filePath(QStringLiteral("fifo"))).constData(), 0644) == 0);
#endif
}

void TestHostCommandLine::refusedOptions_data()
{
    QTest::addColumn<QStringList>("arguments"); // run in the test folder
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("scale nan") << QStringList { "--scale", "nan" } << "--scale takes a number from 0.5 to 4"
                               << 2;
    QTest::newRow("dial mode -5") << QStringList { "--dial-mode", "-5" }
                                  << "--dial-mode takes 0 (circular), 1 (relative circular) or 2 (linear)"
                                  << 2;
    QTest::newRow("slider mode 4") << QStringList { "--slider-mode", "4" }
                                   << "--slider-mode takes 0, 1, 2 or 3" << 2;
    QTest::newRow("attack above") << QStringList { "--set", "fx_cmp_atck=201" }
                                  << "fx_cmp_atck=201: outside the range 1 ms to 200 ms" << 2;
    QTest::newRow("gain below") << QStringList { "--set", "fx_eq_lsvgain=-19" }
                                << "outside the range -18.0 dB to +18.0 dB" << 2;
    QTest::newRow("knee word") << QStringList { "--set", "fx_cmp_kne=loud" } << "SOFT, MEDIUM or HARD" << 2;
    QTest::newRow("unknown key") << QStringList { "--set", "fx_nothing=1" } << "no such parameter" << 2;
    QTest::newRow("picture suffix") << QStringList { "--screenshot", "editor.xyz" }
                                    << "cannot write 'xyz' pictures; the suffix names one of " << 2;
    QTest::newRow("state on exit, no folder")
        << QStringList { "--save-state-on-exit", "missing/saved.orvstate" }
        << "--save-state-on-exit missing/saved.orvstate: the folder '" << 2;
    QTest::newRow("values on exit, a folder")
        << QStringList { "--dump-parameters-on-exit", "." }
        << "--dump-parameters-on-exit takes a file, and '.' is a folder" << 2;
    QTest::newRow("state onto a device")
        << QStringList { "--save-state", "/dev/null" }
        << "--save-state /dev/null: not a regular file (a character device)" << 2;
#ifdef Q_OS_UNIX
    QTest::newRow("state on exit onto a FIFO")
        << QStringList { "--save-state-on-exit", "fifo" }
        << "--save-state-on-exit fifo: not a regular file (a FIFO)" << 2;
    QTest::newRow("picture onto a FIFO")
        << QStringList { "--screenshot", "fifo" } << "--screenshot fifo: not a regular file (a FIFO)" << 2;
#endif
    QTest::newRow("audio onto a device")
        << QStringList { "--output", "/dev/null" } << "--output /dev/null: not a regular file" << 2;
    QTest::newRow("state from /dev/zero")
        << QStringList { "--load-state", "/dev/zero" }
        << "--load-state: /dev/zero: more than 65536 bytes, larger than a saved state can be" << 1;
    QTest::newRow("state of 3 GB") << QStringList { "--load-state", "huge.orvstate" }
                                   << "--load-state: huge.orvstate: 3221225472 bytes, larger than a saved "
                                      "state can be (at most 65536 bytes)"
                                   << 1;
    QTest::newRow("plug-in that is text")
        << QStringList { "--plugin", "notes.txt" }
        << "cannot load the plug-in notes.txt: the file is not a shared library" << 1;
}

void TestHostCommandLine::refusedOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QFETCH(int, exitCode);

    const QString picture = m_dir.filePath(QStringLiteral("refused.png"));
    if (!arguments.contains(QLatin1String("--screenshot")))
        arguments << QStringLiteral("--screenshot") << picture;
    const ProcessRun run = runHost(arguments, offscreen(), m_dir.path());
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(run.err.contains(message.toUtf8()), run.err.constData());
    QVERIFY(!QFileInfo::exists(picture));
    QVERIFY(!QFileInfo::exists(m_dir.filePath(QStringLiteral("editor.xyz"))));
#ifdef Q_OS_UNIX
    QVERIFY(!QFileInfo(m_dir.filePath(QStringLiteral("fifo"))).isFile());
#endif
}

void TestHostCommandLine::acceptedEdges_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("attack maximum") << QStringList { "--set", "fx_cmp_atck=200" };
    QTest::newRow("frequency minimum") << QStringList { "--set", "fx_eq_midfrq=16 Hz" };
    QTest::newRow("limiting ratio") << QStringList { "--set", "fx_cmp_rto=inf" };
    QTest::newRow("knee medium") << QStringList { "--set", "fx_cmp_kne=medium" };
    QTest::newRow("edit modes at the top") << QStringList { "--dial-mode", "2", "--slider-mode", "3" };
    QTest::newRow("largest scale") << QStringList { "--scale", "4" };
}

void TestHostCommandLine::acceptedEdges()
{
    QFETCH(QStringList, arguments);
    const QString picture = m_dir.filePath(QStringLiteral("accepted %1.png").arg(QTest::currentDataTag()));
    const ProcessRun run = runHost(arguments << QStringLiteral("--screenshot") << picture);
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(readFile(picture).left(4), QByteArray("\x89PNG"));
}

void TestHostCommandLine::screenshotFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("magic");

    QTest::newRow("png") << "panel.png" << QByteArray("\x89PNG");
    QTest::newRow("jpeg") << "panel.JPG" << QByteArray("\xff\xd8\xff");
    QTest::newRow("no suffix") << "panel" << QByteArray("\x89PNG");
}

void TestHostCommandLine::screenshotFormat()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, magic);
    const QString picture = m_dir.filePath(name);
    for (const QStringList &mode : { QStringList(), QStringList { "--gallery" } }) {
        QFile::remove(picture);
        const ProcessRun run = runHost(mode + QStringList { "--screenshot", picture });
        QVERIFY2(run.exitCode == 0, run.err.constData());
        QCOMPARE(readFile(picture).left(magic.size()), magic);
    }
}

void TestHostCommandLine::galleryHonoursScale()
{
    const QString picture = m_dir.filePath(QStringLiteral("gallery at 2.png"));
    const ProcessRun run
        = runHost({ "--gallery", "--scale", "2", "--dial-mode", "2", "--screenshot", picture });
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(QImage(picture).size(), QSize(2000, 1480));
}

void TestHostCommandLine::unreachableDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.insert(QStringLiteral("DISPLAY"), QStringLiteral("unreachable.invalid:99"));

    const QString picture = m_dir.filePath(QStringLiteral("no display.png"));
    const ProcessRun run = runHost({ "--screenshot", picture }, environment);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(readFile(picture).left(4), QByteArray("\x89PNG"));
#else
    QSKIP("display servers are an X11 and Wayland matter");
#endif
}

void TestHostCommandLine::saveStateWithoutDisplayRendersNothing()
{
    QTemporaryDir work;
    QVERIFY(work.isValid());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : { "QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY" })
        environment.remove(QString::fromLatin1(name));

    const ProcessRun run = runHost({ "--save-state", "saved.state" }, environment, work.path());
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(QDir(work.path()).entryList(QDir::Files), QStringList { "saved.state" });
    QCOMPARE(QFileInfo(work.filePath(QStringLiteral("saved.state"))).size(), 1664);
}

void TestHostCommandLine::exitFilesHoldTheEditedStrip()
{
    // A run that ends after its picture writes the files as a closed window does.
    QTemporaryDir work;
    QVERIFY(work.isValid());
    const ProcessRun run
        = runHost({ "--set", "fx_eq_midfrq=1.25k", "--set", "fx_cmp_kne=hard", "--screenshot", "panel.png",
                      "--save-state-on-exit", "exit.orvstate", "--dump-parameters-on-exit", "exit.txt" },
            offscreen(), work.path());
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(QFileInfo(work.filePath(QStringLiteral("exit.orvstate"))).size(), 1664);

    QFile values(work.filePath(QStringLiteral("exit.txt")));
    QVERIFY(values.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = values.readAll().split('\n');
    QVERIFY(lines.contains("fx_eq_midfrq=1.25k"));
    QVERIFY(lines.contains("fx_cmp_kne=HARD"));
    QVERIFY(lines.contains("fx_mrp_systmname="));
    // One line per parameter of the listing, and nothing else.
    const ProcessRun listing = runHost({ "--list-parameters" });
    QCOMPARE(lines.count(QByteArray()), 1);
    QCOMPARE(lines.size() - 1, int(listing.out.split('\n').indexOf(QByteArray())) - 1);
}

void TestHostCommandLine::sigusr1KeepsTheSession_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("written"); // the file SIGUSR1 writes, if any
    QTest::addColumn<QString>("message"); // on the error stream

    QTest::newRow("without exit files") << QStringList() << QString()
                                        << "SIGUSR1: nothing to save (no --save-state-on-exit or "
                                           "--dump-parameters-on-exit)";
    QTest::newRow("with a state on exit")
        << QStringList { "--save-state-on-exit", "exit.orvstate" } << "exit.orvstate" << QString();
}

void TestHostCommandLine::sigusr1KeepsTheSession()
{
#ifdef Q_OS_LINUX
    QFETCH(QStringList, arguments);
    QFETCH(QString, written);
    QFETCH(QString, message);

    // A running session needs a platform with windows; VNC's needs no
    // display server, and port 0 lets it take any free port.
    QTemporaryDir work;
    QVERIFY(work.isValid());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("vnc:port=0"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), work.path());
    // A temporary file that a save killed long ago left behind.
    const QString leftover = work.filePath(QStringLiteral("exit.orvstate.QkzWvb"));
    QVERIFY(writeFile(leftover, "part of a state"));
    QFile stale(leftover);
    QVERIFY(stale.open(QIODevice::ReadWrite)
        && stale.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    stale.close();

    QProcess host;
    host.setProcessEnvironment(environment);
    host.setWorkingDirectory(work.path());
    host.start(QStringLiteral(ORV_HOST_PATH), arguments << QStringLiteral("--no-settings"));
    QVERIFY(host.waitForStarted());
    // Signalled once it catches SIGUSR1: before its first line runs, the
    // signal's default action would end any program.
    QVERIFY(QTest::qWaitFor([&] { return catchesSignal(host.processId(), SIGUSR1); }, 30000));
    ::kill(pid_t(host.processId()), SIGUSR1);
    QByteArray errors;
    const auto answered = [&] {
        errors += host.readAllStandardError();
        return written.isEmpty() ? errors.contains(message.toUtf8())
                                 : QFileInfo(work.filePath(written)).size() == 1664;
    };
    QVERIFY2(QTest::qWaitFor(answered, 30000), errors.constData());
    QTest::qWait(300);
    QCOMPARE(host.state(), QProcess::Running);
    host.terminate();
    QVERIFY(host.waitForFinished());
    // The save removed what an earlier one left; no save, no removal.
    QCOMPARE(QFileInfo::exists(leftover), written.isEmpty());
#else
    QSKIP("reads which signals a process catches from Linux's /proc");
#endif
}

QTEST_GUILESS_MAIN(TestHostCommandLine)
#include "tst_host_commandline.moc"
