#include <QApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include "Common/Widgets/FaderController.h"

using CommonController_MemAPI::FaderController;

namespace {

const QString ThumbSvg = QStringLiteral(":/image/orvchstrip/fader_knob.svg"); // 28 x 44

class CountingFader : public FaderController
{
public:
    int begins = 0;
    int ends = 0;
    void beginEdit() override { ++begins; }
    void endEdit() override { ++ends; }
};

void mouse(QWidget *widget, QEvent::Type type, QPoint position, Qt::KeyboardModifiers modifiers = {})
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(
        type, QPointF(position), widget->mapToGlobal(QPointF(position)), button, held, modifiers);
    QApplication::sendEvent(widget, &event);
}

// A vertical 28 x 160 fader over 0..100: the thumb travels 116 pixels.
void setupVertical(FaderController &fader, int value)
{
    fader.resize(28, 160);
    fader.setKnobSvg(ThumbSvg);
    fader.setMinimumValue(0);
    fader.setMaximumValue(100);
    fader.setValue(value);
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
    void doubleClick();
    void wheelAndKeys_data();
    void wheelAndKeys();
};

void tst_FaderController::thumbGeometry_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("value");
    QTest::addColumn<QRectF>("expected");
    const int v = Qt::Vertical;
    const int h = Qt::Horizontal;
    QTest::newRow("vertical minimum at the bottom") << v << false << 0 << QRectF(0, 116, 28, 44);
    QTest::newRow("vertical reversed") << v << true << 0 << QRectF(0, 0, 28, 44);
    QTest::newRow("horizontal quarter") << h << false << 25 << QRectF(33, 0, 28, 44);
    QTest::newRow("horizontal reversed") << h << true << 25 << QRectF(99, 0, 28, 44);
}

void tst_FaderController::thumbGeometry()
{
    QFETCH(int, orientation);
    QFETCH(bool, reverse);
    QFETCH(int, value);
    QFETCH(QRectF, expected);
    FaderController fader;
    setupVertical(fader, value);
    fader.setOrientation(Qt::Orientation(orientation));
    fader.setReverse(reverse);
    if (orientation == Qt::Horizontal)
        fader.resize(160, 44);
    QCOMPARE(fader.thumbRect(), expected);

    // The thumb is drawn where the geometry puts it.
    QImage image(fader.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    fader.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QVERIFY(image.pixelColor(expected.center().toPoint()).alpha() == 255);

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
    setupVertical(fader, reverse ? 0 : 100);
    fader.setReverse(reverse);
    fader.setOperationType(FaderController::OperationType(type));
    QSignalSpy dragSpy(&fader, &FaderController::drag);
    mouse(&fader, QEvent::MouseButtonPress, QPoint(14, pressY));
    QCOMPARE(fader.value(), expected);
    QCOMPARE(fader.isDragging(), drags);
    mouse(&fader, QEvent::MouseButtonRelease, QPoint(14, pressY));
    QCOMPARE(dragSpy.count(), drags ? 2 : 0);
    QCOMPARE(fader.begins, drags ? 1 : 0);
    QCOMPARE(fader.ends, fader.begins);
}

void tst_FaderController::relativeDrag()
{
    FaderController fader;
    setupVertical(fader, 50);
    fader.setOperationType(FaderController::Relative);
    // 116 pixels of travel for the whole range; up raises the value.
    mouse(&fader, QEvent::MouseButtonPress, QPoint(14, 140));
    mouse(&fader, QEvent::MouseMove, QPoint(14, 111));
    QCOMPARE(fader.value(), 75);
    // Shift re-anchors and makes the drag four times finer.
    mouse(&fader, QEvent::MouseMove, QPoint(14, 111), Qt::ShiftModifier);
    mouse(&fader, QEvent::MouseMove, QPoint(14, 53), Qt::ShiftModifier);
    QCOMPARE(fader.value(), 88);
    mouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 53));
    QVERIFY(!fader.isDragging());
}

void tst_FaderController::ramp_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("step");
    QTest::newRow("5 units") << int(Qt::NoModifier) << false << -5;
    QTest::newRow("1 unit with Shift") << int(Qt::ShiftModifier) << false << -1;
}

