#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "ButtonTestModel.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/PushButtonController.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;

class TestButtonGroupController : public QObject
{
    Q_OBJECT

private slots:
    void buttonGroupMaximum();
    void buttonGroupClicksAndDefault_data();
    void buttonGroupClicksAndDefault();
};

void TestButtonGroupController::buttonGroupMaximum()
{
    ButtonGroupController group;
    QList<QPushButton *> buttons;
    for (int i = 0; i < 3; ++i) {
        buttons << new QPushButton(&group);
        buttons.last()->setCheckable(true);
    }
    // Announced children count before they are registered.
    QCOMPARE(group.maximumValue(), 3);
    group.setValue(3);
    QTRY_COMPARE(group.buttons().size(), 3);
    QCOMPARE(group.maximumValue(), 3);
    QTest::qWait(30);
    for (QPushButton *button : buttons)
        QVERIFY(!button->isChecked());

    group.setValue(1);
    QTRY_VERIFY(buttons.at(1)->isChecked());

    delete buttons.takeAt(2);
    QCOMPARE(group.buttons().size(), 2);
    QCOMPARE(group.maximumValue(), 2);
    // A child deleted before its registration ran is forgotten safely.
    delete new QPushButton(&group);
    QTest::qWait(30);
    QCOMPARE(group.maximumValue(), 2);
}

void TestButtonGroupController::buttonGroupClicksAndDefault_data()
{
    QTest::addColumn<bool>("enableDefaultSet");
    QTest::addColumn<int>("expected");
    QTest::newRow("control-click sets the default") << true << 1;
    QTest::newRow("control-click selects when disabled") << false << 0;
}

void TestButtonGroupController::buttonGroupClicksAndDefault()
{
    QFETCH(bool, enableDefaultSet);
    QFETCH(int, expected);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sel", 2);
    ButtonGroupController group;
    group.resize(200, 40);
    group.setEnableDefaultSet(enableDefaultSet);
    QList<PushButtonController *> buttons;
    for (int i = 0; i < 4; ++i) {
        auto *button = new PushButtonController(&group);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setGeometry(i * 50, 0, 50, 40);
        buttons << button;
    }
    QTRY_COMPARE(group.buttons().size(), 4);
    group.setMemAPIValue(&memory, model.parameterId("t_sel"), 0);
    QTRY_VERIFY(buttons.at(2)->isChecked());
    group.show();
    QVERIFY(QTest::qWaitForWindowExposed(&group));

    // A plain click selects through the host.
    QTest::mouseClick(buttons.at(3), Qt::LeftButton, {}, QPoint(25, 20));
    QCOMPARE(memory.value("t_sel"), 3);

    QSignalSpy modifiers(&group, &ButtonGroupController::modifiersChange);
    QTest::mouseClick(buttons.at(0), Qt::LeftButton, Qt::ControlModifier, QPoint(25, 20));
    QCOMPARE(memory.value("t_sel"), expected);
    QCOMPARE(modifiers.count(), 1);
    QTRY_VERIFY(buttons.at(expected)->isChecked());
}

QTEST_MAIN(TestButtonGroupController)
#include "tst_buttongroupcontroller.moc"
