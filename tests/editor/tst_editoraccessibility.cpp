// What assistive technology finds on the channel strip editor.
#include <QAccessible>
#include <QTest>
#include <memory>

#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/TextEditController.h"
#include "EditorHost.h"
#include "Interfaces/ChannelStripKeys.h"

using namespace CommonController_MemAPI;

namespace {

// The value events the editor sends: the control and the value it reported.
QList<std::pair<QObject *, int>> g_valueEvents;

void recordEvent(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::ValueChanged)
        g_valueEvents.append(
            { event->object(), static_cast<QAccessibleValueChangeEvent *>(event)->value().toInt() });
}

int valueEventsFor(QObject *object)
{
    return int(std::count_if(g_valueEvents.cbegin(), g_valueEvents.cend(),
        [object](const auto &event) { return event.first == object; }));
}

QString hostText(ParameterMemory &memory, const AbstractController *control)
{
    char buffer[256] = {};
    memory.getValueString(control->prmId(), control->ch(), control->value(), buffer, sizeof buffer);
    return QString::fromLocal8Bit(buffer);
}

} // namespace

class tst_EditorAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void valueControls_data();
    void valueControls();
    void switchesAndChoices_data();
    void switchesAndChoices();
    void metersAreQuiet();
    void graphsDescribeTheirCurve();

private:
    std::unique_ptr<EditorHost> m_host;
    QAccessibleInterface *accessibleOf(const char *objectName);
};

void tst_EditorAccessibility::initTestCase()
{
    // Qt's bridge turns accessibility on once it reaches the bus.
    QTRY_VERIFY_WITH_TIMEOUT(QAccessible::isActive(), 10000);
    QAccessible::installUpdateHandler(recordEvent);
}

void tst_EditorAccessibility::init()
{
    m_host = std::make_unique<EditorHost>();
    m_host->editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host->editor.get()));
    g_valueEvents.clear();
}

QAccessibleInterface *tst_EditorAccessibility::accessibleOf(const char *objectName)
{
    QWidget *widget = m_host->widget(objectName);
    return widget ? QAccessible::queryAccessibleInterface(widget) : nullptr;
}

void tst_EditorAccessibility::valueControls_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");
    // The field that shows the value a reader must hear; none: the host's text.
    QTest::addColumn<QString>("shownBy");

    QTest::newRow("attack knob") << "m_pCompressorAttackKnob" << QAccessible::Dial << "Compressor attack"
                                 << "m_pCompressorAttackTextEdit";
    QTest::newRow("low gain field") << "m_pEqualizerLowGainTextEdit" << QAccessible::SpinBox
                                    << "Low gain value"
                                    << "m_pEqualizerLowGainTextEdit";
    QTest::newRow("morph knob") << "m_pMorphingKnob" << QAccessible::Dial << "Morph position"
                                << "m_pMorphingTextEdit";
}

// A reader finds each control by its role and name, hears the value as the
// panel shows it, with its unit, and hears the value move when a key moves it.
void tst_EditorAccessibility::valueControls()
{
    QFETCH(QString, control);
    QFETCH(QAccessible::Role, role);
    QFETCH(QString, name);
    QFETCH(QString, shownBy);

    QWidget *widget = m_host->editor->findChild<QWidget *>(control);
    QVERIFY(widget);
    auto *controller = dynamic_cast<AbstractController *>(widget);
    auto *field = m_host->editor->findChild<TextEditController *>(shownBy);
    const auto shown = [&] { return field ? field->shownText() : hostText(m_host->memory, controller); };
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), role);
    QCOMPARE(accessible->text(QAccessible::Name), name);
    QVERIFY(accessible->state().focusable);
    QVERIFY(!shown().isEmpty());
    QCOMPARE(accessible->text(QAccessible::Value), shown());
    // The bridge carries numbers only; the description carries the text.
    QCOMPARE(accessible->text(QAccessible::Description), shown());

    QAccessibleValueInterface *value = accessible->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->minimumValue().toInt(), controller->minimumValue());
    QCOMPARE(value->maximumValue().toInt(), controller->maximumValue());
    const int start = controller->minimumValue();
    value->setCurrentValue(start); // at the bottom, so that Up moves
    QCOMPARE(controller->value(), start);
    g_valueEvents.clear();

    const QString before = shown();
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_Up);
    QCOMPARE(value->currentValue().toInt(), start + 1);
    QCOMPARE(valueEventsFor(widget), 1);
    QCOMPARE(g_valueEvents.last().second, start + 1);
    QVERIFY(shown() != before);
    QCOMPARE(accessible->text(QAccessible::Value), shown());

    // The decrease action is one more gesture the host sees.
    accessible->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    QCOMPARE(controller->value(), start);
    QCOMPARE(valueEventsFor(widget), 2);
}

