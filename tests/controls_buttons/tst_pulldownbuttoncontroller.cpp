#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/PullDownButtonMenu.h"
#include "Common/Widgets/WidgetScale.h"
#include "MinimalEditor.h"

using namespace CommonController_MemAPI;
using Menu = PullDownButtonControllerPrivate::Menu;

class TestPullDownButtonController : public QObject
{
    Q_OBJECT

private slots:
    void pullDownReleaseGuard();
    void pullDownKeys();
    void pullDownText_data();
    void pullDownText();
};

void TestPullDownButtonController::pullDownReleaseGuard()
{
    MinimalEditor editor;
    editor.setScale(1.5);
    auto *pullDown = new PullDownButtonController(&editor);
    pullDown->resize(120, 24);
    pullDown->setTextList({ QStringLiteral("Soft"), QStringLiteral("Medium"), QStringLiteral("Hard") });
    QCOMPARE(pullDown->maximumValue(), 2);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QSignalSpy changed(pullDown, &PullDownButtonController::changed);
    QSignalSpy selected(pullDown, &PullDownButtonController::selected);

    // A click that lands in the menu as it opens (the opening click's
    // release) picks nothing; a click once the guard is over picks "Hard".
    QPointer<Menu> menu;
    bool stillOpenAfterEarlyRelease = false;
    double menuScale = 0;
    QTimer::singleShot(0, this, [&] {
        menu = pullDown->findChild<Menu *>();
        if (!menu)
            return;
        menuScale = getWidgetScale(menu);
        const QPoint hard = menu->actionGeometry(menu->actions().at(2)).center();
        QTest::mousePress(menu, Qt::LeftButton, {}, hard);
        QTest::mouseRelease(menu, Qt::LeftButton, {}, hard);
        stillOpenAfterEarlyRelease = menu->isVisible();
        QTimer::singleShot(Menu::ReleaseGuardMs + 50, menu,
            [&, hard] { QTest::mouseClick(menu, Qt::LeftButton, {}, hard); });
    });
    pullDown->openPullDown();
    QVERIFY(menu);
    QVERIFY(stillOpenAfterEarlyRelease);
    QCOMPARE(menuScale, 1.5);
    QCOMPARE(pullDown->value(), 2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(selected.count(), 1);
}

void TestPullDownButtonController::pullDownKeys()
{
    PullDownButtonController pullDown;
    QStringList texts;
    for (int i = 0; i < 12; ++i)
        texts << QStringLiteral("Entry %1").arg(i);
    pullDown.setTextList(texts);
    // Entries 1 and 8 hidden, 3 disabled: the keys skip them.
    QList<bool> visible(12, true);
    visible[1] = visible[8] = false;
    pullDown.setVisibleList(visible);
    pullDown.setValue(0);
    pullDown.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pullDown));

    QStringList trail;
    QTimer::singleShot(0, this, [&] {
        auto *menu = pullDown.findChild<Menu *>();
        if (!menu)
            return;
        menu->actions().at(3)->setEnabled(false);
        auto step = [&](Qt::Key key) {
            QTest::keyClick(menu, key);
            trail << (menu->activeAction() ? menu->activeAction()->text() : QStringLiteral("-"));
        };
        step(Qt::Key_Down);     // 0 -> 2 (1 hidden)
        step(Qt::Key_Down);     // 2 -> 4 (3 disabled)
        step(Qt::Key_PageDown); // five on: 5 6 7 9 10
        step(Qt::Key_PageDown); // stops at the last
        step(Qt::Key_Up);
        step(Qt::Key_PageUp); // 10 9 7 6 5 4
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    pullDown.openPullDown();
    QCOMPARE(trail, QStringList({ "Entry 2", "Entry 4", "Entry 10", "Entry 11", "Entry 10", "Entry 4" }));
    QCOMPARE(pullDown.value(), 0);
}

void TestPullDownButtonController::pullDownText_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("invisibleText");
    QTest::addColumn<QString>("expected");
    // Texts "A", "", "C"; "C" is hidden; the range 0..2 allows no value past it.
    QTest::newRow("plain") << 0 << QStringLiteral("hidden") << QStringLiteral("A");
    QTest::newRow("empty entry") << 1 << QStringLiteral("hidden") << QStringLiteral("none");
    QTest::newRow("hidden entry") << 2 << QStringLiteral("hidden") << QStringLiteral("hidden");
    QTest::newRow("hidden without invisible text") << 2 << QString() << QStringLiteral("C");
}

void TestPullDownButtonController::pullDownText()
{
    QFETCH(int, value);
    QFETCH(QString, invisibleText);
    QFETCH(QString, expected);
    PullDownButtonController pullDown;
    pullDown.setTextList({ QStringLiteral("A"), QString(), QStringLiteral("C") });
    pullDown.setVisibleList({ true, true, false });
    pullDown.setEmptyText(QStringLiteral("none"));
    pullDown.setInvisibleText(invisibleText);
    pullDown.setValue(value);
    QCOMPARE(pullDown.displayText(), expected);
}

QTEST_MAIN(TestPullDownButtonController)
#include "tst_pulldownbuttoncontroller.moc"
