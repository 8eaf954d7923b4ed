#include <QSignalSpy>
#include <QTest>

#include "Common/Widgets/KnobController.h"
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

// An unbound 36 x 36 knob over 0..maximum.
void setUp(KnobController &knob, int maximum, int value, int step = 1,
    KnobController::OperationType type = KnobController::Circular)
{
    knob.resize(36, 36);
    knob.setMinimumValue(0);
    knob.setMaximumValue(maximum);
    knob.setValue(value);
    knob.setValueChangeStep(step);
    knob.setOperationType(type);
}

} // namespace

class tst_KnobController : public QObject
{
    Q_OBJECT

private slots:
    void pressMapsTheAngle_data();
    void pressMapsTheAngle();
    void linearPixelsPerStep_data();
    void linearPixelsPerStep();
    void relativeCircularFollowsRotation();
    void wheel_data();
    void wheel();
    void keys_data();
    void keys();
    void boundGestures();
};

void tst_KnobController::pressMapsTheAngle_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<int>("expected");
    // Range 0..100: 101 equal buckets over the 300 degrees from 7 to 5 o'clock.
    QTest::newRow("just right of 6 o'clock") << QPoint(19, 35) << 100;
    QTest::newRow("just left of 6 o'clock") << QPoint(17, 35) << 0;
    QTest::newRow("12 o'clock") << QPoint(18, 0) << 50;
    QTest::newRow("3 o'clock") << QPoint(36, 18) << 80;
}

void tst_KnobController::pressMapsTheAngle()
{
    QFETCH(QPoint, press);
    QFETCH(int, expected);
    KnobController absolute;
    KnobController relative;
    setUp(absolute, 100, 60);
    setUp(relative, 100, 60, 1, KnobController::RelativeCircular);
    sendMouse(&absolute, QEvent::MouseButtonPress, press);
    sendMouse(&relative, QEvent::MouseButtonPress, press);
    QCOMPARE(absolute.value(), expected);
    QCOMPARE(relative.value(), 60); // a relative knob does not jump
}

void tst_KnobController::linearPixelsPerStep_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("pixelsPerStep");
    QTest::addColumn<int>("valueChangeStep");
    QTest::newRow("0..127: one step per pixel") << 127 << 1 << 1;
    QTest::newRow("0..9: one step per 20 pixels") << 9 << 20 << 1;
    QTest::newRow("0..1: limited to 20 pixels") << 1 << 20 << 1;
    QTest::newRow("0..99 coarse step 2") << 99 << 2 << 2;
}

void tst_KnobController::linearPixelsPerStep()
{
    QFETCH(int, maximum);
    QFETCH(int, pixelsPerStep);
    QFETCH(int, valueChangeStep);
    KnobController knob;
    setUp(knob, maximum, 0, valueChangeStep, KnobController::Linear);
    const auto moveTo = [&](QPoint offset, Qt::KeyboardModifiers modifiers = {}) {
        sendMouse(&knob, QEvent::MouseMove, QPoint(18, 18) + offset, modifiers);
        return knob.value();
    };
    sendMouse(&knob, QEvent::MouseButtonPress, QPoint(18, 18));
    QCOMPARE(knob.value(), 0); // a linear knob does not jump
    // One pixel short of a step changes nothing; right and up both count.
    QCOMPARE(moveTo({ pixelsPerStep - 1, 0 }), 0);
    QCOMPARE(moveTo({ pixelsPerStep, 0 }), std::min(maximum, valueChangeStep));
    QCOMPARE(moveTo({ 0, -pixelsPerStep }), std::min(maximum, valueChangeStep));
    QCOMPARE(moveTo({ -pixelsPerStep, 0 }), 0);
    // Shift re-anchors at the last position and makes it four times finer.
    moveTo({ 1 - pixelsPerStep, 0 }, Qt::ShiftModifier);
    QCOMPARE(moveTo({ 3 * pixelsPerStep - 1, 0 }, Qt::ShiftModifier), 0);
    QCOMPARE(moveTo({ 3 * pixelsPerStep, 0 }, Qt::ShiftModifier), 1);
}

