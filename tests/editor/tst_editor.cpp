// The channel strip editor against the simulated host.
#include <QLabel>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <algorithm>
#include <memory>

#include "ChannelStripModel.h"
#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PushButtonController.h"
#include "EditorHost.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/MorphMatchMonitor.h"
#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/ORVChStripMorphingPresetList.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;

namespace {

using Host = EditorHost;

HostModel modelWithout(const char *key)
{
    const HostModel full = HostModel::channelStrip();
    QList<ParameterDefinition> parameters = full.parameters();
    parameters.removeIf([key](const ParameterDefinition &p) { return qstrcmp(p.key, key) == 0; });
    return HostModel({ { 1, ChannelStripModel::ChannelStripFxId } }, parameters, full.meters());
}

// The names by which the editor finds the members of its form.
QStringList formNames()
{
    QStringList names { "m_pHalvornLogo", "m_pAboutButton", "m_pORVChStripLogo", "m_pPresetConverterButton",
        "m_pHorizontalLine", "m_pVerticalLine1", "m_pVerticalLine2", "m_pCompressorArea", "m_pEqualizerArea",
        "m_pMorphingLabel", "m_pMorthingSpace", "m_pMorphingKnob", "m_pMorphingPresetButton",
        "m_pInputMeterLabel", "m_pMeterLabel", "m_pOutputMeterLabel", "m_pOutputLabel", "m_pOutputKnob",
        "m_pOutputTextEdit", "m_pCompressorButton", "m_pCompressorLabel", "m_pEqualizerButton",
        "m_pEqualizerLabel", "m_pEqualizerSpectrumButton", "m_pSideChainMeter", "m_pSideChainMeterSCLabel",
        "m_pSideChainMeterLabel", "m_pSideCHainMeterMinus30Label", "m_pSideChainMeterdBLabel",
        "m_pGainReductionMeter", "m_pGainReductionMeterGRLabel", "m_pGainReductionMeterLabel",
        "m_pGainReductionMeterdBLabel", "m_pCompressorKneeArea", "m_pCompressorKneeLabel",
        "m_pCompressorKneeSelectFrameBackground", "m_pCompressorKneeButtonGroup", "m_pCompressorDriveLabel",
        "m_pCompressorDriveKnob", "m_pCompressorDriveTextEdit", "m_pCompressorGraphMinus60Label",
        "m_pEqualizerGraphVerticaldBLabel" };
    for (const char *side : { "Input", "Output" }) {
        for (const char *member :
            { "StereoMeterBackground", "StereoMeterL", "StereoMeterR", "MonoMeterBackground", "MonoMeter" })
            names << QStringLiteral("m_p%1%2").arg(QLatin1String(side), QLatin1String(member));
    }
    for (const char *value : { "0", "Minus3", "Minus6", "Minus9", "Minus12", "Minus15", "Minus18", "Minus24",
             "Minus30", "Minus40", "Minus50", "Minus60" })
        names << QStringLiteral("m_pMeter%1Label").arg(QLatin1String(value));
    for (const char *value : { "0", "Minus3", "Minus6", "Minus12", "Minus18", "Minus60" })
        names << QStringLiteral("m_pSideChainMeter%1Label").arg(QLatin1String(value));
    for (const char *value : { "0", "Minus3", "Minus6", "Minus9", "Minus12", "Minus18" })
        names << QStringLiteral("m_pGainReductionMeter%1Label").arg(QLatin1String(value));
    for (const char *cell : { "CompressorAttack", "CompressorRelease", "CompressorRatio", "SideChainQuality",
             "SideChainFrequency", "SideChainGain", "EqualizerLowFrequency", "EqualizerLowGain",
             "EqualizerMiddleQuality", "EqualizerMiddleFrequency", "EqualizerMiddleGain",
             "EqualizerHighFrequency", "EqualizerHighGain" }) {
        for (const char *member : { "Area", "Label", "Knob", "TextEdit" })
            names << QStringLiteral("m_p%1%2").arg(QLatin1String(cell), QLatin1String(member));
    }
    for (const char *band : { "SideChain", "EqualizerLow", "EqualizerMiddle", "EqualizerHigh" }) {
        for (const char *member : { "Button", "TitleBackground", "TitleLabel" })
            names << QStringLiteral("m_p%1%2").arg(QLatin1String(band), QLatin1String(member));
    }
    for (const char *state : { "Soft", "Medium", "Hard" }) {
        for (const char *member : { "m_pCompressorKneeSelect%1Background",
                 "m_pCompressorKneePush%1Background", "m_pCompressorKnee%1Button" })
            names << QString::fromLatin1(member).arg(QLatin1String(state));
    }
    for (const char *value : { "Vertical0", "VerticalMinus20", "VerticalMinus40", "HorizontalMinus40",
             "HorizontalMinus20", "Horizontal0" })
        names << QStringLiteral("m_pCompressorGraph%1Label").arg(QLatin1String(value));
    for (const char *value :
        { "Plus24", "Plus18", "Plus12", "Plus6", "0", "Minus6", "Minus12", "Minus18", "Minus24" })
        names << QStringLiteral("m_pEqualizerGraphVertical%1Label").arg(QLatin1String(value));
    for (const char *value : { "20", "Hz", "50", "100", "200", "500", "1K", "2K", "5K", "10K", "20K" })
        names << QStringLiteral("m_pEqualizerGraphHorizontal%1Label").arg(QLatin1String(value));
    return names;
}

int meterValue(const Host &host, const char *name)
{
    return host.widget<MeterController>(name)->value();
}

} // namespace

