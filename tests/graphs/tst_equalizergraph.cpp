#include <QTest>
#include <cmath>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "MinimalEditor.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ParameterMemory.h"
#include "PointerEvents.h"

using Graph = ORVChStripEqualizerGraph;
using Band = EqualizerGraphBand;
using namespace ChannelStripKeys;

namespace {

struct Fixture
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory { &model };
    MinimalEditor editor;
    Graph graph;

    explicit Fixture(QSize size = QSize(437, 191))
    {
        editor.setModelInfo(&model);
        graph.setEditor(&editor);
        graph.resize(size);
        graph.setMemAPI(&memory);
    }
    bool show()
    {
        graph.show();
        return QTest::qWaitForWindowExposed(&graph);
    }
    QPoint handle(Graph::EditTarget band) const { return graph.getTargetPoint(band).toPoint(); }
    int value(const char *key) const { return memory.value(key); }
    QImage render(double ratio = 1.0)
    {
        QPixmap pixmap(graph.size() * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::black);
        graph.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
        return pixmap.toImage();
    }
};

// The frequency and gain keys of the band a handle edits.
std::pair<const char *, const char *> keysOf(int target)
{
    switch (target) {
    case Graph::TargetLow: return { EqualizerLowFrequency, EqualizerLowGain };
    case Graph::TargetHigh: return { EqualizerHighFrequency, EqualizerHighGain };
    default: return { EqualizerMiddleFrequency, EqualizerMiddleGain };
    }
}

} // namespace

class TestEqualizerGraph : public QObject
{
    Q_OBJECT

private slots:
    void totalCurveSpansThePlot_data();
    void totalCurveSpansThePlot();
    void registrationAndUpdates();
    void handleCentres_data();
    void handleCentres();
    void hitPriority_data();
    void hitPriority();
    void dragWritesTheSteps_data();
    void dragWritesTheSteps();
    void qualityDragWithAlt();
    void wheelSteps();
    void hoverCursorAndLeave();
    void changedBandsMatchAFreshGraph_data();
    void changedBandsMatchAFreshGraph();
};

void TestEqualizerGraph::totalCurveSpansThePlot_data()
{
    QTest::addColumn<int>("lowGain");
    QTest::addColumn<double>("devicePixelRatio");
    QTest::newRow("flat start") << 180 << 1.0;
    QTest::newRow("shelved start, ratio 2") << 120 << 2.0;
}

void TestEqualizerGraph::totalCurveSpansThePlot()
{
    QFETCH(int, lowGain);
    QFETCH(double, devicePixelRatio);
    // A narrow middle band (Q 4, +9 dB at 1 kHz) is flat far from 1 kHz.
    Fixture fixture;
    fixture.graph.setFs(48000);
    for (const auto &[key, value] : { std::pair(EqualizerLowGain, lowGain), { EqualizerMiddleGain, 270 },
             { EqualizerMiddleQuality, 36 }, { EqualizerHighOn, 0 } })
        fixture.memory.setValueByKey(key, value);
    const EqualizerGraphBands &bands = fixture.graph.bands();
    const EqualizerGraphGeometry geometry(900, 382);
    EqualizerGraphCurves curves;
    curves.compute(geometry, 48000, bands, devicePixelRatio);
    QVERIFY(curves.bandPoints(Band::HighShelf).isEmpty());

    // Between its two anchors on the 0 dB line, the total runs from the
    // plot's left edge to its right edge, however flat its ends are.
    const QPolygonF &total = curves.totalPoints();
    QVERIFY(total.size() > 4);
    QCOMPARE(total.first().y(), geometry.zeroDbY());
    QCOMPARE(total.last().y(), geometry.zeroDbY());
    QVERIFY(total.at(1).x() <= geometry.margin());
    QVERIFY(total.at(total.size() - 2).x() >= geometry.margin() + geometry.plotWidth());
    const double f = geometry.frequencyAtOffset(total.at(1).x() - geometry.margin());
    QCOMPARE(total.at(1).y(),
        geometry.yForGain(
            bands[Band::LowShelf].filter().power(f, 48000) + bands[Band::Peak].filter().power(f, 48000)));
}

