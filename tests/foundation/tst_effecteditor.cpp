#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "Common/EffectEditor.h"
#include "Common/EffectFonts.h"
#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/WidgetScale.h"
#include "HostModel.h"
#include "MinimalEditor.h"

namespace {

// A widget that records the scale the editor hands to controls.
class ScaledControl : public QWidget, public CommonController_MemAPI::AbstractController
{
public:
    using QWidget::QWidget;
    void setScale(double scale) override { storeScale(scale); }
    void valueChangedRequest() override { }

protected:
    void notifyModifiersChange(Qt::KeyboardModifiers) override { }
};

ParameterDefinition parameter(const char *key)
{
    ParameterDefinition parameter;
    parameter.key = key;
    parameter.maximum = 10;
    return parameter;
}

} // namespace

class tst_EffectEditor : public QObject
{
    Q_OBJECT

private slots:
    void scalesFromDesignGeometry_data();
    void scalesFromDesignGeometry();
    void scalesFontsAndControls();
    void capturesScrollAreaContentOnly();
    void fillsOnlyUnsetDisabledColours();
    void mapsEditModes_data();
    void mapsEditModes();
    void looksUpParameters();
    void computesMeterIndex_data();
    void computesMeterIndex();
    void findsWidgetScale();
};

void tst_EffectEditor::scalesFromDesignGeometry_data()
{
    QTest::addColumn<QRect>("design");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("label at 1.5") << QRect(QPoint(10, 10), QPoint(19, 29)) << 1.5 << QRect(15, 15, 15, 30);
    QTest::newRow("rounds half up") << QRect(1, 3, 5, 7) << 1.5 << QRect(2, 5, 8, 11);
    QTest::newRow("shrinks") << QRect(11, 9, 93, 23) << 0.5 << QRect(6, 5, 47, 12);
}

void tst_EffectEditor::scalesFromDesignGeometry()
{
    QFETCH(QRect, design);
    QFETCH(double, scale);
    QFETCH(QRect, expected);

    MinimalEditor editor;
    editor.resize(1015, 572);
    auto *label = new QLabel(&editor);
    label->setGeometry(design);
    editor.initialize();

    // Scaling twice must start from the design values, not accumulate rounding.
    editor.setScale(1.7);
    editor.setScale(scale);
    QCOMPARE(label->geometry(), expected);
    QCOMPARE(editor.scale(), scale);
}

void tst_EffectEditor::scalesFontsAndControls()
{
    MinimalEditor editor;
    auto *medium = new QLabel(&editor);
    QFont designed(QStringLiteral("M+ 1c medium"));
    designed.setPointSize(9);
    designed.setItalic(true);
    medium->setFont(designed);
    auto *other = new QLabel(&editor);
    other->setFont(QFont(QStringLiteral("DejaVu Serif"), 10));
    auto *control = new ScaledControl(&editor);
    editor.initialize();

    // Design families map to the installed one; other families stay.
    QCOMPARE(medium->font().family(), EffectFonts::installedFamily());
    QCOMPARE(medium->font().styleName(), EffectFonts::styleName(EffectFonts::Medium));
    QVERIFY(medium->font().italic());
    QCOMPARE(other->font().family(), QStringLiteral("DejaVu Serif"));
    QCOMPARE(EffectFonts::designWeight(QStringLiteral("M+ 1c Bold")), EffectFonts::NoDesignFamily);

    QCOMPARE(medium->font().pixelSize(), 12); // trunc(9 * 1.34 + 0.5)
    editor.setScale(1.5);
    QCOMPARE(medium->font().pixelSize(), 18);
    QCOMPARE(control->scale(), 1.5);
    editor.setScale(1.3);
    QCOMPARE(medium->font().pixelSize(), 15); // font sizes truncate
    editor.setScale(0.0);                     // a broken host value changes nothing
    QCOMPARE(editor.scale(), 1.3);
}