class tst_Editor : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void everyKeyReachesItsControls_data();
    void everyKeyReachesItsControls();
    void formHasEveryNameOnceAndScales();
    void switchesEnableTheirControls_data();
    void switchesEnableTheirControls();
    void heldKneeButtonWinsOverTheValue();
    void burstOfMorphUpdatesGivesOneComparison();
    void turningAMorphedParameterShowsTheMismatch();
    void monoStripShowsAndDrivesOnlyMonoMeters();
    void meterIndexOutsideTheArrayKeepsTheLastValue();
    void morphNameShowsOnTheButton();
    void operatingPointFollowsTheMetersWhileTheyArrive();
    void pickingAMorphSetSlidesTheListAndDrivesTheStrip();
    void morphingListSettingsRoundTrip();
};

void tst_Editor::everyKeyReachesItsControls_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("controls");
    const struct
    {
        const char *key;
        QStringList controls;
    } rows[] = {
        { Keys::CompressorBypass, { "m_pCompressorButton" } },
        { Keys::CompressorAttack, { "m_pCompressorAttackKnob", "m_pCompressorAttackTextEdit" } },
        { Keys::CompressorRelease, { "m_pCompressorReleaseKnob", "m_pCompressorReleaseTextEdit" } },
        { Keys::CompressorRatio, { "m_pCompressorRatioKnob", "m_pCompressorRatioTextEdit" } },
        { Keys::CompressorKnee, { "m_pCompressorKneeButtonGroup" } },
        { Keys::SideChainQuality, { "m_pSideChainQualityKnob", "m_pSideChainQualityTextEdit" } },
        { Keys::SideChainFrequency, { "m_pSideChainFrequencyKnob", "m_pSideChainFrequencyTextEdit" } },
        { Keys::SideChainGain, { "m_pSideChainGainKnob", "m_pSideChainGainTextEdit" } },
        { Keys::SideChainOn, { "m_pSideChainButton" } },
        { Keys::CompressorDrive, { "m_pCompressorDriveKnob", "m_pCompressorDriveTextEdit" } },
        { Keys::EqualizerBypass, { "m_pEqualizerButton" } },
        { Keys::EqualizerLowFrequency,
            { "m_pEqualizerLowFrequencyKnob", "m_pEqualizerLowFrequencyTextEdit" } },
        { Keys::EqualizerLowGain, { "m_pEqualizerLowGainKnob", "m_pEqualizerLowGainTextEdit" } },
        { Keys::EqualizerLowOn, { "m_pEqualizerLowButton" } },
        { Keys::EqualizerMiddleQuality,
            { "m_pEqualizerMiddleQualityKnob", "m_pEqualizerMiddleQualityTextEdit" } },
        { Keys::EqualizerMiddleFrequency,
            { "m_pEqualizerMiddleFrequencyKnob", "m_pEqualizerMiddleFrequencyTextEdit" } },
        { Keys::EqualizerMiddleGain, { "m_pEqualizerMiddleGainKnob", "m_pEqualizerMiddleGainTextEdit" } },
        { Keys::EqualizerMiddleOn, { "m_pEqualizerMiddleButton" } },
        { Keys::EqualizerHighFrequency,
            { "m_pEqualizerHighFrequencyKnob", "m_pEqualizerHighFrequencyTextEdit" } },
        { Keys::EqualizerHighGain, { "m_pEqualizerHighGainKnob", "m_pEqualizerHighGainTextEdit" } },
        { Keys::EqualizerHighOn, { "m_pEqualizerHighButton" } },
        { Keys::MorphValue, { "m_pMorphingKnob" } },
        { Keys::OutputLevel, { "m_pOutputKnob", "m_pOutputTextEdit" } },
    };
    for (const auto &row : rows)
        QTest::newRow(row.key) << QString::fromLatin1(row.key) << row.controls;
}

