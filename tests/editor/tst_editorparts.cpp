// The editor's parts, each driven on its own: without the editor, its form or
// a window.
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include "ChannelStripModel.h"
#include "Common/ParameterLookup.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/SvgLabel.h"
#include "Common/Widgets/TextEditController.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/CompressorOperatingPoint.h"
#include "ORVChStrip/EqualizerEditTarget.h"
#include "ORVChStrip/EqualizerEditTracker.h"
#include "ORVChStrip/KneeSelector.h"
#include "ORVChStrip/MeterRouter.h"
#include "ORVChStrip/MorphMatchMonitor.h"
#include "ORVChStrip/MorphSetDisplay.h"
#include "ORVChStrip/MorphingPresetOverlay.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/ParameterBindings.h"
#include "ORVChStrip/PresetConverterOffer.h"
#include "ORVChStrip/ReversibleProgress.h"
#include "ORVChStrip/SectionStates.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;
using Target = EqualizerEditTarget;
using Gestures = QList<QPair<int, int>>; // (gesture, control) pairs set active
Q_DECLARE_METATYPE(Target::Gesture)
Q_DECLARE_METATYPE(Target::Control)
Q_DECLARE_METATYPE(Target::Band)

namespace {

HostModel modelWithout(const char *key)
{
    const HostModel full = HostModel::channelStrip();
    QList<ParameterDefinition> parameters = full.parameters();
    parameters.removeIf([key](const ParameterDefinition &p) { return qstrcmp(p.key, key) == 0; });
    return HostModel({ { 1, ChannelStripModel::ChannelStripFxId } }, parameters, full.meters());
}

// Hands its timer events to the operating point, as the editor does.
class TimerOwner : public QObject
{
public:
    CompressorOperatingPoint *point = nullptr;

protected:
    void timerEvent(QTimerEvent *event) override { point->timeout(event); }
};

// Hands the events it watches to the edit tracker, as the editor does.
class HoverWatcher : public QObject
{
public:
    EqualizerEditTracker *tracker = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        tracker->hover(watched, event);
        return false;
    }
};

double captionAlpha(const QLabel &label)
{
    return label.palette().color(QPalette::Active, QPalette::WindowText).alphaF();
}

} // namespace

class tst_EditorParts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void bindingsLeaveWhatTheModelLacksUnbound();
    void sectionStatesFollowTheSwitches_data();
    void sectionStatesFollowTheSwitches();
    void heldKneeButtonWinsOverTheValue();
    void meterRoutesKeepTheLastValueOutsideTheArray();
    void operatingPointFollowsTheMetersWhileTheyArrive();
    void editTargetTakesTheStrongestGesture_data();
    void editTargetTakesTheStrongestGesture();
    void editTrackerFollowsGesturesAndTheHoveredCell();
    void burstOfMorphUpdatesGivesOneComparison();
    void morphSetShowsItsNameAndMatch();
    void morphingListSlidesUpFromItsBottomEdge();
    void slideOpensInTenStepsAndReversesWithAHeadStart();
    void fadeReversesFromWhereItStandsAndIgnoresRepeats();
    void converterIsOfferedOnceAtMost();
};

void tst_EditorParts::bindingsLeaveWhatTheModelLacksUnbound()
{
    HostModel model = modelWithout(Keys::CompressorRelease);
    ParameterMemory memory(&model);
    const ParameterLookup lookup(&model);
    KnobController attack;
    TextEditController attackText;
    attackText.setPostfix(QStringLiteral(" ms"));
    KnobController release;
    TextEditController releaseText;
    ParameterBindings bindings;
    bindings.add(Keys::CompressorAttack, &attack, &attackText);
    bindings.add(Keys::CompressorRelease, &release, &releaseText);
    // A knob speaks its value with the unit of its field.
    QCOMPARE(attack.valueSuffix(), QStringLiteral(" ms"));

    bindings.bind(lookup, &memory, 1);
    for (const AbstractController *control : QList<const AbstractController *> { &attack, &attackText }) {
        QVERIFY(control->isBound());
        QCOMPARE(control->prmId(), model.parameterId(Keys::CompressorAttack));
        QCOMPARE(int(control->ch()), 1);
    }
    QVERIFY(!release.isBound());
    QVERIFY(!releaseText.isBound());
    // Without memory nothing stays bound.
    bindings.bind(lookup, nullptr, 1);
    QVERIFY(!attack.isBound());
    QVERIFY(!attackText.isBound());
}

