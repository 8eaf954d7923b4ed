#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "FileSizeLimit.h"
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
    void partialStatesAreReported_data();
    void partialStatesAreReported();
    void fullDiskKeepsSavedState();

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
    QCOMPARE(object.value("morph_system_name").toString(), QStringLiteral("Vocal Air"));
    QCOMPARE(object.value("extended").toArray().size(), 26);
    QCOMPARE(object.value("morph_table").toArray().at(9).toArray().at(0).toInt(), -1);
    const Run text = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", m_saved });
    QCOMPARE(text.exitCode, 0);
    QVERIFY(text.out.contains("     928       728  CHST"));
}

void TestStateEndToEnd::badStateFilesAreReported_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<int>("offset");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("the file is empty") << 0;
    QTest::newRow("not a state") << QByteArray(300, 'x')
                                 << QStringLiteral("no channel-strip chunk at offset 92") << 92;
}

void TestStateEndToEnd::badStateFilesAreReported()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, problem);
    QFETCH(int, offset);
    QByteArray damaged = readFile(m_saved);
    QVERIFY(!damaged.isEmpty());
    const QString path = m_dir.filePath(QStringLiteral("bad %1.state").arg(QTest::currentDataTag()));
    QVERIFY(writeFile(path, bytes));

    Run result;
    const QString err = hostRun({ "--load-state", path }, &result);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(err.contains(path) && err.contains(problem), qPrintable(err));
    QCOMPARE(readFile(path), bytes); // left alone

    const Run dump = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", path });
    QVERIFY(dump.exitCode != 0);
    // The tool names the offset that the host names.
    QVERIFY2(dump.err.startsWith("orvchstrip-tool: state dump: " + path.toLocal8Bit() + ": offset "
                 + QByteArray::number(offset) + ": "),
        dump.err.constData());

    // A damaged chunk is told in the tool's words, not the reader's.
    damaged.replace(928, 4, "CHSx");
    QVERIFY(writeFile(path, damaged.mid(928)));
    const Run chunkDump = runProcess(QStringLiteral(ORV_TOOL_PATH), { "chunk", "dump", path });
    QCOMPARE(chunkDump.exitCode, 1);
    QVERIFY2(chunkDump.err.contains(": offset 0: not a valid chunk file: expected \"CHST\"")
            && !chunkDump.err.contains("csv-file"),
        chunkDump.err.constData());
}

void TestStateEndToEnd::partialStatesAreReported_data()
{
    QTest::addColumn<int>("cutAt");        // -1: whole file
    QTest::addColumn<QByteArray>("patch"); // written over the "ORD " id of the chunk that is read
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QTest::newRow("cut after the chunk header")
        << 941 << QByteArray() << 1
        << QStringLiteral(
               "truncated: it ends 723 bytes before the end that the channel-strip chunk at offset "
               "928 states (1664 bytes)");
    QTest::newRow("cut inside the parameters")
        << 1600 << QByteArray() << 1 << QStringLiteral("truncated: it ends 64 bytes before");
    QTest::newRow("damaged ORD id") << -1 << QByteArray("ORX ") << 0
                                    << QStringLiteral("warning: %1 holds no morph data");
}

void TestStateEndToEnd::partialStatesAreReported()
{
    QFETCH(int, cutAt);
    QFETCH(QByteArray, patch);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    QByteArray bytes = readFile(m_saved);
    if (cutAt >= 0)
        bytes.truncate(cutAt);
    if (!patch.isEmpty())
        bytes.replace(948, 4, patch);
    const QString path = m_dir.filePath(QStringLiteral("partial %1.state").arg(QTest::currentDataTag()));
    QVERIFY(writeFile(path, bytes));

    const QString after = m_dir.filePath(QStringLiteral("after %1.state").arg(QTest::currentDataTag()));
    Run result;
    const QString err = hostRun({ "--ch", "2", "--load-state", path, "--save-state", after }, &result);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(err.contains(message.arg(path)), qPrintable(err));
    QCOMPARE(readFile(path), bytes);
    if (exitCode != 0) {
        QVERIFY(!QFileInfo::exists(after));
        return;
    }

    // The parameters came from the file; the morph table is the fresh host's
    // own (its defaults, as in the saved file), not zeros.
    const QByteArray saved = readFile(m_saved);
    const QByteArray restored = readFile(after);
    QCOMPARE(restored.size(), saved.size());
    QCOMPARE(restored.mid(4, 88), saved.mid(4, 88));
    const int table = 928 + 28 + 256;
    QVERIFY(saved.mid(table, 306) != QByteArray(306, '\0'));
    QCOMPARE(restored.mid(table, 340), saved.mid(table, 340));
}

void TestStateEndToEnd::fullDiskKeepsSavedState()
{
#ifndef ORV_HAVE_FILE_SIZE_LIMIT
    QSKIP("needs a file size limit to simulate a full disk");
#endif
    const QString path = m_dir.filePath(QStringLiteral("full disk.state"));
    const QByteArray old = readFile(m_saved);
    QVERIFY(writeFile(path, old));

    // The host inherits the limit: its 1664-byte state does not fit in 1000.
    Run result;
    {
        FileSizeLimit limit(1000);
        QVERIFY(limit.isActive());
        result = runProcess(QStringLiteral(ORV_HOST_PATH),
            { "--set", "fx_cmp_atck=77", "--save-state", path, "--screenshot",
                m_dir.filePath("unused.png") });
    }
    const QString err = QString::fromLocal8Bit(result.err);
    QCOMPARE(result.exitCode, 1);
    QVERIFY2(err.contains(QStringLiteral("--save-state: cannot write ") + path), qPrintable(err));
    QCOMPARE(readFile(path), old);
    QCOMPARE(QDir(m_dir.path()).entryList({ QStringLiteral("full disk.state*") }, QDir::Files | QDir::Hidden),
        QStringList { QStringLiteral("full disk.state") });
}

QTEST_GUILESS_MAIN(TestStateEndToEnd)
#include "tst_state_endtoend.moc"
