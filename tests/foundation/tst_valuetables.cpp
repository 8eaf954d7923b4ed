#include <QTest>
#include <cmath>

#include "Interfaces/ChannelStripValueTables.h"

using namespace ChannelStripTables;
using Entries = QList<QPair<int, double>>; // index, value

// The value tables are shared by the host simulation and the graphs, so a
// wrong entry would pass every other test. The expectations here are written
// out from the tables' definition, never computed.
class TestValueTables : public QObject
{
    Q_OBJECT

private slots:
    void tableMatchesItsDefinition_data();
    void tableMatchesItsDefinition();
};

void TestValueTables::tableMatchesItsDefinition_data()
{
    QTest::addColumn<QList<double>>("values");
    QTest::addColumn<int>("count");
    QTest::addColumn<Entries>("entries");
    // Forty steps per decade from 16 Hz to 20 kHz.
    QTest::newRow("frequency") << QList<double>(FreqTable, FreqTable + FreqCount) << 125
                               << Entries { { 0, 16.0 }, { 5, 21.2 }, { 73, 1060.0 }, { 124, 20000.0 } };
    QTest::newRow("gain") << QList<double>(GainTable.values, GainTable.values + GainCount) << 361
                          << Entries { { 0, -18.0 }, { 180, 0.0 }, { 241, 6.1 }, { 360, 18.0 } };
    // Twelve steps per doubling from 0.5 to 16.
    QTest::newRow("q") << QList<double>(QTable, QTable + QCount) << 61
                       << Entries { { 0, 0.5 }, { 1, 0.53 }, { 53, 10.68 }, { 60, 16.0 } };
    // 0.05 steps to 4, then ever coarser, the last entry limiting.
    QTest::newRow("ratio") << QList<double>(RatioTable, RatioTable + RatioCount) << 121
                           << Entries { { 0, 1.0 }, { 61, 4.1 }, { 71, 5.2 }, { 81, 7.5 }, { 86, 10.0 },
                                  { 113, 80.0 }, { 119, 500.0 }, { 120, 3000.0 } };
}

void TestValueTables::tableMatchesItsDefinition()
{
    QFETCH(QList<double>, values);
    QFETCH(int, count);
    QFETCH(Entries, entries);
    QCOMPARE(values.size(), count);
    for (const auto &[index, expected] : entries)
        QVERIFY2(std::abs(values[index] - expected) < 1e-9, qPrintable(QString::number(index)));
    // A transposed or duplicated entry anywhere between the checked ones.
    for (int i = 1; i < count; ++i)
        QVERIFY2(values[i] > values[i - 1], qPrintable(QString::number(i)));
}

QTEST_MAIN(TestValueTables)
#include "tst_valuetables.moc"
