#include <QTemporaryDir>
#include <QTest>

#include "BoundComponent.h"
#include "ProcessRun.h"
#include "TestFiles.h"

class TestStateEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void hostSavesAndRestores();
    void badStatesAreReported_data();
    void badStatesAreReported();

private:
    // Runs the host on channel 2, ending after its picture.
    ProcessRun runHost(const QStringList &arguments)
    {
        return runProcess(QStringLiteral(ORV_HOST_PATH),
            QStringList { "--ch", "2", "--screenshot", m_dir.filePath(QStringLiteral("panel.png")) }
                + arguments);
    }

    QTemporaryDir m_dir;
    QString m_saved = m_dir.filePath(QStringLiteral("saved.state"));
};

void TestStateEndToEnd::initTestCase()
{
    const ProcessRun run = runHost(
        { "--set", "fx_cmp_atck=50", "--set", "fx_eq_midfrq=1.2k", "--set", "fx_mrp_systmname=Vocal Air",
            "--set", "fx_eq_hsv_onf=OFF", "--set", "fx_cmp_rto=4.0:1", "--save-state", m_saved });
    QVERIFY2(run.exitCode == 0, run.err.constData());
}

void TestStateEndToEnd::hostSavesAndRestores()
{
    // A fresh host restores the file and saves the very same bytes.
    const QString again = m_dir.filePath(QStringLiteral("again.state"));
    const ProcessRun run = runHost({ "--load-state", m_saved, "--save-state", again });
    QVERIFY2(run.exitCode == 0, run.err.constData());
    QCOMPARE(readFile(again), readFile(m_saved));

    // Restored through the component, every value is the one set.
    BoundComponent restored(2), reference(2);
    for (const auto &[key, text] : { std::pair { "fx_cmp_atck", "50" }, { "fx_eq_midfrq", "1.2k" },
             { "fx_eq_hsv_onf", "OFF" }, { "fx_cmp_rto", "4.0:1" } })
        QVERIFY(reference.memory.setValueText(key, QString::fromLatin1(text), 2));
    reference.memory.setText("fx_mrp_systmname", "Vocal Air", 2);
    QCOMPARE(restored.restore(readFile(m_saved)), kResultOk);
    QCOMPARE(restored.memory.snapshot(27), reference.memory.snapshot(27));

    // The tool describes the host's file.
    const ProcessRun text = runProcess(QStringLiteral(ORV_TOOL_PATH), { "state", "dump", m_saved });
    QCOMPARE(text.exitCode, 0);
    QVERIFY(text.out.contains("     928       728  CHST") && text.out.contains("Vocal Air"));
}

void TestStateEndToEnd::badStatesAreReported_data()
{
    const QByteArray saved = readFile(m_saved);
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    // clang-format off
    QTest::newRow("empty") << QByteArray() << 1 << QStringLiteral("the file is empty");
    QTest::newRow("not a state") << QByteArray(300, 'x') << 1 << QStringLiteral("no channel-strip chunk at offset 92");
    QTest::newRow("cut after the chunk header") << saved.left(941) << 1 << QStringLiteral("truncated: it ends 723 bytes before the end that the channel-strip chunk at offset 928 states (1664 bytes)");
    // The "ORD " id of the chunk that is read: a warning, and the parameters still load.
    QTest::newRow("damaged ORD id") << QByteArray(saved).replace(948, 4, "ORX ") << 0 << QStringLiteral("holds no morph data");
    // clang-format on
}

void TestStateEndToEnd::badStatesAreReported()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    const QString path = m_dir.filePath(QStringLiteral("bad %1.state").arg(QTest::currentDataTag()));
    const QString after = m_dir.filePath(QStringLiteral("after %1.state").arg(QTest::currentDataTag()));
    QVERIFY(writeFile(path, bytes));

    const ProcessRun run = runHost({ "--load-state", path, "--save-state", after });
    const QString err = QString::fromLocal8Bit(run.err);
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(err.contains(path) && err.contains(message), qPrintable(err));
    QCOMPARE(readFile(path), bytes); // left alone
    // A refused file saves nothing; a warned one restores the parameters it holds.
    QCOMPARE(readFile(after).mid(4, 88), exitCode == 0 ? readFile(m_saved).mid(4, 88) : QByteArray());
}

QTEST_GUILESS_MAIN(TestStateEndToEnd)
#include "tst_state_endtoend.moc"