void TestEqualizerGraph::registrationAndUpdates()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MinimalEditor editor;
    editor.setModelInfo(&model);
    memory.setValueByKey(EqualizerMiddleGain, 300, 1);   // +12 dB
    memory.setValueByKey(EqualizerMiddleQuality, 24, 1); // Q 2
    // As a form may build it: the parent first, the editor last.
    QWidget form;
    auto *graph = new Graph(&form);
    graph->setCh(1);
    graph->setMemAPI(&memory);
    graph->setEditor(&editor);
    const auto &bands = graph->bands();
    QCOMPARE(memory.totalObserverCount(), 10);
    QCOMPARE(memory.observerCount(model.parameterId(EqualizerLowOn), 1), 1);
    QCOMPARE(bands[Band::Peak].gain(), 12.0);
    QCOMPARE(bands[Band::Peak].quality(), 2.0);
    QCOMPARE(bands[Band::HighShelf].frequency(), 10000.0);
    memory.setValueByKey(EqualizerMiddleGain, 240, 1);
    QVERIFY(std::abs(bands[Band::Peak].filter().power(1000, 44100) - 6.0) < 1e-6);

    // Out-of-range values fall back to each parameter's default.
    graph->Update(model.parameterId(EqualizerHighFrequency), 1, 125, "");
    graph->Update(model.parameterId(EqualizerMiddleQuality), 1, -1, "");
    graph->Update(model.parameterId(EqualizerLowGain), 1, 361, "");
    QCOMPARE(bands[Band::HighShelf].frequency(), 10000.0);
    QCOMPARE(bands[Band::Peak].quality(), 1.0);
    QCOMPARE(bands[Band::LowShelf].gain(), 0.0);

    // A new rate recomputes every band: the 16 kHz shelf is then flat.
    memory.setValueByKey(EqualizerHighFrequency, 120, 1);
    memory.setValueByKey(EqualizerHighGain, 300, 1);
    QVERIFY(bands[Band::HighShelf].filter().power(15000, 44100) > 5.0);
    graph->setFs(32000);
    QCOMPARE(bands[Band::HighShelf].filter().power(15000, 32000), 0.0);
    delete graph;
    QCOMPARE(memory.totalObserverCount(), 0);
}

void TestEqualizerGraph::handleCentres_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("frequencyStep");
    QTest::addColumn<int>("gainStep");
    QTest::addColumn<QPointF>("centre");
    // Worked out by hand from the plot's design: unit h/191, margin 5.5
    // units, 20 Hz..20 kHz over w - 11 units, +-24 dB over h - 11 units.
    // clang-format off
    QTest::newRow("middle 1 kHz +18 dB") << QSize(437, 191) << int(Graph::TargetMiddle) << 72 << 360 << QPointF(246.7537406157, 28.0);
    QTest::newRow("high 10 kHz +4.5 dB, scale 2") << QSize(874, 382) << int(Graph::TargetHigh) << 112 << 225 << QPointF(777.5074812314, 157.25);
    QTest::newRow("high 20 kHz -18 dB") << QSize(437, 191) << int(Graph::TargetHigh) << 124 << 0 << QPointF(431.5, 163.0);
    // clang-format on
}

void TestEqualizerGraph::handleCentres()
{
    QFETCH(QSize, size);
    QFETCH(int, target);
    QFETCH(int, frequencyStep);
    QFETCH(int, gainStep);
    QFETCH(QPointF, centre);
    Fixture fixture(size);
    fixture.memory.setValueByKey(keysOf(target).first, frequencyStep);
    fixture.memory.setValueByKey(keysOf(target).second, gainStep);
    const QPointF actual = fixture.graph.getTargetPoint(Graph::EditTarget(target));
    QVERIFY2(std::abs(actual.x() - centre.x()) < 1e-6 && std::abs(actual.y() - centre.y()) < 1e-6,
        qPrintable(QStringLiteral("(%1, %2)").arg(actual.x(), 0, 'f', 10).arg(actual.y(), 0, 'f', 10)));
    QCOMPARE(fixture.graph.getTargetPoint(Graph::TargetNone), QPointF(0, 0));
}

void TestEqualizerGraph::hitPriority_data()
{
    QTest::addColumn<QByteArray>("offKey");
    QTest::addColumn<int>("expected");
    QTest::newRow("all on: high wins") << QByteArray() << int(Graph::TargetHigh);
    QTest::newRow("high off: middle wins") << QByteArray(EqualizerHighOn) << int(Graph::TargetMiddle);
    QTest::newRow("middle off: high") << QByteArray(EqualizerMiddleOn) << int(Graph::TargetHigh);
}