void tst_EditorParts::sectionStatesFollowTheSwitches_data()
{
    QTest::addColumn<QList<int>>(
        "switches"); // compressor bypass, equalizer bypass, side chain, low, middle, high
    QTest::addColumn<bool>("covered");
    QTest::addColumn<QList<int>>("disabled"); // groups
    QTest::addColumn<QList<int>>("dimmed");   // sections
    using S = SectionStates;
    const QList<int> on { 0, 0, 1, 1, 1, 1 };
    QTest::newRow("all running") << on << false << QList<int> {} << QList<int> {};
    // A switch the model lacks reads -1: the section runs, the band is on.
    QTest::newRow("unknown switches") << QList<int>(6, -1) << false << QList<int> {} << QList<int> {};
    QTest::newRow("compressor bypassed")
        << QList<int> { 1, 0, 1, 1, 1, 1 } << false
        << QList<int> { S::CompressorControls, S::SideChainControls } << QList<int> { S::Compressor };
    QTest::newRow("side chain off") << QList<int> { 0, 0, 0, 1, 1, 1 } << false
                                    << QList<int> { S::SideChainControls } << QList<int> {};
    QTest::newRow("middle band off") << QList<int> { 0, 0, 1, 1, 0, 1 } << false
                                     << QList<int> { S::MiddleBandControls } << QList<int> {};
    QTest::newRow("equalizer bypassed")
        << QList<int> { 0, 1, 1, 1, 1, 1 } << false
        << QList<int> { S::EqualizerControls, S::LowBandControls, S::MiddleBandControls, S::HighBandControls }
        << QList<int> { S::Equalizer };
    QList<int> all;
    for (int group = 0; group < S::GroupCount; ++group)
        all << group;
    QTest::newRow("covered") << on << true << all << QList<int> { S::Compressor, S::Equalizer };
}

void tst_EditorParts::sectionStatesFollowTheSwitches()
{
    QFETCH(QList<int>, switches);
    QFETCH(bool, covered);
    QFETCH(QList<int>, disabled);
    QFETCH(QList<int>, dimmed);
    SectionStates states;
    QWidget panel;
    QWidget *groups[SectionStates::GroupCount];
    for (QWidget *&group : groups) {
        group = new QWidget(&panel);
        states.addControls(SectionStates::Group(&group - groups), { group });
    }
    QLabel *captions[SectionStates::SectionCount];
    for (QLabel *&caption : captions) {
        caption = new QLabel(QStringLiteral("CAPTION"), &panel);
        states.dimmer(SectionStates::Section(&caption - captions)).addLabel(caption, 0.3);
    }
    const double alpha = captionAlpha(*captions[0]);

    states.apply({ switches[0], switches[1], switches[2], switches[3], switches[4], switches[5] }, covered);
    for (int group = 0; group < SectionStates::GroupCount; ++group)
        QVERIFY2(groups[group]->isEnabled() != disabled.contains(group), qPrintable(QString::number(group)));
    for (int section = 0; section < SectionStates::SectionCount; ++section)
        QCOMPARE(captionAlpha(*captions[section]) < alpha * 0.5, dimmed.contains(section));

    // Back to running, the captions are as they were.
    states.apply({ 0, 0, 1, 1, 1, 1 }, false);
    for (QWidget *group : groups)
        QVERIFY(group->isEnabled());
    QCOMPARE(captionAlpha(*captions[0]), alpha);
}

void tst_EditorParts::heldKneeButtonWinsOverTheValue()
{
    ButtonGroupController group;
    KneeSelector selector(&group);
    QPushButton *buttons[3];
    SvgLabel *lit[3];
    SvgLabel *pushed[3];
    for (int i = 0; i < 3; ++i) {
        buttons[i] = new QPushButton(&group);
        lit[i] = new SvgLabel(&group);
        pushed[i] = new SvgLabel(&group);
        selector.addPosition(buttons[i], lit[i], pushed[i]);
    }
    group.setValue(2);
    selector.refresh();
    QVERIFY(!lit[2]->isHidden());
    QVERIFY(lit[0]->isHidden() && lit[1]->isHidden());
    QVERIFY(pushed[0]->isHidden() && pushed[1]->isHidden() && pushed[2]->isHidden());

    // Pressing a button refreshes through the connection; the pressed
    // picture replaces the lit one until the button comes up.
    int refreshes = 0;
    QObject context;
    selector.connectChanges(&context, [&] {
        ++refreshes;
        selector.refresh();
    });
    buttons[0]->setDown(true);
    emit buttons[0]->pressed();
    QCOMPARE(refreshes, 1);
    QVERIFY(!pushed[0]->isHidden());
    QVERIFY(lit[2]->isHidden());
    buttons[0]->setDown(false);
    emit buttons[0]->released();
    QVERIFY(pushed[0]->isHidden());
    QVERIFY(!lit[2]->isHidden());

    // Without a value to show nothing is lit.
    selector.refresh(false);
    for (const SvgLabel *label : lit)
        QVERIFY(label->isHidden());
}

