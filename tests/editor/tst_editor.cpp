// The channel strip editor against the simulated host, used with the mouse
// and with the keyboard alone.
#include <QApplication>
#include <QLabel>
#include <QStandardPaths>
#include <QTest>
#include <memory>

#include "Common/Widgets/FocusMark.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PushButtonController.h"
#include "EditorHost.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/ISpectrumSource.h"
#include "ORVChStrip/FadingOverlay.h"
#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/SpectrumSwitch.h"
#include "PixelChecks.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;

namespace {

PushButtonController *spectrumButton(const EditorHost &host)
{
    return host.widget<PushButtonController>("m_pEqualizerSpectrumButton");
}

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

QString focusName()
{
    const QWidget *focus = QApplication::focusWidget();
    return focus ? focus->objectName() : QString();
}

void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

// Pixels of the focus mark's colour in a grab of the widget.
int markPixels(QWidget *widget)
{
    return pixelsNear(widget->grab().toImage(), FocusMark::color(widget->palette()), 23);
}

int meterValue(const EditorHost &host, const char *name)
{
    return host.widget<MeterController>(name)->value();
}

} // namespace

class tst_Editor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        qputenv("ORVCHSTRIP_MORPH_FOLDER", ORV_FACTORY_MORPH_DIR);
    }
    void init();
    void everyKeyReachesItsControls_data();
    void everyKeyReachesItsControls();
    void switchesEnableTheirControls_data();
    void switchesEnableTheirControls();
    void turningAMorphedParameterShowsTheMismatch();
    void monoStripShowsAndDrivesOnlyMonoMeters();
    void pickingAMorphSetSlidesTheListOverTheStrip();
    void settingsRoundTrip();
    void spectrumSwitchWithoutSourceSaysWhy();
    void spectrumSwitchFeedsTheGraph();
    void tabVisitsEnabledControlsInReadingOrder_data();
    void tabVisitsEnabledControlsInReadingOrder();
    void kneeArrowsMoveTheChoiceAndTheFocus();
    void escapeClosesPanelsAndGivesTheFocusBack_data();
    void escapeClosesPanelsAndGivesTheFocusBack();
    void panelsBuiltOnFirstOpenScaleWithTheEditor_data();
    void panelsBuiltOnFirstOpenScaleWithTheEditor();
    void focusMarkShowsAfterTabNotAfterClick_data();
    void focusMarkShowsAfterTabNotAfterClick();

private:
    // The editor shown and active in a host that offers a spectrum, as the
    // reference host does, so that every control takes part.
    std::unique_ptr<EditorHost> m_host;
    void tabTo(const char *name) { m_host->widget(name)->setFocus(Qt::TabFocusReason); }
};

void tst_Editor::init()
{
    m_host = std::make_unique<EditorHost>();
    m_host->offerSpectrum();
    m_host->editor->show();
    QApplication::setActiveWindow(m_host->editor.get());
    QVERIFY(QTest::qWaitForWindowActive(m_host->editor.get()));
}

void tst_Editor::everyKeyReachesItsControls_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("control"); // a knob, bound with its value field named alike
    using Row = QPair<const char *, const char *>;
#define KNOB(name) Row(Keys::name, "m_p" #name "Knob")
    const Row rows[] = { KNOB(CompressorAttack), KNOB(CompressorRelease), KNOB(CompressorRatio),
        KNOB(SideChainQuality), KNOB(SideChainFrequency), KNOB(SideChainGain), KNOB(CompressorDrive),
        KNOB(EqualizerLowFrequency), KNOB(EqualizerLowGain), KNOB(EqualizerMiddleQuality),
        KNOB(EqualizerMiddleFrequency), KNOB(EqualizerMiddleGain), KNOB(EqualizerHighFrequency),
        KNOB(EqualizerHighGain), Row(Keys::MorphValue, "m_pMorphingKnob"),
        Row(Keys::OutputLevel, "m_pOutputKnob"), Row(Keys::CompressorBypass, "m_pCompressorButton"),
        Row(Keys::CompressorKnee, "m_pCompressorKneeButtonGroup"),
        Row(Keys::SideChainOn, "m_pSideChainButton"), Row(Keys::EqualizerBypass, "m_pEqualizerButton"),
        Row(Keys::EqualizerLowOn, "m_pEqualizerLowButton"),
        Row(Keys::EqualizerMiddleOn, "m_pEqualizerMiddleButton"),
        Row(Keys::EqualizerHighOn, "m_pEqualizerHighButton") };