void tst_EditorAccessibility::switchesAndChoices_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");

    QTest::newRow("bypass switch") << "m_pCompressorButton" << QAccessible::CheckBox << "Compressor bypass";
    QTest::newRow("band switch") << "m_pEqualizerLowButton" << QAccessible::CheckBox << "Low band on";
    QTest::newRow("knee choice") << "m_pCompressorKneeHardButton" << QAccessible::RadioButton << "Hard knee";
}

// A switch and a choice report whether they are on, and a press through the
// reader turns them on as a click does.
void tst_EditorAccessibility::switchesAndChoices()
{
    QFETCH(QString, button);
    QFETCH(QAccessible::Role, role);
    QFETCH(QString, name);

    QAccessibleInterface *accessible = accessibleOf(qPrintable(button));
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), role);
    QCOMPARE(accessible->text(QAccessible::Name), name);
    QVERIFY(accessible->state().checkable);

    const bool wasChecked = accessible->state().checked;
    QVERIFY(accessible->actionInterface());
    const QStringList actions = accessible->actionInterface()->actionNames();
    const QString action = actions.contains(QAccessibleActionInterface::toggleAction())
        ? QAccessibleActionInterface::toggleAction()
        : QAccessibleActionInterface::pressAction();
    accessible->actionInterface()->doAction(action);
    // A choice is chosen, not toggled; start it off for the press to show.
    if (role == QAccessible::RadioButton)
        QVERIFY(!wasChecked);
    QTRY_COMPARE(accessible->state().checked, !wasChecked);
}

// A meter reads as its level in decibels but announces nothing by itself: a
// reader would otherwise speak at the meters' refresh rate.
void tst_EditorAccessibility::metersAreQuiet()
{
    auto *meter = m_host->editor->findChild<MeterController *>(QStringLiteral("m_pSideChainMeter"));
    QVERIFY(meter);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(meter);
    QCOMPARE(accessible->role(), QAccessible::ProgressBar);
    QVERIFY(!accessible->text(QAccessible::Name).isEmpty());
    meter->setValue(-125);
    QCOMPARE(accessible->text(QAccessible::Value), QStringLiteral("-12.5 dB"));
    QCOMPARE(accessible->valueInterface()->currentValue().toDouble(), -12.5);
    QCOMPARE(valueEventsFor(meter), 0);
}

// A graph is a picture a reader describes by the values it draws, current
// after every change.
void tst_EditorAccessibility::graphsDescribeTheirCurve()
{
    QAccessibleInterface *curve = accessibleOf("m_pEqualizerGraph");
    QVERIFY(curve);
    QCOMPARE(curve->role(), QAccessible::Graphic);
    QCOMPARE(curve->text(QAccessible::Name), QStringLiteral("Equalizer curve"));
    QVERIFY2(curve->text(QAccessible::Description).contains(QStringLiteral("Middle frequency 1k Hz")),
        qPrintable(curve->text(QAccessible::Description)));
    QVERIFY(m_host->memory.setValueText(ChannelStripKeys::EqualizerMiddleFrequency, QStringLiteral("2k")));
    QVERIFY2(curve->text(QAccessible::Description).contains(QStringLiteral("Middle frequency 2k Hz")),
        qPrintable(curve->text(QAccessible::Description)));

    QAccessibleInterface *compressor = accessibleOf("m_pCompressorGraph");
    QCOMPARE(compressor->role(), QAccessible::Graphic);
    QVERIFY(m_host->memory.setValueText(ChannelStripKeys::CompressorKnee, QStringLiteral("hard")));
    QTRY_VERIFY2(
        compressor->text(QAccessible::Description).contains(QStringLiteral("Compressor knee Hard knee")),
        qPrintable(compressor->text(QAccessible::Description)));
}

QTEST_MAIN(tst_EditorAccessibility)
#include "tst_editoraccessibility.moc"
