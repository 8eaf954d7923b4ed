#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include "PresetTestFiles.h"
#include "ProcessRun.h"

using namespace PresetTestFiles;

namespace {

ProcessRun runTool(const QStringList &arguments)
{
    return runProcess(
        QStringLiteral(ORV_TOOL_PATH), arguments, QProcessEnvironment::systemEnvironment(), QString(), 30000);
}

} // namespace

class TestPresetTool : public QObject
{
    Q_OBJECT

private slots:
    void info_data();
    void info();
    void infoJson();
    void convertDryRunCountsWhatItLeavesOut();

private:
    QTemporaryDir m_dir;
};

void TestPresetTool::info_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QStringList>("expected"); // in stdout for a preset, stderr otherwise

    const QByteArray mono = presetBytes(MonoID, stateBytes(30));
    QTest::newRow("mono") << mono << 0
                          << QStringList { "'PLX3'", "version      1",
                                 "504C586373744D757220636820737472 (mono)",
                                 "chunk list   offset 78, 1 entry declared",
                                 "chunk 'Comp'  offset 48  size 30" };
    QTest::newRow("third class") << presetBytes(ThirdID, stateBytes(30)) << 0 << QStringList { "(other)" };
    QTest::newRow("bad magic") << QByteArray(mono).replace(0, 4, "XX\x01X") << 1
                               << QStringList { "bad.plxpreset",
                                      "bad magic 'XX\\x01X' at offset 0, expected 'PLX3'" };
    // The converter's rule: a component state of no bytes is no preset.
    QTest::newRow("empty component state") << QByteArray(mono).replace(78 + 20, 8, littleEndian64(0)) << 1
                                           << QStringList { "'Comp' chunk at offset 48 is empty" };
}

void TestPresetTool::info()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, exitCode);
    QFETCH(QStringList, expected);

    const QString path = m_dir.filePath(
        exitCode == 0 ? QStringLiteral("good [s].plxpreset") : QStringLiteral("bad.plxpreset"));
    QVERIFY(writeFile(path, bytes));
    const ProcessRun run = runTool({ "preset", "info", path });
    QCOMPARE(run.exitCode, exitCode);
    const QString text = QString::fromUtf8(exitCode == 0 ? run.out : run.err);
    for (const QString &part : expected)
        QVERIFY2(text.contains(part), qPrintable(text));
}

void TestPresetTool::infoJson()
{
    const QString path = m_dir.filePath(QStringLiteral("json.plxpreset"));
    QVERIFY(writeFile(path, presetBytes(StereoID, stateBytes(12))));
    const ProcessRun run = runTool({ "preset", "info", path, "--json" });
    QCOMPARE(run.exitCode, 0);
    const QJsonObject object = QJsonDocument::fromJson(run.out).object();
    QCOMPARE(object.value("class").toString(), QStringLiteral("stereo"));
    QCOMPARE(object.value("list_offset").toInteger(), 60);
    const QJsonArray chunks = object.value("chunks").toArray();
    QCOMPARE(chunks.size(), 1);
    QCOMPARE(chunks.first().toObject().value("size").toInteger(), 12);

    const ProcessRun missing = runTool({ "preset", "info", m_dir.filePath("none"), "--json" });
    QCOMPARE(missing.exitCode, 1);
    QCOMPARE(QJsonDocument::fromJson(missing.out).object().value("valid").toBool(true), false);
}

void TestPresetTool::convertDryRunCountsWhatItLeavesOut()
{
    const QString source = m_dir.filePath(QStringLiteral("tree/src"));
    const QString destination = m_dir.filePath(QStringLiteral("tree/dst"));
    QVERIFY(writePreset(source + QStringLiteral("/A.plxpreset"), MonoID, stateBytes(40)));
    QVERIFY(writePreset(source + QStringLiteral("/Vocals/Warm/B.plxpreset"), StereoID, stateBytes(40)));
    QVERIFY(writePreset(source + QStringLiteral("/C.plxpreset"), ThirdID, stateBytes(40)));
    QVERIFY(writePreset(source + QStringLiteral("/.D.plxpreset"), StereoID, stateBytes(40)));
    QVERIFY(writeFile(source + QStringLiteral("/notes.txt"), "x"));

    const ProcessRun run
        = runTool({ "preset", "convert", "--dry-run", "--json", "--from", source, "--to", destination });
    QCOMPARE(run.exitCode, 0);
    const QJsonObject object = QJsonDocument::fromJson(run.out).object();
    QVERIFY2(!object.isEmpty(), run.out.constData());
    QCOMPARE(object.value("dry_run").toBool(), true);
    const QJsonObject totals = object.value("totals").toObject();
    QCOMPARE(totals.value("would_convert").toInt(), 2);
    QCOMPARE(totals.value("skipped").toInt(), 1);
    QCOMPARE(totals.value("converted").toInt(), 0);
    // What it leaves out is listed and counted too.
    QCOMPARE(totals.value("ignored").toInt(), 2);
    QCOMPARE(object.value("files").toArray().size(), 5);
    QCOMPARE(object.value("summary").toString(),
        QStringLiteral("2 presets would be converted, 1 skipped, 2 other files left alone"));
    QVERIFY(!QFileInfo::exists(destination));

    const ProcessRun text
        = runTool({ "preset", "convert", "--dry-run", "--from", source, "--to", destination });
    QCOMPARE(text.exitCode, 0);
    QVERIFY2(text.out.contains(
                 "ignored:       " + QFile::encodeName(source) + "/notes.txt (not a .plxpreset file)\n"),
        text.out.constData());
    QVERIFY2(
        text.out.endsWith(
            "Dry run: 2 presets would be converted, 1 skipped, 2 other files left alone; nothing written\n"),
        text.out.constData());
}

QTEST_GUILESS_MAIN(TestPresetTool)
#include "tst_preset_tool.moc"