#undef KNOB
    for (const auto &[key, name] : rows)
        QTest::newRow(key) << QByteArray(key) << QString::fromLatin1(name);
}

void tst_Editor::everyKeyReachesItsControls()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, control);
    EditorHost &host = *m_host;
    QStringList controls { control };
    if (control.endsWith(QLatin1String("Knob")))
        controls << control.chopped(4) + QLatin1String("TextEdit");
    for (const QString &name : controls) {
        AbstractController *bound = host.control(qPrintable(name));
        QVERIFY2(bound && bound->isBound(), qPrintable(name));
        QCOMPARE(bound->prmId(), host.model.parameterId(key.constData()));
        QCOMPARE(bound->memAPI(), &host.memory);
    }
}

void tst_Editor::switchesEnableTheirControls_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("disabled");     // names, space separated
    QTest::addColumn<QString>("stillEnabled"); // names, space separated
    QTest::addColumn<bool>("dimsCaptions"); // bypassing a section dims its captions; a band switch does not
    QTest::newRow("compressor bypass")
        << QByteArray(Keys::CompressorBypass) << 1
        << "m_pCompressorAttackKnob m_pCompressorKneeSoftButton m_pCompressorDriveKnob "
           "m_pSideChainButton"
        << "m_pCompressorButton m_pEqualizerLowGainKnob m_pMorphingKnob" << true;
    QTest::newRow("side chain off") << QByteArray(Keys::SideChainOn) << 0
                                    << "m_pSideChainGainKnob m_pSideChainQualityTextEdit"
                                    << "m_pSideChainButton m_pCompressorRatioKnob" << false;
    QTest::newRow("middle band off")
        << QByteArray(Keys::EqualizerMiddleOn) << 0
        << "m_pEqualizerMiddleQualityKnob m_pEqualizerMiddleGainTextEdit"
        << "m_pEqualizerMiddleButton m_pEqualizerLowGainKnob m_pEqualizerHighGainKnob" << false;
    QTest::newRow("equalizer bypass")
        << QByteArray(Keys::EqualizerBypass) << 1
        << "m_pEqualizerLowButton m_pEqualizerHighFrequencyKnob m_pEqualizerGraph"
        << "m_pEqualizerButton m_pCompressorAttackKnob m_pOutputKnob" << true;
}

void tst_Editor::switchesEnableTheirControls()
{
    QFETCH(QByteArray, key);
    QFETCH(int, value);
    QFETCH(QString, disabled);
    QFETCH(QString, stillEnabled);
    QFETCH(bool, dimsCaptions);
    EditorHost &host = *m_host;
    host.memory.setValueByKey(Keys::SideChainOn, 1);
    auto *caption = host.widget<QLabel>(
        key.startsWith("fx_cmp") ? "m_pCompressorAttackLabel" : "m_pEqualizerLowGainLabel");
    const auto alpha
        = [caption] { return caption->palette().color(QPalette::Active, QPalette::WindowText).alpha(); };
    const int running = alpha();
    for (const int setting : { value, 1 - value }) {
        host.memory.setValueByKey(key.constData(), setting);
        for (const QString &name : disabled.split(' '))
            QVERIFY2(host.widget(qPrintable(name))->isEnabled() != (setting == value), qPrintable(name));
        for (const QString &name : stillEnabled.split(' '))
            QVERIFY2(host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
        QCOMPARE(alpha() < running, dimsCaptions && setting == value);
    }
}

void tst_Editor::turningAMorphedParameterShowsTheMismatch()
{
    EditorHost &host = *m_host;
    auto *knob = host.widget<KnobController>("m_pMorphingKnob");
    const QString matching = QStringLiteral(":/image/orvchstrip/back_morphing.svg");
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(),
        QStringLiteral("Choose a morph set..."));
    host.memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Vocal Air"));
    QCOMPARE(knob->backgroundSvg(), matching); // without morph points every value is its own base
    // Turned by hand, the parameter leaves the value the morph position gives it.
    host.memory.setValueByKey(Keys::EqualizerMiddleGain, host.memory.value(Keys::EqualizerMiddleGain) + 30);
    QTRY_COMPARE(knob->backgroundSvg(), QStringLiteral(":/image/orvchstrip/back_morphing_off.svg"));
    // Moving the morph knob sets every morphing parameter from the morph table again.
    host.memory.setValueByKey(Keys::MorphValue, 500);
    QTRY_COMPARE(knob->backgroundSvg(), matching);
}