void tst_EditorParts::meterRoutesKeepTheLastValueOutsideTheArray()
{
    HostModel model = HostModel::channelStrip();
    const ParameterLookup lookup(&model);
    MeterController sideChain;
    MeterController reduction;
    MeterController missing;
    MeterRouter router;
    router.add(lookup, Keys::SideChainMeter, 0, false, &sideChain);
    router.add(lookup, Keys::GainReductionMeter, 0, false, &reduction);
    router.add(lookup, "meter_unknown", 0, false, &missing);
    router.add(lookup, Keys::SideChainMeter, -1, false, &missing);
    QCOMPARE(router.count(), 2);

    QVector<unsigned int> values(int(model.meterArraySize()), unsigned(-90));
    router.route(values.data(), unsigned(values.size()));
    QCOMPARE(reduction.value(), -90);
    // An array that ends before the gain-reduction entry: that meter keeps -9 dB.
    const unsigned int shortCount = model.meterBase(Keys::GainReductionMeter);
    QVector<unsigned int> shorter(int(shortCount), unsigned(-30));
    router.route(shorter.data(), shortCount);
    QCOMPARE(reduction.value(), -90);
    QCOMPARE(sideChain.value(), -30);
    router.route(nullptr, 0);
    QCOMPARE(sideChain.value(), -30);
}

void tst_EditorParts::operatingPointFollowsTheMetersWhileTheyArrive()
{
    HostModel model = HostModel::channelStrip();
    ORVChStripCompressorGraph graph;
    TimerOwner owner;
    CompressorOperatingPoint point(&graph, &owner);
    owner.point = &point;
    point.locate(ParameterLookup(&model), 0);

    QVector<unsigned int> values(int(model.meterArraySize()), unsigned(-1270));
    values[model.meterBase(Keys::SideChainMeter)] = unsigned(-200);    // -20 dB detected
    values[model.meterBase(Keys::GainReductionMeter)] = unsigned(-55); // 5.5 dB of reduction
    point.show(values.data(), unsigned(values.size()));
    QVERIFY(graph.hasOperatingPoint());
    QCOMPARE(graph.operatingPoint(), QPointF(-20.0, -25.5));
    // Silence is below the graph; and without meters the point goes.
    values[model.meterBase(Keys::SideChainMeter)] = unsigned(-1270);
    point.show(values.data(), unsigned(values.size()));
    QVERIFY(!graph.hasOperatingPoint());
    values[model.meterBase(Keys::SideChainMeter)] = unsigned(-100);
    point.show(values.data(), unsigned(values.size()));
    QVERIFY(graph.hasOperatingPoint());
    QTRY_VERIFY_WITH_TIMEOUT(!graph.hasOperatingPoint(), 4 * CompressorOperatingPoint::TimeoutMs);
    // An array too short for either entry changes nothing.
    point.show(values.data(), model.meterBase(Keys::GainReductionMeter));
    QVERIFY(!graph.hasOperatingPoint());
}

void tst_EditorParts::editTargetTakesTheStrongestGesture_data()
{
    QTest::addColumn<Gestures>("gestures");
    QTest::addColumn<Target::Band>("band");
    auto g = [](Target::Gesture gesture, Target::Control control) {
        return qMakePair(int(gesture), int(control));
    };
    QTest::newRow("nothing") << Gestures {} << Target::None;
    QTest::newRow("hover middle Q") << Gestures { g(Target::Hover, Target::MiddleQuality) } << Target::Middle;
    QTest::newRow("text drag beats hover")
        << Gestures { g(Target::Hover, Target::LowGain), g(Target::TextDrag, Target::HighGain) }
        << Target::High;
    QTest::newRow("knob drag beats text drag")
        << Gestures { g(Target::TextDrag, Target::HighFrequency), g(Target::KnobDrag, Target::LowFrequency) }
        << Target::Low;
    QTest::newRow("text edit beats knob drag") << Gestures { g(Target::KnobDrag, Target::LowFrequency),
        g(Target::TextEdit, Target::MiddleGain), g(Target::Hover, Target::HighGain) }
                                               << Target::Middle;
    QTest::newRow("within a gesture the low band first") << Gestures { g(Target::KnobDrag, Target::HighGain),
        g(Target::KnobDrag, Target::LowGain) } << Target::Low;
}

