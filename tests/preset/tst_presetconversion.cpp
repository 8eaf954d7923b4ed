#include <QTemporaryDir>
#include <QTest>

#include "IsolatedHome.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "PresetTestFiles.h"

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

} // namespace

class TestPresetConversion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void folders();
    void convertTree();
    void sourceChangedWhileReadIsSkipped_data();
    void sourceChangedWhileReadIsSkipped();
    void overlappingFoldersRefused_data();
    void overlappingFoldersRefused();
    void offeredOnlyWhileSomethingWouldConvert_data();
    void offeredOnlyWhileSomethingWouldConvert();

private:
    QString m_root;
    IsolatedHome m_home; // every standard location the conversion and its setting use
};

void TestPresetConversion::initTestCase()
{
    QVERIFY(m_home.isValid());
}

void TestPresetConversion::init()
{
    m_root = m_home.path() + QStringLiteral("/run-%1").arg(QString::fromLatin1(QTest::currentTestFunction()));
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
    QVERIFY(report.items.isEmpty() && report.errors.isEmpty());
    QCOMPARE(report.summary(), QStringLiteral("no old presets found"));
    QVERIFY(!QFileInfo::exists(base));
}

void TestPresetConversion::convertTree()
{
    using I = PresetConversionItem;
    const QString source = m_root + QStringLiteral("/Orvane Ch Strip [s]");
    const QString destination = m_root + QStringLiteral("/out/V1.2St");
    const QString outside = m_root + QStringLiteral("/outside");
    const QMap<QString, QByteArray> files { { "outside/Target.plxpreset", goldenPreset() },
        { "Orvane Ch Strip [s]/Bass.plxpreset", goldenPreset(MonoID) },
        { "Orvane Ch Strip [s]/Lead.plxpreset", goldenPreset() },
        { "Orvane Ch Strip [s]/Vocals/Bright [s] (2) – é 声.plxpreset", goldenPreset() },
        { "Orvane Ch Strip [s]/Loud.PLXPRESET", goldenPreset() },
        { "Orvane Ch Strip [s]/Other.plxpreset", goldenPreset(ThirdID) },
        { "Orvane Ch Strip [s]/Empty.plxpreset", goldenPreset().replace(ListOffset + 20, 8, le(0, 8)) },
        { "Orvane Ch Strip [s]/Cont.plxpreset", goldenPreset().replace(ListOffset + 8, 4, "Cont") },
        { "Orvane Ch Strip [s]/Bass.fxp", goldenPreset() },
        { "Orvane Ch Strip [s]/.Lead.plxpreset", goldenPreset() },
        // A larger old file where a preset goes: any leftover tail would show.
        { "out/V1.2St/Lead.plxpreset", QByteArray(9000, 'o') },
        // What conversions killed at one moment or another leave beside a preset.
        { "out/V1.2St/Bass.plxpreset.aB3xYz", goldenPreset() }, { "out/V1.2St/Bass.plxpreset.zzzzzz", "" },
        { "out/V1.2St/Bass.plxpreset.backup", goldenPreset().replace(100, 1, "x") }, // the user's own
        { "out/V1.2St/Gone.plxpreset.aB3xYz", "" },  // of a preset not converted now
        { "out/V1.2St/Bass.plxpreset.aB3xY", "" } }; // five letters
    for (auto it = files.begin(); it != files.end(); ++it)
        QVERIFY(writeFile(m_root + QLatin1Char('/') + it.key(), it.value()));
    QVERIFY(QFile::link(
        outside + QStringLiteral("/Target.plxpreset"), source + QStringLiteral("/Linked.plxpreset")));
    QVERIFY(QFile::link(outside, source + QStringLiteral("/Elsewhere")));
    const QMap<QString, QByteArray> before = fingerprint(m_root);

    Conversion::Options dryRun;
    dryRun.dryRun = true;
    const PresetConversionReport dry = Conversion::convert(source, destination, dryRun);
    QCOMPARE(fingerprint(m_root), before);
    QCOMPARE(
        dry.summary(), QStringLiteral("4 presets would be converted, 5 skipped, 2 other files left alone"));

    const PresetConversionReport report = Conversion::convert(source, destination);
    QVERIFY(report.errors.isEmpty());
    // clang-format off
    const std::tuple<QString, I::Outcome, QString> expected[] = {
        { "Bass.plxpreset", I::Converted, "mono preset" },
        { "Lead.plxpreset", I::Converted, "replaces" },
        { "Vocals/Bright [s] (2) – é 声.plxpreset", I::Converted, "stereo preset" },
        { "Loud.PLXPRESET", I::Converted, "stereo preset" },
        { "Other.plxpreset", I::Skipped, "class id 112233445566" },
        // The rule that preset info applies: a 'Comp' chunk with at least one byte.
        { "Empty.plxpreset", I::Skipped, "not a preset: 'Comp' chunk at offset 48 is empty" },
        { "Cont.plxpreset", I::Skipped, "not a preset: chunk list at offset 1712: no 'Comp' chunk" },
        { "Bass.fxp", I::Ignored, "not a .plxpreset file" },
        { ".Lead.plxpreset", I::Ignored, "hidden file" },
        { "Linked.plxpreset", I::Skipped, "symbolic link" },
        { "Elsewhere", I::Skipped, "symbolic link to a folder" },
        { "Bass.plxpreset.aB3xYz", I::Removed, "; removed" },
        { "Bass.plxpreset.zzzzzz", I::Removed, "; removed" },
    };
    // clang-format on
    for (const auto &[file, outcome, reason] : expected) {
        const PresetConversionItem *item = findItem(report, QFileInfo(file).fileName());
        QVERIFY2(item, qPrintable(file));
        QCOMPARE(item->outcome, outcome);
        QVERIFY2(item->reason.contains(reason), qPrintable(item->reason));
        if (outcome == I::Converted)
            QCOMPARE(readFile(destination + QLatin1Char('/') + file), goldenPreset());
    }
    QCOMPARE(report.items.size(), int(std::size(expected)));
    QCOMPARE(report.summary(),
        QStringLiteral(
            "4 presets converted, 5 skipped, 2 leftover temporary files removed, 2 other files left alone"));
    // Only converted presets land in the destination; the sources, the link
    // targets and the files that are not leftovers stay as they were.
    QMap<QString, QByteArray> after = fingerprint(m_root), unchanged = before;
    for (const char *gone : { "out/V1.2St/Bass.plxpreset.aB3xYz", "out/V1.2St/Bass.plxpreset.zzzzzz" })
        unchanged.remove(gone);
    for (const auto &[file, outcome, reason] : expected) {
        if (outcome == I::Converted)
            unchanged.insert("out/V1.2St/" + file, after.value("out/V1.2St/" + file));
    }
    unchanged.insert("out/V1.2St/Vocals/", QByteArray());
    QCOMPARE(after, unchanged);
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
    const QByteArray old = "an older conversion";
    QVERIFY(writeFile(path, goldenPreset(MonoID)) && writeFile(target, old));

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
    QCOMPARE(report.summary(),
        converted ? QStringLiteral("1 preset converted") : QStringLiteral("no preset converted, 1 skipped"));
    QCOMPARE(readFile(target), converted ? goldenPreset() : old);
    if (!converted)
        QVERIFY2(report.items.first().reason.contains(QLatin1String("changed while it was read")),
            qPrintable(report.items.first().reason));
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
    QVERIFY(writeFile(source + QStringLiteral("/src/A.plxpreset"), goldenPreset(MonoID)));
    const QMap<QString, QByteArray> before = fingerprint(m_root);

    const PresetConversionReport report
        = Conversion::convert(source, m_root + QLatin1Char('/') + destination);
    QCOMPARE(report.errors.size(), 1);
    QVERIFY(report.items.isEmpty());
    QCOMPARE(fingerprint(m_root), before);
}

