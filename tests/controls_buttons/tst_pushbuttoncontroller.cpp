#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "ButtonTestModel.h"
#include "Common/Widgets/PushButtonController.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;
using P = PushButtonController;

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
        for (const Write &w : std::exchange(m_pending, {}))
            ParameterMemory::setValue(w.prmId, w.ch, w.value, w.index, 0, 1);
    }
    QVector<Write> m_pending;
};

} // namespace

class TestPushButtonController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsOnlyConfirmedValues();
    void checkTrigger_data();
    void checkTrigger();
    void artworkPlacement_data();
    void artworkPlacement();
    void toggles_data();
    void toggles();
    void momentaryReleasedOnFocusLoss();

private:
    HostModel m_model = smallModel();
    std::unique_ptr<ParameterMemory> m_memory;
};

void TestPushButtonController::init()
{
    m_memory = std::make_unique<ParameterMemory>(&m_model);
}

void TestPushButtonController::showsOnlyConfirmedValues()
{
    DeferredMemory memory(&m_model);
    PushButtonController button;
    button.setCheckable(true);
    const unsigned short id = m_model.parameterId("t_sw");
    button.setMemAPIValue(&memory, id, 0);
    QSignalSpy spy(&button, qOverload<int>(&PushButtonController::valueChanged));

    button.setValue(1);
    QCOMPARE(memory.m_pending.size(), 1);
    QCOMPARE(button.value(), 0);
    QVERIFY(!button.isChecked());
    QCOMPARE(spy.count(), 0);
    memory.deliver();
    QVERIFY(button.isChecked());
    QCOMPARE(spy.count(), 1);
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

void TestPushButtonController::checkTrigger_data()
{
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("expected");
    using R = CheckTriggerRule;
    QTest::newRow("nothing on defaults") << int(R::Release | R::On | R::Off) << 0 << int(R::Press | R::Off);
    // clang-format off
    QTest::newRow("new press wins") << int(R::Release | R::On) << int(R::Press | R::Release | R::On) << int(R::Press | R::On);
    QTest::newRow("edges cleared after press") << int(R::Press | R::On | R::Off) << int(R::On) << int(R::Release | R::On);
    QTest::newRow("directions cleared after on") << int(R::Release | R::On) << int(R::Release) << int(R::Release | R::Off);
    QTest::newRow("unknown bits dropped") << int(R::Release | R::On) << int(R::Release | R::On | 4 | 64) << int(R::Release | R::On);
    // clang-format on
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
    // clang-format off
    QTest::newRow("bottom right at 1.5") << int(Qt::AlignRight | Qt::AlignBottom) << 1.5 << QRectF(27, 7, 33, 33);
    QTest::newRow("right, centred vertically") << int(Qt::AlignRight | Qt::AlignVCenter) << 1.0 << QRectF(38, 9, 22, 22);
    // clang-format on
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
    m_memory->setValueByKey("t_sw", startOn ? 1 : 0);
    PushButtonController button;
    button.resize(22, 22);
    button.setCheckable(true);
    button.setCheckTrigger(P::CheckTrigger(trigger));
    button.setMemAPIValue(m_memory.get(), m_model.parameterId("t_sw"), 0);
    QSignalSpy modifiers(&button, &PushButtonController::modifiersChange);

    QTest::mousePress(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(m_memory->value("t_sw"), afterPress);
    QTest::mouseRelease(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(m_memory->value("t_sw"), afterRelease);
    QCOMPARE(button.isChecked(), afterRelease != 0);
    // A change made with a modifier held is announced for repetition.
    QCOMPARE(modifiers.count(), afterRelease != int(startOn) ? 1 : 0);
    // The right button never toggles.
    QTest::mouseClick(&button, Qt::RightButton, {}, QPoint(11, 11));
    QCOMPARE(m_memory->value("t_sw"), afterRelease);
}

void TestPushButtonController::momentaryReleasedOnFocusLoss()
{
    QWidget window;
    auto *first = new QLineEdit(&window);
    auto *second = new QLineEdit(&window);
    second->move(0, 40);
    auto *button = new PushButtonController(&window);
    button->setGeometry(0, 80, 22, 22);
    button->setMemAPIValue(m_memory.get(), m_model.parameterId("t_sw"), 0);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTRY_VERIFY(first->hasFocus());

    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(11, 11));
    QCOMPARE(m_memory->value("t_sw"), 1);
    second->setFocus();
    QTRY_VERIFY(second->hasFocus());
    QVERIFY(!button->isDown());
    QCOMPARE(m_memory->value("t_sw"), 0);
}

QTEST_MAIN(TestPushButtonController)
#include "tst_pushbuttoncontroller.moc"
