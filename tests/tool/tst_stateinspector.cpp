#include <QTest>

#include "ChannelStripModel.h"
#include "SavedState.h"
#include "tools/StateInspector.h"

namespace {

QString textOf(const QVector<StateInspector::Value> &values, const QString &key)
{
    for (const StateInspector::Value &value : values) {
        if (value.key == key)
            return value.text;
    }
    return QStringLiteral("(no %1)").arg(key);
}

} // namespace

class TestStateInspector : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void describesState();
    void refusesWithOffset_data();
    void refusesWithOffset();

private:
    QByteArray m_state;
    QList<ParameterDefinition> m_parameters = ChannelStripModel::parameters();
};

void TestStateInspector::initTestCase()
{
    m_state = savedChannelStripState();
    QCOMPARE(m_state.size(), 1664);
}

void TestStateInspector::describesState()
{
    StateInspector inspector(m_parameters);
    QVERIFY2(inspector.inspectState(m_state), qPrintable(inspector.error()));
    QCOMPARE(inspector.stateLayout(), QStringLiteral("newer"));
    QStringList names;
    QList<qint64> offsets;
    for (const StateInspector::Entry &entry : inspector.entries()) {
        if (entry.depth == 0) {
            names << entry.name;
            offsets << entry.offset;
        }
    }
    QCOMPARE(names,
        QStringList(
            { "version", "generic floats", "CHST", "prms", "count", "extended floats", "chnk", "CHST" }));
    QCOMPARE(offsets, QList<qint64>({ 0, 4, 92, 812, 816, 820, 924, 928 }));

    // The stored floats read as the host's value texts.
    QCOMPARE(textOf(inspector.chunkValues(), "fx_cmp_atck"), QStringLiteral("200 ms"));
    QCOMPARE(textOf(inspector.chunkValues(), "fx_cmp_rls"), QStringLiteral("1234 ms"));
    QCOMPARE(textOf(inspector.chunkValues(), "fx_cmp_kne"), QStringLiteral("MEDIUM"));
    QCOMPARE(textOf(inspector.chunkValues(), "fx_eq_peqgain"), QStringLiteral("-16.3 dB"));
    QCOMPARE(textOf(inspector.genericValues(), "fx_cmp_atck"), QStringLiteral("200 ms"));
    QCOMPARE(inspector.chunkValues().at(1).value, 1.0f);
    QCOMPARE(inspector.morphSystemName(), QByteArray("Warm"));
    QCOMPARE(inspector.morphCellText(3, 0), QStringLiteral("50 ms"));
    QCOMPARE(inspector.morphCellText(0, 3), QStringLiteral("HARD"));
    QCOMPARE(inspector.morphCellText(9, 0), QString()); // the end mark row

    // A chunk without "ORD " holds no morph data; zeros are not shown as such.
    QVERIFY(inspector.hasMorphData());
    QVERIFY2(
        inspector.inspectState(QByteArray(m_state).replace(948, 4, "ORx ")), qPrintable(inspector.error()));
    QVERIFY(!inspector.hasMorphData());
    QVERIFY(inspector.morphTable().isEmpty());
    QCOMPARE(inspector.morphCellText(0, 3), QString());
    QCOMPARE(textOf(inspector.chunkValues(), "fx_cmp_atck"), QStringLiteral("200 ms"));

    // The older layout carries the chunk right after the generic block.
    const QByteArray older = QByteArray("2620") + m_state.mid(4, 88) + m_state.mid(928);
    QVERIFY2(inspector.inspectState(older), qPrintable(inspector.error()));
    QCOMPARE(inspector.stateLayout(), QStringLiteral("older"));
    QCOMPARE(inspector.chunkValues().size(), 26);

    QVERIFY2(inspector.inspectChunk(m_state.mid(928)), qPrintable(inspector.error()));
    QCOMPARE(inspector.chunkValues().at(25).key, QStringLiteral("fx_cmp_sc_onf"));
}

void TestStateInspector::refusesWithOffset_data()
{
    QTest::addColumn<bool>("chunkFile");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("expected");

    const QByteArray state = savedChannelStripState();
    const QByteArray chunk = state.mid(928);
    QTest::newRow("empty") << false << QByteArray() << qint64(0) << "the 4-byte version";
    QTest::newRow("generic block cut") << false << state.left(50) << qint64(50) << "ends 42 bytes short";
    QTest::newRow("first chunk cut") << false << state.left(500) << qint64(500)
                                     << "312 bytes before the end that the \"CHST\" form at offset 92 states";
    QTest::newRow("extended floats cut") << false << state.left(900) << qint64(900) << "expected 26 floats";
    QTest::newRow("chnk cut") << false << state.left(926) << qint64(924) << "expected \"chnk\"";
    QTest::newRow("chnk damaged") << false << QByteArray(state).replace(924, 4, "xxxx") << qint64(924)
                                  << "expected \"chnk\" (chunk follows), found \"xxxx\"";
    QTest::newRow("last chunk cut at 941")
        << false << state.left(941) << qint64(941)
        << "723 bytes before the end that the \"CHST\" form at offset 928 states (offset 1664)";
    QTest::newRow("second form id") << false << QByteArray(state).replace(928, 4, "CHSx") << qint64(928)
                                    << "expected \"CHST\"";
    QTest::newRow("no file information")
        << false << QByteArray(state).replace(936, 4, "FINx") << qint64(944) << "expected the \"FINF\"";
    QTest::newRow("negative chunk size")
        << false << QByteArray(state).replace(952, 4, "\xff\xff\xff\xff") << qint64(956) << "chunk size";
    QTest::newRow("chunk file cut") << true << chunk.left(100) << qint64(100) << "636 bytes before";
    QTest::newRow("chunk file header cut") << true << chunk.left(5) << qint64(5) << "ends 3 bytes short";
}

void TestStateInspector::refusesWithOffset()
{
    QFETCH(bool, chunkFile);
    QFETCH(QByteArray, bytes);
    QFETCH(qint64, offset);
    QFETCH(QString, expected);

    StateInspector inspector(m_parameters);
    QVERIFY(!(chunkFile ? inspector.inspectChunk(bytes) : inspector.inspectState(bytes)));
    QVERIFY2(inspector.error().contains(expected), qPrintable(inspector.error()));
    QCOMPARE(inspector.errorOffset(), offset);
    // The chunk reader's own wording stays inside the plug-in.
    for (const char *internal : { "csv-file", "file-pos", "abnormal", "ChStrip" })
        QVERIFY2(!inspector.error().contains(QLatin1String(internal), Qt::CaseInsensitive),
            qPrintable(inspector.error()));
    // Nothing of a refused file is presented as data.
    QVERIFY(inspector.chunkValues().isEmpty());
    QVERIFY(inspector.morphTable().isEmpty());
}

QTEST_GUILESS_MAIN(TestStateInspector)
#include "tst_stateinspector.moc"