void TestPresetConversion::offeredOnlyWhileSomethingWouldConvert_data()
{
    QTest::addColumn<QString>("kind"); // what lies in the stereo source; "" nothing
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("askAgain");
    QTest::addColumn<bool>("offered");

    // clang-format off
    QTest::newRow("nothing there") << "" << QString() << true << false;
    QTest::newRow("another class") << "third" << QStringLiteral("Other.plxpreset") << true << false;
    QTest::newRow("not a preset") << "text" << QStringLiteral("Notes.plxpreset") << true << false;
    QTest::newRow("damaged old preset") << "cut" << QStringLiteral("Cut.plxpreset") << true << false;
    QTest::newRow("a link to a preset") << "link" << QStringLiteral("Linked.plxpreset") << true << false;
    QTest::newRow("hidden preset") << "stereo" << QStringLiteral(".Hidden.plxpreset") << true << false;
    QTest::newRow("mono preset") << "mono" << QStringLiteral("Bass.plxpreset") << true << true;
    QTest::newRow("nested, upper-case suffix") << "stereo" << QStringLiteral("Vocals/Warm/Soft.PLXPRESET") << true << true;
    QTest::newRow("already converted") << "converted" << QStringLiteral("Lead.plxpreset") << true << false;
    QTest::newRow("changed since converted") << "stale" << QStringLiteral("Lead.plxpreset") << true << true;
    QTest::newRow("destination cannot be made") << "blocked" << QStringLiteral("Lead.plxpreset") << true << false;
    QTest::newRow("not to ask again") << "mono" << QStringLiteral("Bass.plxpreset") << false << false;
    // clang-format on
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
    const QMap<QString, QByteArray> contents { { "third", goldenPreset(ThirdID) }, { "text", "not a preset" },
        { "cut", goldenPreset(MonoID).chopped(8) }, // the header still names the old class; the list is gone
        { "mono", goldenPreset(MonoID) }, { "stereo", goldenPreset() }, { "converted", goldenPreset() },
        { "stale", goldenPreset() }, { "blocked", goldenPreset() } };
    if (contents.contains(kind))
        QVERIFY(writeFile(source, contents.value(kind)));
    if (kind == QLatin1String("link")) {
        QVERIFY(writeFile(m_root + QStringLiteral("/elsewhere.plxpreset"), goldenPreset()));
        QVERIFY(QDir().mkpath(QFileInfo(source).path()));
        QVERIFY(QFile::link(m_root + QStringLiteral("/elsewhere.plxpreset"), source));
    }
    if (kind == QLatin1String("converted") || kind == QLatin1String("stale")) {
        QVERIFY(writeFile(converted, goldenPreset()));
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

QTEST_GUILESS_MAIN(TestPresetConversion)
#include "tst_presetconversion.moc"
