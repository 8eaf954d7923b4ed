#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include "CommandRun.h"
#include "TestFiles.h"

namespace {

QProcessEnvironment offscreen()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

CommandRun runHost(const QStringList &arguments, const QProcessEnvironment &environment = offscreen(),
    const QString &workingDirectory = QString())
{
    return CommandRun::start(QStringLiteral(ORV_HOST_PATH), arguments, environment, workingDirectory);
}

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

private:
    QTemporaryDir m_dir;
};

void TestHostCommandLine::initTestCase()
{
    QVERIFY(m_dir.isValid());
}

void TestHostCommandLine::refusedOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    QTest::newRow("scale nan") << QStringList { "--scale", "nan" } << "--scale takes a number from 0.5 to 4";
    QTest::newRow("dial mode -5") << QStringList { "--dial-mode", "-5" }
                                  << "--dial-mode takes 0 (circular), 1 (relative circular) or 2 (linear)";
    QTest::newRow("slider mode 4") << QStringList { "--slider-mode", "4" }
                                   << "--slider-mode takes 0, 1, 2 or 3";
    QTest::newRow("attack above") << QStringList { "--set", "fx_cmp_atck=201" }
                                  << "fx_cmp_atck=201: outside the range 1 ms to 200 ms";
    QTest::newRow("gain below") << QStringList { "--set", "fx_eq_lsvgain=-19" }
                                << "outside the range -18.0 dB to +18.0 dB";
    QTest::newRow("knee word") << QStringList { "--set", "fx_cmp_kne=loud" } << "SOFT, MEDIUM or HARD";
    QTest::newRow("unknown key") << QStringList { "--set", "fx_nothing=1" } << "no such parameter";
    QTest::newRow("picture suffix") << QStringList { "--screenshot", "editor.xyz" }
                                    << "cannot write 'xyz' pictures; the suffix names one of ";
    QTest::newRow("state on exit, no folder") << QStringList { "--save-state-on-exit",
        "missing/saved.orvstate" } << "--save-state-on-exit missing/saved.orvstate: the folder '";
    QTest::newRow("values on exit, a folder") << QStringList { "--dump-parameters-on-exit",
        "." } << "--dump-parameters-on-exit takes a file, and '.' is a folder";
}

void TestHostCommandLine::refusedOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    const QString picture = m_dir.filePath(QStringLiteral("refused.png"));
    if (!arguments.contains(QLatin1String("--screenshot")))
        arguments << QStringLiteral("--screenshot") << picture;
    const CommandRun run = runHost(arguments, offscreen(), m_dir.path());
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.err.contains(message.toUtf8()), run.err.constData());
    QVERIFY(!QFileInfo::exists(picture));
    QVERIFY(!QFileInfo::exists(m_dir.filePath(QStringLiteral("editor.xyz"))));
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
    const CommandRun run = runHost(arguments << QStringLiteral("--screenshot") << picture);
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
        const CommandRun run = runHost(mode + QStringList { "--screenshot", picture });
        QVERIFY2(run.exitCode == 0, run.err.constData());
        QCOMPARE(readFile(picture).left(magic.size()), magic);
    }
}

void TestHostCommandLine::galleryHonoursScale()
{
    const QString picture = m_dir.filePath(QStringLiteral("gallery at 2.png"));
    const CommandRun run
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
    const CommandRun run = runHost({ "--screenshot", picture }, environment);
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

    const CommandRun run = runHost({ "--save-state", "saved.state" }, environment, work.path());
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(QDir(work.path()).entryList(QDir::Files), QStringList { "saved.state" });
    QCOMPARE(QFileInfo(work.filePath(QStringLiteral("saved.state"))).size(), 1664);
}

void TestHostCommandLine::exitFilesHoldTheEditedStrip()
{
    // A run that ends after its picture writes the files as a closed window does.
    QTemporaryDir work;
    QVERIFY(work.isValid());
    const CommandRun run
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
    const CommandRun listing = runHost({ "--list-parameters" });
    QCOMPARE(lines.count(QByteArray()), 1);
    QCOMPARE(lines.size() - 1, int(listing.out.split('\n').indexOf(QByteArray())) - 1);
}

QTEST_GUILESS_MAIN(TestHostCommandLine)
#include "tst_host_commandline.moc"
