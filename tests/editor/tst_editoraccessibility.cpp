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

} // namespace

// Roles, names and the presence of values are what the AT-SPI walk over the
// running host checks (tests/a11y); these are the rules it cannot see.
class tst_EditorAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void valueControls_data();
    void valueControls();
    void choicePressedThroughTheReader();
    void metersAreQuiet();
    void graphsDescribeTheirCurve();

private:
    std::unique_ptr<EditorHost> m_host;
    QAccessibleInterface *accessibleOf(const char *objectName)
    {
        return QAccessible::queryAccessibleInterface(m_host->widget(objectName));
    }
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

void tst_EditorAccessibility::valueControls_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::addColumn<QByteArray>("shownBy"); // the field that shows the value a reader must hear
    // clang-format off
    QTest::newRow("attack knob") << QByteArray("m_pCompressorAttackKnob") << QByteArray("m_pCompressorAttackTextEdit");
    QTest::newRow("low gain field") << QByteArray("m_pEqualizerLowGainTextEdit") << QByteArray("m_pEqualizerLowGainTextEdit");
    // clang-format on
}

// A reader hears the value as the panel shows it, with its unit, over the
// control's range, and a step through the reader is one more gesture the host sees.
void tst_EditorAccessibility::valueControls()
{
    QFETCH(QByteArray, control);
    QFETCH(QByteArray, shownBy);
    auto *controller = m_host->control(control.constData());
    auto *field = m_host->widget<TextEditController>(shownBy.constData());
    QAccessibleInterface *accessible = accessibleOf(control.constData());
    QAccessibleValueInterface *value = accessible->valueInterface();
    QCOMPARE(value->minimumValue().toInt(), controller->minimumValue());
    QCOMPARE(value->maximumValue().toInt(), controller->maximumValue());
    const int start = controller->minimumValue() + 1;
    value->setCurrentValue(start);
    QCOMPARE(controller->value(), start);
    const QString before = field->shownText();
    g_valueEvents.clear();

    accessible->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    QCOMPARE(controller->value(), start - 1);
    QCOMPARE(valueEventsFor(m_host->widget(control.constData())), 1);
    QCOMPARE(g_valueEvents.last().second, start - 1);
    QVERIFY(field->shownText() != before);
    QCOMPARE(accessible->text(QAccessible::Value), field->shownText());
    // The bridge carries numbers only; the description carries the text.
    QCOMPARE(accessible->text(QAccessible::Description), field->shownText());
}

// A press through the reader makes a choice as a click does.
void tst_EditorAccessibility::choicePressedThroughTheReader()
{
    QAccessibleInterface *hard = accessibleOf("m_pCompressorKneeHardButton");
    QVERIFY(!hard->state().checked);
    hard->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(hard->state().checked);
    QCOMPARE(m_host->valueText(ChannelStripKeys::CompressorKnee), QStringLiteral("HARD"));
}

// A meter reads as its level in decibels but announces nothing by itself: a
// reader would otherwise speak at the meters' refresh rate.
void tst_EditorAccessibility::metersAreQuiet()
{
    auto *meter = m_host->widget<MeterController>("m_pSideChainMeter");
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(meter);
    meter->setValue(-125);
    QCOMPARE(accessible->text(QAccessible::Value), QStringLiteral("-12.5 dB"));
    QCOMPARE(accessible->valueInterface()->currentValue().toDouble(), -12.5);
    QCOMPARE(valueEventsFor(meter), 0);
}

// A graph is described by the values it draws, current after every change.
void tst_EditorAccessibility::graphsDescribeTheirCurve()
{
    QAccessibleInterface *curve = accessibleOf("m_pEqualizerGraph");
    QVERIFY(curve->text(QAccessible::Description).contains(QStringLiteral("Middle frequency 1k Hz")));
    QVERIFY(m_host->memory.setValueText(ChannelStripKeys::EqualizerMiddleFrequency, QStringLiteral("2k")));
    QVERIFY2(curve->text(QAccessible::Description).contains(QStringLiteral("Middle frequency 2k Hz")),
        qPrintable(curve->text(QAccessible::Description)));
    QAccessibleInterface *compressor = accessibleOf("m_pCompressorGraph");
    QVERIFY(m_host->memory.setValueText(ChannelStripKeys::CompressorKnee, QStringLiteral("hard")));
    QTRY_VERIFY2(
        compressor->text(QAccessible::Description).contains(QStringLiteral("Compressor knee Hard knee")),
        qPrintable(compressor->text(QAccessible::Description)));
}

QTEST_MAIN(tst_EditorAccessibility)
#include "tst_editoraccessibility.moc"
