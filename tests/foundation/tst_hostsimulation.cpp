#include <QTest>
#include <cmath>

#include "HostModel.h"
#include "Interfaces/ChannelStripValueTables.h"
#include "ParameterMemory.h"

using namespace ChannelStripTables;
using Entries = QList<QPair<int, double>>; // index, value

namespace {

// Records what the memory reports, in order: value and text.
class RecordingObserver : public IPrmObserver
{
public:
    int Update(unsigned short, unsigned short, int value, const char *text) override
    {
        updates.append({ value, QByteArray(text) });
        return 0;
    }
    int UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *) override
    {
        return 0;
    }

    QList<QPair<int, QByteArray>> updates;
};

} // namespace

// The simulated host is the tests' fake host and the reference host's memory:
// its value tables and texts, notifications and morph handling must hold.
class tst_HostSimulation : public QObject
{
    Q_OBJECT

private slots:
    void tableMatchesItsDefinition_data();
    void tableMatchesItsDefinition();
    void valueTexts_data();
    void valueTexts();
    void notifiesObserversOfChangesOnly();
    void clampsAndRejects();
    void followsMorphPosition();
};

void tst_HostSimulation::valueTexts_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("value");     // -1: the text is refused
    QTest::addColumn<QString>("shown"); // what the host shows for the value, when checked
    QTest::newRow("kilohertz") << QByteArray("fx_eq_midfrq") << "1.06k" << 73 << "1.06k";
    QTest::newRow("nearest step") << QByteArray("fx_eq_midfrq") << "1.2k" << 75 << "1.18k";
    QTest::newRow("frequency above table") << QByteArray("fx_eq_hsvfrq") << "50k" << 124 << "";
    QTest::newRow("gain with unit") << QByteArray("fx_eq_lsvgain") << "-3 dB" << 150 << "-3.0";
    QTest::newRow("gain out of range") << QByteArray("fx_eq_lsvgain") << "+40" << 360 << "";
    QTest::newRow("ratio") << QByteArray("fx_cmp_rto") << "4:1" << 60 << "4.00:1";
    QTest::newRow("limiting") << QByteArray("fx_cmp_rto") << "inf" << 120 << "INF:1";
    QTest::newRow("knee word") << QByteArray("fx_cmp_kne") << "hard" << 2 << "";
    QTest::newRow("knee prefix") << QByteArray("fx_cmp_kne") << "Med" << 1 << "MEDIUM";
    QTest::newRow("switch") << QByteArray("fx_eq_byps") << "on" << 1 << "";
    QTest::newRow("huge number") << QByteArray("fx_cmp_atck") << "1e300" << 200 << "";
    QTest::newRow("morph position") << QByteArray("fx_mrp_vl") << "50.5" << 505 << "50.5";
    QTest::newRow("garbage") << QByteArray("fx_eq_midfrq") << "loud" << -1 << "";
    QTest::newRow("text parameter") << QByteArray("fx_mrp_systmname") << "x" << -1 << "";
}

// A typed text reads as a value; a shown text reads back as the value it came from.
void tst_HostSimulation::valueTexts()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, typed);
    QFETCH(int, value);
    QFETCH(QString, shown);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    const unsigned short id = model.parameterId(key.constData());
    int parsed = -1;
    QCOMPARE(memory.setValueString(id, 0, typed.toLocal8Bit().constData(), &parsed) >= 0, value >= 0);
    if (value >= 0)
        QCOMPARE(parsed, value);
    if (shown.isEmpty())
        return;
    char buffer[256];
    QCOMPARE(memory.getValueString(id, 0, value, buffer, sizeof buffer), 0);
    QCOMPARE(QString::fromLocal8Bit(buffer), shown);
    QCOMPARE(memory.setValueString(id, 0, buffer, &parsed), 0);
    QCOMPARE(parsed, value);
}

