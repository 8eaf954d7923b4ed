#include <QLabel>
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
    void offeredOnlyWithPresetsToConvert_data();
    void offeredOnlyWithPresetsToConvert();
    void choiceSavedOnEveryHide_data();
    void choiceSavedOnEveryHide();
    void yesConvertsBothFolderPairs();
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

void TestPresetConverterDialog::offeredOnlyWithPresetsToConvert_data()
{
    QTest::addColumn<QString>("kind"); // what lies in the stereo source; "" nothing
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("askAgain");
    QTest::addColumn<bool>("offered");

    QTest::newRow("nothing there") << "" << QStringLiteral("") << true << false;
    QTest::newRow("another class") << "third" << QStringLiteral("Other.plxpreset") << true << false;
    QTest::newRow("not a preset") << "text" << QStringLiteral("Notes.plxpreset") << true << false;
    QTest::newRow("a link to a preset") << "link" << QStringLiteral("Linked.plxpreset") << true << false;
    QTest::newRow("mono preset") << "mono" << QStringLiteral("Bass.plxpreset") << true << true;
    QTest::newRow("nested, upper-case suffix")
        << "stereo" << QStringLiteral("Vocals/Warm/Soft.PLXPRESET") << true << true;
    QTest::newRow("already converted") << "converted" << QStringLiteral("Lead.plxpreset") << true << false;
    QTest::newRow("changed since converted") << "stale" << QStringLiteral("Lead.plxpreset") << true << true;
    QTest::newRow("not to ask again") << "mono" << QStringLiteral("Bass.plxpreset") << false << false;
}

void TestPresetConverterDialog::offeredOnlyWithPresetsToConvert()
{
    QFETCH(QString, kind);
    QFETCH(QString, file);
    QFETCH(bool, askAgain);
    QFETCH(bool, offered);
    const QString source = sourcePath(true, file);
    const QString converted = Conversion::stereoFolders().destination + QLatin1Char('/') + file;

    if (kind == QLatin1String("third")) {
        QVERIFY(writePreset(source, ThirdID, stateBytes(64)));
    } else if (kind == QLatin1String("text")) {
        QVERIFY(writeFile(source, "not a preset"));
    } else if (kind == QLatin1String("link")) {
        const QString target = m_home.filePath(QStringLiteral("elsewhere.plxpreset"));
        QVERIFY(writePreset(target, StereoID, stateBytes(64)));
        QVERIFY(QDir().mkpath(QFileInfo(source).path()));
        QVERIFY(QFile::link(target, source));
    } else if (!kind.isEmpty()) {
        QVERIFY(writePreset(source, kind == QLatin1String("mono") ? MonoID : StereoID, stateBytes(64)));
    }
    if (kind == QLatin1String("converted") || kind == QLatin1String("stale")) {
        QVERIFY(writePreset(converted, StereoID, stateBytes(64)));
        // The older of the two decides whether it still waits.
        QFile older(kind == QLatin1String("converted") ? source : converted);
        QVERIFY(older.open(QIODevice::ReadWrite));
        QVERIFY(
            older.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    }
    Conversion::setAskAgain(askAgain);
    QCOMPARE(ORVChStripPresetConverter::shouldOfferConversion(), offered);
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
    QCOMPARE(ORVChStripPresetConverter::shouldOfferConversion(), askAgain);
}

// What each file becomes is the conversion's business; Yes runs it over both folder pairs.
void TestPresetConverterDialog::yesConvertsBothFolderPairs()
{
    const QByteArray monoState = stateBytes(700, 1);
    const QByteArray nestedState = stateBytes(300, 2);
    QVERIFY(writePreset(sourcePath(false, QStringLiteral("Bass.plxpreset")), MonoID, monoState));
    QVERIFY(
        writePreset(sourcePath(true, QStringLiteral("Vocals/Warm/Soft.plxpreset")), StereoID, nestedState));

    QWidget editor;
    auto *dialog = new ORVChStripPresetConverter(&editor);
    QSignalSpy finished(dialog, &ORVChStripPresetConverter::conversionFinished);
    editor.show();
    openFully(*dialog);
    QTest::mouseClick(button(dialog, "m_pYesButton"), Qt::LeftButton);
    QTRY_COMPARE(finished.count(), 1);
    QTRY_VERIFY(dialog->isHidden());

    QCOMPARE(loadState(Conversion::monoFolders().destination + QStringLiteral("/Bass.plxpreset"), StereoID),
        monoState);
    QCOMPARE(
        loadState(Conversion::stereoFolders().destination + QStringLiteral("/Vocals/Warm/Soft.plxpreset"),
            StereoID),
        nestedState);
    QVERIFY(!ORVChStripPresetConverter::shouldOfferConversion());
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
