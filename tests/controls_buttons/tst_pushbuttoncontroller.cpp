#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "ButtonTestModel.h"
#include "Common/Widgets/PushButtonController.h"
#include "HostModel.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;
using Trigger = PushButtonController::CheckTrigger;

namespace {

// A host that confirms writes only when told to, so a test can look at a
// bound control between its write and the host's Update.
class DeferredMemory : public ParameterMemory
{
public:
    using ParameterMemory::ParameterMemory;
    int setValue(unsigned short prmId, unsigned short ch, int value, int index, int, int) override
    {
        m_pending.append({ prmId, ch, value, index });
        return 0;
    }
    void deliver()
    {
        const auto pending = std::exchange(m_pending, {});
        for (const Write &w : pending)
            ParameterMemory::setValue(w.prmId, w.ch, w.value, w.index, 0, 1);
    }
    QVector<Write> m_pending;
};

QColor centrePixel(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class TestPushButtonController : public QObject
{
    Q_OBJECT

private slots:
    void normalizedRounding_data();
    void normalizedRounding();
    void boundWaitsForUpdate();
    void rangeSetters_data();
    void rangeSetters();
    void checkTrigger_data();
    void checkTrigger();
    void artworkPlacement_data();
    void artworkPlacement();
    void toggles_data();
    void toggles();
    void momentaryReleasedOnFocusLoss();
    void paintsStateArtwork();
};

void TestPushButtonController::normalizedRounding_data()
{
    QTest::addColumn<bool>("bound");
    QTest::addColumn<float>("normalized");
    QTest::addColumn<int>("expected");
    // Bound rounds; unbound splits 0..3 into four equal buckets.
    QTest::newRow("unbound 1.0") << false << 1.0f << 3;
    QTest::newRow("unbound 0.2") << false << 0.2f << 0;
    QTest::newRow("bound 0.2") << true << 0.2f << 1;
    QTest::newRow("unbound above 1") << false << 7.0f << 3;
    QTest::newRow("bound below 0") << true << -2.0f << 0;
}

void TestPushButtonController::normalizedRounding()
{
    QFETCH(bool, bound);
    QFETCH(float, normalized);
    QFETCH(int, expected);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sel", 1);
    PushButtonController button;
    if (bound)
        button.setMemAPIValue(&memory, model.parameterId("t_sel"), 0);
    else
        button.setMaximumValue(3);
    button.setNormalized(normalized);
    QCOMPARE(button.value(), expected);
}

void TestPushButtonController::boundWaitsForUpdate()
{
    HostModel model = smallModel();
    DeferredMemory memory(&model);
    PushButtonController button;
    button.setCheckable(true);
    const unsigned short id = model.parameterId("t_sw");
    button.setMemAPIValue(&memory, id, 0);
    QSignalSpy spy(&button, qOverload<int>(&PushButtonController::valueChanged));

    button.setValue(1);
    QCOMPARE(memory.m_pending.size(), 1);
    QCOMPARE(memory.m_pending.first().value, 1);
    QCOMPARE(button.value(), 0);
    QVERIFY(!button.isChecked());
    QCOMPARE(spy.count(), 0);

    memory.deliver();
    QCOMPARE(button.value(), 1);
    QVERIFY(button.isChecked());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), 1);
    QCOMPARE(button.accessibleDescription(), QStringLiteral("on"));

    // Another client's change reaches the control the same way.
    memory.ParameterMemory::setValue(id, 0, 0, 0, 0, 1);
    QVERIFY(!button.isChecked());
    QCOMPARE(spy.count(), 2);

    // The host's range rules a bound control.
    button.setMaximumValue(7);
    QCOMPARE(button.maximumValue(), 1);
    // A host that fails keeps the control at what it last confirmed; one
    // that fails while a control binds leaves it at 0 with an empty range.
    memory.setFailing(true);
    QCOMPARE(button.maximumValue(), 1);
    PushButtonController late;
    late.setMemAPIValue(&memory, id, 0);
    QCOMPARE(late.value(), 0);
    QCOMPARE(late.maximumValue(), 0);
}

