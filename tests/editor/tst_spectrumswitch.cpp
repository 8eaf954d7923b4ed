// The spectrum switch against hosts with and without a spectrum source.

#include <QAccessible>
#include <QTest>

#include "Common/Widgets/PushButtonController.h"
#include "EditorHost.h"
#include "Interfaces/ISpectrumSource.h"
#include "ORVChStrip/GraphDescription.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/SpectrumSwitch.h"

using CommonController_MemAPI::PushButtonController;

namespace {

// The editor of a host whose memory offers the stereo strip's spectrum.
struct AnalysingHost : EditorHost
{
    AnalysingHost()
    {
        memory.offerSpectrum(0, 1);
        editor->setMemAPI(&memory);
    }
};

PushButtonController *spectrumButton(const EditorHost &host)
{
    return host.widget<PushButtonController>("m_pEqualizerSpectrumButton");
}

ORVChStripEqualizerGraph *graph(const EditorHost &host)
{
    return host.widget<ORVChStripEqualizerGraph>("m_pEqualizerGraph");
}

} // namespace

class TestSpectrumSwitch : public QObject
{
    Q_OBJECT

private slots:
    void withoutSourceTheSwitchSaysWhy();
    void switchFeedsTheGraph();
    void settingsRoundTrip();
};

void TestSpectrumSwitch::withoutSourceTheSwitchSaysWhy()
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
    QCOMPARE(QAccessible::queryAccessibleInterface(button)->role(), QAccessible::CheckBox);
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 0);
    // The wish is kept for a host that offers a spectrum.
    QCOMPARE(host.editor->getEditorSettings().value(QStringLiteral("Spectrum")), QVariant(true));
}

void TestSpectrumSwitch::switchFeedsTheGraph()
{
    AnalysingHost host;
    host.editor->show();
    QVERIFY(QTest::qWaitForWindowExposed(host.editor.get()));
    PushButtonController *button = spectrumButton(host);
    QVERIFY(button->isEnabled());
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 0);

    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(button->isChecked());
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 1);
    std::vector<float> output(SpectrumBands::Count, -60.0f);
    output[SpectrumBands::OneKilohertzBand] = -12.0f;
    host.memory.spectrumObservers().publish(output.data(), nullptr);
    QCOMPARE(graph(host)->spectrum().loudestBand(), SpectrumBands::OneKilohertzBand);
    const QString description = GraphDescription::of(graph(host))->text();
    QVERIFY2(description.endsWith(QStringLiteral("Spectrum shown, highest band 1 kHz at -12 dB")),
        qPrintable(description));

    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 0);
    QVERIFY(graph(host)->spectrum().isEmpty());
    QVERIFY(!GraphDescription::of(graph(host))->text().contains(QStringLiteral("Spectrum")));
}

void TestSpectrumSwitch::settingsRoundTrip()
{
    QMap<QString, QVariant> saved;
    {
        AnalysingHost host;
        QCOMPARE(host.editor->getEditorSettings().value(QStringLiteral("Spectrum")), QVariant(false));
        spectrumButton(host)->click();
        saved = host.editor->getEditorSettings();
    }
    QCOMPARE(saved.value(QStringLiteral("Spectrum")), QVariant(true));
    AnalysingHost host;
    host.editor->setEditorSettings(saved);
    QVERIFY(spectrumButton(host)->isChecked());
    QCOMPARE(host.memory.spectrumObservers().observerCount(), 1);
    // A restore without the key leaves the switch as it is.
    host.editor->setEditorSettings({});
    QVERIFY(spectrumButton(host)->isChecked());
}

QTEST_MAIN(TestSpectrumSwitch)
#include "tst_spectrumswitch.moc"
