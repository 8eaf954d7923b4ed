#include <QTemporaryDir>
#include <QTest>

#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "PresetTestFiles.h"

#include "FileSizeLimit.h"

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
    void existingDestinationReplacedWhole();
    void fullDiskKeepsOldFile();
    void sourceChangedWhileReadIsSkipped_data();
    void sourceChangedWhileReadIsSkipped();
    void leftoverTemporaryFiles_data();
    void leftoverTemporaryFiles();
    void overlappingFoldersRefused_data();
    void overlappingFoldersRefused();
    void createDirectory();
    void offeredOnlyWhileSomethingWouldConvert_data();
    void offeredOnlyWhileSomethingWouldConvert();
    void summary_data();
    void summary();

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

    // With nothing to convert, nothing is made.
    const PresetConversionReport report = Conversion::convertAll();
    QVERIFY(report.items.isEmpty());
    QVERIFY(report.errors.isEmpty());
    QVERIFY(!QFileInfo::exists(base));
}

void TestPresetConversion::convertTree_data()
{
    QTest::addColumn<QString>("file"); // relative to the source folder
    // mono, stereo, third, emptystate, nostate, link, folderlink
    QTest::addColumn<QString>("content");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QString>("reason");

    QTest::newRow("mono") << "Bass.plxpreset"
                          << "mono" << int(PresetConversionItem::Converted) << "mono preset";
    QTest::newRow("stereo") << "Lead.plxpreset"
                            << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("odd name") << "Vocals/Bright [s] (2) – é 声.plxpreset"
                              << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("upper-case suffix") << "Loud.PLXPRESET"
                                       << "stereo" << int(PresetConversionItem::Converted) << "stereo preset";
    QTest::newRow("third class") << "Other.plxpreset"
                                 << "third" << int(PresetConversionItem::Skipped) << "class id 112233445566";
    // The rule that preset info applies: a 'Comp' chunk with at least one byte.
    QTest::newRow("empty component state") << "Empty.plxpreset"
                                           << "emptystate" << int(PresetConversionItem::Skipped)
                                           << "not a preset: 'Comp' chunk at offset 48 is empty";
    QTest::newRow("no component state") << "Cont.plxpreset"
                                        << "nostate" << int(PresetConversionItem::Skipped)
                                        << "not a preset: chunk list at offset 748: no 'Comp' chunk";
    QTest::newRow("other extension") << "Bass.fxp"
                                     << "stereo" << int(PresetConversionItem::Ignored)
                                     << "not a .plxpreset file";
    QTest::newRow("hidden") << ".Lead.plxpreset"
                            << "stereo" << int(PresetConversionItem::Ignored) << "hidden file";
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
    else if (content == QLatin1String("emptystate"))
        QVERIFY(writeFile(path, presetBytes(StereoID, state).replace(48 + 700 + 20, 8, littleEndian64(0))));
    else if (content == QLatin1String("nostate"))
        QVERIFY(writeFile(path, presetBytes(StereoID, state).replace(48 + 700 + 8, 4, "Cont")));
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
        QCOMPARE(readFile(target).mid(8, 32), QByteArray("504C5863737453757220636820737472"));
        QCOMPARE(readFile(target), presetBytes(StereoID, state));
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

void TestPresetConversion::fullDiskKeepsOldFile()
{
#ifndef ORV_HAVE_FILE_SIZE_LIMIT
    QSKIP("needs a file size limit to simulate a full disk");
#endif
    // Larger than the write buffer, so the failure comes while writing.
    constexpr int stateSize = 200000;
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    const QString target = destination + QStringLiteral("/Big.plxpreset");
    QVERIFY(writePreset(source + QStringLiteral("/Big.plxpreset"), StereoID, stateBytes(stateSize)));
    const QByteArray old = presetBytes(StereoID, stateBytes(100, 1));
    QVERIFY(writeFile(target, old));

    PresetConversionReport report;
    {
        // Every file write beyond half the new preset fails, as on a full disk.
        FileSizeLimit limit(stateSize / 2);
        QVERIFY(limit.isActive());
        report = Conversion::convert(source, destination);
    }
    QCOMPARE(report.count(PresetConversionItem::Failed), 1);
    const QString reason = report.items.first().reason;
    QVERIFY2(
        reason.contains(QDir::toNativeSeparators(target)) && reason.contains(QLatin1String("left as it was")),
        qPrintable(reason));
    QCOMPARE(readFile(target), old);
    QCOMPARE(filesIn(destination), QStringList { QStringLiteral("Big.plxpreset") });

    // Without the limit the same conversion goes through.
    QCOMPARE(Conversion::convert(source, destination).count(PresetConversionItem::Converted), 1);
    QCOMPARE(loadState(target, StereoID), stateBytes(stateSize));
}

void TestPresetConversion::sourceChangedWhileReadIsSkipped_data()
{
    QTest::addColumn<QString>("change"); // what happens to the source between the read and the write
    QTest::addColumn<bool>("converted");
    QTest::newRow("untouched") << QString() << true;
    QTest::newRow("cut short") << QStringLiteral("truncate") << false;
    QTest::newRow("rewritten at the same size") << QStringLiteral("rewrite") << false;
}

void TestPresetConversion::sourceChangedWhileReadIsSkipped()
{
    QFETCH(QString, change);
    QFETCH(bool, converted);
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    const QString path = source + QStringLiteral("/Live.plxpreset");
    const QString target = destination + QStringLiteral("/Live.plxpreset");
    QVERIFY(writePreset(path, MonoID, stateBytes(3000)));
    const QByteArray old = presetBytes(StereoID, stateBytes(40, 3));
    QVERIFY(writeFile(target, old));

    Conversion::Options options;
    options.sourceRead = [&](const QString &read) {
        QCOMPARE(read, path);
        QFile file(path);
        if (change == QLatin1String("truncate")) {
            file.resize(1000);
        } else if (change == QLatin1String("rewrite")) {
            const QDateTime modified = QFileInfo(path).lastModified();
            QVERIFY(file.open(QIODevice::ReadWrite));
            file.seek(100);
            file.write("x");
            // Written out first, or closing the file would stamp it again.
            file.flush();
            file.setFileTime(modified.addSecs(2), QFileDevice::FileModificationTime);
        }
    };
    const PresetConversionReport report = Conversion::convert(source, destination, options);
    QCOMPARE(report.items.size(), 1);
    const PresetConversionItem &item = report.items.first();
    if (converted) {
        QCOMPARE(item.outcome, PresetConversionItem::Converted);
        QCOMPARE(loadState(target, StereoID), stateBytes(3000));
    } else {
        QCOMPARE(item.outcome, PresetConversionItem::Skipped);
        QVERIFY2(item.reason.contains(QLatin1String("changed while it was read")), qPrintable(item.reason));
        QCOMPARE(readFile(target), old);
    }
}

void TestPresetConversion::leftoverTemporaryFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("content"); // whole, empty, other
    QTest::addColumn<bool>("dryRun");
    QTest::addColumn<bool>("removed");
    QTest::newRow("killed at the rename") << "Keep.plxpreset.aB3xYz"
                                          << "whole" << false << true;
    QTest::newRow("killed before the write") << "Keep.plxpreset.zzzzzz"
                                             << "empty" << false << true;
    QTest::newRow("user's own file of that name") << "Keep.plxpreset.backup"
                                                  << "other" << false << false;
    QTest::newRow("dry run") << "Keep.plxpreset.aB3xYz"
                             << "whole" << true << false;
    QTest::newRow("of a preset not converted now") << "Gone.plxpreset.aB3xYz"
                                                   << "empty" << false << false;
    QTest::newRow("five letters") << "Keep.plxpreset.aB3xY"
                                  << "whole" << false << false;
}

