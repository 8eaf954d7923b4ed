// The channel strip editor against the simulated host.
#include <QLabel>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <algorithm>
#include <memory>

#include "Common/Widgets/AbstractController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PushButtonController.h"
#include "EditorHost.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
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
    void kneeShowsTheHostValue();
    void turningAMorphedParameterShowsTheMismatch();
    void monoStripShowsAndDrivesOnlyMonoMeters();
    void pickingAMorphSetSlidesTheListAndDrivesTheStrip();
    void morphingListSettingsRoundTrip();
};

void tst_Editor::everyKeyReachesItsControls_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("controls");
    // A knob with its value field, named alike.
    const QPair<const char *, const char *> knobs[] = { { Keys::CompressorAttack, "CompressorAttack" },
        { Keys::CompressorRelease, "CompressorRelease" }, { Keys::CompressorRatio, "CompressorRatio" },
        { Keys::SideChainQuality, "SideChainQuality" }, { Keys::SideChainFrequency, "SideChainFrequency" },
        { Keys::SideChainGain, "SideChainGain" }, { Keys::CompressorDrive, "CompressorDrive" },
        { Keys::EqualizerLowFrequency, "EqualizerLowFrequency" },
        { Keys::EqualizerLowGain, "EqualizerLowGain" },
        { Keys::EqualizerMiddleQuality, "EqualizerMiddleQuality" },
        { Keys::EqualizerMiddleFrequency, "EqualizerMiddleFrequency" },
        { Keys::EqualizerMiddleGain, "EqualizerMiddleGain" },
        { Keys::EqualizerHighFrequency, "EqualizerHighFrequency" },
        { Keys::EqualizerHighGain, "EqualizerHighGain" }, { Keys::MorphValue, "Morphing" },
        { Keys::OutputLevel, "Output" } };
    for (const auto &[key, stem] : knobs)
        QTest::newRow(key) << QString::fromLatin1(key)
                           << QStringList { QStringLiteral("m_p%1Knob").arg(QLatin1String(stem)),
                                  QStringLiteral("m_p%1TextEdit").arg(QLatin1String(stem)) };
    // One control alone.
    const QPair<const char *, const char *> singles[] = { { Keys::CompressorBypass, "m_pCompressorButton" },
        { Keys::CompressorKnee, "m_pCompressorKneeButtonGroup" }, { Keys::SideChainOn, "m_pSideChainButton" },
        { Keys::EqualizerBypass, "m_pEqualizerButton" }, { Keys::EqualizerLowOn, "m_pEqualizerLowButton" },
        { Keys::EqualizerMiddleOn, "m_pEqualizerMiddleButton" },
        { Keys::EqualizerHighOn, "m_pEqualizerHighButton" } };
    for (const auto &[key, name] : singles)
        QTest::newRow(key) << QString::fromLatin1(key) << QStringList { QString::fromLatin1(name) };
}

void tst_Editor::everyKeyReachesItsControls()
{
    QFETCH(QString, key);
    QFETCH(QStringList, controls);
    Host host;
    const unsigned short id = host.model.parameterId(qPrintable(key));
    for (const QString &name : controls) {
        AbstractController *control = host.control(qPrintable(name));
        QVERIFY2(control, qPrintable(name));
        QVERIFY2(control->isBound(), qPrintable(name));
        QCOMPARE(control->prmId(), id);
        QCOMPARE(control->memAPI(), &host.memory);
    }
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
    QCOMPARE(caption->palette().color(active, QPalette::WindowText).alpha() < alpha, bypass);

    host.memory.setValueByKey(qPrintable(key), 1 - value);
    for (const QString &name : disabled)
        QVERIFY2(host.widget(qPrintable(name))->isEnabled(), qPrintable(name));
    QCOMPARE(caption->palette().color(active, QPalette::WindowText).alpha(), alpha);
}

void tst_Editor::kneeShowsTheHostValue()
{
    Host host;
    host.memory.setValueByKey(Keys::CompressorKnee, 2);
    QVERIFY(host.widget("m_pCompressorKneeSelectHardBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pCompressorKneeSelectSoftBackground")->isVisibleTo(host.editor.get()));
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
    // The button names the set.
    QCOMPARE(host.widget<QAbstractButton>("m_pMorphingPresetButton")->text(), QStringLiteral("Vocal Air"));
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
    QVERIFY(host.widget<ORVChStripCompressorGraph>("m_pCompressorGraph")->hasOperatingPoint());

    host.editor->setCh(0, 1);
    QVERIFY(host.widget("m_pOutputStereoMeterBackground")->isVisibleTo(host.editor.get()));
    QVERIFY(!host.widget("m_pOutputMonoMeterBackground")->isVisibleTo(host.editor.get()));
    const unsigned short right = host.model.meterBase(Keys::InputMeter) + 2;
    values[right] = unsigned(-120);
    host.memory.publishMeters(values);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterR"), -120);
    QCOMPARE(meterValue(host, "m_pInputStereoMeterL"), -60);
}

void tst_Editor::pickingAMorphSetSlidesTheListAndDrivesTheStrip()
{
    qputenv("ORVCHSTRIP_MORPH_FOLDER", ORV_FACTORY_MORPH_DIR);
    Host host;
    host.editor->show();
    ORVChStripMorphingPresetList *list = host.editor->morphingPresetList();
    QVERIFY(!list->isVisible());

    // The list covers the sections; the controls behind it rest.
    QTest::mouseClick(host.widget("m_pMorphingPresetButton"), Qt::LeftButton);
    QVERIFY(host.editor->isMorphingPresetOpen());
    QVERIFY(!host.widget("m_pEqualizerLowGainKnob")->isEnabled());
    QTRY_COMPARE(list->geometry(), host.editor->morphingPresetGeometry());

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
