// The editor's parts, each driven on its own: without the editor, its form or
// a window.
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

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
#include "ORVChStrip/KneeSelector.h"
#include "ORVChStrip/MeterRouter.h"
#include "ORVChStrip/MorphMatchMonitor.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
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

// Hands its timer events to the operating point, as the editor does.
class TimerOwner : public QObject
{
public:
    CompressorOperatingPoint *point = nullptr;

protected:
    void timerEvent(QTimerEvent *event) override { point->timeout(event); }
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
    void unknownSwitchesLeaveTheSectionsRunning();
    void kneeSelectorLightsTheChosenKnee();
    void meterRoutesKeepTheLastValueOutsideTheArray();
    void operatingPointFollowsTheMetersWhileTheyArrive();
    void editTargetTakesTheStrongestGesture_data();
    void editTargetTakesTheStrongestGesture();
    void burstOfMorphUpdatesGivesOneComparison();
    void progressReversesFromWhereItStands_data();
    void progressReversesFromWhereItStands();
    void converterIsOfferedOnceAtMost();
};

// The ids each control gets are checked on the whole editor.
void tst_EditorParts::bindingsLeaveWhatTheModelLacksUnbound()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    KnobController attack;
    TextEditController attackText;
    attackText.setPostfix(QStringLiteral(" ms"));
    KnobController release;
    TextEditController releaseText;
    ParameterBindings bindings;
    bindings.add(Keys::CompressorAttack, &attack, &attackText);
    bindings.add("fx_cmp_unknown", &release, &releaseText); // a key the model lacks
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

// Which switch turns which group off is the editor's wiring, checked there.
// A switch the model lacks reads -1: the section runs, the band is on.
void tst_EditorParts::unknownSwitchesLeaveTheSectionsRunning()
{
    SectionStates states;
    QWidget panel;
    QList<QWidget *> groups;
    for (int group = 0; group < SectionStates::GroupCount; ++group) {
        groups << new QWidget(&panel);
        states.addControls(SectionStates::Group(group), { groups.last() });
    }
    auto *caption = new QLabel(QStringLiteral("CAPTION"), &panel);
    states.dimmer(SectionStates::Compressor).addLabel(caption, 0.3);
    const double alpha = captionAlpha(*caption);
    states.apply({ -1, -1, -1, -1, -1, -1 }, false);
    for (const QWidget *group : groups)
        QVERIFY(group->isEnabled());
    QCOMPARE(captionAlpha(*caption), alpha);
}

void tst_EditorParts::kneeSelectorLightsTheChosenKnee()
{
    ButtonGroupController group;
    KneeSelector selector(&group);
    QList<SvgLabel *> lit;
    for (int i = 0; i < 3; ++i) {
        lit << new SvgLabel(&group);
        selector.addPosition(new QPushButton(&group), lit.last(), new SvgLabel(&group));
    }
    const auto shown = [&lit] {
        QList<bool> visible;
        for (const SvgLabel *label : lit)
            visible << !label->isHidden();
        return visible;
    };
    group.setValue(2);
    selector.refresh();
    QCOMPARE(shown(), (QList<bool> { false, false, true }));
    selector.refresh(false);
    QCOMPARE(shown(), (QList<bool> { false, false, false }));
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
    // clang-format off
    QTest::newRow("text drag beats hover") << Gestures { g(Target::Hover, Target::LowGain), g(Target::TextDrag, Target::HighGain) } << Target::High;
    QTest::newRow("knob drag beats text drag") << Gestures { g(Target::TextDrag, Target::HighFrequency), g(Target::KnobDrag, Target::LowFrequency) } << Target::Low;
    QTest::newRow("text edit beats knob drag") << Gestures { g(Target::KnobDrag, Target::LowFrequency),
        g(Target::TextEdit, Target::MiddleGain), g(Target::Hover, Target::HighGain) }
                                               << Target::Middle;
    QTest::newRow("within a gesture the low band first") << Gestures { g(Target::KnobDrag, Target::HighGain), g(Target::KnobDrag, Target::LowGain) } << Target::Low;
    // clang-format on
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

void tst_EditorParts::progressReversesFromWhereItStands_data()
{
    QTest::addColumn<double>("headStart");
    QTest::addColumn<QString>("script");      // o: open, c: close, a: one step
    QTest::addColumn<QList<double>>("shown"); // the visible fraction after each letter
    QTest::addColumn<int>("changes");         // the signals of a new fraction, none for an ignored request
    QTest::addColumn<QList<bool>>("finished");
    // Closing the slide half-way mirrors it and adds a step: 1 - 0.5 + 0.1.
    // clang-format off
    QTest::newRow("slide closed half-way") << 0.1 << "oaaaacaaaa" << QList<double> { 0.1, 0.2, 0.3, 0.4, 0.5, 0.4, 0.3, 0.2, 0.1, 0 } << 10 << QList<bool> { false };
    // Opened again at the very start of a close, it ends open at once.
    QTest::newRow("slide reopened at once")
        << 0.1 << "oaaaaaaaaaaco"
        << QList<double> { 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1, 1, 0.9, 1 } << 12
        << QList<bool> { true, true };
    QTest::newRow("fade, repeats ignored") << 0.0 << "oaoacaaac" << QList<double> { 0.1, 0.2, 0.2, 0.3, 0.3, 0.2, 0.1, 0, 0 } << 7 << QList<bool> { false };
    // clang-format on
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