void tst_HostSimulation::notifiesObserversOfChangesOnly()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    RecordingObserver observer;
    const unsigned short gain = model.parameterId("fx_eq_midgain");
    QCOMPARE(memory.queryPrmObserver(gain, 1, &observer), 1);
    memory.addPrmObserver(gain, 1, &observer);
    memory.addPrmObserver(gain, 1, &observer); // registering twice notifies once
    QCOMPARE(memory.queryPrmObserver(gain, 1, &observer), 0);

    memory.setValue(gain, 1, 200);
    memory.setValue(gain, 1, 200); // unchanged: no report
    memory.setValue(gain, 0, 190); // another channel
    QCOMPARE(observer.updates, (QList<QPair<int, QByteArray>> { { 200, "+2.0" } }));

    memory.removePrmObserver(gain, 1, &observer);
    memory.setValue(gain, 1, 0);
    QCOMPARE(observer.updates.size(), 1);
    QCOMPARE(memory.totalObserverCount(), 0);
}

void tst_HostSimulation::clampsAndRejects()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    const unsigned short knee = model.parameterId("fx_cmp_kne");
    memory.setValue(knee, 0, 9);
    QCOMPARE(memory.value("fx_cmp_kne"), 2);

    int value = 0;
    QVERIFY(memory.getValue(0x7777, 0, &value) < 0);
    QVERIFY(memory.setValue(0x7777, 0, 1) < 0);
    QVERIFY(memory.getValue(knee, 0, nullptr) < 0);
    const unsigned short name = model.parameterId("fx_mrp_systmname");
    QVERIFY(memory.getValue(name, 0, &value, 256) < 0); // beyond the 256 characters
    QVERIFY(memory.getValue(name, 0, &value, 255) >= 0);
}

void tst_HostSimulation::followsMorphPosition()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    const unsigned short gain = model.parameterId("fx_eq_midgain");
    int base = -1;
    memory.setValueByKey("fx_eq_midgain", 200);
    QCOMPARE(memory.getBaseValue(gain, 0, &base), 0);
    QCOMPARE(base, 200); // no morph data: the value itself

    memory.setText("fx_mrp_systmname", "Drums");
    for (int point = 0; point < 9; ++point)
        memory.setValueByKey("fx_mrpeq_mdgain", 100 + 10 * point, point);
    memory.setValueByKey("fx_mrp_vl", 500); // half-way between points 4 and 5
    QCOMPARE(memory.getBaseValue(gain, 0, &base), 0);
    QCOMPARE(base, 140);
    QCOMPARE(memory.value("fx_eq_midgain"), 140); // the hardware follows the knob
}

// The value tables are shared by the host simulation and the graphs, so a
// wrong entry would pass every other test. The expectations here are written
// out from the tables' definition, never computed.
void tst_HostSimulation::tableMatchesItsDefinition_data()
{
    QTest::addColumn<QList<double>>("values");
    QTest::addColumn<int>("count");
    QTest::addColumn<Entries>("entries");
    // Forty steps per decade from 16 Hz to 20 kHz.
    // clang-format off
    QTest::newRow("frequency") << QList<double>(FreqTable, FreqTable + FreqCount) << 125 << Entries { { 0, 16.0 }, { 5, 21.2 }, { 73, 1060.0 }, { 124, 20000.0 } };
    QTest::newRow("gain") << QList<double>(GainTable.values, GainTable.values + GainCount) << 361 << Entries { { 0, -18.0 }, { 180, 0.0 }, { 241, 6.1 }, { 360, 18.0 } };
    // Twelve steps per doubling from 0.5 to 16.
    QTest::newRow("q") << QList<double>(QTable, QTable + QCount) << 61 << Entries { { 0, 0.5 }, { 1, 0.53 }, { 53, 10.68 }, { 60, 16.0 } };
    // clang-format on
    // 0.05 steps to 4, then ever coarser, the last entry limiting.
    QTest::newRow("ratio") << QList<double>(RatioTable, RatioTable + RatioCount) << 121
                           << Entries { { 0, 1.0 }, { 61, 4.1 }, { 71, 5.2 }, { 81, 7.5 }, { 86, 10.0 },
                                  { 113, 80.0 }, { 119, 500.0 }, { 120, 3000.0 } };
}

void tst_HostSimulation::tableMatchesItsDefinition()
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

QTEST_MAIN(tst_HostSimulation)
#include "tst_hostsimulation.moc"
