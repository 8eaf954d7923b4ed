#include <QSignalSpy>
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

// A vertical 28 x 160 fader over 0..100 with the 28 x 44 thumb: the thumb
// travels 116 pixels.
void setUp(FaderController &fader, int value, bool reverse = false,
    FaderController::OperationType type = FaderController::Jump)
{
    fader.resize(28, 160);
    fader.setKnobSvg(QStringLiteral(":/image/orvchstrip/fader_knob.svg"));
    fader.setMinimumValue(0);
    fader.setMaximumValue(100);
    fader.setValue(value);
    fader.setReverse(reverse);
    fader.setOperationType(type);
}

} // namespace

class tst_FaderController : public QObject
{
    Q_OBJECT

private slots:
    void thumbGeometry_data();
    void thumbGeometry();
    void pressOffTheThumb_data();
    void pressOffTheThumb();
    void relativeDrag();
    void ramp_data();
    void ramp();
    void restoresTheDefault();
    void wheelAndKeys_data();
    void wheelAndKeys();
};

void tst_FaderController::thumbGeometry_data()
{
    QTest::addColumn<bool>("horizontal");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("value");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("vertical minimum at the bottom") << false << false << 0 << QRectF(0, 116, 28, 44);
    QTest::newRow("vertical reversed") << false << true << 0 << QRectF(0, 0, 28, 44);
    QTest::newRow("horizontal quarter") << true << false << 25 << QRectF(33, 0, 28, 44);
    QTest::newRow("horizontal reversed") << true << true << 25 << QRectF(99, 0, 28, 44);
}

void tst_FaderController::thumbGeometry()
{
    QFETCH(bool, horizontal);
    QFETCH(bool, reverse);
    QFETCH(int, value);
    QFETCH(QRectF, expected);
    FaderController fader;
    setUp(fader, value, reverse);
    if (horizontal) {
        fader.setOrientation(Qt::Horizontal);
        fader.resize(160, 44);
    }
    QCOMPARE(fader.thumbRect(), expected);
    fader.setScale(2.0);
    fader.resize(fader.size() * 2);
    QCOMPARE(fader.thumbRect(), QRectF(expected.topLeft() * 2, expected.size() * 2));
}

void tst_FaderController::pressOffTheThumb_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("pressY");
    QTest::addColumn<int>("expected");
    QTest::addColumn<bool>("drags");
    // Start at 100 (thumb at the top, y 0..44), or 0 when reversed.
    QTest::newRow("touch ignores it") << int(FaderController::Touch) << false << 138 << 100 << false;
    QTest::newRow("jump to the middle") << int(FaderController::Jump) << false << 80 << 50 << true;
    QTest::newRow("jump reversed") << int(FaderController::Jump) << true << 138 << 100 << true;
    QTest::newRow("relative only drags") << int(FaderController::Relative) << false << 138 << 100 << true;
}

void tst_FaderController::pressOffTheThumb()
{
    QFETCH(int, type);
    QFETCH(bool, reverse);
    QFETCH(int, pressY);
    QFETCH(int, expected);
    QFETCH(bool, drags);
    CountingFader fader;
    setUp(fader, reverse ? 0 : 100, reverse, FaderController::OperationType(type));
    QSignalSpy dragSpy(&fader, &FaderController::drag);
    sendMouse(&fader, QEvent::MouseButtonPress, QPoint(14, pressY));
    QCOMPARE(fader.value(), expected);
    QCOMPARE(fader.isDragging(), drags);
    sendMouse(&fader, QEvent::MouseButtonRelease, QPoint(14, pressY));
    QCOMPARE(dragSpy.count(), drags ? 2 : 0);
    QCOMPARE(std::pair(fader.begins, fader.ends), std::pair(int(drags), int(drags)));
}

void tst_FaderController::relativeDrag()
{
    FaderController fader;
    setUp(fader, 50, false, FaderController::Relative);
    // 116 pixels of travel for the whole range; up raises the value.
    sendMouse(&fader, QEvent::MouseButtonPress, QPoint(14, 140));
    sendMouse(&fader, QEvent::MouseMove, QPoint(14, 111));
    QCOMPARE(fader.value(), 75);
    // Shift re-anchors and makes the drag four times finer.
    sendMouse(&fader, QEvent::MouseMove, QPoint(14, 111), Qt::ShiftModifier);
    sendMouse(&fader, QEvent::MouseMove, QPoint(14, 53), Qt::ShiftModifier);
    QCOMPARE(fader.value(), 88);
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
    setUp(fader, 50, false, FaderController::Ramp); // thumb at y 58..102
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

void tst_FaderController::restoresTheDefault()
{
    FaderController fader;
    setUp(fader, 100);
    fader.setDefaultValue(20);
    // Without enableDoubleClick a double click is just another press.
    sendMouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 22));
    QCOMPARE(fader.value(), 100);

    // Right after a jump, the second click of a double click jumps again;
    // once the double-click interval is over it restores the default.
    fader.setEnableDoubleClick(true);
    sendMouse(&fader, QEvent::MouseButtonPress, QPoint(14, 80));
    sendMouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 80));
    sendMouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 80));
    sendMouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 80));
    QCOMPARE(fader.value(), 50);
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    sendMouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 80));
    QCOMPARE(fader.value(), 20);

    // Control-click restores it on the thumb, also in Touch mode.
    fader.setValue(70);
    fader.setOperationType(FaderController::Touch);
    sendMouse(&fader, QEvent::MouseButtonPress, fader.thumbRect().center().toPoint(), Qt::ControlModifier);
    QCOMPARE(fader.value(), 20);
}

void tst_FaderController::wheelAndKeys_data()
{
    QTest::addColumn<bool>("horizontal");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("expected");
    QTest::newRow("up") << false << false << int(Qt::Key_Up) << 51;
    QTest::newRow("down reversed") << false << true << int(Qt::Key_Down) << 51;
    QTest::newRow("right on a horizontal fader") << true << false << int(Qt::Key_Right) << 51;
    QTest::newRow("up on a horizontal fader") << true << false << int(Qt::Key_Up) << 50;
    QTest::newRow("page up reversed") << false << true << int(Qt::Key_PageUp) << 40;
    QTest::newRow("wheel reversed, two notches") << false << true << 0 << 48;
}

void tst_FaderController::wheelAndKeys()
{
    QFETCH(bool, horizontal);
    QFETCH(bool, reverse);
    QFETCH(int, key);
    QFETCH(int, expected);
    FaderController fader;
    setUp(fader, 50, reverse);
    fader.setOrientation(horizontal ? Qt::Horizontal : Qt::Vertical);
    if (key)
        QTest::keyClick(&fader, Qt::Key(key));
    else
        QVERIFY(sendWheel(&fader, QPoint(5, 5), QPoint(0, 240)));
    QCOMPARE(fader.value(), expected);
}

QTEST_MAIN(tst_FaderController)
#include "tst_fadercontroller.moc"