void tst_Editor::everyKeyReachesItsControls()
{
    QFETCH(QString, key);
    QFETCH(QStringList, controls);
    const QByteArray keyBytes = key.toLatin1();
    {
        Host host;
        const unsigned short id = host.model.parameterId(keyBytes.constData());
        for (const QString &name : controls) {
            AbstractController *control = host.control(qPrintable(name));
            QVERIFY2(control, qPrintable(name));
            QVERIFY2(control->isBound(), qPrintable(name));
            QCOMPARE(control->prmId(), id);
            QCOMPARE(control->memAPI(), &host.memory);
        }
    }
    Host lacking(modelWithout(keyBytes.constData()));
    for (const QString &name : controls)
        QVERIFY2(!lacking.control(qPrintable(name))->isBound(), qPrintable(name));
}

void tst_Editor::formHasEveryNameOnceAndScales()
{
    Host host;
    QHash<QString, int> names;
    QHash<QWidget *, QRect> design;
    // The panels the editor opens have forms of their own.
    const QWidget *panels[]
        = { host.editor->morphingPresetList(), host.editor->aboutPanel(), host.editor->presetConverter() };
    auto inPanel = [&panels](const QWidget *widget) {
        return std::any_of(std::begin(panels), std::end(panels),
            [widget](const QWidget *panel) { return panel->isAncestorOf(widget); });
    };
    for (QWidget *widget : host.editor->findChildren<QWidget *>()) {
        if (widget->objectName().startsWith(QLatin1String("m_p")) && !inPanel(widget))
            ++names[widget->objectName()];
        design.insert(widget, widget->geometry());
    }
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        QVERIFY2(it.value() == 1, qPrintable(it.key()));
    // Spot checks of the design rectangles, one per kind of member.
    QCOMPARE(host.widget("m_pMorphingPresetButton")->geometry(), QRect(569, 479, 292, 33));
    QCOMPARE(host.widget("m_pCompressorDriveKnob")->geometry(), QRect(249, 400, 102, 102));
    QCOMPARE(host.widget("m_pEqualizerMiddleGainArea")->geometry(), QRect(294, 262, 60, 66));
    QCOMPARE(host.widget("m_pEqualizerMiddleGainKnob")->geometry(), QRect(12, 16, 36, 36));
    QCOMPARE(host.widget("m_pSideCHainMeterMinus30Label")->geometry(), QRect(0, 112, 22, 14));
    QCOMPARE(host.widget("m_pMeterMinus50Label")->geometry(), QRect(0, 276, 22, 14));
    for (const QString &name : formNames())
        QVERIFY2(names.value(name) == 1, qPrintable(name));

    host.editor->setScale(2.0);
    for (auto it = design.cbegin(); it != design.cend(); ++it) {
        // The list lays out its own rows.
        if (host.editor->morphingPresetList()->isAncestorOf(it.key()))
            continue;
        const QRect &rect = it.value();
        QCOMPARE(
            it.key()->geometry(), QRect(rect.x() * 2, rect.y() * 2, rect.width() * 2, rect.height() * 2));
    }
    const QRect stacked = host.widget("m_pCompressorKneeSelectFrameBackground")->geometry();
    for (const char *name : { "m_pCompressorKneeSelectSoftBackground", "m_pCompressorKneePushSoftBackground",
             "m_pCompressorKneeSelectMediumBackground", "m_pCompressorKneePushMediumBackground",
             "m_pCompressorKneeSelectHardBackground", "m_pCompressorKneePushHardBackground",
             "m_pCompressorKneeButtonGroup" })
        QCOMPARE(host.widget(name)->geometry(), stacked);
}

