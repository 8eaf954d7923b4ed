#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include "Common/Widgets/KnobController.h"
#include "HostModel.h"
#include "ParameterMemory.h"

using CommonController_MemAPI::AbstractController;
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

// A knob bound to the compressor attack: 1..200, default 10.
struct BoundKnob
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory { &model };
    CountingKnob knob;
    BoundKnob()
    {
        knob.resize(36, 36);
        knob.setMemAPIValue(&memory, model.parameterId("fx_cmp_atck"), 0);
    }
};

void mouse(QWidget *widget, QEvent::Type type, QPoint position, Qt::KeyboardModifiers modifiers = {},
    Qt::MouseButtons held = Qt::LeftButton)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    if (type == QEvent::MouseButtonRelease)
        held = Qt::NoButton;
    QMouseEvent event(
        type, QPointF(position), widget->mapToGlobal(QPointF(position)), button, held, modifiers);
    QApplication::sendEvent(widget, &event);
}

void wheel(QWidget *widget, QPoint angle, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(QPointF(18, 18), widget->mapToGlobal(QPointF(18, 18)), QPoint(), angle, Qt::NoButton,
        modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

// The control alone on a transparent canvas, without a window background.
QImage picture(QWidget *widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    widget->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

void setupUnbound(KnobController &knob, int maximum, int value)
{
    knob.resize(36, 36);
    knob.setMinimumValue(0);
    knob.setMaximumValue(maximum);
    knob.setValue(value);
}

} // namespace

class tst_KnobController : public QObject
{
    Q_OBJECT

private slots:
    void angleMapping_data();
    void angleMapping();
    void linearPixelsPerStep_data();
    void linearPixelsPerStep();
    void relativeCircularFollowsRotation();
    void wheel_data();
    void wheel();
    void keys_data();
    void keys();
    void controlClickRestoresDefault();
    void dragBracketsOneEdit();
    void indexLineFollowsValue();
    void artwork();
    void dragStepCallsHostAtMostThrice_data();
    void dragStepCallsHostAtMostThrice();
};

void tst_KnobController::angleMapping_data()
{
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<int>("expected");
    // Range 0..100 unbound: equal buckets, so n maps to trunc(n * 101).
    QTest::newRow("just right of 6 o'clock") << QPoint(19, 35) << 100;
    QTest::newRow("just left of 6 o'clock") << QPoint(17, 35) << 0;
    QTest::newRow("12 o'clock") << QPoint(18, 0) << 50;
    QTest::newRow("3 o'clock") << QPoint(36, 18) << 80;
}

void tst_KnobController::angleMapping()
{
    QFETCH(QPoint, press);
    QFETCH(int, expected);
    KnobController knob;
    setupUnbound(knob, 100, 60);
    mouse(&knob, QEvent::MouseButtonPress, press);
    QCOMPARE(knob.value(), expected);
    mouse(&knob, QEvent::MouseButtonRelease, press);

    // A relative knob does not jump on a press.
    KnobController relative;
    setupUnbound(relative, 100, 60);
    relative.setOperationType(KnobController::RelativeCircular);
    mouse(&relative, QEvent::MouseButtonPress, press);
    QCOMPARE(relative.value(), 60);
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
    setupUnbound(knob, 1000, 0);
    knob.setMaximumValue(maximum);
    knob.setOperationType(KnobController::Linear);
    knob.setValueChangeStep(valueChangeStep);
    const QPoint anchor(18, 18);
    mouse(&knob, QEvent::MouseButtonPress, anchor);
    QCOMPARE(knob.value(), 0); // a linear knob does not jump

    // One pixel short of a step changes nothing; right and up both count.
    mouse(&knob, QEvent::MouseMove, anchor + QPoint(pixelsPerStep - 1, 0));
    QCOMPARE(knob.value(), 0);
    mouse(&knob, QEvent::MouseMove, anchor + QPoint(pixelsPerStep, 0));
    QCOMPARE(knob.value(), std::min(maximum, valueChangeStep));
    mouse(&knob, QEvent::MouseMove, anchor + QPoint(0, -pixelsPerStep));
    QCOMPARE(knob.value(), std::min(maximum, valueChangeStep));
    mouse(&knob, QEvent::MouseMove, anchor + QPoint(-pixelsPerStep, 0));
    QCOMPARE(knob.value(), 0);

    // Shift re-anchors at the last position and makes it four times finer.
    const QPoint fineAnchor = anchor + QPoint(-pixelsPerStep, 0);
    mouse(&knob, QEvent::MouseMove, fineAnchor + QPoint(1, 0), Qt::ShiftModifier);
    mouse(&knob, QEvent::MouseMove, fineAnchor + QPoint(4 * pixelsPerStep - 1, 0), Qt::ShiftModifier);
    QCOMPARE(knob.value(), 0);
    mouse(&knob, QEvent::MouseMove, fineAnchor + QPoint(4 * pixelsPerStep, 0), Qt::ShiftModifier);
    QCOMPARE(knob.value(), 1);
    mouse(&knob, QEvent::MouseButtonRelease, anchor);
}

void tst_KnobController::relativeCircularFollowsRotation()
{
    KnobController knob;
    setupUnbound(knob, 300, 150);
    knob.setOperationType(KnobController::RelativeCircular);
    // A quarter turn clockwise around the centre is 90 of the 300 degrees.
    mouse(&knob, QEvent::MouseButtonPress, QPoint(18, 0));
    mouse(&knob, QEvent::MouseMove, QPoint(31, 5));
    mouse(&knob, QEvent::MouseMove, QPoint(36, 18));
    QVERIFY2(qAbs(knob.value() - 240) <= 1, qPrintable(QString::number(knob.value())));
    // With Shift (re-anchored) the next quarter turn moves a quarter as far.
    mouse(&knob, QEvent::MouseMove, QPoint(36, 19), Qt::ShiftModifier);
    const int anchored = knob.value();
    mouse(&knob, QEvent::MouseMove, QPoint(31, 31), Qt::ShiftModifier);
    mouse(&knob, QEvent::MouseMove, QPoint(18, 36), Qt::ShiftModifier);
    QVERIFY2(qAbs(knob.value() - (anchored + 22)) <= 1, qPrintable(QString::number(knob.value())));
}

void tst_KnobController::wheel_data()
{
    QTest::addColumn<int>("valueChangeStep");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QList<QPoint>>("deltas");
    QTest::addColumn<int>("expected");
    const int none = Qt::NoModifier;
    const int shift = Qt::ShiftModifier;
    QTest::newRow("one notch") << 1 << none << QList<QPoint> { { 0, 120 } } << 51;
    QTest::newRow("remainder kept") << 1 << none << QList<QPoint> { { 0, 200 }, { 0, 40 } } << 52;
    QTest::newRow("reversal discards the partial sum")
        << 1 << none << QList<QPoint> { { 0, 100 }, { 0, -20 }, { 0, 100 } } << 50;
    QTest::newRow("coarse step multiplies") << 5 << none << QList<QPoint> { { 0, 120 } } << 55;
    QTest::newRow("shift: three notches per unit")
        << 1 << shift << QList<QPoint> { { 0, 120 }, { 0, 120 }, { 0, 120 } } << 51;
    QTest::newRow("shift with coarse step: one unit per notch")
        << 5 << shift << QList<QPoint> { { 0, 120 } } << 51;
    QTest::newRow("larger component wins") << 1 << none << QList<QPoint> { { -120, 30 } } << 49;
}

void tst_KnobController::wheel()
{
    QFETCH(int, valueChangeStep);
    QFETCH(int, modifiers);
    QFETCH(QList<QPoint>, deltas);
    QFETCH(int, expected);
    KnobController knob;
    setupUnbound(knob, 100, 50);
    knob.setValueChangeStep(valueChangeStep);
    QSignalSpy modifierSpy(&knob, &KnobController::modifiersChange);
    for (const QPoint &delta : deltas)
        ::wheel(&knob, delta, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(knob.value(), expected);
    QCOMPARE(modifierSpy.isEmpty(), modifiers == Qt::NoModifier || expected == 50);
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
    setupUnbound(knob, 100, 50);
    knob.setValueChangeStep(valueChangeStep);
    QSignalSpy valueSpy(&knob, qOverload<int>(&KnobController::valueChanged));
    QTest::keyClick(&knob, Qt::Key(key));
    QCOMPARE(knob.value(), expected);
    QCOMPARE(valueSpy.count(), expected == 50 ? 0 : 1);

    knob.setEnabled(false);
    QTest::keyClick(&knob, Qt::Key_Home);
    QCOMPARE(knob.value(), expected);
}

void tst_KnobController::controlClickRestoresDefault()
{
    BoundKnob bound;
    auto &[model, memory, knob] = bound;
    memory.setValueByKey("fx_cmp_atck", 150);
    QSignalSpy modifierSpy(&knob, &KnobController::modifiersChange);
    QSignalSpy dragSpy(&knob, &KnobController::drag);
    memory.clearWrites();

    mouse(&knob, QEvent::MouseButtonPress, QPoint(30, 10), Qt::ControlModifier);
    mouse(&knob, QEvent::MouseButtonRelease, QPoint(30, 10), Qt::ControlModifier);
    QCOMPARE(memory.value("fx_cmp_atck"), 10);
    QCOMPARE(memory.writes().size(), 1);
    QCOMPARE(memory.writes().first().value, 10);
    QCOMPARE(knob.begins, 1);
    QCOMPARE(knob.ends, 1);
    QCOMPARE(dragSpy.count(), 0); // no drag, no jump to the pointer
    QCOMPARE(modifierSpy.count(), 1);
    QCOMPARE(
        modifierSpy.first().at(0).value<AbstractController *>(), static_cast<AbstractController *>(&knob));

    // Control-double-click restores it as well.
    memory.setValueByKey("fx_cmp_atck", 77);
    mouse(&knob, QEvent::MouseButtonDblClick, QPoint(30, 10), Qt::ControlModifier);
    QCOMPARE(memory.value("fx_cmp_atck"), 10);
}

void tst_KnobController::dragBracketsOneEdit()
{
    BoundKnob bound;
    auto &[model, memory, knob] = bound;
    knob.setOperationType(KnobController::Linear);
    QSignalSpy dragSpy(&knob, &KnobController::drag);
    QSignalSpy valueSpy(&knob, qOverload<int>(&KnobController::valueChanged));
    memory.clearWrites();

    mouse(&knob, QEvent::MouseButtonPress, QPoint(18, 18));
    QCOMPARE(dragSpy.count(), 1);
    QCOMPARE(dragSpy.at(0).at(0).toBool(), true);
    for (int x = 19; x <= 30; ++x)
        mouse(&knob, QEvent::MouseMove, QPoint(x, 18), x > 25 ? Qt::ShiftModifier : Qt::NoModifier);
    QCOMPARE(knob.begins, 1);
    QCOMPARE(knob.ends, 0);
    mouse(&knob, QEvent::MouseButtonRelease, QPoint(30, 18));
    QCOMPARE(knob.begins, 1);
    QCOMPARE(knob.ends, 1);
    QCOMPARE(dragSpy.count(), 2);
    QCOMPARE(dragSpy.at(1).at(0).toBool(), false);
    // 0..199 steps: one pixel per step; the host confirmed each write.
    QVERIFY(memory.value("fx_cmp_atck") > 10);
    QVERIFY(!memory.writes().isEmpty());
    QCOMPARE(valueSpy.last().at(0).toInt(), memory.value("fx_cmp_atck"));

    // Disabling the knob mid-drag closes the bracket; the release adds nothing.
    mouse(&knob, QEvent::MouseButtonPress, QPoint(18, 18));
    knob.setEnabled(false);
    QCOMPARE(knob.ends, 2);
    mouse(&knob, QEvent::MouseButtonRelease, QPoint(18, 18));
    QCOMPARE(knob.begins, 2);
    QCOMPARE(knob.ends, 2);
    QCOMPARE(dragSpy.count(), 4);
}

void tst_KnobController::indexLineFollowsValue()
{
    KnobController knob;
    setupUnbound(knob, 100, 0);
    knob.setInside(6.0);
    knob.setOutside(16.0);
    knob.setThick(3.0);
    QPalette palette = knob.palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    knob.setPalette(palette);

    // Minimum sits at 210 degrees (about 7 o'clock), maximum at 150 (5 o'clock).
    const QPoint minimumMark(13, 26);
    const QPoint maximumMark(23, 26);
    QImage image = picture(&knob);
    QCOMPARE(image.pixelColor(minimumMark), QColor(Qt::red));
    QCOMPARE(image.pixelColor(maximumMark).alpha(), 0);

    knob.setValue(100);
    image = picture(&knob);
    QCOMPARE(image.pixelColor(maximumMark), QColor(Qt::red));
    QCOMPARE(image.pixelColor(minimumMark).alpha(), 0);

    // A rotating knob draws no line.
    knob.setKnobType(KnobController::RotateKnob);
    image = picture(&knob);
    QCOMPARE(image.pixelColor(maximumMark).alpha(), 0);
}

void tst_KnobController::artwork()
{
    KnobController knob;
    setupUnbound(knob, 100, 42);
    knob.setKnobSvg(QStringLiteral(":/image/orvchstrip/knob_comp.svg"));
    knob.setShadowSvg(QStringLiteral(":/image/orvchstrip/knob_shadow.svg"));
    QCOMPARE(knob.sizeHint(), QSize(36, 36));
    const QImage image = picture(&knob);
    QVERIFY(image.pixelColor(18, 18).alpha() == 255); // the face is opaque
    QVERIFY(image.pixelColor(18, 35).alpha() > 0);    // the shadow shows below
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0);

    // Disabled with a lower opacity, the face lets the background through.
    knob.setKnobDisableOpacity(0.4);
    knob.setEnabled(false);
    QVERIFY(picture(&knob).pixelColor(8, 18).alpha() < 255);
}

namespace {

// Counts the calls a control makes into the parameter memory; without echo
// the memory stores writes without telling the observers.
class CountingMemory : public ParameterMemory
{
public:
    using ParameterMemory::ParameterMemory;
    int calls = 0;
    bool echo = true;
    int getValue(unsigned short p, unsigned short c, int *v, int i) override
    {
        return ++calls, ParameterMemory::getValue(p, c, v, i);
    }
    int setValue(unsigned short p, unsigned short c, int v, int i, int r, int notify) override
    {
        return ++calls, ParameterMemory::setValue(p, c, v, i, r, echo ? notify : 0);
    }
    int getRange(unsigned short p, unsigned short c, int *lo, int *hi) override
    {
        return ++calls, ParameterMemory::getRange(p, c, lo, hi);
    }
    int getDefault(unsigned short p, unsigned short c, int *v) override
    {
        return ++calls, ParameterMemory::getDefault(p, c, v);
    }
    int getValueString(unsigned short p, unsigned short c, int v, char *text, int size) override
    {
        return ++calls, ParameterMemory::getValueString(p, c, v, text, size);
    }
};

} // namespace

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
    CountingMemory memory(&model);
    memory.echo = echo;
    KnobController knob;
    knob.resize(36, 36);
    knob.setOperationType(KnobController::OperationType(operation));
    knob.setMemAPIValue(&memory, model.parameterId("fx_cmp_atck"), 0);
    const auto keys = Qt::KeyboardModifiers(modifiers);
    mouse(&knob, QEvent::MouseButtonPress, QPoint(2, 18), keys);
    const int pressed = memory.value("fx_cmp_atck");
    for (int step = 1; step <= 16; ++step) {
        memory.calls = 0;
        mouse(&knob, QEvent::MouseMove, QPoint(2 + step, 18 - step), keys);
        QVERIFY2(memory.calls <= 3, qPrintable(QString::number(memory.calls)));
    }
    // The drag moved the host, and the knob shows what the host holds.
    QVERIFY(memory.value("fx_cmp_atck") != pressed);
    QCOMPARE(knob.value(), memory.value("fx_cmp_atck"));
    mouse(&knob, QEvent::MouseButtonRelease, QPoint(18, 2), keys);
}

QTEST_MAIN(tst_KnobController)
#include "tst_knobcontroller.moc"
