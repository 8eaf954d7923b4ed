#include <QtTest>

#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/MeterConverter.h"
#include "Common/Widgets/PeakMeterController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/RoundMeterController.h"

using namespace CommonController_MemAPI;

namespace {

const QColor Background(0, 0, 0);
const QColor MidColor(255, 0, 0);
const QColor DarkColor(0, 0, 255);
const QColor LightColor(0, 255, 0);
const QColor TrackColor(40, 40, 40);

// A palette whose meter roles are told apart by one channel each.
QPalette meterPalette()
{
    QPalette palette;
    for (auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        palette.setColor(group, QPalette::Window, Background);
        palette.setColor(group, QPalette::Mid, MidColor);
        palette.setColor(group, QPalette::Dark, DarkColor);
        palette.setColor(group, QPalette::Light, LightColor);
        palette.setColor(group, QPalette::AlternateBase, TrackColor);
    }
    return palette;
}

template<typename Meter> void prepare(Meter &meter, const QSize &size)
{
    meter.setPalette(meterPalette());
    meter.setAutoFillBackground(true);
    meter.resize(size);
}

QImage picture(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool rowHas(const QImage &image, int y, const QColor &color)
{
    for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y) == color)
            return true;
    }
    return false;
}

class CountingMeter : public MeterController
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        MeterController::paintEvent(event);
    }
};

} // namespace

class tst_Meters : public QObject
{
    Q_OBJECT

private slots:
    void segments_data();
    void segments();
    void normalisation_data();
    void normalisation();
    void barPixels_data();
    void barPixels();
    void roundMeterPixels_data();
    void roundMeterPixels();
    void gainReductionGrowsDownward_data();
    void gainReductionGrowsDownward();
    void peakHoldsThenFalls();
    void sameSegmentsRepaintNothing();
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
    QTest::newRow("49 starts at -48 dB") << false << 49 << uint(-480) << true << 1;
    QTest::newRow("level: 52 is no table") << true << 52 << 5000u << false << 777;
    QTest::newRow("level: 53 below the first") << true << 53 << 2025u << true << 0;
    QTest::newRow("level: 53 full") << true << 53 << 8169u << true << 52;
    QTest::newRow("level: 53 sentinel") << true << 53 << 32768u << true << 53;
    QTest::newRow("level: only the low 16 bits count") << true << 53 << (65536u + 2026u) << true << 1;
    QTest::newRow("level: 37 middle") << true << 37 << 5865u << true << 15;
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

void tst_Meters::barPixels_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("topLit");    // just below the bar's top: zone above -18 dB
    QTest::addColumn<bool>("bottomLit"); // just above the bar's bottom: zone below
    QTest::addColumn<bool>("over");
    QTest::newRow("silence") << int(MeterController::Minus600) << -1270 << false << false << false;
    QTest::newRow("0 dB fills, no over") << int(MeterController::Minus600) << 0 << true << true << false;
    QTest::newRow("+0.1 dB lights over") << int(MeterController::Minus600) << 1 << true << true << true;
    QTest::newRow("-22.6 dB on a -22.5 meter")
        << int(MeterController::Minus225) << -226 << false << false << false;
}

void tst_Meters::barPixels()
{
    QFETCH(int, type);
    QFETCH(int, value);
    QFETCH(bool, topLit);
    QFETCH(bool, bottomLit);
    QFETCH(bool, over);
    MeterController meter;
    prepare(meter, QSize(10, 106));
    meter.setMeterType(MeterController::MeterType(type));
    meter.setValue(value);
    const QImage image = picture(meter);
    // The over row is y 0..2, the bar y 6..105.
    QCOMPARE(image.pixelColor(5, 1) == LightColor, over);
    QCOMPARE(image.pixelColor(5, 7) == MidColor, topLit);
    QCOMPARE(image.pixelColor(5, 104) == DarkColor, bottomLit);
    QCOMPARE(image.pixelColor(5, 4), Background); // the gap never lights
    if (!topLit && !bottomLit) {
        for (int y = 0; y < image.height(); ++y)
            QVERIFY2(
                !rowHas(image, y, MidColor) && !rowHas(image, y, DarkColor), qPrintable(QString::number(y)));
    }
}

void tst_Meters::roundMeterPixels_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<bool>("lamp");
    QTest::addColumn<bool>("nearTop");
    QTest::addColumn<bool>("nearBottom");
    QTest::newRow("silence") << -1270 << false << false << false;
    QTest::newRow("0 dB") << 0 << false << true << true;
    QTest::newRow("over") << 12 << true << true << true;
}

