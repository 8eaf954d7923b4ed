#include <QTest>
#include <cmath>

#include "Interfaces/ChannelStripValueTables.h"

using namespace ChannelStripTables;

// The value tables are shared by the host simulation and the graphs, so a
// wrong entry would pass every other test. The expectations here are written
// out from the tables' definition, never computed.
class TestValueTables : public QObject
{
    Q_OBJECT

private slots:
    void entriesMatchTheDefinition_data();
    void entriesMatchTheDefinition();
    void tablesRiseStrictly_data();
    void tablesRiseStrictly();
};

namespace {

struct Table
{
    const double *values;
    int count;
};

Table table(const QByteArray &name)
{
    if (name == "freq")
        return { FreqTable, FreqCount };
    if (name == "gain")
        return { GainTable.values, GainCount };
    if (name == "q")
        return { QTable, QCount };
    return { RatioTable, RatioCount };
}

} // namespace

void TestValueTables::entriesMatchTheDefinition_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("expected");

    // Frequencies: forty steps per decade from 16 Hz to 20 kHz.
    QTest::newRow("freq first") << QByteArray("freq") << 0 << 16.0;
    QTest::newRow("freq 21.2 Hz") << QByteArray("freq") << 5 << 21.2;
    QTest::newRow("freq 1.06 kHz") << QByteArray("freq") << 73 << 1060.0;
    QTest::newRow("freq last") << QByteArray("freq") << 124 << 20000.0;

    // Gains: -18.0 dB to +18.0 dB in 0.1 dB.
    QTest::newRow("gain first") << QByteArray("gain") << 0 << -18.0;
    QTest::newRow("gain 0 dB") << QByteArray("gain") << 180 << 0.0;
    QTest::newRow("gain +6.1 dB") << QByteArray("gain") << 241 << 6.1;
    QTest::newRow("gain last") << QByteArray("gain") << 360 << 18.0;

    // Q: twelve steps per doubling from 0.5 to 16.
    QTest::newRow("q first") << QByteArray("q") << 0 << 0.5;
    QTest::newRow("q second") << QByteArray("q") << 1 << 0.53;
    QTest::newRow("q 10.68") << QByteArray("q") << 53 << 10.68;
    QTest::newRow("q last") << QByteArray("q") << 60 << 16.0;

    // Ratios: 0.05 steps to 4, then ever coarser, the last entry limiting.
    QTest::newRow("ratio first") << QByteArray("ratio") << 0 << 1.0;
    QTest::newRow("ratio 4.1:1") << QByteArray("ratio") << 61 << 4.1;
    QTest::newRow("ratio 5.2:1") << QByteArray("ratio") << 71 << 5.2;
    QTest::newRow("ratio 7.5:1") << QByteArray("ratio") << 81 << 7.5;
    QTest::newRow("ratio 10:1") << QByteArray("ratio") << 86 << 10.0;
    QTest::newRow("ratio 80:1") << QByteArray("ratio") << 113 << 80.0;
    QTest::newRow("ratio 500:1") << QByteArray("ratio") << 119 << 500.0;
    QTest::newRow("ratio last") << QByteArray("ratio") << 120 << 3000.0;
}

void TestValueTables::entriesMatchTheDefinition()
{
    QFETCH(QByteArray, table);
    QFETCH(int, index);
    QFETCH(double, expected);
    const double actual = ::table(table).values[index];
    QVERIFY2(std::abs(actual - expected) < 1e-9,
        qPrintable(QStringLiteral("%1[%2] is %3").arg(QString::fromLatin1(table)).arg(index).arg(actual)));
}

void TestValueTables::tablesRiseStrictly_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("count");
    QTest::newRow("freq") << QByteArray("freq") << 125;
    QTest::newRow("gain") << QByteArray("gain") << 361;
    QTest::newRow("q") << QByteArray("q") << 61;
    QTest::newRow("ratio") << QByteArray("ratio") << 121;
}

void TestValueTables::tablesRiseStrictly()
{
    QFETCH(QByteArray, name);
    QFETCH(int, count);
    const Table values = table(name);
    QCOMPARE(values.count, count);
    // A transposed or duplicated entry anywhere between the checked ones.
    for (int i = 1; i < values.count; ++i)
        QVERIFY2(values.values[i] > values.values[i - 1], qPrintable(QString::number(i)));
}

QTEST_MAIN(TestValueTables)
#include "tst_valuetables.moc"