void tst_KnobController::relativeCircularFollowsRotation()
{
    KnobController knob;
    setUp(knob, 300, 150, 1, KnobController::RelativeCircular);
    // A quarter turn clockwise around the centre is 90 of the 300 degrees.
    for (const QPoint &at : { QPoint(18, 0), QPoint(31, 5), QPoint(36, 18) })
        sendMouse(&knob, at == QPoint(18, 0) ? QEvent::MouseButtonPress : QEvent::MouseMove, at);
    QVERIFY2(qAbs(knob.value() - 240) <= 1, qPrintable(QString::number(knob.value())));
    // With Shift (re-anchored) the next quarter turn moves a quarter as far.
    sendMouse(&knob, QEvent::MouseMove, QPoint(36, 19), Qt::ShiftModifier);
    const int anchored = knob.value();
    sendMouse(&knob, QEvent::MouseMove, QPoint(31, 31), Qt::ShiftModifier);
    sendMouse(&knob, QEvent::MouseMove, QPoint(18, 36), Qt::ShiftModifier);
    QVERIFY2(qAbs(knob.value() - (anchored + 22)) <= 1, qPrintable(QString::number(knob.value())));
}

// The wheel's notch arithmetic, shared by every control that takes the wheel.
void tst_KnobController::wheel_data()
{
    QTest::addColumn<int>("valueChangeStep");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QList<QPoint>>("deltas");
    QTest::addColumn<int>("expected");
    QTest::newRow("one notch") << 1 << false << QList<QPoint> { { 0, 120 } } << 51;
    QTest::newRow("remainder kept") << 1 << false << QList<QPoint> { { 0, 200 }, { 0, 40 } } << 52;
    QTest::newRow("reversal discards the partial sum")
        << 1 << false << QList<QPoint> { { 0, 100 }, { 0, -20 }, { 0, 100 } } << 50;
    QTest::newRow("coarse step multiplies") << 5 << false << QList<QPoint> { { 0, 120 } } << 55;
    QTest::newRow("shift: three notches per unit") << 1 << true << QList<QPoint>(3, { 0, 120 }) << 51;
    QTest::newRow("shift with coarse step: one unit per notch")
        << 5 << true << QList<QPoint> { { 0, 120 } } << 51;
    QTest::newRow("larger component wins") << 1 << false << QList<QPoint> { { -120, 30 } } << 49;
}

void tst_KnobController::wheel()
{
    QFETCH(int, valueChangeStep);
    QFETCH(bool, shift);
    QFETCH(QList<QPoint>, deltas);
    QFETCH(int, expected);
    KnobController knob;
    setUp(knob, 100, 50, valueChangeStep);
    QSignalSpy modifierSpy(&knob, &KnobController::modifiersChange);
    for (const QPoint &delta : deltas)
        sendWheel(&knob, QPoint(18, 18), delta, shift ? Qt::ShiftModifier : Qt::NoModifier);
    QCOMPARE(knob.value(), expected);
    // A change made with a modifier held is announced for repetition.
    QCOMPARE(modifierSpy.count(), shift && expected != 50 ? 1 : 0);
}

void tst_KnobController::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("valueChangeStep");
    QTest::addColumn<int>("expected");
    QTest::newRow("Home") << int(Qt::Key_Home) << 1 << 0;
    QTest::newRow("Left") << int(Qt::Key_Left) << 5 << 49;
    QTest::newRow("PageUp") << int(Qt::Key_PageUp) << 1 << 60;
    QTest::newRow("PageDown coarse, clamped") << int(Qt::Key_PageDown) << 6 << 0;
    QTest::newRow("other keys ignored") << int(Qt::Key_A) << 1 << 50;
}

void tst_KnobController::keys()
{
    QFETCH(int, key);
    QFETCH(int, valueChangeStep);
    QFETCH(int, expected);
    KnobController knob;
    setUp(knob, 100, 50, valueChangeStep);
    QTest::keyClick(&knob, Qt::Key(key));
    QCOMPARE(knob.value(), expected);
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
    setUp(knob, 0, 0, 1, KnobController::Linear);
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

QTEST_MAIN(tst_KnobController)
#include "tst_knobcontroller.moc"
