#include <QTest>
#include <QTimer>

#include "Common/Widgets/FaderController.h"
#include "PointerEvents.h"

using CommonController_MemAPI::FaderController;

namespace {

class CountingFader : public FaderController
{
public:
    int begins = 0;
    int ends = 0;
    void beginEdit() override { ++begins; }
    void endEdit() override { ++ends; }
};

// A fader as the setup words ask: "touch", "jump" (the default), "relative"
// or "ramp"; "reverse", "horizontal", "doubleclick"; "at N" starts it at N.
// Vertical it is 28 x 160 over 0..100 with the 28 x 44 thumb, which travels
// 116 pixels; horizontal 160 x 44. The default value is 20.
void setUp(FaderController &fader, const QString &setup)
{
    const QStringList words = setup.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const bool horizontal = words.contains(QLatin1String("horizontal"));
    fader.resize(horizontal ? QSize(160, 44) : QSize(28, 160));
    fader.setOrientation(horizontal ? Qt::Horizontal : Qt::Vertical);
    fader.setKnobSvg(QStringLiteral(":/image/orvchstrip/fader_knob.svg"));
    fader.setMinimumValue(0);
    fader.setMaximumValue(100);
    fader.setDefaultValue(20);
    const int at = words.indexOf(QLatin1String("at"));
    fader.setValue(at >= 0 ? words.value(at + 1).toInt() : 50);
    fader.setReverse(words.contains(QLatin1String("reverse")));
    fader.setEnableDoubleClick(words.contains(QLatin1String("doubleclick")));
    fader.setOperationType(words.contains(QLatin1String("touch")) ? FaderController::Touch
            : words.contains(QLatin1String("relative"))           ? FaderController::Relative
            : words.contains(QLatin1String("ramp"))               ? FaderController::Ramp
                                                                  : FaderController::Jump);
}

} // namespace

class tst_FaderController : public QObject
{
    Q_OBJECT

private slots:
    void thumbGeometry_data();
    void thumbGeometry();
    void gestures_data();
    void gestures();
    void ramp_data();
    void ramp();
};

void tst_FaderController::thumbGeometry_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("vertical minimum at the bottom") << "at 0" << QRectF(0, 116, 28, 44);
    QTest::newRow("vertical reversed") << "reverse at 0" << QRectF(0, 0, 28, 44);
    QTest::newRow("horizontal quarter") << "horizontal at 25" << QRectF(33, 0, 28, 44);
    QTest::newRow("horizontal reversed") << "horizontal reverse at 25" << QRectF(99, 0, 28, 44);
}

void tst_FaderController::thumbGeometry()
{
    QFETCH(QString, setup);
    QFETCH(QRectF, expected);
    FaderController fader;
    setUp(fader, setup);
    QCOMPARE(fader.thumbRect(), expected);
    fader.setScale(2.0);
    fader.resize(fader.size() * 2);
    QCOMPARE(fader.thumbRect(), QRectF(expected.topLeft() * 2, expected.size() * 2));
}

void tst_FaderController::gestures_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("expected");
    // At 100 the thumb covers y 0..44; at 0 reversed, too.
    // clang-format off
    QTest::newRow("touch ignores a press off the thumb") << "touch at 100" << "press 14 138; release 14 138" << 100;
    QTest::newRow("jump to the middle") << "at 100" << "press 14 80; release 14 80" << 50;
    QTest::newRow("jump reversed") << "reverse at 0" << "press 14 138; release 14 138" << 100;
    QTest::newRow("relative press only grabs") << "relative at 100" << "press 14 138; release 14 138" << 100;
    // Up raises the value; Shift re-anchors and makes the drag four times finer.
    QTest::newRow("relative drag") << "relative" << "press 14 140; move 14 111; release 14 111" << 75;
    QTest::newRow("relative drag, then fine") << "relative" << "press 14 140; move 14 111; move 14 111 shift; move 14 53 shift; release 14 53" << 88;
    // A double click restores the default only when enabled, and not as the
    // second click of a jump.
    QTest::newRow("double click, not enabled") << "at 100" << "dblclick 14 22; release 14 22" << 100;
    QTest::newRow("double click right after a jump") << "doubleclick at 100" << "press 14 80; release 14 80; dblclick 14 80; release 14 80" << 50;
    QTest::newRow("double click after the interval") << "doubleclick at 100" << "press 14 80; release 14 80; wait; dblclick 14 80; release 14 80" << 20;
    QTest::newRow("control-click on the thumb, touch") << "touch at 50" << "press 14 80 ctrl; release 14 80" << 20;
    QTest::newRow("key up") << "" << "key Up" << 51;
    QTest::newRow("key down reversed") << "reverse" << "key Down" << 51;
    QTest::newRow("key right, horizontal") << "horizontal" << "key Right" << 51;
    QTest::newRow("key up ignored, horizontal") << "horizontal" << "key Up" << 50;
    QTest::newRow("page up reversed") << "reverse" << "key PgUp" << 40;
    QTest::newRow("wheel reversed, two notches") << "reverse" << "wheel 0 240" << 48;
    // clang-format on
}

// Every gesture is one edit bracket at most, closed by its release.
void tst_FaderController::gestures()
{
    QFETCH(QString, setup);
    QFETCH(QString, script);
    QFETCH(int, expected);
    CountingFader fader;
    setUp(fader, setup);
    playInput(&fader, script, [&] { return fader.value(); });
    QCOMPARE(fader.value(), expected);
    QCOMPARE(fader.ends, fader.begins);
}

void tst_FaderController::ramp_data()
{
    QTest::addColumn<bool>("shift");
    QTest::addColumn<int>("step");
    QTest::newRow("5 units") << false << -5;
    QTest::newRow("1 unit with Shift") << true << -1;
}

void tst_FaderController::ramp()
{
    QFETCH(bool, shift);
    QFETCH(int, step);
    const Qt::KeyboardModifiers modifiers = shift ? Qt::ShiftModifier : Qt::NoModifier;
    FaderController fader;
    setUp(fader, QStringLiteral("ramp")); // thumb at y 58..102
    auto *timer = fader.findChild<QTimer *>(QStringLiteral("rampTimer"));
    QVERIFY(timer);
    // Held below the thumb: one step at once, the next after a longer first delay.
    QTest::mousePress(&fader, Qt::LeftButton, modifiers, QPoint(14, 150));
    QCOMPARE(fader.value(), 50 + step);
    QCOMPARE(timer->interval(), FaderController::RampFirstDelay);
    QTRY_COMPARE_WITH_TIMEOUT(fader.value(), 50 + 2 * step, 2000);
    QCOMPARE(timer->interval(), FaderController::RampRepeatDelay);
    QTRY_COMPARE_WITH_TIMEOUT(fader.value(), 50 + 3 * step, 2000);
    QTest::mouseRelease(&fader, Qt::LeftButton, modifiers, QPoint(14, 150));
    QVERIFY(!timer->isActive());
}

QTEST_MAIN(tst_FaderController)
#include "tst_fadercontroller.moc"