void TestEqualizerGraph::hitPriority()
{
    QFETCH(QByteArray, offKey);
    QFETCH(int, expected);
    Fixture fixture;
    // All three handles on one point: 600 Hz, 0 dB.
    for (const char *key : { EqualizerLowFrequency, EqualizerMiddleFrequency, EqualizerHighFrequency })
        fixture.memory.setValueByKey(key, 63);
    if (!offKey.isEmpty())
        fixture.memory.setValueByKey(offKey.constData(), 0);
    const QPointF centre = fixture.graph.getTargetPoint(Graph::TargetLow);
    QCOMPARE(int(fixture.graph.getPointTarget((centre + QPointF(7, 0)).toPoint())), expected);
    QCOMPARE(fixture.graph.getPointTarget((centre + QPointF(0, 9)).toPoint()), Graph::TargetNone);
}

void TestEqualizerGraph::dragWritesTheSteps_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("target");
    QTest::addColumn<QList<QPoint>>("moves"); // from the press
    QTest::addColumn<int>("frequencyStep");
    QTest::addColumn<int>("gainStep");
    // Worked out by hand: the press lands on the rounded handle centre; the
    // drag maps with the unit h/181, f = 20 * 10^(3 (x - grabX - m) / pw)
    // and gain = (hh + m - y + grabY) / hh * 24; the host takes the
    // nearest table steps of the texts.
    // Middle: press (247, 96), to (287, 66): 1915.92 Hz, +8.0271 dB.
    // clang-format off
    QTest::newRow("middle up and right") << QSize(437, 191) << int(Graph::TargetMiddle) << QList<QPoint> { { 40, -30 } } << 83 << 260;
    // Low: press (105, 96), to (165, 120): 264.238 Hz, -6.42168 dB.
    QTest::newRow("low down and right") << QSize(437, 191) << int(Graph::TargetLow) << QList<QPoint> { { 60, 24 } } << 49 << 116;
    // High at scale 2: press (778, 191), to (678, 141): 4457.56 Hz, +6.68925 dB.
    QTest::newRow("high up and left, scale 2") << QSize(874, 382) << int(Graph::TargetHigh) << QList<QPoint> { { -100, -50 } } << 98 << 247;
    // Past the ends of the range and further on: a later write must hold there.
    QTest::newRow("low far right stops at 1 kHz") << QSize(437, 191) << int(Graph::TargetLow) << QList<QPoint> { { 325, -146 }, { 650, -292 } } << 72 << 360;
    QTest::newRow("high far left stops at 500 Hz") << QSize(437, 191) << int(Graph::TargetHigh) << QList<QPoint> { { -389, 204 }, { -778, 408 } } << 60 << 0;
    QTest::newRow("high reaches 20 kHz") << QSize(437, 191) << int(Graph::TargetHigh) << QList<QPoint> { { 211, 0 }, { 422, 0 } } << 124 << 180;
    // clang-format on
}

void TestEqualizerGraph::dragWritesTheSteps()
{
    QFETCH(QSize, size);
    QFETCH(int, target);
    QFETCH(QList<QPoint>, moves);
    QFETCH(int, frequencyStep);
    QFETCH(int, gainStep);
    Fixture fixture(size);
    QVERIFY(fixture.show());
    const QPoint press = fixture.handle(Graph::EditTarget(target));
    QTest::mousePress(&fixture.graph, Qt::LeftButton, {}, press);
    QVERIFY(fixture.graph.isDragging());
    QCOMPARE(fixture.graph.cursor().shape(), Qt::ClosedHandCursor);
    for (const QPoint &move : moves)
        QTest::mouseMove(&fixture.graph, press + move);
    QCOMPARE(fixture.value(keysOf(target).first), frequencyStep);
    QCOMPARE(fixture.value(keysOf(target).second), gainStep);
    QCOMPARE(fixture.value(EqualizerMiddleQuality), 12);
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, press + moves.last());
    QVERIFY(!fixture.graph.isDragging());
}

void TestEqualizerGraph::qualityDragWithAlt()
{
    Fixture fixture;
    QVERIFY(fixture.show());
    const QPoint press = fixture.handle(Graph::TargetMiddle);
    QTest::mousePress(&fixture.graph, Qt::LeftButton, Qt::AltModifier, press);
    fixture.memory.clearWrites();
    // 10 pixels up at 181/191 pixels per step: 9 steps.
    QTest::mouseMove(&fixture.graph, press + QPoint(25, -10));
    QCOMPARE(fixture.value(EqualizerMiddleQuality), 21);
    QTest::mouseMove(&fixture.graph, press + QPoint(25, -7));
    QCOMPARE(fixture.value(EqualizerMiddleQuality), 18);
    for (const ParameterMemory::Write &write : fixture.memory.writes())
        QCOMPARE(write.prmId, fixture.model.parameterId(EqualizerMiddleQuality));
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, press);
}