void TestPresetConversion::leftoverTemporaryFiles()
{
    QFETCH(QString, name);
    QFETCH(QString, content);
    QFETCH(bool, dryRun);
    QFETCH(bool, removed);
    const QString source = m_root + QStringLiteral("/src");
    const QString destination = m_root + QStringLiteral("/dst");
    QVERIFY(writePreset(source + QStringLiteral("/Nested/Keep.plxpreset"), MonoID, stateBytes(500)));
    const QByteArray converted = presetBytes(StereoID, stateBytes(500));
    // What a conversion killed at that moment leaves beside the preset.
    QByteArray bytes;
    if (content == QLatin1String("whole"))
        bytes = converted;
    else if (content == QLatin1String("other"))
        bytes = presetBytes(StereoID, stateBytes(500, 1));
    const QString leftover = destination + QStringLiteral("/Nested/") + name;
    QVERIFY(writeFile(leftover, bytes));

    Conversion::Options options;
    options.dryRun = dryRun;
    const PresetConversionReport report = Conversion::convert(source, destination, options);
    QCOMPARE(QFileInfo::exists(leftover), !removed);
    if (!removed)
        QCOMPARE(readFile(leftover), bytes);
    const PresetConversionItem *item = findItem(report, name);
    QCOMPARE(item != nullptr, removed);
    if (item) {
        QCOMPARE(item->outcome, PresetConversionItem::Removed);
        QVERIFY2(item->reason.endsWith(QLatin1String("; removed")), qPrintable(item->reason));
    }
    if (!dryRun)
        QCOMPARE(readFile(destination + QStringLiteral("/Nested/Keep.plxpreset")), converted);
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

void TestPresetConversion::offeredOnlyWhileSomethingWouldConvert_data()
{
    QTest::addColumn<QString>("kind"); // what lies in the stereo source; "" nothing
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("askAgain");
    QTest::addColumn<bool>("offered");

    QTest::newRow("nothing there") << "" << QStringLiteral("") << true << false;
    QTest::newRow("another class") << "third" << QStringLiteral("Other.plxpreset") << true << false;
    QTest::newRow("not a preset") << "text" << QStringLiteral("Notes.plxpreset") << true << false;
    QTest::newRow("damaged old preset") << "cut" << QStringLiteral("Cut.plxpreset") << true << false;
    QTest::newRow("a link to a preset") << "link" << QStringLiteral("Linked.plxpreset") << true << false;
    QTest::newRow("hidden preset") << "stereo" << QStringLiteral(".Hidden.plxpreset") << true << false;
    QTest::newRow("mono preset") << "mono" << QStringLiteral("Bass.plxpreset") << true << true;
    QTest::newRow("nested, upper-case suffix")
        << "stereo" << QStringLiteral("Vocals/Warm/Soft.PLXPRESET") << true << true;
    QTest::newRow("already converted") << "converted" << QStringLiteral("Lead.plxpreset") << true << false;
    QTest::newRow("changed since converted") << "stale" << QStringLiteral("Lead.plxpreset") << true << true;
    QTest::newRow("destination cannot be made")
        << "blocked" << QStringLiteral("Lead.plxpreset") << true << false;
    QTest::newRow("not to ask again") << "mono" << QStringLiteral("Bass.plxpreset") << false << false;
}

void TestPresetConversion::offeredOnlyWhileSomethingWouldConvert()
{
    QFETCH(QString, kind);
    QFETCH(QString, file);
    QFETCH(bool, askAgain);
    QFETCH(bool, offered);
    QDir(Conversion::presetBase()).removeRecursively();
    const Conversion::FolderPair folders = Conversion::stereoFolders();
    const QString source = folders.source + QLatin1Char('/') + file;
    const QString converted = folders.destination + QLatin1Char('/') + file;
    const QByteArray state = stateBytes(64);

    if (kind == QLatin1String("third")) {
        QVERIFY(writePreset(source, ThirdID, state));
    } else if (kind == QLatin1String("text")) {
        QVERIFY(writeFile(source, "not a preset"));
    } else if (kind == QLatin1String("cut")) {
        // The header still names the old class; the chunk list is gone.
        QVERIFY(writeFile(source, presetBytes(MonoID, state).chopped(8)));
    } else if (kind == QLatin1String("link")) {
        QVERIFY(writePreset(m_root + QStringLiteral("/elsewhere.plxpreset"), StereoID, state));
        QVERIFY(QDir().mkpath(QFileInfo(source).path()));
        QVERIFY(QFile::link(m_root + QStringLiteral("/elsewhere.plxpreset"), source));
    } else if (!kind.isEmpty()) {
        QVERIFY(writePreset(source, kind == QLatin1String("mono") ? MonoID : StereoID, state));
    }
    if (kind == QLatin1String("converted") || kind == QLatin1String("stale")) {
        QVERIFY(writePreset(converted, StereoID, state));
        // The older of the two decides whether it still waits.
        QFile older(kind == QLatin1String("converted") ? source : converted);
        QVERIFY(older.open(QIODevice::ReadWrite));
        QVERIFY(
            older.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    } else if (kind == QLatin1String("blocked")) {
        QVERIFY(writeFile(QFileInfo(folders.destination).path(), "a file where the folder goes"));
    }
    Conversion::setAskAgain(askAgain);
    QCOMPARE(Conversion::shouldOfferConversion(), offered);

    // Whatever is offered, a conversion ends the offer.
    Conversion::convertAll();
    QVERIFY(!Conversion::shouldOfferConversion());
}

void TestPresetConversion::summary_data()
{
    QTest::addColumn<QList<int>>("outcomes");
    QTest::addColumn<QString>("summary");
    using I = PresetConversionItem;
    QTest::newRow("nothing") << QList<int> {} << "no old presets found";
    QTest::newRow("one of each left out") << QList<int> { I::Skipped, I::Failed, I::Ignored, I::Removed }
                                          << "no preset converted, 1 skipped, 1 failed, 1 leftover temporary "
                                             "file removed, 1 other file left alone";
    QTest::newRow("many") << QList<int> { I::Converted, I::Converted, I::Skipped, I::Ignored, I::Ignored }
                          << "2 presets converted, 1 skipped, 2 other files left alone";
    QTest::newRow("dry run") << QList<int> { I::WouldConvert } << "1 preset would be converted";
}

void TestPresetConversion::summary()
{
    QFETCH(QList<int>, outcomes);
    QFETCH(QString, summary);
    PresetConversionReport report;
    for (int outcome : outcomes)
        report.items << PresetConversionItem { QString(), QString(), PresetConversionItem::Outcome(outcome),
            QString() };
    QCOMPARE(report.summary(), summary);
}

QTEST_GUILESS_MAIN(TestPresetConversion)
#include "tst_presetconversion.moc"