void tst_Editor::monoStripShowsAndDrivesOnlyMonoMeters()
{
    EditorHost host(HostModel::channelStrip(), -1);
    QVERIFY(host.widget("m_pInputMonoMeterBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pInputStereoMeterBackground")->isVisibleTo(host.editor.get()));
    const int silence = meterValue(host, "m_pInputStereoMeterR");
    QVector<unsigned int> values(int(host.model.meterArraySize()), unsigned(-60));
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pOutputMonoMeter"), -60);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterR"), silence);
    QVERIFY(host.widget<ORVChStripCompressorGraph>("m_pCompressorGraph")->hasOperatingPoint());

    host.editor->setCh(0, 1);
    QVERIFY(host.widget("m_pOutputStereoMeterBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pOutputMonoMeterBackground")->isVisibleTo(host.editor.get()));
    values[host.model.meterBase(Keys::InputMeter) + 2] = unsigned(-120); // channel 1, right
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterR"), -120);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterL"), -60);
}

void tst_Editor::pickingAMorphSetSlidesTheListOverTheStrip()
{
    EditorHost &host = *m_host;
    ORVChStripMorphingPresetList *list = host.editor->morphingPresetList();
    // The list covers the sections; the controls behind it rest, their captions dimmed.
    auto *caption = host.widget<QLabel>("m_pCompressorAttackLabel");
    const int alpha = caption->palette().color(QPalette::Active, QPalette::WindowText).alpha();
    QTest::mouseClick(host.widget("m_pMorphingPresetButton"), Qt::LeftButton);
    QVERIFY(!host.widget("m_pEqualizerLowGainKnob")->isEnabled());
    QVERIFY(!host.widget("m_pCompressorAttackKnob")->isEnabled());
    QVERIFY(caption->palette().color(QPalette::Active, QPalette::WindowText).alpha() < alpha);
    QTRY_COMPARE(list->geometry(), host.editor->morphingPresetGeometry());

    // The factory folders come first, closed; open "Vocals" and take its first set.
    list->selectItem(3);
    for (const Qt::Key key : { Qt::Key_Right, Qt::Key_Down, Qt::Key_Return })
        QTest::keyClick(list, key);
    QCOMPARE(host.memory.text(Keys::MorphSystemName), QByteArrayLiteral("De-Ess Soft to Strong"));
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(),
        QStringLiteral("De-Ess Soft to Strong"));
    QVERIFY(!host.editor->isMorphingPresetOpen());
    QTRY_VERIFY(!list->isVisible());
    QVERIFY(host.widget("m_pEqualizerLowGainKnob")->isEnabled());
}

void tst_Editor::settingsRoundTrip()
{
    m_host->editor->morphingPresetList()->selectItem(1); // Drums
    m_host->editor->morphingPresetList()->folderOpen();
    spectrumButton(*m_host)->click();
    const QMap<QString, QVariant> kept = m_host->editor->getEditorSettings();
    m_host.reset();
    QCOMPARE(kept.value(QStringLiteral("MorphingListFolder2Open")), QVariant(true));
    QCOMPARE(kept.value(QStringLiteral("MorphingListFolder1Open")), QVariant(false));
    QCOMPARE(kept.value(QStringLiteral("MorphingListSelected")), QVariant(1));
    QCOMPARE(kept.value(QStringLiteral("Spectrum")), QVariant(true));

    EditorHost next;
    next.offerSpectrum();
    next.editor->setEditorSettings(kept);
    QCOMPARE(next.editor->getEditorSettings(), kept);
    QCOMPARE(next.memory.spectrumObservers().observerCount(), 1);
    // A map without the keys leaves everything as it is.
    next.editor->setEditorSettings({});
    QCOMPARE(next.editor->getEditorSettings(), kept);
}

