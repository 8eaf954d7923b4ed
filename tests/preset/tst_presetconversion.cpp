#include <QTemporaryDir>
#include <QTest>

#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "PresetTestFiles.h"

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

using namespace PresetTestFiles;
using Conversion = ORVChStripPresetConversion;

namespace {

const PresetConversionItem *findItem(const PresetConversionReport &report, const QString &fileName)
{
    for (const PresetConversionItem &item : report.items) {
        if (QFileInfo(item.source).fileName() == fileName)
            return &item;
    }
    return nullptr;
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
}

} // namespace

class TestPresetConversion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void folders();
    void convertTree_data();
    void convertTree();
    void dryRunWritesNothing();
    void existingDestinationReplacedWhole();
    void failedWriteKeepsOldFile();
    void overlappingFoldersRefused_data();
    void overlappingFoldersRefused();
    void createDirectory();
    void askAgainSetting();

private:
    QString m_root;
    QTemporaryDir m_home;
};

void TestPresetConversion::initTestCase()
{
    QVERIFY(m_home.isValid());
    // Every standard location the conversion and its setting use points here.
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral(".local/share"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral(".config"))));
}

void TestPresetConversion::init()
{
    m_root = m_home.filePath(QStringLiteral("run-%1").arg(QString::fromLatin1(QTest::currentTestFunction())));
    if (QTest::currentDataTag())
        m_root
            += QLatin1Char('-') + QString::fromLatin1(QTest::currentDataTag()).replace(QLatin1Char(' '), '_');
    QDir(m_root).removeRecursively();
    QVERIFY(QDir().mkpath(m_root));
}

void TestPresetConversion::folders()
{
#if defined(Q_OS_MACOS)
    const QString base = m_home.path() + QStringLiteral("/Library/Audio/Presets");
#elif defined(Q_OS_WIN)
    const QString base = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
        + QStringLiteral("/Audio/Presets");
#else
    const QString base = m_home.path() + QStringLiteral("/.local/share/Audio/Presets");
#endif
    QCOMPARE(Conversion::presetBase(), base);
    QCOMPARE(Conversion::monoFolders().source, base + QStringLiteral("/Quenmark/Orvane Ch Strip [m]"));
    QCOMPARE(Conversion::stereoFolders().source, base + QStringLiteral("/Quenmark/Orvane Ch Strip [s]"));
    QCOMPARE(Conversion::monoFolders().destination,
        base + QStringLiteral("/Halvorn Corporation/Orvane Ch Strip/V1.2Mn"));
    QCOMPARE(Conversion::stereoFolders().destination,
        base + QStringLiteral("/Halvorn Corporation/Orvane Ch Strip/V1.2St"));
    QCOMPARE(Conversion::folderPairs().size(), 2);

    // With nothing to convert, nothing is made.
    const PresetConversionReport report = Conversion::convertAll();
    QVERIFY(report.items.isEmpty());
    QVERIFY(report.errors.isEmpty());
    QVERIFY(!QFileInfo::exists(base));
}

void TestPresetConversion::convertTree_data()
{
    QTest::addColumn<QString>("file");    // relative to the source folder
    QTest::addColumn<QString>("content"); // mono, stereo, third, text, broken, link, folderlink
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("reason");

    QTest::newRow("mono") << "Bass.plxpreset"
                          << "mono" << int(PresetConversionItem::Converted) << "mono preset";
    QTest::newRow("stereo") << "Lead.plxpreset"
                            << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("nested") << "Vocals/Warm/Soft.plxpreset"
                            << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("nested mono") << "Vocals/Warm/Thin.plxpreset"
                                 << "mono" << int(PresetConversionItem::Converted) << "mono preset";
    QTest::newRow("odd name") << "Vocals/Bright [s] (2) – é 声.plxpreset"
                              << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("upper-case suffix") << "Loud.PLXPRESET"
                                       << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("third class") << "Other.plxpreset"
                                 << "third" << int(PresetConversionItem::Skipped) << "class id 112233445566";
    QTest::newRow("not a preset") << "Broken.plxpreset"
                                  << "broken" << int(PresetConversionItem::Skipped)
                                  << "not a preset: bad magic";
    QTest::newRow("other extension") << "Bass.fxp"
                                     << "stereo" << int(PresetConversionItem::Skipped)
                                     << "not a .plxpreset file";
    QTest::newRow("file link") << "Linked.plxpreset"
                               << "link" << int(PresetConversionItem::Skipped) << "symbolic link";
    QTest::newRow("folder link") << "Elsewhere"
                                 << "folderlink" << int(PresetConversionItem::Skipped)
                                 << "symbolic link to a folder";
}

