// The 512-byte morph record: its layout, what it refuses, the batch it
// becomes, and the tables the command-line tool makes records of (how the
// tool shows and lists them is the tool's test).

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include "Interfaces/ChannelStripKeys.h"
#include "MorphRecords.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/OrvdMorphBatch.h"
#include "ProcessRun.h"

using ReadResult = OrvdMorphRecord::ReadResult;
Q_DECLARE_METATYPE(ReadResult)

namespace {

const QString Glue = QStringLiteral(ORV_MORPH_PRESETS_DIR "/Mix Bus/Glue");

ProcessRun runTool(const QStringList &arguments)
{
    return runProcess(
        QStringLiteral(ORV_TOOL_PATH), arguments, QProcessEnvironment::systemEnvironment(), QString(), 30000);
}

QJsonObject glueTable()
{
    return QJsonDocument::fromJson(readFile(Glue + QStringLiteral(".json"))).object();
}

QByteArray withValue(QJsonObject table, int point, int column, const QJsonValue &value)
{
    QJsonArray points = table.value("points").toArray();
    QJsonArray values = points.at(point).toArray();
    values[column] = value;
    points[point] = values;
    table["points"] = points;
    return QJsonDocument(table).toJson();
}

} // namespace

class TestMorphRecord : public QObject
{
    Q_OBJECT

private slots:
    void layoutMatchesTheGoldenFile();
    void rejects_data();
    void rejects();
    void longNameIsCutAtCharacterBoundary();
    void batchAbandonedWhenTheHostLacksAKey_data();
    void batchAbandonedWhenTheHostLacksAKey();
    void toolRefusesBadTables_data();
    void toolRefusesBadTables();
    void factorySetsMatchTheirTables();
};

void TestMorphRecord::layoutMatchesTheGoldenFile()
{
    // The layout is a file format: other writers place fields by its offsets.
    OrvdMorphRecord record;
    record.name = QStringLiteral("AB");
    record.systemId = "X";
    record.points[2][5] = -3;
    record.points[8][16] = 0x1234;
    const QByteArray golden = readFile(QStringLiteral(ORV_TEST_DATA_DIR "/morph/layout.ord"));
    QCOMPARE(record.write(), golden);
    OrvdMorphRecord read;
    QCOMPARE(OrvdMorphRecord::read(golden, &read), ReadResult::Ok);
    QVERIFY(read.name == record.name && read.systemId == record.systemId && read.points == record.points);
}

void TestMorphRecord::rejects_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ReadResult>("expected");
    QTest::addColumn<QString>("reason");
    const QByteArray good = knownMorphRecord().write();
    QTest::newRow("511 bytes") << good.left(511) << ReadResult::WrongSize << "511 bytes, not 512";
    QTest::newRow("513 bytes") << good + '\0' << ReadResult::WrongSize << "513 bytes, not 512";
    // clang-format off
    QTest::newRow("other magic") << QByteArray(good).replace(0, 4, "ORVX") << ReadResult::WrongMagic << "\"ORVD\"";
    QTest::newRow("version 2") << QByteArray(good).replace(4, 2, QByteArray("\x02\x00", 2)) << ReadResult::UnsupportedVersion << "unknown version";
    QTest::newRow("8 points") << QByteArray(good).replace(6, 2, QByteArray("\x08\x00", 2)) << ReadResult::WrongShape << "9 points of 17 values";
    QTest::newRow("16 columns") << QByteArray(good).replace(8, 2, QByteArray("\x10\x00", 2)) << ReadResult::WrongShape << "9 points of 17 values";
    // clang-format on
}

void TestMorphRecord::rejects()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ReadResult, expected);
    QFETCH(QString, reason);
    OrvdMorphRecord untouched;
    untouched.name = QStringLiteral("keep");
    QCOMPARE(OrvdMorphRecord::read(bytes, &untouched), expected);
    QCOMPARE(untouched.name, QStringLiteral("keep"));
    QVERIFY(OrvdMorphRecord::describe(expected, bytes.size()).contains(reason));
}