void tst_Editor::spectrumSwitchWithoutSourceSaysWhy()
{
    EditorHost host; // the fake host offers no spectrum
    host.editor->setEditorSettings({ { QStringLiteral("Spectrum"), true } });
    host.editor->show();
    PushButtonController *button = spectrumButton(host);
    QVERIFY(QTest::qWaitForWindowExposed(host.editor.get()));
    QVERIFY(!button->isEnabled());
    QVERIFY(!button->isChecked());
    QCOMPARE(button->toolTip(), SpectrumSwitch::unavailableText());
    QTRY_COMPARE(button->accessibleDescription(), SpectrumSwitch::unavailableText());
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 0);
    // The wish is kept for a host that offers a spectrum.
    QCOMPARE(host.editor->getEditorSettings().value(QStringLiteral("Spectrum")), QVariant(true));
}

void tst_Editor::spectrumSwitchFeedsTheGraph()
{
    EditorHost &host = *m_host;
    auto *graph = host.widget<ORVChStripEqualizerGraph>("m_pEqualizerGraph");
    const auto observers = [&host] { return host.memory.spectrumObservers().observerCount(); };
    QCOMPARE(observers(), 0);
    QTest::mouseClick(spectrumButton(host), Qt::LeftButton);
    QCOMPARE(observers(), 1);
    std::vector<float> output(SpectrumBands::Count, -60.0f);
    output[SpectrumBands::OneKilohertzBand] = -12.0f;
    host.memory.spectrumObservers().publish(output.data(), nullptr);
    const QString description = GraphDescription::of(graph)->text();
    QVERIFY2(description.endsWith(QStringLiteral("Spectrum shown, highest band 1 kHz at -12 dB")),
        qPrintable(description));

    QTest::mouseClick(spectrumButton(host), Qt::LeftButton);
    QCOMPARE(observers(), 0);
    QVERIFY(graph->spectrum().isEmpty());
    QVERIFY(!GraphDescription::of(graph)->text().contains(QStringLiteral("Spectrum")));
}

void tst_Editor::tabVisitsEnabledControlsInReadingOrder_data()
{
    QTest::addColumn<QByteArray>("switchKey");
    QTest::addColumn<int>("switchValue");
    QTest::addColumn<QStringList>("skipped");
    const QStringList sideChain { "m_pSideChainQualityKnob", "m_pSideChainQualityTextEdit",
        "m_pSideChainFrequencyKnob", "m_pSideChainFrequencyTextEdit", "m_pSideChainGainKnob",
        "m_pSideChainGainTextEdit" };
    QTest::newRow("defaults: side chain off") << QByteArray() << 0 << sideChain;
    QTest::newRow("side chain on") << QByteArray(Keys::SideChainOn) << 1 << QStringList();
}

void tst_Editor::tabVisitsEnabledControlsInReadingOrder()
{
    QFETCH(QByteArray, switchKey);
    QFETCH(int, switchValue);
    QFETCH(QStringList, skipped);
    if (!switchKey.isEmpty())
        QVERIFY(m_host->memory.setValueByKey(switchKey.constData(), switchValue));
    QStringList expected = TabOrder;
    for (const QString &name : skipped)
        expected.removeOne(name);
    tabTo("m_pAboutButton");
    QStringList forward { focusName() };
    for (int i = 1; i < expected.size(); ++i) {
        key(Qt::Key_Tab);
        forward << focusName();
    }
    QCOMPARE(forward, expected);
    key(Qt::Key_Tab); // wraps round
    QCOMPARE(focusName(), expected.first());
    key(Qt::Key_Backtab);
    QCOMPARE(focusName(), expected.last());
}

void tst_Editor::kneeArrowsMoveTheChoiceAndTheFocus()
{
    // The knee's arrows move the choice, and the focus with it.
    tabTo("m_pCompressorKneeSoftButton");
    key(Qt::Key_Right);
    QCOMPARE(m_host->valueText(Keys::CompressorKnee), QStringLiteral("MEDIUM"));
    QCOMPARE(focusName(), QStringLiteral("m_pCompressorKneeMediumButton"));
}

void tst_Editor::escapeClosesPanelsAndGivesTheFocusBack_data()
{
    QTest::addColumn<QByteArray>("opener");
    QTest::addColumn<QByteArray>("panel");
    QTest::newRow("about") << QByteArray("m_pAboutButton") << QByteArray("m_pAbout");
    QTest::newRow("converter") << QByteArray("m_pPresetConverterButton") << QByteArray("m_pPresetConverter");
    QTest::newRow("morphing list") << QByteArray("m_pMorphingPresetButton")
                                   << QByteArray("m_pMorphingPresetList");
}