void tst_EffectEditor::capturesScrollAreaContentOnly()
{
    MinimalEditor editor;
    auto *area = new QScrollArea(&editor);
    auto *content = new QWidget;
    auto *inside = new QLabel(content);
    area->setWidget(content);
    editor.initialize();

    QList<QWidget *> captured;
    for (const EffectEditor::WidgetInformation &info : editor.widgetInformationList())
        captured.append(info.widget);
    QVERIFY(captured.contains(area));
    QVERIFY(captured.contains(content));
    QVERIFY(captured.contains(inside));
    // The scroll area's viewport and scroll bars are not part of the design.
    QVERIFY(!captured.contains(area->viewport()));
    QVERIFY(!captured.contains(static_cast<QWidget *>(area->verticalScrollBar())));
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

void tst_EffectEditor::looksUpParameters()
{
    HostModel model({ { 1, 7 } }, { parameter("fx_cmp_atck"), parameter("fx_eq_midfrq") }, {});
    MinimalEditor editor;
    unsigned short id = 0;
    QVERIFY(!editor.getParameter("fx_eq_midfrq", &id));
    editor.setModelInfo(&model);
    QVERIFY(editor.getParameter("fx_eq_midfrq", &id));
    QCOMPARE(id, model.parameterId("fx_eq_midfrq"));
    QVERIFY(editor.getParameter("fx_cmp_atck", nullptr));
    QVERIFY(!editor.getParameter("fx_unknown", &id));
    QVERIFY(!editor.getParameter(nullptr, &id));
}

void tst_EffectEditor::computesMeterIndex_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("ch");
    QTest::addColumn<bool>("right");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("index");
    // meter_a: 2 channels at 0..3; meter_b: 1 channel at 4..5.
    QTest::newRow("left of ch 0") << QByteArray("meter_a") << 0 << false << true << 0;
    QTest::newRow("right of ch 1") << QByteArray("meter_a") << 1 << true << true << 3;
    QTest::newRow("second meter") << QByteArray("meter_b") << 0 << true << true << 5;
    QTest::newRow("channel beyond count") << QByteArray("meter_b") << 1 << false << false << -1;
    QTest::newRow("unknown key") << QByteArray("meter_x") << 0 << false << false << -1;
}

void tst_EffectEditor::computesMeterIndex()
{
    QFETCH(QByteArray, key);
    QFETCH(int, ch);
    QFETCH(bool, right);
    QFETCH(bool, found);
    QFETCH(int, index);

    HostModel model({}, {}, { { "meter_a", 2, {} }, { "meter_b", 1, {} } });
    MinimalEditor editor;
    editor.setModelInfo(&model);
    unsigned short result = 0xFFFF;
    QCOMPARE(editor.getMeterIndex(key.constData(), static_cast<unsigned short>(ch), right, &result), found);
    if (found)
        QCOMPARE(int(result), index);
    else
        QCOMPARE(result, static_cast<unsigned short>(0xFFFF));
}

void tst_EffectEditor::findsWidgetScale()
{
    MinimalEditor editor;
    auto *inner = new QWidget(new QWidget(&editor));
    editor.initialize();
    editor.setScale(1.5);
    QCOMPARE(getWidgetScale(inner), 1.5);

    QWidget outside;
    QCOMPARE(getWidgetScale(&outside), 1.0);
    QCOMPARE(getWidgetScale(nullptr), 1.0);

    // A pop-up menu walks to the control that owns it, not to its parent.
    QMenu menu(&outside);
    menu.setProperty(OwnerWidgetProperty, QVariant::fromValue<QObject *>(inner));
    QCOMPARE(getWidgetScale(&menu), 1.5);
    QMenu orphan(inner);
    QCOMPARE(getWidgetScale(&orphan), 1.5);
}

QTEST_MAIN(tst_EffectEditor)
#include "tst_effecteditor.moc"
