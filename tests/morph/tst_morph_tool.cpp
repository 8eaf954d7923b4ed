#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ProcessRun.h"
#include "TestFiles.h"

namespace {

ProcessRun runTool(const QStringList &arguments)
{
    return runProcess(
        QStringLiteral(ORV_TOOL_PATH), arguments, QProcessEnvironment::systemEnvironment(), QString(), 30000);
}

// A table whose values sit inside every column's range: attack 5 + point ms,
// knee SOFT, MEDIUM, HARD in turn, every other column 10 + point.
QJsonObject validTable()
{
    QJsonArray columns;
    for (const char *key : ORVChStripParameters::OrvaneDataParameterList)
        columns.append(QString::fromLatin1(key));
    QJsonArray points;
    for (int point = 0; point < 9; ++point) {
        QJsonArray values;
        for (int column = 0; column < 17; ++column)
            values.append(column == 0 ? 5 + point : column == 3 ? point % 3 : 10 + point);
        points.append(values);
    }
    return { { "name", "Täst Set" }, { "id", "ORV-T-1" }, { "columns", columns }, { "points", points } };
}

QJsonObject withValue(QJsonObject table, int point, int column, const QJsonValue &value)
{
    QJsonArray points = table.value("points").toArray();
    QJsonArray values = points.at(point).toArray();
    values[column] = value;
    points[point] = values;
    table["points"] = points;
    return table;
}

// "name|depth|folder|size" for every row.
QStringList rowsOf(const QJsonObject &object)
{
    QStringList rows;
    for (const QJsonValue &value : object.value("rows").toArray()) {
        const QJsonObject row = value.toObject();
        rows << QStringLiteral("%1|%2|%3|%4")
                    .arg(row.value("name").toString())
                    .arg(row.value("depth").toInt(-1))
                    .arg(row.value("folder").toVariant().toString())
                    .arg(row.value("size").toInteger(-1));
    }
    return rows;
}

} // namespace

class TestMorphTool : public QObject
{
    Q_OBJECT

private slots:
    void listJson();
    void listRefusesMissingFolder();
    void makeThenShow();
    void makeRefuses_data();
    void makeRefuses();
    void factorySetsMatchTheirTables();
};

void TestMorphTool::listJson()
{
    QTemporaryDir dir;
    for (const auto &[name, size] : { std::pair("Vocal.ord", 10), { "Drums/b.ord", 5 }, { "Drums/A.ord", 3 },
             { "Drums/More/c.ord", 3 }, { "notes.txt", 3 } })
        QVERIFY(writeFile(dir.filePath(name), QByteArray(size, 'x')));
    QVERIFY(QDir(dir.path()).mkpath("Empty"));

    const ProcessRun run = runTool({ "morph", "list", "--json", "--folder", dir.path() });
    QCOMPARE(run.exitCode, 0);
    const QJsonObject listed = QJsonDocument::fromJson(run.out).object();
    QCOMPARE(QDir(listed.value("folder_path").toString()), QDir(dir.path()));
    QCOMPARE(rowsOf(listed),
        (QStringList {
            "Drums|0|true|0", "A|1|false|3", "b|1|false|5", "Empty|0|true|0", "Vocal|0|false|10" }));
}

void TestMorphTool::listRefusesMissingFolder()
{
    QTemporaryDir dir;
    const QString missing = dir.filePath("nowhere");
    for (const QStringList &arguments : { QStringList { "morph", "list", "--folder", missing },
             QStringList { "morph", "list", "--json", "--folder", missing } }) {
        const ProcessRun run = runTool(arguments);
        QVERIFY(run.exitCode > 0);
        QVERIFY(run.out.isEmpty());
        QVERIFY2(run.err.contains(QDir::toNativeSeparators(missing).toUtf8()), run.err.constData());
    }
}

