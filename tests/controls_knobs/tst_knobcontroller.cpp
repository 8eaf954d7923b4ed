#include <QSignalSpy>
#include <QTest>
#include <tuple>

#include "Common/Widgets/KnobController.h"
#include "CountingMemory.h"
#include "HostModel.h"
#include "ParameterMemory.h"
#include "PointerEvents.h"

using CommonController_MemAPI::KnobController;

namespace {

// Counts the edit brackets a gesture opens and closes.
class CountingKnob : public KnobController
{
public:
    int begins = 0;
    int ends = 0;
    void beginEdit() override { ++begins; }
    void endEdit() override { ++ends; }
};

// An unbound 36 x 36 knob over 0..maximum as the setup words ask:
// "linear" or "relative" (else circular), "max N", "at N", "step N".
void setUp(KnobController &knob, const QString &setup)
{
    const QStringList words = setup.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto number = [&](const char *word, int otherwise) {
        const int at = words.indexOf(QLatin1String(word));
        return at >= 0 ? words.value(at + 1).toInt() : otherwise;
    };
    knob.resize(36, 36);
    knob.setMinimumValue(0);
    knob.setMaximumValue(number("max", 100));
    knob.setValue(number("at", 50));
    knob.setValueChangeStep(number("step", 1));
    knob.setOperationType(words.contains(QLatin1String("linear")) ? KnobController::Linear
            : words.contains(QLatin1String("relative"))           ? KnobController::RelativeCircular
                                                                  : KnobController::Circular);
}

} // namespace

class tst_KnobController : public QObject
{
    Q_OBJECT

private slots:
    void gestures_data();
    void gestures();
    void boundGestures();
    void dragStepCallsHostAtMostThrice_data();
    void dragStepCallsHostAtMostThrice();
};

void tst_KnobController::gestures_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("expected");
    // A press maps the angle: 101 equal buckets over the 300 degrees from 7
    // to 5 o'clock; a relative knob does not jump.
    // clang-format off
    QTest::newRow("press just right of 6 o'clock") << "at 60" << "press 19 35" << 100;
    QTest::newRow("press just left of 6 o'clock") << "at 60" << "press 17 35" << 0;
    QTest::newRow("press at 12 o'clock") << "at 60" << "press 18 0" << 50;
    QTest::newRow("relative press") << "relative at 60" << "press 36 18" << 60;
    // A quarter turn clockwise is 90 of the 300 degrees; with Shift
    // (re-anchored) the next quarter turn moves a quarter as far.
    QTest::newRow("relative quarter turn")
        << "relative max 400 at 200"
        << "press 18 0; move 31 5; move 36 18; expect 320; move 36 18 shift; "
           "move 31 31 shift; move 18 36 shift"
        << 350;
    // Linear: one step per pixel up to 127 steps, else 200 / steps pixels,
    // at most 20; right and up both count; Shift re-anchors, four times finer.
    // The script: one pixel short of a step, a step right, the same up, back
    // to the start, then with Shift from there four steps less one pixel and
    // four steps.
    for (const auto &[setup, pixels, reached] :
        { std::tuple("max 127", 1, 1), { "max 9", 20, 1 }, { "max 1", 20, 1 }, { "max 99 step 2", 2, 2 } }) {
        const int p = pixels;
        QTest::addRow("linear %s", setup)
            << QStringLiteral("linear at 0 ") + QLatin1String(setup)
            << QStringLiteral(
                   "press 18 18; expect 0; move %1 18; expect 0; move %2 18; expect %3; move 18 %4; "
                   "expect %3; move %4 18; expect 0; move %5 18 shift; move %6 18 shift; expect 0; "
                   "move %7 18 shift")
                   .arg(17 + p)
                   .arg(18 + p)
                   .arg(reached)
                   .arg(18 - p)
                   .arg(19 - p)
                   .arg(17 + 3 * p)
                   .arg(18 + 3 * p)
            << 1;
    }
    // The wheel's notch arithmetic, shared by every control that takes the wheel.
    QTest::newRow("wheel one notch") << "" << "wheel 0 120" << 51;
    QTest::newRow("wheel remainder kept") << "" << "wheel 0 200; wheel 0 40" << 52;
    QTest::newRow("wheel reversal discards the partial sum") << "" << "wheel 0 100; wheel 0 -20; wheel 0 100" << 50;
    QTest::newRow("wheel coarse step multiplies") << "step 5" << "wheel 0 120" << 55;
    QTest::newRow("wheel shift: three notches a unit") << "" << "wheel 0 120 shift; wheel 0 120 shift; wheel 0 120 shift" << 51;
    QTest::newRow("wheel shift, coarse step: a unit a notch") << "step 5" << "wheel 0 120 shift" << 51;
    QTest::newRow("wheel larger component wins") << "" << "wheel -120 30" << 49;
    QTest::newRow("key Home") << "" << "key Home" << 0;
    QTest::newRow("key Left, coarse") << "step 5" << "key Left" << 49;
    QTest::newRow("key PgUp") << "" << "key PgUp" << 60;
    QTest::newRow("key PageDown coarse, clamped") << "step 6" << "key PgDown" << 0;
    QTest::newRow("other keys ignored") << "" << "key A" << 50;
    // clang-format on
}

