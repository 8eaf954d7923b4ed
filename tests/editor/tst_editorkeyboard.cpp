// The editor used with the keyboard alone.
#include <QApplication>
#include <QStandardPaths>
#include <QTest>

#include "Common/Widgets/FocusMark.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/TextEditController.h"
#include "EditorHost.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;

namespace {

// Reading order: the top bar, then compressor, equaliser, morphing, output.
const QStringList TabOrder { "m_pAboutButton", "m_pPresetConverterButton", "m_pCompressorButton",
    "m_pCompressorAttackKnob", "m_pCompressorAttackTextEdit", "m_pCompressorReleaseKnob",
    "m_pCompressorReleaseTextEdit", "m_pCompressorRatioKnob", "m_pCompressorRatioTextEdit",
    "m_pCompressorKneeSoftButton", // the knee buttons are one stop, the chosen one; arrows move within
    "m_pSideChainQualityKnob", "m_pSideChainQualityTextEdit", "m_pSideChainFrequencyKnob",
    "m_pSideChainFrequencyTextEdit", "m_pSideChainGainKnob", "m_pSideChainGainTextEdit", "m_pSideChainButton",
    "m_pCompressorDriveKnob", "m_pCompressorDriveTextEdit", "m_pEqualizerButton",
    "m_pEqualizerSpectrumButton", "m_pEqualizerLowFrequencyKnob", "m_pEqualizerLowFrequencyTextEdit",
    "m_pEqualizerLowGainKnob", "m_pEqualizerLowGainTextEdit", "m_pEqualizerLowButton",
    "m_pEqualizerMiddleQualityKnob", "m_pEqualizerMiddleQualityTextEdit", "m_pEqualizerMiddleFrequencyKnob",
    "m_pEqualizerMiddleFrequencyTextEdit", "m_pEqualizerMiddleGainKnob", "m_pEqualizerMiddleGainTextEdit",
    "m_pEqualizerMiddleButton", "m_pEqualizerHighFrequencyKnob", "m_pEqualizerHighFrequencyTextEdit",
    "m_pEqualizerHighGainKnob", "m_pEqualizerHighGainTextEdit", "m_pEqualizerHighButton", "m_pMorphingKnob",
    "m_pMorphingTextEdit", "m_pMorphingPresetButton", "m_pOutputKnob", "m_pOutputTextEdit" };

struct ShownEditor : EditorHost
{
    ShownEditor()
    {
        // As the reference host does, so that the spectrum switch takes part.
        memory.offerSpectrum(0, 1);
        editor->setMemAPI(&memory);
        editor->show();
        QApplication::setActiveWindow(editor.get());
    }
    bool active() const { return QTest::qWaitForWindowActive(editor.get()); }

    QString focusName() const
    {
        const QWidget *focus = QApplication::focusWidget();
        return focus ? focus->objectName() : QString();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void tabTo(const char *name) const
    {
        QWidget *target = widget(name);
        target->setFocus(Qt::TabFocusReason);
    }
};

// Pixels of the focus mark's colour in a grab of the widget.
int markPixels(QWidget *widget)
{
    const QColor mark = FocusMark::color(widget->palette());
    const QImage image = widget->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (qAbs(pixel.red() - mark.red()) + qAbs(pixel.green() - mark.green())
                    + qAbs(pixel.blue() - mark.blue())
                < 24)
                ++count;
        }
    }
    return count;
}

} // namespace

class tst_EditorKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void tabVisitsEnabledControlsInReadingOrder_data();
    void tabVisitsEnabledControlsInReadingOrder();
    void keysChangeValues_data();
    void keysChangeValues();
    void escapeClosesPanelsAndGivesTheFocusBack_data();
    void escapeClosesPanelsAndGivesTheFocusBack();
    void focusMarkShowsAfterTabNotAfterClick_data();
    void focusMarkShowsAfterTabNotAfterClick();
};