void tst_Editor::escapeClosesPanelsAndGivesTheFocusBack()
{
    QFETCH(QByteArray, opener);
    QFETCH(QByteArray, panel);
    QWidget *panelWidget = m_host->widget(panel.constData());
    tabTo(opener.constData());
    key(Qt::Key_Return);
    QTRY_VERIFY(panelWidget->isVisible());
    // Tab stays inside the open panel.
    for (int i = 0; i < 6; ++i) {
        QVERIFY2(panelWidget->isAncestorOf(QApplication::focusWidget())
                || QApplication::focusWidget() == panelWidget,
            qPrintable(focusName()));
        key(Qt::Key_Tab);
    }
    key(Qt::Key_Escape);
    QCOMPARE(focusName(), QString::fromLatin1(opener));
    QTRY_VERIFY(panelWidget->isHidden());
    QCOMPARE(focusName(), QString::fromLatin1(opener));
}

void tst_Editor::panelsBuiltOnFirstOpenScaleWithTheEditor_data()
{
    QTest::addColumn<QByteArray>("panel");
    QTest::newRow("about") << QByteArray("m_pAbout");
    QTest::newRow("converter") << QByteArray("m_pPresetConverter");
}

void tst_Editor::panelsBuiltOnFirstOpenScaleWithTheEditor()
{
    // Built at scale 2 when first opened, the contents follow a later scale
    // as the rest of the panel does: every part exactly half, fonts too.
    QFETCH(QByteArray, panel);
    auto *overlay = qobject_cast<FadingOverlay *>(m_host->widget(panel.constData()));
    QVERIFY(overlay && !overlay->hasContents());
    m_host->editor->setScale(2.0);
    overlay->open();
    QVERIFY(overlay->hasContents());
    const QList<QWidget *> parts = overlay->findChildren<QWidget *>();
    QVERIFY(parts.size() > 3);
    QList<QRect> atTwo;
    QList<int> fontsAtTwo;
    for (const QWidget *part : parts) {
        atTwo << part->geometry();
        fontsAtTwo << part->font().pixelSize();
    }
    m_host->editor->setScale(1.0);
    for (int i = 0; i < parts.size(); ++i) {
        if (parts.at(i)->objectName().startsWith(QLatin1String("qt_")) || parts.at(i)->objectName().isEmpty())
            continue; // a scroll area's own parts, laid out by it
        const QRect one = parts.at(i)->geometry();
        QCOMPARE(atTwo.at(i), QRect(one.topLeft() * 2, one.size() * 2));
        QCOMPARE(fontsAtTwo.at(i), parts.at(i)->font().pixelSize() * 2);
    }
}

void tst_Editor::focusMarkShowsAfterTabNotAfterClick_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::newRow("knob") << QByteArray("m_pCompressorRatioKnob");
    QTest::newRow("value field") << QByteArray("m_pOutputTextEdit");
    QTest::newRow("switch") << QByteArray("m_pEqualizerMiddleButton");
}

void tst_Editor::focusMarkShowsAfterTabNotAfterClick()
{
    QFETCH(QByteArray, control);
    QWidget *widget = m_host->widget(control.constData());
    const int unfocused = markPixels(widget);
    tabTo("m_pAboutButton");
    while (focusName() != QString::fromLatin1(control))
        key(Qt::Key_Tab);
    const int byTab = markPixels(widget);
    QVERIFY2(byTab > unfocused + 8, qPrintable(QStringLiteral("%1 vs %2").arg(byTab).arg(unfocused)));
    // Using the mouse on the control hides the mark while the focus stays
    // (a knob's index line keeps its focused colour).
    QTest::mouseClick(widget, Qt::RightButton);
    QCOMPARE(focusName(), QString::fromLatin1(control));
    const int afterClick = markPixels(widget);
    QVERIFY2(afterClick + 8 < byTab, qPrintable(QStringLiteral("%1 vs %2").arg(afterClick).arg(byTab)));
}

QTEST_MAIN(tst_Editor)
#include "tst_editor.moc"