void tst_Editor::switchesEnableTheirControls_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("disabled");
    QTest::addColumn<QStringList>("stillEnabled");
    QTest::newRow("compressor bypass")
        << QString(Keys::CompressorBypass) << 1
        << QStringList { "m_pCompressorAttackKnob", "m_pCompressorKneeSoftButton", "m_pCompressorDriveKnob",
               "m_pSideChainButton" }
        << QStringList { "m_pCompressorButton", "m_pEqualizerLowGainKnob", "m_pMorphingKnob" };
    QTest::newRow("side chain off") << QString(Keys::SideChainOn) << 0
                                    << QStringList { "m_pSideChainGainKnob", "m_pSideChainQualityTextEdit" }
                                    << QStringList { "m_pSideChainButton", "m_pCompressorRatioKnob" };
    QTest::newRow("middle band off") << QString(Keys::EqualizerMiddleOn) << 0
                                     << QStringList { "m_pEqualizerMiddleQualityKnob",
                                            "m_pEqualizerMiddleGainTextEdit" }
                                     << QStringList { "m_pEqualizerMiddleButton", "m_pEqualizerLowGainKnob",
                                            "m_pEqualizerHighGainKnob" };
    QTest::newRow("equalizer bypass")
        << QString(Keys::EqualizerBypass) << 1
        << QStringList { "m_pEqualizerLowButton", "m_pEqualizerHighFrequencyKnob", "m_pEqualizerGraph" }
        << QStringList { "m_pEqualizerButton", "m_pCompressorAttackKnob", "m_pOutputKnob" };
}