void TestMorphRecord::longNameIsCutAtCharacterBoundary()
{
    OrvdMorphRecord record;
    // 158 ASCII bytes and then a two-byte character: 160 bytes, one too many.
    record.name = QString(158, QLatin1Char('a')) + QChar(0xE9);
    QVERIFY(!record.fitProblem().isEmpty());
    OrvdMorphRecord read;
    QCOMPARE(OrvdMorphRecord::read(record.write(), &read), ReadResult::Ok);
    QCOMPARE(read.name, QString(158, QLatin1Char('a')));
    record.name.chop(1);
    QVERIFY(record.fitProblem().isEmpty());
}

void TestMorphRecord::batchAbandonedWhenTheHostLacksAKey_data()
{
    QTest::addColumn<QByteArray>("missing");
    QTest::newRow("name") << QByteArray(ChannelStripKeys::MorphSystemName);
    QTest::newRow("id") << QByteArray(ChannelStripKeys::MorphSystemId);
    QTest::newRow("last column") << QByteArray(ORVChStripParameters::OrvaneDataParameterList[16]);
}

void TestMorphRecord::batchAbandonedWhenTheHostLacksAKey()
{
    QFETCH(QByteArray, missing);
    OrvdMorphBatch batch([missing](const char *key, unsigned short *prmId) {
        *prmId = static_cast<unsigned short>(qHash(QByteArray(key)) % 60000 + 1);
        return missing != key;
    });
    QVERIFY(!batch.appendMorphSet("x", knownMorphRecord(), 0));
    QVERIFY(!batch.isTerminated());
}

void TestMorphRecord::toolRefusesBadTables_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("message");
    const QJsonObject glue = glueTable();
    // clang-format off
    QTest::newRow("ratio above range") << withValue(glue, 2, 2, 121) << "point 3, column fx_mrpcmp_rto: 121 is outside the range 0..120";
    QTest::newRow("fraction") << withValue(glue, 4, 16, 4.5) << "point 5, column fx_mrpeq_peqgain: 4.5 is not an integer";
    QJsonObject eightPoints = glue;
    QJsonArray points = eightPoints.value("points").toArray();
    points.removeLast();
    eightPoints["points"] = points;
    QTest::newRow("eight points") << QJsonDocument(eightPoints).toJson() << "holds 8 points, a morph set has 9";
    QJsonObject swapped = glue;
    QJsonArray columns = swapped.value("columns").toArray();
    const QJsonValue tenth = columns.at(9);
    columns[9] = columns.at(11);
    columns[11] = tenth;
    swapped["columns"] = columns;
    QTest::newRow("columns out of order") << QJsonDocument(swapped).toJson() << "column 10 is \"fx_mrpeq_mdfrq\"";
    // clang-format on
    QTest::newRow("not JSON") << QByteArray("{ \"name\": ") << "not valid JSON";
}

void TestMorphRecord::toolRefusesBadTables()
{
    QFETCH(QByteArray, table);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString tablePath = dir.filePath("bad.json");
    const QString out = dir.filePath("kept.ord");
    QVERIFY(writeFile(tablePath, table));
    QVERIFY(writeFile(out, "previous contents"));
    const ProcessRun run = runTool({ "morph", "make", "--from", tablePath, "--out", out });
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(QString::fromUtf8(run.err).contains(message), run.err.constData());
    QCOMPARE(readFile(out), QByteArray("previous contents"));
}

void TestMorphRecord::factorySetsMatchTheirTables()
{
    // The shipped records must be what their tables make, so an edited table
    // that was not rebuilt (scripts/make-morph-presets.sh) is caught.
    QTemporaryDir dir;
    int sets = 0;
    QDirIterator it(
        QStringLiteral(ORV_MORPH_PRESETS_DIR), { "*.json" }, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString table = it.next();
        const QString made = dir.filePath(QStringLiteral("%1.ord").arg(sets++));
        const ProcessRun run = runTool({ "morph", "make", "--from", table, "--out", made });
        QVERIFY2(run.exitCode == 0, run.err.constData());
        QVERIFY2(readFile(made) == readFile(table.chopped(5) + QStringLiteral(".ord")), qPrintable(table));
    }
    QVERIFY(sets >= 12);
}

QTEST_GUILESS_MAIN(TestMorphRecord)
#include "tst_morphrecord.moc"
