#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "HostModel.h"
#include "ORVChStrip/Chunk/FileBStream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ParameterMemory.h"
#include "ProcessRun.h"
#include "TestFiles.h"

using Run = ProcessRun;

class TestStateEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void hostSavesAndRestores();
    void badStateFilesAreReported_data();
    void badStateFilesAreReported();

private:
    QString hostRun(const QStringList &arguments, Run *result);

    QTemporaryDir m_dir;
    QString m_saved;
};

QString TestStateEndToEnd::hostRun(const QStringList &arguments, Run *result)
{
    *result = runProcess(QStringLiteral(ORV_HOST_PATH),
        arguments
            + QStringList { QStringLiteral("--screenshot"), m_dir.filePath(QStringLiteral("panel.png")) });
    return QString::fromLocal8Bit(result->err);
}

void TestStateEndToEnd::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_saved = m_dir.filePath(QStringLiteral("saved.state"));
    Run result;
    const QString err = hostRun({ "--ch", "2", "--set", "fx_cmp_atck=50", "--set", "fx_eq_midfrq=1.2k",
                                    "--set", "fx_mrp_systmname=Vocal Air", "--set", "fx_eq_hsv_onf=OFF",
                                    "--set", "fx_cmp_rto=4.0:1", "--save-state", m_saved },
        &result);
    QVERIFY2(result.exitCode == 0, qPrintable(err));
    QCOMPARE(readFile(m_saved).size(), 1664);
}

void TestStateEndToEnd::hostSavesAndRestores()
{
    // A fresh host restores the file and saves the very same bytes.
    const QString again = m_dir.filePath(QStringLiteral("again.state"));
    Run result;
    const QString err = hostRun({ "--ch", "2", "--load-state", m_saved, "--save-state", again }, &result);
    QVERIFY2(result.exitCode == 0, qPrintable(err));
    QCOMPARE(readFile(again), readFile(m_saved));

    // Restored through the component into a fresh memory, every value is the one set.
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    ParameterMemory reference(&model);
    QVERIFY(reference.setValueText("fx_cmp_atck", QStringLiteral("50"), 2));
    QVERIFY(reference.setValueText("fx_eq_midfrq", QStringLiteral("1.2k"), 2));
    QVERIFY(reference.setValueText("fx_eq_hsv_onf", QStringLiteral("OFF"), 2));
    QVERIFY(reference.setValueText("fx_cmp_rto", QStringLiteral("4.0:1"), 2));
    reference.setText("fx_mrp_systmname", "Vocal Air", 2);
    auto *component = new ORVChStripComponent;
    component->addRef();
    component->setModelInfo(&model);
    component->setMemAPI(&memory);
    component->setCh(2);
    auto *stream = new FileBStream;
    QVERIFY(stream->open(m_saved, QIODevice::ReadOnly));
    QCOMPARE(component->setState(stream), kResultOk);
    stream->release();
    component->release();
    QCOMPARE(memory.snapshot(27), reference.snapshot(27));

    // The tool describes it.
    const Run dump = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", m_saved, "--json" });
    QVERIFY2(dump.exitCode == 0, dump.err.constData());
    const QJsonObject object = QJsonDocument::fromJson(dump.out).object();
    QCOMPARE(object.value("layout").toString(), QStringLiteral("newer"));
    QCOMPARE(object.value("version").toString(), QStringLiteral("3690"));
    QCOMPARE(object.value("morphSystemName").toString(), QStringLiteral("Vocal Air"));
    QCOMPARE(object.value("extended").toArray().size(), 26);
    QCOMPARE(object.value("morphTable").toArray().at(9).toArray().at(0).toInt(), -1);
    const Run text = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", m_saved });
    QCOMPARE(text.exitCode, 0);
    QVERIFY(text.out.contains("0x000003a0     728  CHST"));
}

void TestStateEndToEnd::badStateFilesAreReported_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("the file is empty");
    QTest::newRow("not a state") << QByteArray(300, 'x')
                                 << QStringLiteral("no channel-strip chunk at offset 92");
}

void TestStateEndToEnd::badStateFilesAreReported()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, problem);
    QByteArray damaged = readFile(m_saved);
    QVERIFY(!damaged.isEmpty());
    const QString path = m_dir.filePath(QStringLiteral("bad %1.state").arg(QTest::currentDataTag()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();

    Run result;
    const QString err = hostRun({ "--load-state", path }, &result);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(err.contains(path) && err.contains(problem), qPrintable(err));
    QCOMPARE(readFile(path), bytes); // left alone

    const Run dump = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", path });
    QVERIFY(dump.exitCode != 0);
    QVERIFY2(dump.err.contains(path.toLocal8Bit()) && dump.err.contains("offset 0x"), dump.err.constData());

    // A damaged chunk names the reader's own message.
    damaged.replace(928, 4, "CHSx");
    QFile chunkFile(path);
    QVERIFY(chunkFile.open(QIODevice::WriteOnly));
    chunkFile.write(damaged.mid(928));
    chunkFile.close();
    const Run chunkDump = runProcess(QStringLiteral(ORV_TOOL_PATH), { "chunk", "dump", path });
    QCOMPARE(chunkDump.exitCode, 1);
    QVERIFY2(
        chunkDump.err.contains("offset 0x00000008") && chunkDump.err.contains("The chunk ID is abnormal."),
        chunkDump.err.constData());
}

QTEST_GUILESS_MAIN(TestStateEndToEnd)
#include "tst_state_endtoend.moc"