void tst_Editor::switchesEnableTheirControls()
{
    QFETCH(QString, key);
    QFETCH(int, value);
    QFETCH(QStringList, disabled);
    QFETCH(QStringList, stillEnabled);
    Host host;
    host.memory.setValueByKey(Keys::SideChainOn, 1);
    for (const QString &name : disabled + stillEnabled)
        QVERIFY2(host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
    const QPalette::ColorGroup active = QPalette::Active;
    auto *caption = host.widget<QLabel>(
        key.startsWith(QLatin1String("fx_cmp")) ? "m_pCompressorAttackLabel" : "m_pEqualizerLowGainLabel");
    const int alpha = caption->palette().color(active, QPalette::WindowText).alpha();

    host.memory.setValueByKey(qPrintable(key), value);
    for (const QString &name : disabled)
        QVERIFY2(!host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
    for (const QString &name : stillEnabled)
        QVERIFY2(host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
    // Bypassing a section also dims its captions; a band switch does not.
    const bool bypass = key.endsWith(QLatin1String("byps"));
    const int dimmed = caption->palette().color(active, QPalette::WindowText).alpha();
    QCOMPARE(dimmed < alpha * 0.6, bypass);

    host.memory.setValueByKey(qPrintable(key), 1 - value);
    for (const QString &name : disabled)
        QVERIFY2(host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
    QCOMPARE(caption->palette().color(active, QPalette::WindowText).alpha(), alpha);
}

void tst_Editor::heldKneeButtonWinsOverTheValue()
{
    Host host;
    host.memory.setValueByKey(Keys::CompressorKnee, 2);
    QVERIFY(host.widget("m_pCompressorKneeSelectHardBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pCompressorKneeSelectSoftBackground")->isVisibleTo(host.editor.get()));

    auto *soft = host.widget<QAbstractButton>("m_pCompressorKneeSoftButton");
    soft->setDown(true);
    emit soft->pressed();
    QVERIFY(host.widget("m_pCompressorKneePushSoftBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pCompressorKneeSelectHardBackground")->isVisibleTo(host.editor.get()));
    soft->setDown(false);
    emit soft->released();
    QVERIFY(!host.widget("m_pCompressorKneePushSoftBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(host.widget("m_pCompressorKneeSelectHardBackground")->isVisibleTo(host.editor.get()));
}

void tst_Editor::burstOfMorphUpdatesGivesOneComparison()
{
    Host host;
    MorphMatchMonitor monitor;
    monitor.attach(host.editor.get(), &host.memory, 0);
    QSignalSpy changed(&monitor, &MorphMatchMonitor::matchChanged);
    for (int i = 0; i < 50; ++i)
        monitor.request();
    QCOMPARE(monitor.comparisonCount(), 0);
    QTRY_COMPARE(monitor.comparisonCount(), 1);
    QTest::qWait(30);
    QCOMPARE(monitor.comparisonCount(), 1);
    QCOMPARE(changed.size(), 0);
}

void tst_Editor::turningAMorphedParameterShowsTheMismatch()
{
    Host host;
    // Without a morph set every value counts as its own base.
    host.memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Vocal Air"));
    auto *knob = host.widget<KnobController>("m_pMorphingKnob");
    const QString matching = QStringLiteral(":/image/orvchstrip/back_morphing.svg");
    QCOMPARE(knob->backgroundSvg(), matching);
    // Turned by hand, the parameter leaves the value the morph position gives it.
    const int gain = host.memory.value(Keys::EqualizerMiddleGain);
    host.memory.setValueByKey(Keys::EqualizerMiddleGain, gain + 30);
    QTRY_VERIFY(!host.editor->morphMatches());
    QCOMPARE(knob->backgroundSvg(), QStringLiteral(":/image/orvchstrip/back_morphing_off.svg"));
    // Moving the morph knob sets every morphing parameter from the morph table again.
    host.memory.setValueByKey(Keys::MorphValue, 500);
    QTRY_VERIFY(host.editor->morphMatches());
    QCOMPARE(knob->backgroundSvg(), matching);
}

void tst_Editor::monoStripShowsAndDrivesOnlyMonoMeters()
{
    Host host(HostModel::channelStrip(), -1);
    QVERIFY(host.widget("m_pInputMonoMeterBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pInputStereoMeterBackground")->isVisibleTo(host.editor.get()));
    const int silence = meterValue(host, "m_pInputStereoMeterR");
    QVector<unsigned int> values(int(host.model.meterArraySize()), unsigned(-60));
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pInputMonoMeter"), -60);
    QCOMPARE(meterValue(host, "m_pOutputMonoMeter"), -60);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterR"), silence);
    QCOMPARE(meterValue(host, "m_pOutputStereoMeterR"), silence);

    host.editor->setCh(0, 1);
    QVERIFY(host.widget("m_pOutputStereoMeterBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pOutputMonoMeterBackground")->isVisibleTo(host.editor.get()));
    const unsigned short right = host.model.meterBase(Keys::InputMeter) + 2;
    values[right] = unsigned(-120);
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterR"), -120);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterL"), -60);
}

void tst_Editor::meterIndexOutsideTheArrayKeepsTheLastValue()
{
    Host host;
    QVector<unsigned int> values(int(host.model.meterArraySize()), unsigned(-90));
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pGainReductionMeter"), -90);
    // An array that ends before the gain-reduction entry: that meter keeps -9 dB.
    const unsigned int shortCount = host.model.meterBase(Keys::GainReductionMeter);
    QVector<unsigned int> shorter(int(shortCount), unsigned(-30));
    host.editor->notifyMeterDbUpdated(shorter.data(), shortCount);
    QCOMPARE(meterValue(host, "m_pGainReductionMeter"), -90);
    QCOMPARE(meterValue(host, "m_pSideChainMeter"), -30);
    host.editor->notifyMeterDbUpdated(nullptr, 0);
    QCOMPARE(meterValue(host, "m_pSideChainMeter"), -30);
}

void tst_Editor::operatingPointFollowsTheMetersWhileTheyArrive()
{
    Host host;
    auto *graph = host.widget<ORVChStripCompressorGraph>("m_pCompressorGraph");
    QVERIFY(!graph->hasOperatingPoint());
    QVector<unsigned int> values(int(host.model.meterArraySize()), unsigned(-1270));
    values[host.model.meterBase(Keys::SideChainMeter)] = unsigned(-200);    // -20 dB detected
    values[host.model.meterBase(Keys::GainReductionMeter)] = unsigned(-55); // 5.5 dB of reduction
    host.memory.publishMeters(values);
    QVERIFY(graph->hasOperatingPoint());
    QCOMPARE(graph->operatingPoint(), QPointF(-20.0, -25.5));
    // Silence is below the graph; and without meters the point goes.
    values[host.model.meterBase(Keys::SideChainMeter)] = unsigned(-1270);
    host.memory.publishMeters(values);
    QVERIFY(!graph->hasOperatingPoint());
    values[host.model.meterBase(Keys::SideChainMeter)] = unsigned(-100);
    host.memory.publishMeters(values);
    QVERIFY(graph->hasOperatingPoint());
    QTRY_VERIFY_WITH_TIMEOUT(!graph->hasOperatingPoint(), 2000);
}

void tst_Editor::morphNameShowsOnTheButton()
{
    Host host;
    host.memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Vocal Air"));
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(), QStringLiteral("Vocal Air"));
    host.memory.setText(Keys::MorphSystemName, QByteArray());
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(),
        QStringLiteral("Choose a morph set..."));
}

void tst_Editor::pickingAMorphSetSlidesTheListAndDrivesTheStrip()
{
    qputenv("ORVCHSTRIP_MORPH_FOLDER", ORV_FACTORY_MORPH_DIR);
    Host host;
    host.editor->show();
    ORVChStripMorphingPresetList *list = host.editor->morphingPresetList();
    QVERIFY(!list->isVisible());

    // The list grows upwards from its bottom edge in 20 ms steps.
    QTest::mouseClick(host.widget("m_pMorphingPresetButton"), Qt::LeftButton);
    QVERIFY(host.editor->isMorphingPresetOpen());
    QVERIFY(!host.widget("m_pEqualizerLowGainKnob")->isEnabled());
    const QRect full = host.editor->morphingPresetGeometry();
    QCOMPARE(list->geometry().bottom(), full.bottom());
    QVERIFY(list->height() < full.height() / 2);
    QTRY_COMPARE(list->geometry(), full);

    // The factory folders come first, closed; open "Vocals" and take its first set.
    const int vocals = 3;
    list->selectItem(vocals);
    QTest::keyClick(list, Qt::Key_Right);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Return);
    QVERIFY2(!host.memory.text(Keys::MorphSystemName).isEmpty(), "the set did not reach the host");
    QVERIFY(!host.editor->isMorphingPresetOpen());
    QTRY_VERIFY(!list->isVisible());
    QVERIFY(host.widget("m_pEqualizerLowGainKnob")->isEnabled());
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(),
        QString::fromUtf8(host.memory.text(Keys::MorphSystemName)));

    // Sweeping the morph knob moves the strip through the set's points.
    const int start = host.memory.value(Keys::CompressorRatio);
    host.memory.setValueByKey(Keys::MorphValue, 1000);
    QVERIFY(host.memory.value(Keys::CompressorRatio) != start
        || host.memory.value(Keys::EqualizerHighGain) != 180);
    QTRY_VERIFY(host.editor->morphMatches());
}

void tst_Editor::morphingListSettingsRoundTrip()
{
    qputenv("ORVCHSTRIP_MORPH_FOLDER", ORV_FACTORY_MORPH_DIR);
    QMap<QString, QVariant> kept;
    {
        Host host;
        ORVChStripMorphingPresetList *list = host.editor->morphingPresetList();
        list->selectItem(1); // Drums
        list->folderOpen();
        kept = host.editor->getEditorSettings();
    }
    QCOMPARE(kept.value(QStringLiteral("MorphingListFolder2Open")).toBool(), true);
    QCOMPARE(kept.value(QStringLiteral("MorphingListFolder1Open")).toBool(), false);
    QCOMPARE(kept.value(QStringLiteral("MorphingListSelected")).toInt(), 1);

    Host next;
    next.editor->setEditorSettings(kept);
    QCOMPARE(next.editor->getEditorSettings(), kept);
    // A map without the list's keys leaves the list alone.
    next.editor->setEditorSettings({});
    QCOMPARE(next.editor->getEditorSettings(), kept);
}

QTEST_MAIN(tst_Editor)
#include "tst_editor.moc"
