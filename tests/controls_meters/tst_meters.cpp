#include <QtTest>

#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/MeterConverter.h"
#include "Common/Widgets/PeakMeterController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/RoundMeterController.h"

using namespace CommonController_MemAPI;

class tst_Meters : public QObject
{
    Q_OBJECT

private slots:
    void segments_data();
    void segments();
    void normalisation_data();
    void normalisation();
    void peakHoldsThenFalls();
    void levelTextForAssistiveTechnology();
};

void tst_Meters::segments_data()
{
    QTest::addColumn<bool>("level"); // a linear level, else tenths of a dB
    QTest::addColumn<int>("segCount");
    QTest::addColumn<uint>("value");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("segNum");
    QTest::newRow("36 is no table") << false << 36 << 0u << false << 777;
    QTest::newRow("53 below -60 dB") << false << 53 << uint(-601) << true << 0;
    QTest::newRow("53 at -60 dB") << false << 53 << uint(-600) << true << 1;
    QTest::newRow("53 at 0 dB") << false << 53 << 0u << true << 52;
    QTest::newRow("53 at the sentinel") << false << 53 << 8191u << true << 53;
    QTest::newRow("37 at 8191 is still 0 dB") << false << 37 << 8191u << true << 36;
    QTest::newRow("37 at its sentinel") << false << 37 << 131071u << true << 37;
    QTest::newRow("level: 52 is no table") << true << 52 << 5000u << false << 777;
    QTest::newRow("level: 53 below the first") << true << 53 << 2025u << true << 0;
    QTest::newRow("level: 53 full") << true << 53 << 8169u << true << 52;
    QTest::newRow("level: 53 sentinel") << true << 53 << 32768u << true << 53;
    QTest::newRow("level: only the low 16 bits count") << true << 53 << (65536u + 2026u) << true << 1;
}

void tst_Meters::segments()
{
    QFETCH(bool, level);
    QFETCH(int, segCount);
    QFETCH(uint, value);
    QFETCH(bool, ok);
    QFETCH(int, segNum);
    unsigned short result = 777;
    const auto count = static_cast<unsigned short>(segCount);
    QCOMPARE(level ? MeterConverter::convertLevel2SegNum(count, value, result)
                   : MeterConverter::convertDB2SegNum(count, value, result),
        ok);
    QCOMPARE(int(result), segNum);
}

void tst_Meters::normalisation_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("expected");
    QTest::newRow("-60: silence") << int(MeterController::Minus600) << -1270 << 0.0;
    QTest::newRow("-60: at -18 dB") << int(MeterController::Minus600) << -180 << 24.0 / 51;
    QTest::newRow("-60: over stays full") << int(MeterController::Minus600) << 60 << 1.0;
    QTest::newRow("-22.5: at -22.6 dB") << int(MeterController::Minus225) << -226 << 0.0;
    QTest::newRow("-22.5: at -6 dB") << int(MeterController::Minus225) << -60 << 20.0 / 31;
}

void tst_Meters::normalisation()
{
    QFETCH(int, type);
    QFETCH(int, value);
    QFETCH(double, expected);
    MeterController meter;
    meter.setMeterType(MeterController::MeterType(type));
    QVERIFY(qAbs(meter.convertNormalized(value) - expected) < 1e-9);
}

void tst_Meters::peakHoldsThenFalls()
{
    PeakMeterController meter;
    meter.setMeterPeakHeight(2);
    meter.setValue(0);
    meter.setValue(-400);
    QCOMPARE(meter.peakValue(), 0);
    // Still held well within the hold time.
    meter.setValue(-410);
    QCOMPARE(meter.peakValue(), 0);

    // With a short hold it falls back to the bar, without further readings.
    meter.setPeakHoldTime(0);
    meter.setPeakFallRate(400);
    meter.setValue(-420);
    QTRY_COMPARE_WITH_TIMEOUT(meter.peakValue(), -420, 3000);

    // A louder reading raises the mark at once.
    meter.setValue(-100);
    QCOMPARE(meter.peakValue(), -100);
}

void tst_Meters::levelTextForAssistiveTechnology()
{
    RoundMeterController meter;
    QCOMPARE(meter.levelText(), QStringLiteral("-inf dB"));
    meter.setValue(3);
    QCOMPARE(meter.levelText(), QStringLiteral("+0.3 dB"));
    QCOMPARE(RoundGainReductionMeterController().levelText(), QStringLiteral("0.0 dB"));
}

QTEST_MAIN(tst_Meters)
#include "tst_meters.moc"
