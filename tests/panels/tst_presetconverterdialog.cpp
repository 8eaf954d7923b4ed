#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "Common/Widgets/PushButtonController.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "PresetTestFiles.h"

using namespace PresetTestFiles;
using CommonController_MemAPI::PushButtonController;
using Conversion = ORVChStripPresetConversion;

namespace {

PushButtonController *button(QWidget *dialog, const char *name)
{
    return dialog->findChild<PushButtonController *>(QLatin1String(name));
}

QString sourcePath(bool stereo, const QString &file)
{
    return (stereo ? Conversion::stereoFolders() : Conversion::monoFolders()).source + QLatin1Char('/')
        + file;
}

void openFully(ORVChStripPresetConverter &dialog)
{
    dialog.open();
    QTRY_VERIFY(!dialog.isFading());
}

} // namespace

class TestPresetConverterDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void choiceSavedOnEveryHide_data();
    void choiceSavedOnEveryHide();
    void yesConvertsAndShowsWhatItSkipped();
    void conversionLeavesEventLoopTurning();
    void destroyedWhileConvertingFinishesFiles();

private:
    QTemporaryDir m_home;
};

void TestPresetConverterDialog::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("data"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("config"))));
}

void TestPresetConverterDialog::init()
{
    QDir(Conversion::presetBase()).removeRecursively();
    QDir(m_home.filePath(QStringLiteral("config"))).removeRecursively();
}

void TestPresetConverterDialog::choiceSavedOnEveryHide_data()
{
    QTest::addColumn<QString>("check"); // none, button, label
    QTest::addColumn<QString>("leave"); // not now, hide
    QTest::addColumn<bool>("askAgain");

    QTest::newRow("checked, Not Now") << "button" << QStringLiteral("not now") << false;
    QTest::newRow("checked through its label, Not Now") << "label" << QStringLiteral("not now") << false;
    QTest::newRow("checked, hidden at once") << "button" << QStringLiteral("hide") << false;
    QTest::newRow("unchecked, Not Now") << "none" << QStringLiteral("not now") << true;
}

void TestPresetConverterDialog::choiceSavedOnEveryHide()
{
    QFETCH(QString, check);
    QFETCH(QString, leave);
    QFETCH(bool, askAgain);
    QVERIFY(writePreset(sourcePath(false, QStringLiteral("Bass.plxpreset")), MonoID, stateBytes(64)));

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
        QCOMPARE(button(dialog, "m_pAgainButton")->isChecked(), !askAgain);

        if (leave == QLatin1String("not now"))
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

// What each file becomes is the conversion's business; Yes runs it over both
// folder pairs and shows the outcome until Close, and a damaged preset it
// skipped is not offered again.
void TestPresetConverterDialog::yesConvertsAndShowsWhatItSkipped()
{
    const QByteArray monoState = stateBytes(700, 1);
    const QByteArray nestedState = stateBytes(300, 2);
    QVERIFY(writePreset(sourcePath(false, QStringLiteral("Bass.plxpreset")), MonoID, monoState));
    QVERIFY(
        writePreset(sourcePath(true, QStringLiteral("Vocals/Warm/Soft.plxpreset")), StereoID, nestedState));
    QVERIFY(writeFile(
        sourcePath(true, QStringLiteral("Cut.plxpreset")), presetBytes(StereoID, nestedState).chopped(8)));

    QWidget editor;
    auto *dialog = new ORVChStripPresetConverter(&editor);
    QSignalSpy finished(dialog, &ORVChStripPresetConverter::conversionFinished);
    editor.show();
    openFully(*dialog);
    QTest::mouseClick(button(dialog, "m_pYesButton"), Qt::LeftButton);
    QTRY_COMPARE(finished.count(), 1);

    QCOMPARE(loadState(Conversion::monoFolders().destination + QStringLiteral("/Bass.plxpreset"), StereoID),
        monoState);
    QCOMPARE(
        loadState(Conversion::stereoFolders().destination + QStringLiteral("/Vocals/Warm/Soft.plxpreset"),
            StereoID),
        nestedState);
    QVERIFY(!Conversion::shouldOfferConversion());

    // The outcome stays in view, the question's controls give way to Close.
    QVERIFY(dialog->isVisible() && dialog->isShowingResult());
    QVERIFY(button(dialog, "m_pYesButton")->isHidden());
    QVERIFY(button(dialog, "m_pCloseButton")->hasFocus());
    QCOMPARE(dialog->findChild<QLabel *>(QStringLiteral("m_pMessageLabel1"))->text(),
        QStringLiteral("2 presets converted, 1 skipped."));
    const QString shown = dialog->findChild<QPlainTextEdit *>(QStringLiteral("m_pResultText"))->toPlainText();
    const QString cut = QDir::toNativeSeparators(
        QDir(Conversion::presetBase()).relativeFilePath(sourcePath(true, QStringLiteral("Cut.plxpreset"))));
    QVERIFY2(shown.startsWith(
                 QStringLiteral("Skipped (1)\n    ") + cut + QStringLiteral("\n        not a preset: ")),
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

void TestPresetConverterDialog::conversionLeavesEventLoopTurning()
{
    constexpr int Count = 200;
    for (int i = 0; i < Count; ++i)
        QVERIFY(writePreset(sourcePath(true, QStringLiteral("Set %1/P%2.plxpreset").arg(i % 4).arg(i)),
            StereoID, stateBytes(2048, i)));

    ORVChStripPresetConverter dialog;
    QSignalSpy finished(&dialog, &ORVChStripPresetConverter::conversionFinished);
    int ticksWhileConverting = 0;
    QTimer ticker;
    connect(&ticker, &QTimer::timeout, [&] { ticksWhileConverting += dialog.isConverting() ? 1 : 0; });
    ticker.start(1);

    dialog.execute();
    // A conversion on the GUI thread would be over before execute() returned.
    QVERIFY(dialog.isConverting());
    QCOMPARE(finished.count(), 0);
    QVERIFY(!button(&dialog, "m_pYesButton")->isEnabled());
    dialog.execute(); // ignored while converting
    QTRY_COMPARE(finished.count(), 1);
    QVERIFY(ticksWhileConverting > 0);
    QVERIFY(!dialog.isConverting());
    QVERIFY(button(&dialog, "m_pYesButton")->isEnabled());
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1); // the second "Yes" started nothing
    QCOMPARE(fingerprint(Conversion::stereoFolders().destination).size(), Count + 4); // files and folders
}

void TestPresetConverterDialog::destroyedWhileConvertingFinishesFiles()
{
    constexpr int Count = 100;
    for (int i = 0; i < Count; ++i)
        QVERIFY(writePreset(
            sourcePath(false, QStringLiteral("P%1.plxpreset").arg(i)), MonoID, stateBytes(1024, i)));

    auto *dialog = new ORVChStripPresetConverter;
    dialog->execute();
    QVERIFY(dialog->isConverting());
    delete dialog; // waits for the worker instead of pulling the thread away

    const QString destination = Conversion::monoFolders().destination;
    for (int i = 0; i < Count; ++i)
        QCOMPARE(
            loadState(destination + QStringLiteral("/P%1.plxpreset").arg(i), StereoID), stateBytes(1024, i));
}

QTEST_MAIN(TestPresetConverterDialog)
#include "tst_presetconverterdialog.moc"
