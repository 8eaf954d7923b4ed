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
    void morphingListKeepsSlidingWhenRescaled();
    void progressReversesFromWhereItStands_data();
    void progressReversesFromWhereItStands();
    void converterIsOfferedOnceAtMost();
};

// The ids each control gets are checked on the whole editor.
void tst_EditorParts::bindingsLeaveWhatTheModelLacksUnbound()
{
    HostModel model = modelWithout(Keys::CompressorRelease);
    ParameterMemory memory(&model);
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
    bindings.bind(ParameterLookup(&model), &memory, 1);
    QVERIFY(attack.isBound() && attackText.isBound());
    QCOMPARE(int(attackText.ch()), 1);
    QVERIFY(!release.isBound() && !releaseText.isBound());
    // Without memory nothing stays bound.
    bindings.bind(ParameterLookup(&model), nullptr, 1);
    QVERIFY(!attack.isBound() && !attackText.isBound());
}

// Which switch turns which group off is the editor's wiring, checked there;
// these are the states the editor's host does not make.
void tst_EditorParts::sectionStatesFollowTheSwitches_data()
{
    QTest::addColumn<QList<int>>(
        "switches"); // compressor and equalizer bypass, side chain, low, middle, high
    QTest::addColumn<bool>("covered");
    QTest::addColumn<bool>("disabled"); // every group
    QTest::addColumn<bool>("dimmed");   // both sections
    // A switch the model lacks reads -1: the section runs, the band is on.
    QTest::newRow("unknown switches") << QList<int>(6, -1) << false << false << false;
    QTest::newRow("covered by the list") << QList<int> { 0, 0, 1, 1, 1, 1 } << true << true << true;
}

void tst_EditorParts::sectionStatesFollowTheSwitches()
{
    QFETCH(QList<int>, switches);
    QFETCH(bool, covered);
    QFETCH(bool, disabled);
    QFETCH(bool, dimmed);
    SectionStates states;
    QWidget panel;
    QList<QWidget *> groups;
    for (int group = 0; group < SectionStates::GroupCount; ++group) {
        groups << new QWidget(&panel);
        states.addControls(SectionStates::Group(group), { groups.last() });
    }
    QList<QLabel *> captions;
    for (int section = 0; section < SectionStates::SectionCount; ++section) {
        captions << new QLabel(QStringLiteral("CAPTION"), &panel);
        states.dimmer(SectionStates::Section(section)).addLabel(captions.last(), 0.3);
    }
    const double alpha = captionAlpha(*captions[0]);
    states.apply({ switches[0], switches[1], switches[2], switches[3], switches[4], switches[5] }, covered);
    for (const QWidget *group : groups)
        QCOMPARE(group->isEnabled(), !disabled);
    for (const QLabel *caption : captions)
        QCOMPARE(captionAlpha(*caption) < alpha * 0.5, dimmed);
    // Back to running, the captions are as they were.
    states.apply({ 0, 0, 1, 1, 1, 1 }, false);
    QCOMPARE(captionAlpha(*captions[0]), alpha);
}

void tst_EditorParts::heldKneeButtonWinsOverTheValue()
{
    ButtonGroupController group;
    KneeSelector selector(&group);
    QList<QPushButton *> buttons;
    QList<SvgLabel *> lit;
    QList<SvgLabel *> pushed;
    for (int i = 0; i < 3; ++i) {
        buttons << new QPushButton(&group);
        lit << new SvgLabel(&group);
        pushed << new SvgLabel(&group);
        selector.addPosition(buttons[i], lit[i], pushed[i]);
    }
    const auto shown = [](const QList<SvgLabel *> &labels) {
        QList<bool> visible;
        for (const SvgLabel *label : labels)
            visible << !label->isHidden();
        return visible;
    };
    group.setValue(2);
    selector.refresh();
    QCOMPARE(shown(lit), (QList<bool> { false, false, true }));
    QCOMPARE(shown(pushed), (QList<bool> { false, false, false }));
    // Pressing a button refreshes through the connection; the pressed
    // picture replaces the lit one until the button comes up.
    QObject context;
    selector.connectChanges(&context, [&selector] { selector.refresh(); });
    buttons[0]->setDown(true);
    emit buttons[0]->pressed();
    QCOMPARE(shown(lit), (QList<bool> { false, false, false }));
    QCOMPARE(shown(pushed), (QList<bool> { true, false, false }));
    buttons[0]->setDown(false);
    emit buttons[0]->released();
    QCOMPARE(shown(lit), (QList<bool> { false, false, true }));
    QCOMPARE(shown(pushed), (QList<bool> { false, false, false }));
    // Without a value to show nothing is lit.
    selector.refresh(false);
    QCOMPARE(shown(lit), (QList<bool> { false, false, false }));
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
    values[model.meterBase(Keys::GainReductionMeter)] = unsigned(-55); // 5.5 dB of reduction
    const auto shown = [&](int detected, unsigned int count) {
        values[model.meterBase(Keys::SideChainMeter)] = unsigned(detected);
        point.show(values.data(), count);
        return graph.hasOperatingPoint();
    };
    QVERIFY(shown(-200, unsigned(values.size()))); // -20 dB
    QCOMPARE(graph.operatingPoint(), QPointF(-20.0, -25.5));
    QVERIFY(!shown(-1270, unsigned(values.size()))); // silence is below the graph
    QVERIFY(shown(-100, unsigned(values.size())));
    // Without meters the point goes; an array too short for either entry changes nothing.
    QTRY_VERIFY_WITH_TIMEOUT(!graph.hasOperatingPoint(), 4 * CompressorOperatingPoint::TimeoutMs);
    QVERIFY(!shown(-100, model.meterBase(Keys::GainReductionMeter)));
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

// Which gesture wins is the edit target's rule, above; the tracker hands it
// the hover and the gestures of each cell.
void tst_EditorParts::editTrackerFollowsGesturesAndTheHoveredCell()
{
    ORVChStripEqualizerGraph graph;
    HoverWatcher watcher;
    watcher.tracker = new EqualizerEditTracker(&graph, &watcher);
    QWidget lowCell;
    auto *lowKnob = new KnobController(&lowCell);
    auto *lowText = new TextEditController(&lowCell);
    watcher.tracker->track(&lowCell, lowKnob, lowText, Target::LowGain);
    QWidget highCell;
    watcher.tracker->track(
        &highCell, new KnobController(&highCell), new TextEditController(&highCell), Target::HighFrequency);

    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&highCell, &enter);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetHigh);
    emit lowText->textEdit(true);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetLow);
    emit lowText->textEdit(false);
    emit lowText->drag(true);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetLow);
    emit lowText->drag(false);
    emit lowKnob->drag(true);
    QCOMPARE(graph.editTarget(), ORVChStripEqualizerGraph::TargetLow);
    emit lowKnob->drag(false);
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

