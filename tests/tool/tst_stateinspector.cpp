#include <QTest>

#include "ChannelStripModel.h"
#include "GoldenFile.h"
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
    void describesState();
    void refusesWithOffset_data();
    void refusesWithOffset();

private:
    const QByteArray m_state = goldenFile(QStringLiteral("state/saved.state"));
    QList<ParameterDefinition> m_parameters = ChannelStripModel::parameters();
};

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

    // The stored floats read as the host's value texts (whose wording is the host's test).
    QCOMPARE(textOf(inspector.chunkValues(), "fx_cmp_kne"), QStringLiteral("MEDIUM"));
    QCOMPARE(textOf(inspector.genericValues(), "fx_cmp_atck"), QStringLiteral("200 ms"));
    QCOMPARE(inspector.chunkValues().at(1).value, 1.0f);
    QCOMPARE(inspector.morphSystemName(), QByteArray("Warm \xe9tage"));
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
    const QByteArray wide = goldenFile(QStringLiteral("chunk/same-64bit.chst"));
    QVERIFY2(inspector.inspectState("2620" + m_state.mid(4, 88) + wide), qPrintable(inspector.error()));
    QCOMPARE(inspector.chunkLayout(), QStringLiteral("64-bit"));
    QVERIFY2(inspector.inspectState(m_state + "tail"), qPrintable(inspector.error()));
    QCOMPARE(inspector.entries().constLast().name, QStringLiteral("trailing bytes"));

    QVERIFY2(inspector.inspectChunk(m_state.mid(928)), qPrintable(inspector.error()));
    QCOMPARE(inspector.chunkValues().at(25).key, QStringLiteral("fx_cmp_sc_onf"));
}

void TestStateInspector::refusesWithOffset_data()
{
    QTest::addColumn<bool>("chunkFile");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("expected");

    // The newer layout has its first form at 92, "prms" at 812, the count at
    // 816, the floats at 820, "chnk" at 924 and the form read at 928.
    const auto patched = [this](int offset, const QByteArray &with) {
        return QByteArray(m_state).replace(offset, with.size(), with);
    };
    const QByteArray older64
        = "2620" + QByteArray(88, '\0') + goldenFile(QStringLiteral("chunk/same-64bit.chst"));
    const QByteArray minus1("\xff\xff\xff\xff", 4);
    // clang-format off
    QTest::newRow("empty") << false << QByteArray() << qint64(0) << "expected the 4-byte version at offset 0, the file has 0 bytes";
    QTest::newRow("generic block cut") << false << m_state.left(50) << qint64(50) << "from offset 4, the file ends 42 bytes short";
    QTest::newRow("first form id") << false << patched(92, "CHSx") << qint64(92) << "expected \"CHST\" (the first chunk of the newer layout), found \"CHSx\"";
    QTest::newRow("first form size cut") << false << m_state.left(98) << qint64(96) << "expected the first chunk's 4-byte size, found the end";
    QTest::newRow("first form size negative") << false << patched(96, "\x38\xfd\xff\xff") << qint64(96) << "expected the first chunk's size from 0 up, found -712";
    QTest::newRow("first form cut") << false << m_state.left(500) << qint64(500) << "312 bytes before the end that the \"CHST\" form at offset 92 states";
    QTest::newRow("no prms") << false << patched(812, "PRMS") << qint64(812) << "expected \"prms\" (extended block), found \"PRMS\"";
    QTest::newRow("count cut") << false << m_state.left(818) << qint64(816) << "expected the 4-byte float count, found the end";
    QTest::newRow("count past the end") << false << patched(816, minus1) << qint64(1664) << "floats";
    QTest::newRow("extended floats cut") << false << m_state.left(900) << qint64(900) << "expected 26 floats (104 bytes) from offset 820, the file ends 24 bytes short";
    QTest::newRow("chnk damaged") << false << patched(924, "xxxx") << qint64(924) << "expected \"chnk\" (chunk follows), found \"xxxx\"";
    QTest::newRow("chunk header cut") << false << m_state.left(933) << qint64(933) << "header of a \"CHST\" form from offset 928, the file ends 3 bytes short";
    QTest::newRow("chunk is no form") << false << patched(928, "CHSx") << qint64(928) << "here or, in the 64-bit layout, at offset 932; found \"CHSx";
    QTest::newRow("last chunk cut at 941") << false << m_state.left(941) << qint64(941) << "723 bytes before the end that the \"CHST\" form at offset 928 states (offset 1664)";
    QTest::newRow("64-bit form cut") << false << older64.chopped(2) << qint64(older64.size() - 2) << "2 bytes before the end that the \"CHST\" form at offset 92";
    QTest::newRow("no file information") << false << patched(936, "FINx") << qint64(944) << "expected the \"FINF\"";
    QTest::newRow("negative chunk size") << false << patched(952, minus1) << qint64(956) << "chunk size";
    QTest::newRow("64-bit form with a high id word") << false << QByteArray(older64).replace(92, 1, "A") << qint64(108) << "CHST";
    QTest::newRow("chunk file header cut") << true << m_state.mid(928, 5) << qint64(5) << "ends 3 bytes short";
    // clang-format on
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