void TestPushButtonController::rangeSetters_data()
{
    QTest::addColumn<int>("newMinimum");
    QTest::addColumn<int>("newMaximum");
    QTest::addColumn<QList<int>>("expected"); // minimum, maximum, default, value
    // Start: range 0..10, default 4, value 6; the minimum is set first.
    QTest::newRow("minimum raises default and value") << 5 << 10 << QList<int> { 5, 10, 5, 6 };
    QTest::newRow("minimum above maximum collapses") << 12 << 12 << QList<int> { 12, 12, 12, 12 };
    QTest::newRow("maximum below minimum collapses") << 2 << 1 << QList<int> { 1, 1, 1, 1 };
}

void TestPushButtonController::rangeSetters()
{
    QFETCH(int, newMinimum);
    QFETCH(int, newMaximum);
    QFETCH(QList<int>, expected);
    PushButtonController button;
    button.setMaximumValue(10);
    button.setDefaultValue(4);
    button.setValue(6);
    QSignalSpy spy(&button, qOverload<int>(&PushButtonController::valueChanged));
    button.setMinimumValue(newMinimum);
    button.setMaximumValue(newMaximum);
    QCOMPARE(
        (QList<int> { button.minimumValue(), button.maximumValue(), button.defaultValue(), button.value() }),
        expected);
    QVERIFY(spy.count() >= 1);
    button.setDefaultValue(100);
    QCOMPARE(button.defaultValue(), expected.at(1));
}

void TestPushButtonController::checkTrigger_data()
{
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("expected");
    using R = CheckTriggerRule;
    QTest::newRow("nothing on defaults") << int(R::Release | R::On | R::Off) << 0 << int(R::Press | R::Off);
    QTest::newRow("new press wins") << int(R::Release | R::On) << int(R::Press | R::Release | R::On)
                                    << int(R::Press | R::On);
    QTest::newRow("edges cleared after press")
        << int(R::Press | R::On | R::Off) << int(R::On) << int(R::Release | R::On);
    QTest::newRow("directions cleared after on")
        << int(R::Release | R::On) << int(R::Release) << int(R::Release | R::Off);
    QTest::newRow("unknown bits dropped")
        << int(R::Release | R::On) << int(R::Release | R::On | 4 | 64) << int(R::Release | R::On);
}

void TestPushButtonController::checkTrigger()
{
    QFETCH(int, old);
    QFETCH(int, requested);
    QFETCH(int, expected);
    CheckTriggerRule rule;
    rule.setFlags(old);
    rule.setFlags(requested);
    QCOMPARE(rule.flags(), expected);
}

void TestPushButtonController::artworkPlacement_data()
{
    // A 22 x 22 artwork in a 60 x 40 button.
    QTest::addColumn<int>("alignment");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("centre") << int(Qt::AlignCenter) << 1.0 << QRectF(19, 9, 22, 22);
    QTest::newRow("top left") << int(Qt::AlignLeft | Qt::AlignTop) << 1.0 << QRectF(0, 0, 22, 22);
    QTest::newRow("bottom right at 1.5")
        << int(Qt::AlignRight | Qt::AlignBottom) << 1.5 << QRectF(27, 7, 33, 33);
    QTest::newRow("right, centred vertically")
        << int(Qt::AlignRight | Qt::AlignVCenter) << 1.0 << QRectF(38, 9, 22, 22);
    QTest::newRow("justify fills the button") << int(Qt::AlignJustify) << 2.0 << QRectF(0, 0, 60, 40);
}

void TestPushButtonController::artworkPlacement()
{
    QFETCH(int, alignment);
    QFETCH(double, scale);
    QFETCH(QRectF, expected);
    SvgLayer layer;
    QVERIFY(layer.load(QStringLiteral(":/image/orvchstrip/btn_on.svg")));
    QCOMPARE(ButtonArtwork::place(layer, QSize(60, 40), scale, Qt::Alignment(alignment)), expected);
}

void TestPushButtonController::toggles_data()
{
    QTest::addColumn<int>("trigger");
    QTest::addColumn<bool>("startOn");
    QTest::addColumn<int>("afterPress");
    QTest::addColumn<int>("afterRelease");
    using P = PushButtonController;
    QTest::newRow("release toggles on") << int(P::Release | P::On | P::Off) << false << 0 << 1;
    QTest::newRow("press toggles on") << int(P::Press | P::On | P::Off) << false << 1 << 1;
    QTest::newRow("release, on only, stays on") << int(P::Release | P::On) << true << 1 << 1;
    QTest::newRow("press, off only, stays off") << int(P::Press | P::Off) << false << 0 << 0;
}