void tst_EditorKeyboard::tabVisitsEnabledControlsInReadingOrder_data()
{
    QTest::addColumn<QByteArray>("switchKey");
    QTest::addColumn<int>("switchValue");
    QTest::addColumn<QStringList>("skipped");
    const QStringList sideChain { "m_pSideChainQualityKnob", "m_pSideChainQualityTextEdit",
        "m_pSideChainFrequencyKnob", "m_pSideChainFrequencyTextEdit", "m_pSideChainGainKnob",
        "m_pSideChainGainTextEdit" };
    const QStringList lowBand { "m_pEqualizerLowFrequencyKnob", "m_pEqualizerLowFrequencyTextEdit",
        "m_pEqualizerLowGainKnob", "m_pEqualizerLowGainTextEdit" };
    QTest::newRow("defaults: side chain off") << QByteArray() << 0 << sideChain;
    QTest::newRow("side chain on") << QByteArray(Keys::SideChainOn) << 1 << QStringList();
    QTest::newRow("low band off") << QByteArray(Keys::EqualizerLowOn) << 0 << sideChain + lowBand;
}

void tst_EditorKeyboard::tabVisitsEnabledControlsInReadingOrder()
{
    QFETCH(QByteArray, switchKey);
    QFETCH(int, switchValue);
    QFETCH(QStringList, skipped);
    ShownEditor host;
    QVERIFY(host.active());
    if (!switchKey.isEmpty())
        QVERIFY(host.memory.setValueByKey(switchKey.constData(), switchValue));

    QStringList expected = TabOrder;
    for (const QString &name : skipped)
        expected.removeOne(name);

    host.tabTo("m_pAboutButton");
    QStringList forward { host.focusName() };
    for (int i = 1; i < expected.size(); ++i) {
        host.key(Qt::Key_Tab);
        forward << host.focusName();
    }
    QCOMPARE(forward, expected);
    host.key(Qt::Key_Tab); // wraps round
    QCOMPARE(host.focusName(), expected.first());
    host.key(Qt::Key_Backtab);
    QCOMPARE(host.focusName(), expected.last());
    host.key(Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(host.focusName(), expected.at(expected.size() - 2));
}

void tst_EditorKeyboard::keysChangeValues_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::addColumn<QString>("keys"); // Qt key names, space separated; other words are typed
    QTest::addColumn<QByteArray>("parameter");
    QTest::addColumn<QByteArray>("expectedText");

    QTest::newRow("knob up") << QByteArray("m_pCompressorAttackKnob") << "Up"
                             << QByteArray(Keys::CompressorAttack) << QByteArray("11");
    QTest::newRow("knob page down") << QByteArray("m_pEqualizerLowGainKnob") << "PageDown"
                                    << QByteArray(Keys::EqualizerLowGain) << QByteArray("-1.0");
    QTest::newRow("field typed") << QByteArray("m_pEqualizerMiddleFrequencyTextEdit") << "Return 1.2k Return"
                                 << QByteArray(Keys::EqualizerMiddleFrequency)
                                 << QByteArray("1.18k"); // the nearest step
    QTest::newRow("field typing cancelled")
        << QByteArray("m_pEqualizerMiddleFrequencyTextEdit") << "Return 5k Escape"
        << QByteArray(Keys::EqualizerMiddleFrequency) << QByteArray("1k");
    QTest::newRow("switch by space") << QByteArray("m_pEqualizerLowButton") << "Space"
                                     << QByteArray(Keys::EqualizerLowOn) << QByteArray("OFF");
    QTest::newRow("knee by arrow") << QByteArray("m_pCompressorKneeSoftButton") << "Right"
                                   << QByteArray(Keys::CompressorKnee) << QByteArray("MEDIUM");
}