void TestPresetConversion::convertTree()
{
    QFETCH(QString, file);
    QFETCH(QString, content);
    QFETCH(int, outcome);
    QFETCH(QString, reason);

    const QString source = m_root + QStringLiteral("/Orvane Ch Strip [s]");
    const QString destination = m_root + QStringLiteral("/out/V1.2St");
    const QString outside = m_root + QStringLiteral("/outside");
    const QByteArray state = stateBytes(700, file.size());
    // A neighbour in every run, so links and skips sit beside real work.
    QVERIFY(writePreset(source + QStringLiteral("/Neighbour.plxpreset"), StereoID, stateBytes(50)));
    QVERIFY(writePreset(outside + QStringLiteral("/Target.plxpreset"), StereoID, state));

    const QString path = source + QLatin1Char('/') + file;
    if (content == QLatin1String("mono"))
        QVERIFY(writePreset(path, MonoID, state));
    else if (content == QLatin1String("stereo"))
        QVERIFY(writePreset(path, StereoID, state));
    else if (content == QLatin1String("third"))
        QVERIFY(writePreset(path, ThirdID, state));
    else if (content == QLatin1String("broken"))
        QVERIFY(writeFile(path, "XXXX" + presetBytes(StereoID, state).mid(4)));
    else if (content == QLatin1String("link"))
        QVERIFY(QFile::link(outside + QStringLiteral("/Target.plxpreset"), path));
    else if (content == QLatin1String("folderlink"))
        QVERIFY(QFile::link(outside, path));

    const QMap<QString, QByteArray> sourceBefore = fingerprint(source);
    const QMap<QString, QByteArray> outsideBefore = fingerprint(outside);
    const PresetConversionReport report = Conversion::convert(source, destination);

    QVERIFY(report.errors.isEmpty());
    const PresetConversionItem *item = findItem(report, QFileInfo(path).fileName());
    QVERIFY(item);
    QCOMPARE(int(item->outcome), outcome);
    QVERIFY2(item->reason.startsWith(reason), qPrintable(item->reason));
    QCOMPARE(
        findItem(report, QStringLiteral("Neighbour.plxpreset"))->outcome, PresetConversionItem::Converted);

    const QString target = destination + QLatin1Char('/') + file;
    if (outcome == PresetConversionItem::Converted) {
        QCOMPARE(item->destination, target);
        const QByteArray written = readFile(target);
        QCOMPARE(written.mid(8, 32), QByteArray("504C5863737453757220636820737472"));
        QCOMPARE(loadState(target, StereoID), state);
        QCOMPARE(written, presetBytes(StereoID, state));
    } else {
        QVERIFY(!QFileInfo::exists(target));
        QVERIFY(!QFileInfo::exists(destination + QStringLiteral("/Target.plxpreset")));
    }
    // Only converted presets land in the destination, nothing beside them.
    QStringList writtenFiles = fingerprint(destination).keys();
    writtenFiles.removeIf([](const QString &entry) { return entry.endsWith(QLatin1Char('/')); });
    QCOMPARE(writtenFiles.size(), report.count(PresetConversionItem::Converted));

    QCOMPARE(fingerprint(source), sourceBefore);
    QCOMPARE(fingerprint(outside), outsideBefore);
}

void TestPresetConversion::dryRunWritesNothing()
{
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    QVERIFY(writePreset(source + QStringLiteral("/Vocals/Warm/A.plxpreset"), MonoID, stateBytes(80)));
    QVERIFY(writePreset(source + QStringLiteral("/B.plxpreset"), StereoID, stateBytes(90)));

    Conversion::Options options;
    options.dryRun = true;
    const PresetConversionReport report = Conversion::convert(source, destination, options);
    QCOMPARE(report.count(PresetConversionItem::WouldConvert), 2);
    QCOMPARE(report.items.size(), 2);
    QVERIFY(!QFileInfo::exists(destination));
}