// The notch arithmetic is the knob's; here only which handle the wheel turns.
void TestEqualizerGraph::wheelSteps()
{
    Fixture fixture;
    QVERIFY(fixture.show());
    QVERIFY(sendWheel(&fixture.graph, fixture.handle(Graph::TargetMiddle), QPoint(0, 120)));
    QCOMPARE(fixture.value(EqualizerMiddleGain), 181);
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetMiddle);

    // Away from every handle the wheel writes nothing.
    fixture.memory.clearWrites();
    sendWheel(&fixture.graph, QPoint(20, 20), QPoint(0, 120));
    QVERIFY(fixture.memory.writes().isEmpty());
}

void TestEqualizerGraph::hoverCursorAndLeave()
{
    Fixture fixture;
    Graph &graph = fixture.graph;
    QVERIFY(fixture.show());
    QTest::mouseMove(&graph, fixture.handle(Graph::TargetLow) + QPoint(3, 3));
    QCOMPARE(graph.hoverTarget(), Graph::TargetLow);
    QCOMPARE(graph.cursor().shape(), Qt::PointingHandCursor);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&graph, &leave);
    QCOMPARE(graph.hoverTarget(), Graph::TargetNone);
    QCOMPARE(graph.cursor().shape(), Qt::ArrowCursor);
    // Pressing on the empty plot grabs nothing.
    QTest::mousePress(&graph, Qt::LeftButton, {}, QPoint(20, 20));
    QVERIFY(!graph.isDragging());
    QTest::mouseRelease(&graph, Qt::LeftButton, {}, QPoint(20, 20));

    // A disabled graph drops its hover and neither hovers nor drags.
    QTest::mouseMove(&graph, fixture.handle(Graph::TargetMiddle));
    graph.setEnabled(false);
    QCOMPARE(graph.hoverTarget(), Graph::TargetNone);
    QTest::mouseMove(&graph, fixture.handle(Graph::TargetMiddle) + QPoint(1, 0));
    QCOMPARE(graph.hoverTarget(), Graph::TargetNone);
    QTest::mousePress(&graph, Qt::LeftButton, {}, fixture.handle(Graph::TargetMiddle));
    QVERIFY(!graph.isDragging());
}

void TestEqualizerGraph::changedBandsMatchAFreshGraph_data()
{
    QTest::addColumn<QByteArrayList>("keys");
    QTest::addColumn<QList<int>>("values");
    QTest::addColumn<int>("editTarget");
    QTest::addColumn<double>("ratio");
    QTest::newRow("each band, twice")
        << QByteArrayList { EqualizerLowGain, EqualizerHighFrequency, EqualizerMiddleQuality,
               EqualizerLowGain, EqualizerHighGain, EqualizerMiddleFrequency }
        << QList<int> { 90, 100, 40, 250, 20, 90 } << int(Graph::TargetNone) << 1.0;
    QTest::newRow("a band off and on again, dpr 2")
        << QByteArrayList { EqualizerLowGain, EqualizerLowOn, EqualizerMiddleGain, EqualizerLowOn }
        << QList<int> { 300, 0, 60, 1 } << int(Graph::TargetNone) << 2.0;
    // clang-format off
    QTest::newRow("then a band emphasised") << QByteArrayList { EqualizerLowGain } << QList<int> { 60 } << int(Graph::TargetLow) << 1.0;
    // clang-format on
}

void TestEqualizerGraph::changedBandsMatchAFreshGraph()
{
    QFETCH(QByteArrayList, keys);
    QFETCH(QList<int>, values);
    QFETCH(int, editTarget);
    QFETCH(double, ratio);
    // One graph follows the changes one repaint at a time, as during a drag...
    Fixture changed;
    changed.render(ratio);
    for (int i = 0; i < keys.size(); ++i) {
        changed.memory.setValueByKey(keys[i].constData(), values[i]);
        changed.render(ratio);
    }
    // Once more with nothing changed, which keeps the curves as a layer.
    changed.render(ratio);
    changed.graph.setEditTarget(Graph::EditTarget(editTarget));
    // ...and must show what a graph that starts from the final state shows.
    Fixture fresh;
    for (int i = 0; i < keys.size(); ++i)
        fresh.memory.setValueByKey(keys[i].constData(), values[i]);
    fresh.graph.setEditTarget(Graph::EditTarget(editTarget));
    const QImage expected = fresh.render(ratio);
    QCOMPARE(changed.render(ratio), expected);
    // A repaint with nothing changed comes from the layer and looks the same.
    QCOMPARE(changed.render(ratio), expected);
}

QTEST_MAIN(TestEqualizerGraph)
#include "tst_equalizergraph.moc"