void tst_EditorKeyboard::keysChangeValues()
{
    QFETCH(QByteArray, control);
    QFETCH(QString, keys);
    QFETCH(QByteArray, parameter);
    QFETCH(QByteArray, expectedText);
    ShownEditor host;
    QVERIFY(host.active());
    host.tabTo(control.constData());
    QCOMPARE(host.focusName(), QString::fromLatin1(control));

    for (const QString &word : keys.split(' ')) {
        const QMetaEnum keyEnum = QMetaEnum::fromType<Qt::Key>();
        bool known = false;
        const int key = keyEnum.keyToValue(("Key_" + word).toLatin1().constData(), &known);
        if (known)
            host.key(Qt::Key(key));
        else
            QTest::keyClicks(QApplication::focusWidget(), word);
    }
    QCOMPARE(host.valueText(parameter.constData()), QString::fromLatin1(expectedText));
    if (!control.contains("Knee")) // the knee's arrows move the focus with the choice
        QCOMPARE(host.focusName(), QString::fromLatin1(control));
}

void tst_EditorKeyboard::escapeClosesPanelsAndGivesTheFocusBack_data()
{
    QTest::addColumn<QByteArray>("opener");
    QTest::addColumn<QByteArray>("panel");
    QTest::newRow("about") << QByteArray("m_pAboutButton") << QByteArray("m_pAbout");
    QTest::newRow("converter") << QByteArray("m_pPresetConverterButton") << QByteArray("m_pPresetConverter");
    QTest::newRow("morphing list") << QByteArray("m_pMorphingPresetButton")
                                   << QByteArray("m_pMorphingPresetList");
}

void tst_EditorKeyboard::escapeClosesPanelsAndGivesTheFocusBack()
{
    QFETCH(QByteArray, opener);
    QFETCH(QByteArray, panel);
    ShownEditor host;
    QVERIFY(host.active());
    QWidget *panelWidget = host.widget(panel.constData());
    QVERIFY(panelWidget);

    host.tabTo(opener.constData());
    host.key(Qt::Key_Return);
    QTRY_VERIFY(panelWidget->isVisible());
    const auto inside = [&] {
        QWidget *focus = QApplication::focusWidget();
        return focus == panelWidget || panelWidget->isAncestorOf(focus);
    };
    QVERIFY(inside());
    for (int i = 0; i < 5; ++i) {
        host.key(Qt::Key_Tab);
        QVERIFY2(inside(), qPrintable(host.focusName()));
    }

    host.key(Qt::Key_Escape);
    QCOMPARE(host.focusName(), QString::fromLatin1(opener));
    QTRY_VERIFY(panelWidget->isHidden());
    QCOMPARE(host.focusName(), QString::fromLatin1(opener));
}

void tst_EditorKeyboard::focusMarkShowsAfterTabNotAfterClick_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::newRow("knob") << QByteArray("m_pCompressorRatioKnob");
    QTest::newRow("value field") << QByteArray("m_pOutputTextEdit");
    QTest::newRow("switch") << QByteArray("m_pEqualizerMiddleButton");
    QTest::newRow("list button") << QByteArray("m_pMorphingPresetButton");
}

void tst_EditorKeyboard::focusMarkShowsAfterTabNotAfterClick()
{
    QFETCH(QByteArray, control);
    ShownEditor host;
    QVERIFY(host.active());
    QWidget *widget = host.widget(control.constData());
    const int unfocused = markPixels(widget);

    host.tabTo("m_pAboutButton");
    while (host.focusName() != QString::fromLatin1(control))
        host.key(Qt::Key_Tab);
    const int byTab = markPixels(widget);
    QVERIFY2(byTab > unfocused + 8, qPrintable(QStringLiteral("%1 vs %2").arg(byTab).arg(unfocused)));

    // Using the mouse on the control hides the mark while the focus stays
    // (a knob's index line keeps its focused colour).
    QTest::mouseClick(widget, Qt::RightButton);
    QCOMPARE(host.focusName(), QString::fromLatin1(control));
    const int afterClick = markPixels(widget);
    QVERIFY2(afterClick + 8 < byTab, qPrintable(QStringLiteral("%1 vs %2").arg(afterClick).arg(byTab)));
}

QTEST_MAIN(tst_EditorKeyboard)
#include "tst_editorkeyboard.moc"