void tst_Meters::roundMeterPixels()
{
    QFETCH(int, value);
    QFETCH(bool, lamp);
    QFETCH(bool, nearTop);
    QFETCH(bool, nearBottom);
    RoundMeterController meter;
    prepare(meter, QSize(12, 318));
    meter.setMeterTopMargin(4);
    meter.setMeterOverHeight(8);
    meter.setMeterOverMargin(6);
    meter.setValue(value);
    const QImage image = picture(meter);
    // The lamp is centred in the socket (x 2..10, y 4..12); the bar is 4 wide at x 4..8.
    QCOMPARE(image.pixelColor(6, 8), lamp ? LightColor : TrackColor);
    QCOMPARE(image.pixelColor(6, 24) == MidColor, nearTop);
    QCOMPARE(image.pixelColor(6, 312) == DarkColor, nearBottom);
    // Nothing is drawn outside the track's width.
    QCOMPARE(image.pixelColor(1, 200), Background);
    QCOMPARE(image.pixelColor(10, 200), Background);
}

void tst_Meters::gainReductionGrowsDownward_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("litTo"); // last lit row, -1 for none

    // 181 rows on the -22.5 dB scale: -3, -6, -12 and -18 dB end at 5/31,
    // 11/31, 21/31 and 27/31 of the height.
    QTest::newRow("no reduction") << 0 << -1;
    QTest::newRow("6 dB") << -60 << 64;
    QTest::newRow("18 dB") << -180 << 157;
    QTest::newRow("30 dB fills") << -300 << 180;
}

void tst_Meters::gainReductionGrowsDownward()
{
    QFETCH(int, value);
    QFETCH(int, litTo);
    RoundGainReductionMeterController meter;
    prepare(meter, QSize(6, 181));
    meter.setMeterWidth(6);
    meter.setValue(value);
    const QImage image = picture(meter);
    int last = -1;
    int first = -1;
    for (int y = 0; y < image.height(); ++y) {
        if (image.pixelColor(3, y) == MidColor) {
            last = y;
            if (first < 0)
                first = y;
        }
    }
    if (litTo < 0) {
        QCOMPARE(last, -1);
        return;
    }
    QVERIFY2(first <= 2, qPrintable(QString::number(first))); // hangs from the top
    QVERIFY2(qAbs(last - litTo) <= 2, qPrintable(QString::number(last)));
}

void tst_Meters::peakHoldsThenFalls()
{
    PeakMeterController meter;
    prepare(meter, QSize(10, 106));
    meter.setMeterPeakHeight(2);
    meter.setValue(0);
    meter.setValue(-400);
    QCOMPARE(meter.peakValue(), 0);
    // The mark sits at the top while the bar is far below it.
    QImage image = picture(meter);
    QCOMPARE(image.pixelColor(5, 6), MidColor);
    QCOMPARE(image.pixelColor(5, 30), Background);
    QCOMPARE(image.pixelColor(5, 104), DarkColor);

    // Still held well within the hold time.
    meter.setValue(-410);
    QCOMPARE(meter.peakValue(), 0);

    // With a short hold it falls back to the bar, without further readings.
    meter.setPeakHoldTime(0);
    meter.setPeakFallRate(400);
    meter.setValue(-420);
    QTRY_COMPARE_WITH_TIMEOUT(meter.peakValue(), -420, 3000);
    image = picture(meter);
    QCOMPARE(image.pixelColor(5, 6), Background);

    // A louder reading raises the mark at once.
    meter.setValue(-100);
    QCOMPARE(meter.peakValue(), -100);
}

void tst_Meters::sameSegmentsRepaintNothing()
{
    CountingMeter meter;
    prepare(meter, QSize(10, 106));
    meter.show();
    QVERIFY(QTest::qWaitForWindowExposed(&meter));
    QTRY_VERIFY(meter.paints > 0);
    QTest::qWait(20);

    const int before = meter.paints;
    meter.setValue(-700); // below -60 dB: no segment, as before
    meter.setValue(-650);
    QTest::qWait(30);
    QCOMPARE(meter.paints, before);

    meter.setValue(-101); // the -11 dB segment
    QTRY_COMPARE(meter.paints, before + 1);
    meter.setValue(-104); // still -11 dB
    QTest::qWait(30);
    QCOMPARE(meter.paints, before + 1);

    // Every reading is still announced.
    QSignalSpy spy(&meter, qOverload<int>(&MeterController::valueChanged));
    meter.setValue(-102);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), -102);
}

void tst_Meters::levelTextForAssistiveTechnology()
{
    RoundMeterController meter;
    QVERIFY(!meter.accessibleName().isEmpty());
    QCOMPARE(meter.levelText(), QStringLiteral("-inf dB"));
    meter.setValue(3);
    QCOMPARE(meter.levelText(), QStringLiteral("+0.3 dB"));

    RoundGainReductionMeterController reduction;
    QVERIFY(!reduction.accessibleName().isEmpty());
    QVERIFY(reduction.accessibleName() != meter.accessibleName());
    QCOMPARE(reduction.levelText(), QStringLiteral("0.0 dB"));
}

QTEST_MAIN(tst_Meters)
#include "tst_meters.moc"
