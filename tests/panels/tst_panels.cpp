// The panels laid over the editor: the fade they share (on the about panel),
// what a click and the opacity do to each, their tool tips; and what the
// converter's dialog adds to the conversion (whose files and summary the
// preset tests check): the choice it keeps, the outcome it shows, and a
// conversion that neither blocks the editor nor is cut short.

#include <QHelpEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include "Common/Widgets/PushButtonController.h"
#include "IsolatedHome.h"
#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/PanelToolTips.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "PresetTestFiles.h"

using namespace PresetTestFiles;
using CommonController_MemAPI::PushButtonController;
using Conversion = ORVChStripPresetConversion;

namespace {

// The about panel, recording every opacity it is given after construction.
// Its fade is the one every overlay has.
class TracedAbout : public ORVChStripAbout
{
public:
    using ORVChStripAbout::ORVChStripAbout;
    void setOpacity(double opacity) override
    {
        ORVChStripAbout::setOpacity(opacity);
        trace.append(opacity);
    }
    // The opacities given so far, two decimals each.
    QStringList steps() const
    {
        QStringList values;
        for (double value : trace)
            values << QString::number(value, 'f', 2);
        return values;
    }
    QList<double> trace;
};

// A panel of the given kind over a white stand-in editor.
struct Scene
{
    explicit Scene(const QString &kind)
    {
        editor.resize(1015, 572);
        editor.setAutoFillBackground(true);
        editor.setPalette(QPalette(Qt::white));
        if (kind == QLatin1String("about"))
            panel = about = new TracedAbout(&editor);
        else
            panel = new ORVChStripPresetConverter(&editor);
        editor.show();
    }
    QWidget editor;
    TracedAbout *about = nullptr;
    FadingOverlay *panel = nullptr;
};

// from, from + step, ... count values given in tenths, two decimals each.
QStringList ramp(int from, int step, int count)
{
    QStringList values;
    for (int i = 0; i < count; ++i)
        values << QString::number((from + i * step) / 10.0, 'f', 2);
    return values;
}

PushButtonController *button(QWidget *dialog, const char *name)
{
    return dialog->findChild<PushButtonController *>(QLatin1String(name));
}

// Writes `count` old presets of one class, each with its own state.
bool writeOldPresets(bool stereo, int count, const QString &pattern)
{
    const Conversion::FolderPair folders = stereo ? Conversion::stereoFolders() : Conversion::monoFolders();
    bool written = true;
    for (int i = 0; i < count; ++i)
        written = written
            && writePreset(folders.source + QLatin1Char('/') + pattern.arg(i), stereo ? StereoID : MonoID,
                stateBytes(1024, i));
    return written;
}

void openFully(ORVChStripPresetConverter &dialog)
{
    dialog.open();
    QTRY_VERIFY(!dialog.isFading());
}

} // namespace

class TestPanels : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fadeInAndOut();
    void clickCloses_data();
    void clickCloses();
    void opacityFadesVeilAndTexts_data();
    void opacityFadesVeilAndTexts();
    void aboutShowsProductRelease();
    void toolTipsWearThePanelColours_data();
    void toolTipsWearThePanelColours();
    void choiceSavedOnEveryHide_data();
    void choiceSavedOnEveryHide();
    void yesShowsTheOutcomeUntilClose();
    void conversionLeavesEventLoopTurning();
    void destroyedWhileConvertingFinishesFiles();

private:
    IsolatedHome m_home; // the converter reads and writes its setting and presets
};

void TestPanels::fadeInAndOut()
{
    Scene scene(QStringLiteral("about"));
    TracedAbout *panel = scene.about;
    QVERIFY(panel->isHidden());
    QCOMPARE(panel->geometry(), QRect(0, 0, 1015, 572));

    panel->open();
    QVERIFY(panel->isVisible());
    panel->open(); // the same direction again changes nothing
    QTRY_VERIFY(!panel->isFading());
    panel->open();
    QTest::qWait(2 * FadingOverlay::FadeIntervalMs);
    QCOMPARE(panel->steps(), ramp(1, 1, 10));

    panel->trace.clear();
    panel->close();
    QTRY_VERIFY(panel->isHidden());
    QCOMPARE(panel->steps(), ramp(9, -1, 10));

    // After a fade out, and after being hidden directly, it fades in anew.
    for (int round = 0; round < 2; ++round) {
        panel->trace.clear();
        panel->open();
        QTRY_VERIFY(!panel->isFading());
        QCOMPARE(panel->steps(), ramp(1, 1, 10));
        panel->hide();
    }
}

void TestPanels::clickCloses_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("target"); // object name, empty for the panel itself
    QTest::addColumn<bool>("closes");

    QTest::newRow("background") << "about" << QString() << true;
    QTest::newRow("version line") << "about" << QStringLiteral("m_pVersionLabel") << true;
    // The converter asks a question: only its buttons end it.
    QTest::newRow("converter background") << "converter" << QString() << false;
}