void TestPushButtonController::toggles()
{
    QFETCH(int, trigger);
    QFETCH(bool, startOn);
    QFETCH(int, afterPress);
    QFETCH(int, afterRelease);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sw", startOn ? 1 : 0);
    PushButtonController button;
    button.resize(22, 22);
    button.setCheckable(true);
    button.setCheckTrigger(Trigger(trigger));
    button.setMemAPIValue(&memory, model.parameterId("t_sw"), 0);
    QCOMPARE(button.isChecked(), startOn);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QSignalSpy modifiers(&button, &PushButtonController::modifiersChange);

    QTest::mousePress(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterPress);
    QTest::mouseRelease(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterRelease);
    QCOMPARE(button.isChecked(), afterRelease != 0);
    QVERIFY(!button.isDown());
    QCOMPARE(clicked.count(), 1);
    // A change made with a modifier held is announced for repetition.
    QCOMPARE(modifiers.count(), afterRelease != int(startOn) ? 1 : 0);
    QCOMPARE(button.accessibleDescription(), afterRelease ? QStringLiteral("on") : QStringLiteral("off"));

    // The right button never toggles.
    QTest::mouseClick(&button, Qt::RightButton, {}, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterRelease);
}

void TestPushButtonController::momentaryReleasedOnFocusLoss()
{
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    QWidget window;
    auto *first = new QLineEdit(&window);
    auto *second = new QLineEdit(&window);
    second->move(0, 40);
    auto *button = new PushButtonController(&window);
    button->move(0, 80);
    button->resize(22, 22);
    button->setMemAPIValue(&memory, model.parameterId("t_sw"), 0);
    button->setObjectName(QStringLiteral("m_pCompressorBypassButton"));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTRY_VERIFY(first->hasFocus());

    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(11, 11));
    QVERIFY(button->isDown());
    QCOMPARE(memory.value("t_sw"), 1);
    second->setFocus();
    QTRY_VERIFY(second->hasFocus());
    QVERIFY(!button->isDown());
    QCOMPARE(memory.value("t_sw"), 0);
    // The button never takes the focus itself.
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    // Without text or a set name, the object name speaks for it.
    QCOMPARE(button->accessibleName(), QStringLiteral("Compressor Bypass Button"));
    button->setAccessibleName(QStringLiteral("Bypass"));
    button->setObjectName(QStringLiteral("m_pOther"));
    QCOMPARE(button->accessibleName(), QStringLiteral("Bypass"));
}

void TestPushButtonController::paintsStateArtwork()
{
    // The lit lamp is amber; the unlit one is dark. Drawn at twice the size.
    PushButtonController button;
    button.setCheckable(true);
    button.setScale(2.0);
    button.resize(44, 44);
    button.setButtonSvg(QStringLiteral(":/image/orvchstrip/btn_off.svg"));
    button.setOnButtonSvg(QStringLiteral(":/image/orvchstrip/btn_on.svg"));
    button.setShadowSvg(QStringLiteral(":/image/orvchstrip/btn_shadow.svg"));
    const QColor off = centrePixel(&button);
    QVERIFY2(off.red() < 120, qPrintable(off.name()));
    button.setValue(1);
    QVERIFY(button.isChecked());
    const QColor on = centrePixel(&button);
    QVERIFY2(on.red() > 200 && on.green() > 120 && on.blue() < 160, qPrintable(on.name()));

    // A disabled body fades with buttonDisableOpacity.
    button.setButtonDisableOpacity(0.0);
    QCOMPARE(centrePixel(&button), on);
    button.setEnabled(false);
    QVERIFY(centrePixel(&button).red() < 100);
    button.setButtonDisableOpacity(-3.0);
    QCOMPARE(button.buttonDisableOpacity(), 0.0);
}

QTEST_MAIN(TestPushButtonController)
#include "tst_pushbuttoncontroller.moc"
