#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QTest>

#include "Common/EffectEditor.h"
#include "Common/EffectFonts.h"
#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/WidgetScale.h"
#include "HostModel.h"
#include "MinimalEditor.h"

class tst_EffectEditor : public QObject
{
    Q_OBJECT

private slots:
    void scalesFromTheDesign_data();
    void scalesFromTheDesign();
    void capturesScrollAreaContentOnly();
    void fillsOnlyUnsetDisabledColours();
    void mapsEditModes_data();
    void mapsEditModes();
    void looksUpMeterIndex_data();
    void looksUpMeterIndex();
};

void tst_EffectEditor::scalesFromTheDesign_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRect>("geometry"); // of a label designed at (1, 3), 5 x 7
    QTest::addColumn<int>("pixelSize");  // of its 9 pt font, 12 px at scale 1
    QTest::newRow("1.5: geometry rounded half up") << 1.5 << QRect(2, 5, 8, 11) << 18;
    QTest::newRow("1.3: font size truncated") << 1.3 << QRect(1, 4, 7, 9) << 15;
    QTest::newRow("0.5: shrunk") << 0.5 << QRect(1, 2, 3, 4) << 6;
}

// Every scale starts from the design values, so rounding never accumulates;
// controls and the pop-ups they own follow.
void tst_EffectEditor::scalesFromTheDesign()
{
    QFETCH(double, scale);
    QFETCH(QRect, geometry);
    QFETCH(int, pixelSize);
    MinimalEditor editor;
    auto *label = new QLabel(&editor);
    label->setGeometry(1, 3, 5, 7);
    QFont designed(QStringLiteral("M+ 1c medium"));
    designed.setPointSize(9);
    designed.setItalic(true);
    label->setFont(designed);
    auto *other = new QLabel(&editor);
    other->setFont(QFont(QStringLiteral("DejaVu Serif"), 10));
    auto *knob = new CommonController_MemAPI::KnobController(new QWidget(&editor));
    editor.initialize();
    // Design families map to the installed one; other families stay.
    QCOMPARE(label->font().family(), EffectFonts::installedFamily());
    QCOMPARE(label->font().styleName(), EffectFonts::styleName(EffectFonts::Medium));
    QVERIFY(label->font().italic());
    QCOMPARE(other->font().family(), QStringLiteral("DejaVu Serif"));
    QCOMPARE(label->font().pixelSize(), 12); // trunc(9 * 1.34 + 0.5)

    editor.setScale(1.7);
    editor.setScale(scale);
    QCOMPARE(label->geometry(), geometry);
    QCOMPARE(label->font().pixelSize(), pixelSize);
    QCOMPARE(knob->scale(), scale);
    QMenu menu; // a pop-up walks to the control that owns it, not to its parent
    menu.setProperty(OwnerWidgetProperty, QVariant::fromValue<QObject *>(knob));
    QCOMPARE(getWidgetScale(&menu), scale);
    QCOMPARE(getWidgetScale(other), scale);
    QWidget outside;
    QCOMPARE(getWidgetScale(&outside), 1.0);
    editor.setScale(0.0); // a broken host value changes nothing
    QCOMPARE(editor.scale(), scale);
}

// The design holds a scroll area's content, not its viewport and scroll bars.
void tst_EffectEditor::capturesScrollAreaContentOnly()
{
    MinimalEditor editor;
    auto *area = new QScrollArea(&editor);
    area->setWidget(new QWidget);
    auto *inside = new QLabel(area->widget());
    editor.initialize();
    QList<QWidget *> captured;
    for (const EffectEditor::WidgetInformation &info : editor.widgetInformationList())
        captured.append(info.widget);
    QCOMPARE(captured, (QList<QWidget *> { &editor, area, area->widget(), inside }));
}

void tst_EffectEditor::fillsOnlyUnsetDisabledColours()
{
    QWidget root;
    auto *child = new QLabel(&root);
    QPalette own = child->palette();
    own.setColor(QPalette::Disabled, QPalette::WindowText, Qt::red);
    child->setPalette(own);

    QPalette given;
    given.setColor(QPalette::Disabled, QPalette::WindowText, Qt::green);
    given.setColor(QPalette::Disabled, QPalette::Button, Qt::blue);
    EffectEditor::initializePalette(&root, given);

    QCOMPARE(child->palette().color(QPalette::Disabled, QPalette::WindowText), QColor(Qt::red));
    QCOMPARE(child->palette().color(QPalette::Disabled, QPalette::Button), QColor(Qt::blue));
    QCOMPARE(root.palette().color(QPalette::Disabled, QPalette::WindowText), QColor(Qt::green));
}

void tst_EffectEditor::mapsEditModes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("knob");
    QTest::addColumn<int>("fader");
    QTest::newRow("0") << 0 << 0 << 3;
    QTest::newRow("1") << 1 << 2 << 1;
    QTest::newRow("2") << 2 << 1 << 0;
    QTest::newRow("3") << 3 << 0 << 2;
    QTest::newRow("-1") << -1 << 0 << 0;
}

void tst_EffectEditor::mapsEditModes()
{
    QFETCH(int, mode);
    QFETCH(int, knob);
    QFETCH(int, fader);
    using namespace CommonController_MemAPI;
    MinimalEditor editor;
    auto *knobControl = new KnobController(new QWidget(&editor));
    auto *faderControl = new FaderController(&editor);
    editor.setDialEditMode(mode);
    editor.setSliderEditMode(mode);
    QCOMPARE(int(knobControl->operationType()), knob);
    QCOMPARE(int(faderControl->operationType()), fader);
}

void tst_EffectEditor::looksUpMeterIndex_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("ch");
    QTest::addColumn<bool>("right");
    QTest::addColumn<int>("index"); // -1: not found
    // meter_a: 2 channels at 0..3; meter_b: 1 channel at 4..5.
    QTest::newRow("left of ch 0") << QByteArray("meter_a") << 0 << false << 0;
    QTest::newRow("right of ch 1") << QByteArray("meter_a") << 1 << true << 3;
    QTest::newRow("second meter") << QByteArray("meter_b") << 0 << true << 5;
    QTest::newRow("channel beyond count") << QByteArray("meter_b") << 1 << false << -1;
}

void tst_EffectEditor::looksUpMeterIndex()
{
    QFETCH(QByteArray, key);
    QFETCH(int, ch);
    QFETCH(bool, right);
    QFETCH(int, index);
    HostModel model({}, {}, { { "meter_a", 2, {} }, { "meter_b", 1, {} } });
    unsigned short result = 0xFFFF;
    QCOMPARE(ParameterLookup(&model).meterIndex(key.constData(), ushort(ch), right, &result), index >= 0);
    QCOMPARE(int(result), index >= 0 ? index : 0xFFFF);
}

QTEST_MAIN(tst_EffectEditor)
#include "tst_effecteditor.moc"