void TestMorphTool::makeThenShow()
{
    QTemporaryDir dir;
    const QString table = dir.filePath("set.json");
    const QString out = dir.filePath("set.ord");
    QVERIFY(writeFile(table, QJsonDocument(validTable()).toJson()));
    const ProcessRun make = runTool({ "morph", "make", "--from", table, "--out", out });
    QCOMPARE(make.exitCode, 0);

    OrvdMorphRecord record;
    QCOMPARE(OrvdMorphRecord::read(readFile(out), &record), OrvdMorphRecord::ReadResult::Ok);
    QCOMPARE(record.name, QStringLiteral("Täst Set"));
    QCOMPARE(record.points[8][0], int16_t(13));
    QCOMPARE(record.points[5][3], int16_t(2));

    const ProcessRun json = runTool({ "morph", "show", out, "--json" });
    QCOMPARE(json.exitCode, 0);
    const QJsonObject shown = QJsonDocument::fromJson(json.out).object();
    QCOMPARE(shown.value("name").toString(), QStringLiteral("Täst Set"));
    QCOMPARE(shown.value("id").toString(), QStringLiteral("ORV-T-1"));
    QCOMPARE(shown.value("points").toArray(), validTable().value("points").toArray());
    QCOMPARE(shown.value("texts").toArray().at(0).toArray().at(0).toString(), QStringLiteral("5 ms"));
    QCOMPARE(shown.value("texts").toArray().at(2).toArray().at(3).toString(), QStringLiteral("HARD"));
}

void TestMorphTool::makeRefuses_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("message");
    const auto json = [](const QJsonObject &object) { return QJsonDocument(object).toJson(); };
    QTest::newRow("ratio above range") << json(withValue(validTable(), 2, 2, 121))
                                       << "point 3, column fx_mrpcmp_rto: 121 is outside the range 0..120";
    QTest::newRow("fraction") << json(withValue(validTable(), 4, 16, 4.5))
                              << "point 5, column fx_mrpeq_peqgain: 4.5 is not an integer";
    QTest::newRow("text value") << json(withValue(validTable(), 1, 1, "fast"))
                                << "point 2, column fx_mrpcmp_rls: \"fast\" is not an integer";
    QJsonObject eightPoints = validTable();
    QJsonArray points = eightPoints.value("points").toArray();
    points.removeLast();
    eightPoints["points"] = points;
    QTest::newRow("eight points") << json(eightPoints) << "holds 8 points, a morph set has 9";
    QJsonObject swapped = validTable();
    QJsonArray columns = swapped.value("columns").toArray();
    const QJsonValue tenth = columns.at(9);
    columns[9] = columns.at(11);
    columns[11] = tenth;
    swapped["columns"] = columns;
    QTest::newRow("columns out of order") << json(swapped) << "column 10 is \"fx_mrpeq_mdfrq\"";
    QJsonObject nameless = validTable();
    nameless.remove("name");
    QTest::newRow("no name") << json(nameless) << "\"name\" must be a non-empty string";
    QTest::newRow("not JSON") << QByteArray("{ \"name\": ") << "not valid JSON";
}

void TestMorphTool::makeRefuses()
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

void TestMorphTool::factorySetsMatchTheirTables()
{
    // The shipped records must be what their tables make, so an edited table
    // that was not rebuilt (scripts/make-morph-presets.sh) is caught.
    QTemporaryDir dir;
    int sets = 0;
    QDirIterator it(
        QStringLiteral(ORV_MORPH_PRESETS_DIR), { "*.json" }, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString table = it.next();
        const QString shipped = table.chopped(5) + QStringLiteral(".ord");
        const QString made = dir.filePath(QStringLiteral("%1.ord").arg(sets++));
        const ProcessRun run = runTool({ "morph", "make", "--from", table, "--out", made });
        QVERIFY2(run.exitCode == 0, run.err.constData());
        QVERIFY2(readFile(made) == readFile(shipped), qPrintable(shipped));
    }
    QVERIFY(sets >= 12);
}

QTEST_GUILESS_MAIN(TestMorphTool)
#include "tst_morph_tool.moc"