void TestPresetConversion::existingDestinationReplacedWhole()
{
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    const QByteArray state = stateBytes(120, 5);
    QVERIFY(writePreset(source + QStringLiteral("/Keep.plxpreset"), MonoID, state));
    // A larger old file: any leftover tail would show.
    QVERIFY(writeFile(destination + QStringLiteral("/Keep.plxpreset"), QByteArray(9000, 'o')));

    const PresetConversionReport report = Conversion::convert(source, destination);
    QCOMPARE(report.count(PresetConversionItem::Converted), 1);
    QVERIFY(report.items.first().reason.contains(QLatin1String("replaces")));
    QCOMPARE(readFile(destination + QStringLiteral("/Keep.plxpreset")), presetBytes(StereoID, state));
    QCOMPARE(filesIn(destination), QStringList { QStringLiteral("Keep.plxpreset") });
}

void TestPresetConversion::failedWriteKeepsOldFile()
{
#ifndef Q_OS_UNIX
    QSKIP("needs a file size limit to simulate a full disk");
#else
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    QVERIFY(writePreset(source + QStringLiteral("/Big.plxpreset"), StereoID, stateBytes(200000)));
    const QByteArray old = presetBytes(StereoID, stateBytes(100, 1));
    QVERIFY(writeFile(destination + QStringLiteral("/Big.plxpreset"), old));

    // A file size limit makes every write beyond 64 KiB fail, as a full disk does.
    rlimit saved {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = saved;
    limited.rlim_cur = 64 * 1024;
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &limited), 0);
    const PresetConversionReport report = Conversion::convert(source, destination);
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(report.count(PresetConversionItem::Failed), 1);
    QCOMPARE(readFile(destination + QStringLiteral("/Big.plxpreset")), old);
    QCOMPARE(filesIn(destination), QStringList { QStringLiteral("Big.plxpreset") });

    // Without the limit the same conversion goes through.
    QCOMPARE(Conversion::convert(source, destination).count(PresetConversionItem::Converted), 1);
    QCOMPARE(loadState(destination + QStringLiteral("/Big.plxpreset"), StereoID), stateBytes(200000));
#endif
}

void TestPresetConversion::overlappingFoldersRefused_data()
{
    QTest::addColumn<QString>("destination"); // relative to the run folder
    QTest::newRow("same") << "src";
    QTest::newRow("inside") << "src/converted";
    QTest::newRow("through dot-dot") << "src/x/../converted";
    QTest::newRow("around") << ".";
}

void TestPresetConversion::overlappingFoldersRefused()
{
    QFETCH(QString, destination);
    const QString source = m_root + QStringLiteral("/src");
    QVERIFY(writePreset(source + QStringLiteral("/src/A.plxpreset"), MonoID, stateBytes(64)));
    const QMap<QString, QByteArray> before = fingerprint(m_root);

    const PresetConversionReport report
        = Conversion::convert(source, m_root + QLatin1Char('/') + destination);
    QCOMPARE(report.errors.size(), 1);
    QVERIFY(report.items.isEmpty());
    QCOMPARE(fingerprint(m_root), before);
}

void TestPresetConversion::createDirectory()
{
    const QString deep = m_root + QStringLiteral("/a b/[c]/é");
    QVERIFY(Conversion::createDirectory(deep));
    QVERIFY(QFileInfo(deep).isDir());
    QVERIFY(Conversion::createDirectory(deep));

    QVERIFY(writeFile(m_root + QStringLiteral("/file"), "x"));
    QVERIFY(!Conversion::createDirectory(m_root + QStringLiteral("/file")));
    QVERIFY(!Conversion::createDirectory(m_root + QStringLiteral("/file/below")));
    QCOMPARE(readFile(m_root + QStringLiteral("/file")), QByteArray("x"));
}

void TestPresetConversion::askAgainSetting()
{
    QVERIFY(Conversion::askAgain());
    Conversion::setAskAgain(false);
    QVERIFY(!Conversion::askAgain());
#if defined(Q_OS_LINUX)
    QVERIFY(QFileInfo::exists(m_home.filePath(QStringLiteral(".config/Quenmark/Orvane Channel Strip.conf"))));
#endif
    Conversion::setAskAgain(true);
    QVERIFY(Conversion::askAgain());
}

QTEST_GUILESS_MAIN(TestPresetConversion)
#include "tst_presetconversion.moc"