void tst_FaderController::ramp()
{
    QFETCH(int, modifiers);
    QFETCH(bool, reverse);
    QFETCH(int, step);
    FaderController fader;
    setupVertical(fader, 50); // thumb at y 58..102
    fader.setReverse(reverse);
    fader.setOperationType(FaderController::Ramp);
    fader.show();
    QVERIFY(QTest::qWaitForWindowExposed(&fader));
    auto *timer = fader.findChild<QTimer *>(QStringLiteral("rampTimer"));
    QVERIFY(timer);

    // Held below the thumb: one step at once, the next after 300 ms.
    QTest::mousePress(&fader, Qt::LeftButton, Qt::KeyboardModifiers(modifiers), QPoint(14, 150));
    QCOMPARE(fader.value(), 50 + step);
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), FaderController::RampFirstDelay);
    QTRY_COMPARE_WITH_TIMEOUT(fader.value(), 50 + 2 * step, 2000);
    QCOMPARE(timer->interval(), FaderController::RampRepeatDelay);
    QTRY_COMPARE_WITH_TIMEOUT(fader.value(), 50 + 3 * step, 2000);

    // Releasing stops the ramp.
    QTest::mouseRelease(&fader, Qt::LeftButton, Qt::KeyboardModifiers(modifiers), QPoint(14, 150));
    const int released = fader.value();
    QVERIFY(!timer->isActive());
    QTest::qWait(250);
    QCOMPARE(fader.value(), released);
}

void tst_FaderController::doubleClick()
{
    FaderController fader;
    setupVertical(fader, 100);
    fader.setDefaultValue(20);
    fader.setOperationType(FaderController::Jump);

    // Without enableDoubleClick a double click is just another press.
    mouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 22));
    mouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 22));
    QCOMPARE(fader.value(), 100);

    // Right after a jump, the second click of a double click jumps again.
    fader.setEnableDoubleClick(true);
    mouse(&fader, QEvent::MouseButtonPress, QPoint(14, 80));
    mouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 80));
    QCOMPARE(fader.value(), 50);
    mouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 80));
    mouse(&fader, QEvent::MouseButtonRelease, QPoint(14, 80));
    QCOMPARE(fader.value(), 50);

    // Once the double-click interval is over it restores the default.
    QTest::qWait(QApplication::doubleClickInterval() + 100);
    mouse(&fader, QEvent::MouseButtonDblClick, QPoint(14, 80));
    QCOMPARE(fader.value(), 20);

    // Control-click restores it on the thumb, also in Touch mode.
    fader.setValue(70);
    fader.setOperationType(FaderController::Touch);
    mouse(&fader, QEvent::MouseButtonPress, fader.thumbRect().center().toPoint(), Qt::ControlModifier);
    QCOMPARE(fader.value(), 20);
}

void tst_FaderController::wheelAndKeys_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("reverse");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("wheelDelta");
    QTest::addColumn<int>("expected");
    const int v = Qt::Vertical;
    const int h = Qt::Horizontal;
    QTest::newRow("up") << v << false << int(Qt::Key_Up) << 0 << 51;
    QTest::newRow("down reversed") << v << true << int(Qt::Key_Down) << 0 << 51;
    QTest::newRow("right on a horizontal fader") << h << false << int(Qt::Key_Right) << 0 << 51;
    QTest::newRow("up on a horizontal fader") << h << false << int(Qt::Key_Up) << 0 << 50;
    QTest::newRow("page up reversed") << v << true << int(Qt::Key_PageUp) << 0 << 40;
    QTest::newRow("wheel reversed") << v << true << 0 << 240 << 48;
}

void tst_FaderController::wheelAndKeys()
{
    QFETCH(int, orientation);
    QFETCH(bool, reverse);
    QFETCH(int, key);
    QFETCH(int, wheelDelta);
    QFETCH(int, expected);
    FaderController fader;
    setupVertical(fader, 50);
    fader.setOrientation(Qt::Orientation(orientation));
    fader.setReverse(reverse);
    if (key)
        QTest::keyClick(&fader, Qt::Key(key));
    if (wheelDelta) {
        QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, wheelDelta), Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&fader, &event);
        QVERIFY(event.isAccepted());
    }
    QCOMPARE(fader.value(), expected);
}

QTEST_MAIN(tst_FaderController)
#include "tst_fadercontroller.moc"