void tst_EditorParts::editTargetTakesTheStrongestGesture()
{
    QFETCH(Gestures, gestures);
    QFETCH(Target::Band, band);
    Target target;
    for (const auto &gesture : gestures)
        target.set(Target::Gesture(gesture.first), Target::Control(gesture.second), true);
    QCOMPARE(target.band(), band);
    // Releasing every gesture leaves no target.
    for (const auto &gesture : gestures)
        target.set(Target::Gesture(gesture.first), Target::Control(gesture.second), false);
    QCOMPARE(target.band(), Target::None);
}

void tst_EditorParts::editTrackerFollowsGesturesAndTheHoveredCell()
{
    ORVChStripEqualizerGraph graph;
    HoverWatcher watcher;
    auto *tracker = new EqualizerEditTracker(&graph, &watcher);
    watcher.tracker = tracker;
    QWidget lowCell;
    auto *lowKnob = new KnobController(&lowCell);
    auto *lowText = new TextEditController(&lowCell);
    QWidget highCell;
    auto *highKnob = new KnobController(&highCell);
    auto *highText = new TextEditController(&highCell);
    tracker->track(&lowCell, lowKnob, lowText, Target::LowGain);
    tracker->track(&highCell, highKnob, highText, Target::HighFrequency);

    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&highCell, &enter);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetHigh);
    emit lowKnob->drag(true);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetLow);
    emit lowKnob->drag(false);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetHigh);
    emit highText->textEdit(true);
    emit lowText->drag(true);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetHigh);
    emit highText->textEdit(false);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetLow);
    emit lowText->drag(false);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&highCell, &leave);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetNone);
}

void tst_EditorParts::burstOfMorphUpdatesGivesOneComparison()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MorphMatchMonitor monitor;
    monitor.attach(ParameterLookup(&model), &memory, 0);
    QSignalSpy changed(&monitor, &MorphMatchMonitor::matchChanged);
    for (int i = 0; i < 50; ++i)
        monitor.request();
    QCOMPARE(monitor.comparisonCount(), 0);
    QTRY_COMPARE(monitor.comparisonCount(), 1);
    QTest::qWait(30);
    QCOMPARE(monitor.comparisonCount(), 1);
    QCOMPARE(changed.size(), 0);
}

void tst_EditorParts::morphSetShowsItsNameAndMatch()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    const unsigned short nameId = model.parameterId(Keys::MorphSystemName);
    PushButtonController button;
    KnobController knob;
    MorphSetDisplay display(&button, &knob);

    memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Vocal Air"));
    display.showName(MorphSetDisplay::readName(&memory, nameId, 0));
    QCOMPARE(button.text(), QStringLiteral("Vocal Air"));
    // Without a set the button asks for one; so it does when reads fail.
    memory.setText(Keys::MorphSystemName, QByteArray());
    display.showName(MorphSetDisplay::readName(&memory, nameId, 0));
    QCOMPARE(button.text(), QStringLiteral("Choose a morph set..."));
    memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Vocal Air"));
    memory.setFailing(true);
    QVERIFY(MorphSetDisplay::readName(&memory, nameId, 0).isEmpty());

    display.showMatch(false);
    QCOMPARE(knob.backgroundSvg(), QStringLiteral(":/image/orvchstrip/back_morphing_off.svg"));
    display.showMatch(true);
    QCOMPARE(knob.backgroundSvg(), QStringLiteral(":/image/orvchstrip/back_morphing.svg"));
}

