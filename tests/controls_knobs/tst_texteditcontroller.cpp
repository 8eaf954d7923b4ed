#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include "Common/Widgets/TextEditController.h"
#include "Common/Widgets/TextEditLineEdit.h"
#include "HostModel.h"
#include "ParameterMemory.h"
#include "PointerEvents.h"

using CommonController_MemAPI::TextEditController;

class tst_TextEditController : public QObject
{
    Q_OBJECT

private slots:
    void shownAndEditText_data();
    void shownAndEditText();
    void typedText_data();
    void typedText();
    void hidingCommits();
    void dragWheelAndKeys();
};

void tst_TextEditController::shownAndEditText_data()
{
    QTest::addColumn<QStringList>("textPostfixShownEdit");
    QTest::addColumn<bool>("expandUnit");
    QTest::addColumn<bool>("trim");
    QTest::newRow("postfix appended") << QStringList { "250", " Hz", "250 Hz", "250" } << false << false;
    // clang-format off
    QTest::newRow("postfix not doubled") << QStringList { "250 Hz", " Hz", "250 Hz", "250" } << false << false;
    QTest::newRow("kilo expanded") << QStringList { "1.2k", "", "1.2k", "1200" } << true << false;
    QTest::newRow("postfix cut, then expanded") << QStringList { "1.2k Hz", " Hz", "1.2k Hz", "1200" } << true << false;
    QTest::newRow("not a number stays") << QStringList { "peak", "", "peak", "peak" } << true << false;
    QTest::newRow("no expansion unless asked") << QStringList { "1.2k", "", "1.2k", "1.2k" } << false << false;
    // clang-format on
    QTest::newRow("trimmed") << QStringList { " 12 ", " ms", "12 ms", "12" } << false << true;
    QTest::newRow("empty shows nothing") << QStringList { "", " dB", "", "" } << false << false;
}

void tst_TextEditController::shownAndEditText()
{
    QFETCH(QStringList, textPostfixShownEdit);
    QFETCH(bool, expandUnit);
    QFETCH(bool, trim);
    TextEditController control;
    control.setPostfix(textPostfixShownEdit[1]);
    control.setExpandUnit(expandUnit);
    control.setTextTrim(trim);
    control.setString(textPostfixShownEdit[0]);
    QCOMPARE(control.shownText(), textPostfixShownEdit[2]);
    QCOMPARE(control.editText(), textPostfixShownEdit[3]);
}

void tst_TextEditController::typedText_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("finishKey");
    QTest::addColumn<bool>("writes");
    QTest::addColumn<QString>("expectedText");
    QTest::newRow("new value with Return")
        << "1.2k" << int(Qt::Key_Return) << true << "1.18k"; // the nearest table step
    QTest::newRow("same text with Return") << "" << int(Qt::Key_Return) << false << "250";
    QTest::newRow("Escape cancels") << "1.2k" << int(Qt::Key_Escape) << false << "250";
    QTest::newRow("text the host rejects") << "abc" << int(Qt::Key_Return) << false << "250";
}

void tst_TextEditController::typedText()
{
    QFETCH(QString, typed);
    QFETCH(int, finishKey);
    QFETCH(bool, writes);
    QFETCH(QString, expectedText);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    QVERIFY(memory.setValueText("fx_cmp_scfrq", QStringLiteral("250")));

    TextEditController control;
    control.resize(60, 14);
    control.setPostfix(QStringLiteral(" Hz"));
    control.setExpandUnit(true);
    control.setMemAPIValue(&memory, model.parameterId("fx_cmp_scfrq"), 0);
    control.show();
    control.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&control));
    QCOMPARE(control.shownText(), QStringLiteral("250 Hz"));
    memory.clearWrites();

    QSignalSpy editSpy(&control, &TextEditController::textEdit);
    sendMouse(&control, QEvent::MouseButtonDblClick, QPoint(10, 7));
    QVERIFY(control.isEditing());
    QLineEdit *lineEdit = control.lineEdit();
    QCOMPARE(lineEdit->selectedText(), QStringLiteral("250"));

    if (!typed.isEmpty())
        QTest::keyClicks(lineEdit, typed); // replaces the selection
    QTest::keyClick(lineEdit, Qt::Key(finishKey));
    QVERIFY(!control.isEditing());
    QCOMPARE(editSpy.count(), 2);
    QCOMPARE(memory.writes().size(), writes ? 1 : 0);
    QCOMPARE(control.string(), expectedText);
    QVERIFY(control.hasFocus());

    // Losing the focus without any edit closes the editor, writing nothing.
    memory.clearWrites();
    control.edit();
    QVERIFY(control.isEditing());
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTRY_VERIFY(!control.isEditing());
    QCOMPARE(memory.writes().size(), 0);
}

void tst_TextEditController::hidingCommits()
{
    QWidget window;
    TextEditController control(&window);
    control.setGeometry(0, 0, 60, 14);
    control.setMaximumValue(5000);
    control.setString(QStringLiteral("100"));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    control.edit();
    QVERIFY(control.isEditing());
    QTest::keyClicks(control.lineEdit(), QStringLiteral("440"));
    QSignalSpy valueSpy(&control, qOverload<int>(&TextEditController::valueChanged));
    control.hide();
    QVERIFY(!control.isEditing());
    QCOMPARE(control.string(), QStringLiteral("440"));
    QCOMPARE(control.value(), 440);
    QCOMPARE(valueSpy.count(), 1);
}

void tst_TextEditController::dragWheelAndKeys()
{
    TextEditController control;
    control.resize(60, 14);
    control.setMaximumValue(99); // 200 / 100: 2 pixels per step
    control.setValue(50);
    control.setStepSize(2);
    control.setDefaultValue(10);
    QSignalSpy dragSpy(&control, &TextEditController::drag);
    // Right 6 pixels: 3 steps of 2; down 4 undoes 2 of them. Up is one unit,
    // PgDown ten steps of 2, Right is taken and ignored; the wheel with Shift
    // one unit a notch; Control-click restores the default, no drag.
    playInput(&control,
        "press 10 7; move 16 7; expect 56; move 16 11; expect 52; release 16 11; key Up; expect 53; "
        "key PgDown; expect 33; key Right; expect 33; wheel 0 120 shift; expect 34; press 10 7 ctrl; expect "
        "10",
        [&] { return control.value(); });
    QCOMPARE(dragSpy.count(), 2);
}

QTEST_MAIN(tst_TextEditController)
#include "tst_texteditcontroller.moc"