void tst_KnobController::gestures()
{
    QFETCH(QString, setup);
    QFETCH(QString, script);
    QFETCH(int, expected);
    KnobController knob;
    setUp(knob, setup);
    playInput(&knob, script, [&] { return knob.value(); });
    QCOMPARE(knob.value(), expected);
    // A disabled knob takes no key.
    knob.setEnabled(false);
    QTest::keyClick(&knob, Qt::Key_Home);
    QCOMPARE(knob.value(), expected);
}

// Bound to the compressor attack (1..200, default 10): every gesture is one
// edit bracket, and the knob shows what the host confirmed.
void tst_KnobController::boundGestures()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    CountingKnob knob;
    setUp(knob, QStringLiteral("linear"));
    knob.setMemAPIValue(&memory, model.parameterId("fx_cmp_atck"), 0);
    QSignalSpy dragSpy(&knob, &KnobController::drag);

    // Control-click restores the default in one write, without a drag.
    memory.setValueByKey("fx_cmp_atck", 150);
    memory.clearWrites();
    sendMouse(&knob, QEvent::MouseButtonPress, QPoint(30, 10), Qt::ControlModifier);
    sendMouse(&knob, QEvent::MouseButtonRelease, QPoint(30, 10), Qt::ControlModifier);
    QCOMPARE(memory.value("fx_cmp_atck"), 10);
    QCOMPARE(memory.writes().size(), 1);
    QCOMPARE(dragSpy.count(), 0);
    QCOMPARE(std::pair(knob.begins, knob.ends), std::pair(1, 1));
    memory.setValueByKey("fx_cmp_atck", 77);
    sendMouse(&knob, QEvent::MouseButtonDblClick, QPoint(30, 10), Qt::ControlModifier);
    QCOMPARE(memory.value("fx_cmp_atck"), 10);

    // A drag is one bracket however many writes it makes.
    QSignalSpy valueSpy(&knob, qOverload<int>(&KnobController::valueChanged));
    sendMouse(&knob, QEvent::MouseButtonPress, QPoint(18, 18));
    for (int x = 19; x <= 30; ++x)
        sendMouse(&knob, QEvent::MouseMove, QPoint(x, 18));
    QCOMPARE(std::pair(knob.begins, knob.ends), std::pair(3, 2));
    sendMouse(&knob, QEvent::MouseButtonRelease, QPoint(30, 18));
    QCOMPARE(std::pair(knob.begins, knob.ends), std::pair(3, 3));
    QCOMPARE(dragSpy.count(), 2);
    QCOMPARE(memory.value("fx_cmp_atck"), 22);
    QCOMPARE(valueSpy.last().at(0).toInt(), 22);

    // Disabling the knob mid-drag closes the bracket; the release adds nothing.
    sendMouse(&knob, QEvent::MouseButtonPress, QPoint(18, 18));
    knob.setEnabled(false);
    QCOMPARE(knob.ends, 4);
    sendMouse(&knob, QEvent::MouseButtonRelease, QPoint(18, 18));
    QCOMPARE(std::pair(knob.begins, knob.ends), std::pair(4, 4));
    QCOMPARE(dragSpy.count(), 4);
}

void tst_KnobController::dragStepCallsHostAtMostThrice_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("echo");
    QTest::newRow("circular") << int(KnobController::Circular) << int(Qt::NoModifier) << true;
    QTest::newRow("circular, fine") << int(KnobController::Circular) << int(Qt::ShiftModifier) << true;
    QTest::newRow("linear") << int(KnobController::Linear) << int(Qt::NoModifier) << true;
    QTest::newRow("host without echo") << int(KnobController::Circular) << int(Qt::NoModifier) << false;
}

void tst_KnobController::dragStepCallsHostAtMostThrice()
{
    QFETCH(int, operation);
    QFETCH(int, modifiers);
    QFETCH(bool, echo);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    CountingMemory counting(&memory);
    counting.setEcho(echo);
    KnobController knob;
    knob.resize(36, 36);
    knob.setOperationType(KnobController::OperationType(operation));
    knob.setMemAPIValue(&counting, model.parameterId("fx_cmp_atck"), 0);
    const auto keys = Qt::KeyboardModifiers(modifiers);
    sendMouse(&knob, QEvent::MouseButtonPress, QPoint(2, 18), keys);
    const int pressed = memory.value("fx_cmp_atck");
    for (int step = 1; step <= 16; ++step) {
        counting.resetCalls();
        sendMouse(&knob, QEvent::MouseMove, QPoint(2 + step, 18 - step), keys);
        QVERIFY2(counting.calls() <= 3, qPrintable(QString::number(counting.calls())));
    }
    // The drag moved the host, and the knob shows what the host holds.
    QVERIFY(memory.value("fx_cmp_atck") != pressed);
    QCOMPARE(knob.value(), memory.value("fx_cmp_atck"));
    sendMouse(&knob, QEvent::MouseButtonRelease, QPoint(18, 2), keys);
}

QTEST_MAIN(tst_KnobController)
#include "tst_knobcontroller.moc"
