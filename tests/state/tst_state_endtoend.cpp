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
}

QTEST_GUILESS_MAIN(TestStateEndToEnd)
#include "tst_state_endtoend.moc"