void tst_EditorParts::morphingListSlidesUpFromItsBottomEdge()
{
    QWidget panel;
    panel.resize(1015, 572);
    auto *list = new QWidget(&panel);
    list->setFocusPolicy(Qt::StrongFocus);
    auto *overlay = new MorphingPresetOverlay(list);
    QSignalSpy covered(overlay, &MorphingPresetOverlay::coverChanged);
    QVERIFY(list->isHidden());

    // It grows upwards from its bottom edge in 20 ms steps.
    overlay->open();
    QVERIFY(overlay->isOpen());
    QCOMPARE(covered.size(), 1);
    QCOMPARE(covered.last().at(0).toBool(), true);
    const QRect full = overlay->fullGeometry();
    QCOMPARE(full, MorphingPresetOverlay::DesignRect);
    QVERIFY(!list->isHidden());
    QCOMPARE(list->geometry().bottom(), full.bottom());
    QVERIFY(list->height() < full.height() / 2);
    overlay->open(); // already open
    QCOMPARE(covered.size(), 1);
    QTRY_COMPARE(list->geometry(), full);

    // Rescaled while closing, it keeps sliding at the new size.
    overlay->close();
    QCOMPARE(covered.last().at(0).toBool(), false);
    overlay->setScale(2.0);
    QVERIFY(overlay->isSliding());
    QCOMPARE(list->geometry().bottom(), overlay->fullGeometry().bottom());
    QCOMPARE(overlay->fullGeometry().size(), full.size() * 2);
    QTRY_VERIFY(list->isHidden());
}

void tst_EditorParts::slideOpensInTenStepsAndReversesWithAHeadStart()
{
    ReversibleProgress slide(20, 0.1);
    QSignalSpy changed(&slide, &ReversibleProgress::changed);
    QSignalSpy finished(&slide, &ReversibleProgress::finished);
    slide.open();
    QVERIFY(slide.isRunning());
    for (int i = 0; i < 4; ++i)
        slide.advance();
    // 0.1 at the start, then 0.2 to 0.5.
    QCOMPARE(changed.size(), 5);
    QVERIFY(qFuzzyCompare(changed.last().at(0).toDouble(), 0.5));

    // Closing half-way: the progress becomes 1 - 0.5 + 0.1, so the panel
    // shows 0.4 and keeps moving the other way.
    slide.close();
    QVERIFY(qFuzzyCompare(changed.last().at(0).toDouble(), 0.4));
    int steps = 0;
    while (slide.isRunning() && steps < 20) {
        slide.advance();
        ++steps;
    }
    QCOMPARE(steps, 4);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.last().at(0).toBool(), false);
    QCOMPARE(slide.visibleFraction(), 0.0);

    // A reversal at the very start of a close ends at once, fully open.
    ReversibleProgress quick(20, 0.1);
    QSignalSpy quickFinished(&quick, &ReversibleProgress::finished);
    quick.open();
    for (int i = 0; i < 10; ++i)
        quick.advance();
    QCOMPARE(quickFinished.size(), 1);
    quick.close();
    quick.open();
    QCOMPARE(quickFinished.size(), 2);
    QCOMPARE(quickFinished.last().at(0).toBool(), true);
    QVERIFY(!quick.isRunning());
}

void tst_EditorParts::fadeReversesFromWhereItStandsAndIgnoresRepeats()
{
    ReversibleProgress fade(30);
    QSignalSpy changed(&fade, &ReversibleProgress::changed);
    fade.open();
    fade.advance();
    fade.open(); // the same direction again changes nothing
    fade.advance();
    QVERIFY(qFuzzyCompare(fade.visibleFraction(), 0.3));
    fade.close();
    // No jump: still 0.3, now falling.
    QVERIFY(qFuzzyCompare(changed.last().at(0).toDouble(), 0.3));
    fade.advance();
    QVERIFY(qFuzzyCompare(fade.visibleFraction(), 0.2));
    while (fade.isRunning())
        fade.advance();
    QVERIFY(qFuzzyIsNull(fade.visibleFraction()));
    changed.clear();
    fade.close(); // already closed
    QCOMPARE(changed.size(), 0);
    QVERIFY(!fade.isRunning());
}

void tst_EditorParts::converterIsOfferedOnceAtMost()
{
    for (const bool rule : { false, true }) {
        QWidget panel;
        auto *converter = new ORVChStripPresetConverter(&panel);
        converter->hide();
        int asked = 0;
        PresetConverterOffer offer(converter, [&asked, rule] {
            ++asked;
            return rule;
        });
        offer.offerOnce();
        QCOMPARE(converter->isHidden(), !rule);
        converter->hide();
        offer.offerOnce();
        QCOMPARE(asked, 1);
        QVERIFY(converter->isHidden());
    }
}

QTEST_MAIN(tst_EditorParts)
#include "tst_editorparts.moc"
