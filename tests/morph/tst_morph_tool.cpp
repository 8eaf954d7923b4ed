#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "ProcessRun.h"

namespace {

using ToolRun = ProcessRun;

ToolRun runTool(const QStringList &arguments,
    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    return runProcess(QStringLiteral(ORV_TOOL_PATH), arguments, environment, 30000);
}

bool writeFile(const QString &path, int size)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'x')) == size;
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
    void missingFolder();
};

void TestMorphTool::listJson()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("Vocal.ord"), 10));
    QVERIFY(writeFile(dir.filePath("Drums/b.ord"), 5));
    QVERIFY(writeFile(dir.filePath("Drums/A.ord"), 3));
    QVERIFY(writeFile(dir.filePath("Drums/More/c.ord"), 3));
    QVERIFY(writeFile(dir.filePath("notes.txt"), 3));
    QVERIFY(QDir(dir.path()).mkpath("Empty"));

    const QStringList expected { "Drums|0|true|0", "A|1|false|3", "b|1|false|5", "Empty|0|true|0",
        "Vocal|0|false|10" };

    ToolRun run = runTool({ "morph", "list", "--json", "--folder", dir.path() });
    QCOMPARE(run.exitCode, 0);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(run.out, &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QVERIFY(document.isObject());
    QCOMPARE(QDir(document.object().value("folder_path").toString()), QDir(dir.path()));
    QCOMPARE(rowsOf(document.object()), expected);

    // Without --folder the environment names the folder.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"), dir.path());
    run = runTool({ "morph", "list", "--json" }, environment);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(rowsOf(QJsonDocument::fromJson(run.out).object()), expected);
}

void TestMorphTool::missingFolder()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString missing = dir.filePath("nowhere");

    for (const QStringList &arguments : { QStringList { "morph", "list", "--folder", missing },
             QStringList { "morph", "list", "--json", "--folder", missing } }) {
        const ToolRun run = runTool(arguments);
        QVERIFY(run.exitCode > 0);
        QVERIFY(run.out.isEmpty());
        QVERIFY2(run.err.contains(QDir::toNativeSeparators(missing).toUtf8()), run.err.constData());
    }
}

QTEST_GUILESS_MAIN(TestMorphTool)
#include "tst_morph_tool.moc"
