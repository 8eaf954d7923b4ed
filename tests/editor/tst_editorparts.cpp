// The editor's small behaviour classes, driven without a window.
#include <QSignalSpy>
#include <QTest>

#include "ORVChStrip/EqualizerEditTarget.h"
#include "ORVChStrip/ReversibleProgress.h"

using Target = EqualizerEditTarget;
using Gestures = QList<QPair<int, int>>; // (gesture, control) pairs set active
Q_DECLARE_METATYPE(Target::Gesture)
Q_DECLARE_METATYPE(Target::Control)
Q_DECLARE_METATYPE(Target::Band)

class tst_EditorParts : public QObject
{
    Q_OBJECT

private slots:
    void editTargetTakesTheStrongestGesture_data();
    void editTargetTakesTheStrongestGesture();
    void slideOpensInTenStepsAndReversesWithAHeadStart();
    void fadeReversesFromWhereItStandsAndIgnoresRepeats();
};

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

QTEST_GUILESS_MAIN(tst_EditorParts)
#include "tst_editorparts.moc"