// The slide itself shows in the real window; rescaled while it closes, it
// keeps sliding at the new size, from its bottom edge.
void tst_EditorParts::morphingListKeepsSlidingWhenRescaled()
{
    QWidget panel;
    auto *list = new QWidget(&panel);
    auto *overlay = new MorphingPresetOverlay(list);
    QSignalSpy covered(overlay, &MorphingPresetOverlay::coverChanged);
    overlay->open();
    overlay->open(); // already open
    QCOMPARE(covered.size(), 1);
    const QRect full = overlay->fullGeometry();
    QTRY_COMPARE(list->geometry(), full);
    overlay->close();
    QCOMPARE(covered.last().at(0).toBool(), false);
    overlay->setScale(2.0);
    QVERIFY(overlay->isSliding());
    QCOMPARE(overlay->fullGeometry().size(), full.size() * 2);
    QCOMPARE(list->geometry().bottom(), overlay->fullGeometry().bottom());
    QTRY_VERIFY(list->isHidden());
}

void tst_EditorParts::progressReversesFromWhereItStands_data()
{
    QTest::addColumn<double>("headStart");
    QTest::addColumn<QString>("script");      // o: open, c: close, a: one step
    QTest::addColumn<QList<double>>("shown"); // the visible fraction after each letter
    QTest::addColumn<int>("changes");         // the signals of a new fraction, none for an ignored request
    QTest::addColumn<QList<bool>>("finished");
    // Closing the slide half-way mirrors it and adds a step: 1 - 0.5 + 0.1.
    QTest::newRow("slide closed half-way")
        << 0.1 << "oaaaacaaaa" << QList<double> { 0.1, 0.2, 0.3, 0.4, 0.5, 0.4, 0.3, 0.2, 0.1, 0 } << 10
        << QList<bool> { false };
    // Opened again at the very start of a close, it ends open at once.
    QTest::newRow("slide reopened at once")
        << 0.1 << "oaaaaaaaaaaco"
        << QList<double> { 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1, 1, 0.9, 1 } << 12
        << QList<bool> { true, true };
    QTest::newRow("fade, repeats ignored")
        << 0.0 << "oaoacaaac" << QList<double> { 0.1, 0.2, 0.2, 0.3, 0.3, 0.2, 0.1, 0, 0 } << 7
        << QList<bool> { false };
}

void tst_EditorParts::progressReversesFromWhereItStands()
{
    QFETCH(double, headStart);
    QFETCH(QString, script);
    QFETCH(QList<double>, shown);
    QFETCH(int, changes);
    QFETCH(QList<bool>, finished);
    ReversibleProgress progress(20, headStart);
    QSignalSpy changed(&progress, &ReversibleProgress::changed);
    QSignalSpy ended(&progress, &ReversibleProgress::finished);
    for (int i = 0; i < script.size(); ++i) {
        const char op = script.at(i).toLatin1();
        op == 'o' ? progress.open() : op == 'c' ? progress.close() : progress.advance();
        QVERIFY2(qAbs(progress.visibleFraction() - shown.at(i)) < 1e-9, qPrintable(QString::number(i)));
    }
    QCOMPARE(changed.size(), changes);
    QList<bool> ends;
    for (const QList<QVariant> &end : ended)
        ends << end.at(0).toBool();
    QCOMPARE(ends, finished);
    QVERIFY(!progress.isRunning());
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