void TestPanels::clickCloses()
{
    QFETCH(QString, kind);
    QFETCH(QString, target);
    QFETCH(bool, closes);
    Scene scene(kind);
    FadingOverlay *panel = scene.panel;
    QWidget *clicked = target.isEmpty() ? panel : panel->findChild<QWidget *>(target);
    QVERIFY(clicked);
    const QPoint where = target.isEmpty() ? QPoint(60, 300) : clicked->rect().center();
    panel->open();
    QTRY_VERIFY(!panel->isFading());
    QTest::mouseClick(clicked, Qt::LeftButton, {}, where);
    QTest::qWait(3 * FadingOverlay::FadeIntervalMs);
    QTRY_VERIFY(!panel->isFading());
    QCOMPARE(panel->isHidden(), closes);
}

void TestPanels::opacityFadesVeilAndTexts_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<int>("veilAlpha");
    QTest::addColumn<int>("textAlpha");
    QTest::newRow("about full") << "about" << 1.0 << 224 << 255;
    QTest::newRow("about 0.3") << "about" << 0.3 << 67 << 77;
    QTest::newRow("about below zero") << "about" << -0.5 << 0 << 0;
    QTest::newRow("converter 0.3") << "converter" << 0.3 << 67 << 77;
}

void TestPanels::opacityFadesVeilAndTexts()
{
    QFETCH(QString, kind);
    QFETCH(double, opacity);
    QFETCH(int, veilAlpha);
    QFETCH(int, textAlpha);
    Scene scene(kind);
    scene.panel->show();
    scene.panel->setOpacity(opacity);

    // The veil darkens the white editor behind an empty part of the panel.
    const int grey = qGray(scene.editor.grab().toImage().pixel(60, 300));
    QVERIFY2(std::abs(grey - (255 - veilAlpha)) <= 1, qPrintable(QString::number(grey)));
    int texts = 0;
    for (const QLabel *label : scene.panel->findChildren<QLabel *>()) {
        if (label->text().isEmpty())
            continue; // the logos
        ++texts;
        QCOMPARE(label->palette().color(QPalette::WindowText).alpha(), textAlpha);
    }
    QCOMPARE(texts, kind == QLatin1String("about") ? 2 : 4);
}

void TestPanels::aboutShowsProductRelease()
{
    ORVChStripAbout about;
    auto *version = about.findChild<QLabel *>(QStringLiteral("m_pVersionLabel"));
    QVERIFY(version);
    // A new language re-runs the form's texts; the number must survive it.
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&about, &change);
    QCOMPARE(version->text(), QStringLiteral("Orvane Channel Strip Ver 3.3.0"));
}

void TestPanels::toolTipsWearThePanelColours_data()
{
    QTest::addColumn<int>("asked"); // the widget under the pointer, see below
    QTest::newRow("a control of the panel") << 0;
    // Asked of a child without a tip, the control above it answers.
    QTest::newRow("inside a control") << 1;
    QTest::newRow("beside the panel, in the host") << 2;
}

