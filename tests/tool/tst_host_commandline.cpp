#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include "GoldenFile.h"
#include "ProcessRun.h"
#include "TestFiles.h"

#ifdef Q_OS_UNIX
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

} // namespace

class TestHostCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void commandLine_data();
    void commandLine();
    void unreachableDisplay();
    void saveStateWithoutDisplayRendersNothing();
    void exitFilesHoldTheEditedStrip();

private:
    QTemporaryDir m_dir;
};

void TestHostCommandLine::initTestCase()
{
    QVERIFY(m_dir.isValid());
    const QByteArray state = goldenFile(QStringLiteral("state/saved.state"));
    const QMap<QString, QByteArray> files { { "notes.txt", "not a plug-in\n" }, { "empty.state", "" },
        { "text.state", QByteArray(300, 'x') }, { "cut.state", state.left(941) },
        { "no morph.state", QByteArray(state).replace(948, 4, "ORX ") } };
    for (auto it = files.begin(); it != files.end(); ++it)
        QVERIFY(writeFile(m_dir.filePath(it.key()), it.value()));
#ifdef Q_OS_UNIX
    QVERIFY(::mkfifo(QFile::encodeName(m_dir.filePath(QStringLiteral("fifo"))).constData(), 0644) == 0);
#endif
}

void TestHostCommandLine::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments"); // run in the test folder; a picture is asked for unless given
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");  // on the error stream
    QTest::addColumn<QByteArray>("magic"); // how the picture begins; empty: no picture
    QTest::addColumn<QSize>("size");       // of the picture, when valid
    const auto row = [](const char *tag, const char *arguments, int exitCode, const char *message,
                         const QByteArray &magic = QByteArray(), QSize size = QSize()) {
        // clang-format off
        QTest::newRow(tag) << QString::fromUtf8(arguments).split(QLatin1Char('|')) << exitCode << QString::fromUtf8(message) << magic << size;
        // clang-format on
    };
    const QByteArray png("\x89PNG"), jpeg("\xff\xd8\xff");
    // clang-format off
    row("scale nan", "--scale|nan", 2, "--scale takes a number from 0.5 to 4");
    row("dial mode -5", "--dial-mode|-5", 2, "--dial-mode takes 0 (circular), 1 (relative circular) or 2 (linear)");
    row("slider mode 4", "--slider-mode|4", 2, "--slider-mode takes 0, 1, 2 or 3");
    row("attack above", "--set|fx_cmp_atck=201", 2, "fx_cmp_atck=201: outside the range 1 ms to 200 ms");
    row("knee word", "--set|fx_cmp_kne=loud", 2, "SOFT, MEDIUM or HARD");
    row("unknown key", "--set|fx_nothing=1", 2, "no such parameter");
    row("picture suffix", "--screenshot|editor.xyz", 2, "cannot write 'xyz' pictures; the suffix names one of ");
    row("state on exit, no folder", "--save-state-on-exit|missing/saved.orvstate", 2, "--save-state-on-exit missing/saved.orvstate: the folder '");
    row("values on exit, a folder", "--dump-parameters-on-exit|.", 2, "--dump-parameters-on-exit takes a file, and '.' is a folder");
    row("state onto a device", "--save-state|/dev/null", 2, "--save-state /dev/null: not a regular file (a character device)");
    row("state on exit onto a FIFO", "--save-state-on-exit|fifo", 2, "--save-state-on-exit fifo: not a regular file (a FIFO)");
    row("empty state", "--load-state|empty.state", 1, "empty.state: the file is empty");
    row("not a state", "--load-state|text.state", 1, "no channel-strip chunk at offset 92");
    row("state cut after the chunk header", "--load-state|cut.state", 1, "truncated: it ends 723 bytes before the end that the channel-strip chunk at offset 928 states (1664 bytes)");
    // The "ORD " id of the chunk that is read: a warning, and the parameters still load.
    row("state without morph data", "--load-state|no morph.state", 0, "holds no morph data", png);
    row("plug-in that is text", "--plugin|notes.txt", 1, "cannot load the plug-in notes.txt: the file is not a shared library");
    row("edit modes at the top", "--dial-mode|2|--slider-mode|3", 0, "", png);
    row("largest scale", "--scale|4", 0, "", png);
    row("jpeg", "--screenshot|panel.JPG", 0, "", jpeg);
    row("no suffix", "--screenshot|panel", 0, "", png);
    row("gallery at scale 2", "--gallery|--scale|2|--dial-mode|2|--screenshot|gallery.jpg", 0, "", jpeg, QSize(2000, 1480));
    // clang-format on
}

void TestHostCommandLine::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QFETCH(QByteArray, magic);
    QFETCH(QSize, size);

    if (!arguments.contains(QLatin1String("--screenshot")))
        arguments << QStringLiteral("--screenshot") << QString::fromLatin1(QTest::currentDataTag()) + ".png";
    const QString picture
        = m_dir.filePath(arguments.at(arguments.indexOf(QLatin1String("--screenshot")) + 1));
    const ProcessRun run = runHost(arguments, offscreen(), m_dir.path());
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.err.contains(message.toUtf8()), run.err.constData());
    QCOMPARE(readFile(picture).left(magic.size()), magic);
    QCOMPARE(QFileInfo::exists(picture), !magic.isEmpty());
    if (size.isValid())
        QCOMPARE(QImage(picture).size(), size);
    QVERIFY(!QFileInfo(m_dir.filePath(QStringLiteral("fifo"))).isFile());
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
    QVERIFY(readFile(work.filePath(QStringLiteral("saved.state"))).startsWith("3690"));
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
    QVERIFY(readFile(work.filePath(QStringLiteral("exit.orvstate"))).startsWith("3690"));

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

QTEST_GUILESS_MAIN(TestHostCommandLine)
#include "tst_host_commandline.moc"