void TestPanels::toolTipsWearThePanelColours()
{
    QFETCH(int, asked);
    QWidget window;
    auto *panel = new QWidget(&window);
    ORVChStripPalette::applyTo(panel);
    auto *control = new QWidget(panel);
    control->setToolTip(QStringLiteral("Threshold"));
    auto *host = new QWidget(&window);
    host->setGeometry(250, 10, 100, 50);
    host->setToolTip(QStringLiteral("The host's own"));
    QWidget *target = QList<QWidget *> { control, new QWidget(control), host }.at(asked);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QHelpEvent request(QEvent::ToolTip, QPoint(5, 5), target->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(target, &request);
    QTRY_VERIFY(PanelToolTips::shownTip());
    QCOMPARE(QToolTip::text(), asked == 2 ? host->toolTip() : control->toolTip());
    const QColor panelBase = panel->palette().color(QPalette::ToolTipBase);
    const QColor hostBase = QToolTip::palette().color(QPalette::ToolTipBase);
    QVERIFY(panelBase != hostBase);
    QCOMPARE(
        PanelToolTips::shownTip()->palette().color(QPalette::ToolTipBase), asked == 2 ? hostBase : panelBase);
    QToolTip::hideText();
    QTRY_VERIFY(!PanelToolTips::shownTip());
}

void TestPanels::init()
{
    QDir(Conversion::presetBase()).removeRecursively();
    m_home.clearSettings();
}

void TestPanels::choiceSavedOnEveryHide_data()
{
    QTest::addColumn<QString>("check"); // none, button, label
    QTest::addColumn<bool>("notNow");   // else hidden at once
    QTest::addColumn<bool>("askAgain");
    QTest::newRow("checked, Not Now") << "button" << true << false;
    QTest::newRow("checked through its label, Not Now") << "label" << true << false;
    QTest::newRow("checked, hidden at once") << "button" << false << false;
    QTest::newRow("unchecked, Not Now") << "none" << true << true;
}

void TestPanels::choiceSavedOnEveryHide()
{
    QFETCH(QString, check);
    QFETCH(bool, notNow);
    QFETCH(bool, askAgain);
    QVERIFY(writeOldPresets(false, 1, QStringLiteral("Bass%1.plxpreset")));
    {
        QWidget editor;
        auto *dialog = new ORVChStripPresetConverter(&editor);
        editor.show();
        openFully(*dialog);
        QVERIFY(!button(dialog, "m_pAgainButton")->isChecked());
        if (check == QLatin1String("button"))
            QTest::mouseClick(button(dialog, "m_pAgainButton"), Qt::LeftButton);
        else if (check == QLatin1String("label"))
            QTest::mouseClick(dialog->findChild<QLabel *>(QStringLiteral("m_pAgainLabel")), Qt::LeftButton);
        if (notNow)
            QTest::mouseClick(button(dialog, "m_pNoButton"), Qt::LeftButton);
        else
            dialog->hide();
        QTRY_VERIFY(dialog->isHidden());
        QCOMPARE(Conversion::askAgain(), askAgain);
    }
    ORVChStripPresetConverter next;
    QVERIFY(next.isHidden());
    QCOMPARE(button(&next, "m_pAgainButton")->isChecked(), !askAgain);
    QCOMPARE(Conversion::shouldOfferConversion(), askAgain);
}

void TestPanels::yesShowsTheOutcomeUntilClose()
{
    QVERIFY(writeOldPresets(true, 2, QStringLiteral("Vocals/Soft%1.plxpreset")));
    const QString cut = Conversion::stereoFolders().source + QStringLiteral("/Cut.plxpreset");
    QVERIFY(writeFile(cut, presetBytes(StereoID, stateBytes(300)).chopped(8)));

    QWidget editor;
    auto *dialog = new ORVChStripPresetConverter(&editor);
    QSignalSpy finished(dialog, &ORVChStripPresetConverter::conversionFinished);
    editor.show();
    openFully(*dialog);
    QTest::mouseClick(button(dialog, "m_pYesButton"), Qt::LeftButton);
    QTRY_COMPARE(finished.count(), 1);
    // A damaged preset it skipped is not offered again.
    QVERIFY(!Conversion::shouldOfferConversion());

    // The outcome stays in view, the question's controls give way to Close.
    QVERIFY(dialog->isVisible() && dialog->isShowingResult());
    QVERIFY(button(dialog, "m_pYesButton")->isHidden());
    QVERIFY(button(dialog, "m_pCloseButton")->hasFocus());
    QCOMPARE(dialog->findChild<QLabel *>(QStringLiteral("m_pMessageLabel1"))->text(),
        QStringLiteral("2 presets converted, 1 skipped."));
    const QString shown = dialog->findChild<QPlainTextEdit *>(QStringLiteral("m_pResultText"))->toPlainText();
    const QString cutName = QDir::toNativeSeparators(QDir(Conversion::presetBase()).relativeFilePath(cut));
    QVERIFY2(shown.startsWith(QStringLiteral("Skipped (1)\n    %1\n        not a preset: ").arg(cutName)),
        qPrintable(shown));
    QVERIFY2(shown.contains(QStringLiteral("\nConverted (2)\n")), qPrintable(shown));

    QTest::mouseClick(button(dialog, "m_pCloseButton"), Qt::LeftButton);
    QTRY_VERIFY(dialog->isHidden());
    // Opened again, it asks again.
    openFully(*dialog);
    QVERIFY(!dialog->isShowingResult());
    QVERIFY(button(dialog, "m_pYesButton")->isVisible());
    QVERIFY(button(dialog, "m_pCloseButton")->isHidden());
}

void TestPanels::conversionLeavesEventLoopTurning()
{
    QVERIFY(writeOldPresets(true, 200, QStringLiteral("P%1.plxpreset")));
    ORVChStripPresetConverter dialog;
    QSignalSpy finished(&dialog, &ORVChStripPresetConverter::conversionFinished);
    int ticksWhileConverting = 0;
    QTimer ticker;
    connect(&ticker, &QTimer::timeout, [&] { ticksWhileConverting += dialog.isConverting() ? 1 : 0; });
    ticker.start(1);

    dialog.execute();
    // A conversion on the GUI thread would be over before execute() returned.
    QVERIFY(dialog.isConverting());
    QVERIFY(!button(&dialog, "m_pYesButton")->isEnabled());
    dialog.execute(); // ignored while converting
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(ticksWhileConverting > 0);
    QVERIFY(button(&dialog, "m_pYesButton")->isEnabled());
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1); // the second "Yes" started nothing
}

void TestPanels::destroyedWhileConvertingFinishesFiles()
{
    constexpr int Count = 100;
    QVERIFY(writeOldPresets(false, Count, QStringLiteral("P%1.plxpreset")));
    auto *dialog = new ORVChStripPresetConverter;
    dialog->execute();
    QVERIFY(dialog->isConverting());
    delete dialog; // waits for the worker instead of pulling the thread away

    for (int i = 0; i < Count; ++i) {
        const QString converted
            = Conversion::monoFolders().destination + QStringLiteral("/P%1.plxpreset").arg(i);
        QCOMPARE(loadState(converted, StereoID), stateBytes(1024, i));
    }
}

QTEST_MAIN(TestPanels)
#include "tst_panels.moc"
