#include <QPainter>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "HostModel.h"
#include "Interfaces/ChannelStripValueTables.h"
#include "MinimalEditor.h"
#include "ORVChStrip/EqualizerGraphCurves.h"
#include "ORVChStrip/EqualizerGraphGeometry.h"
#include "ORVChStrip/ORVChStripEqualizerGraph.h"
#include "ORVChStrip/PolylineSimplify.h"
#include "ParameterMemory.h"

using Graph = ORVChStripEqualizerGraph;

namespace {

// The plot as designed: unit = height / design height, margin 5.5 units,
// +-24 dB over the plot height, 20 Hz to 20 kHz over its width.
struct Plot
{
    double w, h, u;
    Plot(double width, double height, double designHeight = 191.0)
        : w(width)
        , h(height)
        , u(height / designHeight)
    { }
    double m() const { return 5.5 * u; }
    double pw() const { return w - 11.0 * u; }
    double hh() const { return (h - 11.0 * u) / 2.0; }
    double x(double f) const { return m() + pw() * std::log10(f / 20.0) / 3.0; }
    double y(double dB) const { return m() + hh() * (1.0 - dB / 24.0); }
};

int nearestFrequencyStep(double f)
{
    int best = 0;
    for (int i = 1; i < ChannelStripTables::FreqCount; ++i) {
        if (std::abs(ChannelStripTables::FreqTable[i] - f)
            < std::abs(ChannelStripTables::FreqTable[best] - f))
            best = i;
    }
    return best;
}

struct Fixture
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory { &model };
    MinimalEditor editor;
    Graph graph { nullptr, &editor };

    explicit Fixture(QSize size = QSize(437, 191))
    {
        editor.setModelInfo(&model);
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
};

void sendWheel(QWidget *widget, const QPoint &pos, const QPoint &angle, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(QPointF(pos), QPointF(widget->mapToGlobal(pos)), QPoint(), angle, Qt::NoButton,
        modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
    QVERIFY(event.isAccepted());
}

} // namespace

class TestEqualizerGraph : public QObject
{
    Q_OBJECT

private slots:
    void beforeAnyMemory();
    void simplifiedCurvesStayClose();
    void totalCurveSpansThePlot_data();
    void totalCurveSpansThePlot();
    void registrationAndUpdates();
    void handleGeometry_data();
    void handleGeometry();
    void hitPriority_data();
    void hitPriority();
    void dragWritesFrequencyAndGain();
    void dragClamps_data();
    void dragClamps();
    void qualityDragWithAlt();
    void wheelSteps_data();
    void wheelSteps();
    void hoverCursorAndLeave();
    void pixels_data();
    void pixels();
};

void TestEqualizerGraph::beforeAnyMemory()
{
    MinimalEditor editor;
    Graph graph(nullptr, &editor);
    QCOMPARE(graph.fs(), 44100);
    QCOMPARE(graph.bandFrequency(Graph::TargetHigh), 1.0);
    for (auto band : { Graph::TargetLow, Graph::TargetMiddle, Graph::TargetHigh })
        QCOMPARE(graph.filter(band).power(1000, 44100), -100.0);

    graph.setFs(32000);
    QCOMPARE(graph.filter(Graph::TargetLow).power(1000, 32000), 0.0);
    // A 16 kHz shelf is beyond the guard at 32 kHz: drawn flat.
    graph.setMemAPI(nullptr);
    graph.Update(0, 0, 0, nullptr);
}

void TestEqualizerGraph::simplifiedCurvesStayClose()
{
    QPolygonF line;
    QPolygonF wave;
    for (int i = 0; i <= 400; ++i) {
        line.append(QPointF(i, 0.5 * i));
        wave.append(QPointF(i, 40.0 * std::sin(i / 30.0)));
    }
    QCOMPARE(simplifiedPolyline(line, 0.1), QPolygonF({ line.first(), line.last() }));

    const QPolygonF thin = simplifiedPolyline(wave, 0.1);
    QVERIFY(thin.size() < wave.size() / 2);
    QCOMPARE(thin.first(), wave.first());
    QCOMPARE(thin.last(), wave.last());
    // Every dropped point lies within the tolerance of the kept segment spanning it.
    int segment = 0;
    for (const QPointF &p : wave) {
        while (thin[segment + 1].x() < p.x())
            ++segment;
        const QPointF a = thin[segment];
        const QPointF d = thin[segment + 1] - a;
        const QPointF v = p - a;
        QVERIFY(std::abs(d.x() * v.y() - d.y() * v.x()) / std::hypot(d.x(), d.y()) <= 0.1);
    }
}

void TestEqualizerGraph::totalCurveSpansThePlot_data()
{
    QTest::addColumn<double>("lowGain");
    QTest::addColumn<double>("devicePixelRatio");
    QTest::newRow("flat start") << 0.0 << 1.0;
    QTest::newRow("flat start, ratio 2") << 0.0 << 2.0;
    QTest::newRow("shelved start") << -6.0 << 1.0;
}

void TestEqualizerGraph::totalCurveSpansThePlot()
{
    QFETCH(double, lowGain);
    QFETCH(double, devicePixelRatio);
    FILTER2PEQ low;
    FILTER2PEQ middle;
    low.initializeFilterProc(48000);
    middle.initializeFilterProc(48000);
    low.setCoefLowShelf_C(48000, 100, lowGain, 0.32, 18.0);
    middle.setCoefPEQ_C(48000, 1000, 9.0, 4.0, 0.7, 18.0); // narrow: flat far from 1 kHz
    const EqualizerGraphGeometry geometry(900, 382);
    EqualizerGraphCurves curves;
    curves.compute(
        geometry, 48000, { { { &low, true }, { &middle, true }, { nullptr, false } } }, devicePixelRatio);

    // Between its two anchors on the 0 dB line, the total runs from the
    // plot's left edge to its right edge, however flat its ends are.
    const QPolygonF &total = curves.totalPoints();
    QVERIFY(total.size() > 4);
    QCOMPARE(total.first().y(), geometry.zeroDbY());
    QCOMPARE(total.last().y(), geometry.zeroDbY());
    QVERIFY(total.at(1).x() <= geometry.margin());
    QVERIFY(total.at(total.size() - 2).x() >= geometry.margin() + geometry.plotWidth());
    QCOMPARE(total.at(1).y(),
        geometry.yForGain(low.power(geometry.frequencyAtOffset(total.at(1).x() - geometry.margin()), 48000)
            + middle.power(geometry.frequencyAtOffset(total.at(1).x() - geometry.margin()), 48000)));
}

void TestEqualizerGraph::registrationAndUpdates()
{
    const auto fixture = std::make_unique<Fixture>();
    Graph &graph = fixture->graph;
    ParameterMemory &memory = fixture->memory;
    QCOMPARE(memory.totalObserverCount(), 10);
    QCOMPARE(graph.bandFrequency(Graph::TargetLow), 100.0);
    QCOMPARE(graph.bandFrequency(Graph::TargetMiddle), 1000.0);
    QCOMPARE(graph.bandFrequency(Graph::TargetHigh), 10000.0);
    QCOMPARE(graph.middleQ(), 1.0);

    memory.setValueByKey("fx_eq_midgain", 300);
    QVERIFY(std::abs(graph.bandGain(Graph::TargetMiddle) - 12.0) < 1e-9);
    QVERIFY(std::abs(graph.filter(Graph::TargetMiddle).power(1000, 44100) - 12.0) < 1e-6);
    memory.setValueByKey("fx_eq_midgain", 330, 1);
    QVERIFY(std::abs(graph.bandGain(Graph::TargetMiddle) - 12.0) < 1e-9);

    // Out-of-range values fall back to each parameter's default.
    const HostModel &model = fixture->model;
    graph.Update(model.parameterId("fx_eq_hsvfrq"), 0, 125, "");
    graph.Update(model.parameterId("fx_eq_midqual"), 0, -1, "");
    graph.Update(model.parameterId("fx_eq_lsvgain"), 0, 361, "");
    QCOMPARE(graph.bandFrequency(Graph::TargetHigh), 10000.0);
    QCOMPARE(graph.middleQ(), 1.0);
    QCOMPARE(graph.bandGain(Graph::TargetLow), 0.0);

    // A new rate recomputes every band: the 16 kHz shelf is then flat.
    memory.setValueByKey("fx_eq_hsvfrq", 120);
    memory.setValueByKey("fx_eq_hsvgain", 300);
    QVERIFY(graph.filter(Graph::TargetHigh).power(15000, 44100) > 5.0);
    graph.setFs(32000);
    QCOMPARE(graph.filter(Graph::TargetHigh).power(15000, 32000), 0.0);

    graph.setCh(1);
    QCOMPARE(memory.observerCount(model.parameterId("fx_eq_midgain"), 0), 0);
    QCOMPARE(memory.observerCount(model.parameterId("fx_eq_midgain"), 1), 1);
    QVERIFY(std::abs(graph.bandGain(Graph::TargetMiddle) - 15.0) < 1e-9);

    // A second graph on the same memory leaves no observer behind.
    auto second = std::make_unique<Graph>(nullptr, &fixture->editor);
    second->setMemAPI(&memory);
    QCOMPARE(memory.totalObserverCount(), 20);
    second.reset();
    QCOMPARE(memory.totalObserverCount(), 10);
}

void TestEqualizerGraph::handleGeometry_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("design") << QSize(437, 191);
    QTest::newRow("scale 2") << QSize(874, 382);
    QTest::newRow("bench size") << QSize(450, 191);
}

void TestEqualizerGraph::handleGeometry()
{
    QFETCH(QSize, size);
    Fixture fixture(size);
    fixture.memory.setValueByKey("fx_eq_midgain", 360); // +18 dB at 1 kHz
    const Plot plot(size.width(), size.height());
    const QPointF centre = fixture.graph.getTargetPoint(Graph::TargetMiddle);
    QVERIFY(std::abs(centre.x() - plot.x(1000)) < 1e-9);
    // Three eighths of the plot height above the centre line.
    QVERIFY(std::abs((plot.m() + plot.hh() - centre.y()) - 0.375 * 2 * plot.hh()) < 1e-9);
    QCOMPARE(fixture.graph.getTargetPoint(Graph::TargetNone), QPointF(0, 0));
}

void TestEqualizerGraph::hitPriority_data()
{
    QTest::addColumn<QByteArray>("offKey");
    QTest::addColumn<int>("expected");
    QTest::newRow("all on: high wins") << QByteArray() << int(Graph::TargetHigh);
    QTest::newRow("high off: middle wins") << QByteArray("fx_eq_hsv_onf") << int(Graph::TargetMiddle);
    QTest::newRow("middle off: high") << QByteArray("fx_eq_mid_onf") << int(Graph::TargetHigh);
}

void TestEqualizerGraph::hitPriority()
{
    QFETCH(QByteArray, offKey);
    QFETCH(int, expected);
    Fixture fixture;
    // All three handles on one point: 600 Hz, 0 dB.
    for (const char *key : { "fx_eq_lsvfreq", "fx_eq_midfrq", "fx_eq_hsvfrq" })
        fixture.memory.setValueByKey(key, 63);
    if (!offKey.isEmpty())
        fixture.memory.setValueByKey(offKey.constData(), 0);
    const QPointF centre = fixture.graph.getTargetPoint(Graph::TargetLow);
    QCOMPARE(int(fixture.graph.getPointTarget((centre + QPointF(7, 0)).toPoint())), expected);
    QCOMPARE(fixture.graph.getPointTarget((centre + QPointF(0, 9)).toPoint()), Graph::TargetNone);
}

void TestEqualizerGraph::dragWritesFrequencyAndGain()
{
    Fixture fixture;
    QVERIFY(fixture.show());
    const QPointF centre = fixture.graph.getTargetPoint(Graph::TargetMiddle);
    const QPoint press = centre.toPoint();
    const QPoint to = press + QPoint(40, -30);
    QTest::mousePress(&fixture.graph, Qt::LeftButton, {}, press);
    QVERIFY(fixture.graph.isDragging());
    QCOMPARE(fixture.graph.cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseMove(&fixture.graph, to);

    // The drag maps with the unit height / 181.
    const Plot drag(437, 191, 181.0);
    const QPointF grab = QPointF(press) - centre;
    const double f = 20.0 * std::pow(10.0, 3.0 * (to.x() - grab.x() - drag.m()) / drag.pw());
    const double gain = (drag.hh() + drag.m() - to.y() + grab.y()) / drag.hh() * 24.0;
    QCOMPARE(fixture.value("fx_eq_midfrq"), nearestFrequencyStep(f));
    QCOMPARE(fixture.value("fx_eq_midgain"), qRound((gain + 18.0) * 10.0));
    QCOMPARE(fixture.value("fx_eq_midqual"), 12);

    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, to);
    QVERIFY(!fixture.graph.isDragging());
}

void TestEqualizerGraph::dragClamps_data()
{
    QTest::addColumn<int>("band");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QByteArray>("frequencyKey");
    QTest::addColumn<int>("frequencyStep");
    QTest::addColumn<QByteArray>("gainKey");
    QTest::addColumn<int>("gainStep");
    QTest::newRow("low far right stops at 1 kHz")
        << int(Graph::TargetLow) << QPoint(430, -50) << QByteArray("fx_eq_lsvfreq") << 72
        << QByteArray("fx_eq_lsvgain") << 360;
    QTest::newRow("high far left stops at 500 Hz")
        << int(Graph::TargetHigh) << QPoint(0, 300) << QByteArray("fx_eq_hsvfrq") << 60
        << QByteArray("fx_eq_hsvgain") << 0;
    QTest::newRow("middle reaches 20 Hz")
        << int(Graph::TargetMiddle) << QPoint(-100, 96) << QByteArray("fx_eq_midfrq") << 4
        << QByteArray("fx_eq_midgain") << 180;
    QTest::newRow("high reaches 20 kHz")
        << int(Graph::TargetHigh) << QPoint(600, 96) << QByteArray("fx_eq_hsvfrq") << 124
        << QByteArray("fx_eq_hsvgain") << 180;
}

void TestEqualizerGraph::dragClamps()
{
    QFETCH(int, band);
    QFETCH(QPoint, to);
    QFETCH(QByteArray, frequencyKey);
    QFETCH(int, frequencyStep);
    QFETCH(QByteArray, gainKey);
    QFETCH(int, gainStep);
    Fixture fixture;
    QVERIFY(fixture.show());
    const QPoint press = fixture.handle(Graph::EditTarget(band));
    QTest::mousePress(&fixture.graph, Qt::LeftButton, {}, press);
    // Pass the ends of the range on the way, so a later write must hold there.
    QTest::mouseMove(&fixture.graph, to);
    QTest::mouseMove(&fixture.graph, to + (to - press));
    QCOMPARE(fixture.value(frequencyKey.constData()), frequencyStep);
    QCOMPARE(fixture.value(gainKey.constData()), gainStep);
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, to);
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
    QCOMPARE(fixture.value("fx_eq_midqual"), 21);
    QTest::mouseMove(&fixture.graph, press + QPoint(25, -7));
    QCOMPARE(fixture.value("fx_eq_midqual"), 18);
    for (const ParameterMemory::Write &write : fixture.memory.writes())
        QCOMPARE(write.prmId, fixture.model.parameterId("fx_eq_midqual"));
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, press);

    // Alt on the low band drags as usual.
    const QPoint low = fixture.handle(Graph::TargetLow);
    QTest::mousePress(&fixture.graph, Qt::LeftButton, Qt::AltModifier, low);
    QTest::mouseMove(&fixture.graph, low + QPoint(0, -10));
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, low + QPoint(0, -10));
    QCOMPARE(fixture.value("fx_eq_midqual"), 18);
    QVERIFY(fixture.value("fx_eq_lsvgain") > 180);
}

void TestEqualizerGraph::wheelSteps_data()
{
    QTest::addColumn<QList<QPoint>>("deltas");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<int>("steps");
    QTest::newRow("one notch") << QList<QPoint> { { 0, 120 } } << false << 1;
    QTest::newRow("two half notches") << QList<QPoint> { { 0, 60 }, { 0, 60 } } << false << 1;
    QTest::newRow("down") << QList<QPoint> { { 0, -120 }, { 0, -240 } } << false << -3;
    QTest::newRow("reversal resets") << QList<QPoint> { { 0, 60 }, { 0, -120 } } << false << -1;
    QTest::newRow("reversal drops the remainder")
        << QList<QPoint> { { 0, 100 }, { 0, -30 }, { 0, 50 } } << false << 0;
    QTest::newRow("horizontal when larger") << QList<QPoint> { { -240, 30 } } << false << -2;
    QTest::newRow("shift: one notch is not a step") << QList<QPoint> { { 0, 120 } } << true << 0;
    QTest::newRow("shift: three notches")
        << QList<QPoint> { { 0, 120 }, { 0, 120 }, { 0, 120 } } << true << 1;
    QTest::newRow("shift: seven notches down") << QList<QPoint>(7, QPoint(0, -120)) << true << -2;
}

void TestEqualizerGraph::wheelSteps()
{
    QFETCH(QList<QPoint>, deltas);
    QFETCH(bool, shift);
    QFETCH(int, steps);
    Fixture fixture;
    QVERIFY(fixture.show());
    const QPoint over = fixture.handle(Graph::TargetMiddle);
    for (const QPoint &delta : deltas)
        sendWheel(&fixture.graph, over, delta, shift ? Qt::ShiftModifier : Qt::NoModifier);
    QCOMPARE(fixture.value("fx_eq_midgain"), 180 + steps);
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetMiddle);

    // Away from every handle the wheel writes nothing.
    fixture.memory.clearWrites();
    sendWheel(&fixture.graph, QPoint(20, 20), QPoint(0, 120), Qt::NoModifier);
    QVERIFY(fixture.memory.writes().isEmpty());
}

void TestEqualizerGraph::hoverCursorAndLeave()
{
    Fixture fixture;
    QVERIFY(fixture.show());
    QTest::mouseMove(&fixture.graph, fixture.handle(Graph::TargetLow) + QPoint(3, 3));
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetLow);
    QCOMPARE(fixture.graph.cursor().shape(), Qt::PointingHandCursor);

    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&fixture.graph, &leave);
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetNone);
    QCOMPARE(fixture.graph.cursor().shape(), Qt::ArrowCursor);

    // Pressing on the empty plot grabs nothing.
    QTest::mousePress(&fixture.graph, Qt::LeftButton, {}, QPoint(20, 20));
    QVERIFY(!fixture.graph.isDragging());
    QTest::mouseRelease(&fixture.graph, Qt::LeftButton, {}, QPoint(20, 20));

    // A disabled graph neither hovers nor drags.
    QTest::mouseMove(&fixture.graph, fixture.handle(Graph::TargetMiddle));
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetMiddle);
    fixture.graph.setEnabled(false);
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetNone);
    QCOMPARE(fixture.graph.cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(&fixture.graph, fixture.handle(Graph::TargetMiddle) + QPoint(1, 0));
    QCOMPARE(fixture.graph.hoverTarget(), Graph::TargetNone);
    QTest::mousePress(&fixture.graph, Qt::LeftButton, {}, fixture.handle(Graph::TargetMiddle));
    QVERIFY(!fixture.graph.isDragging());
}

void TestEqualizerGraph::pixels_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("state");
    QTest::addColumn<QColor>("handle");
    const QColor normal(146, 70, 211);
    const QColor highlight(239, 101, 255);
    const QColor disabled(74, 44, 120);
    QTest::newRow("normal") << 1.0 << 1.0 << 0 << normal;
    QTest::newRow("edit target") << 1.0 << 1.0 << 1 << highlight;
    QTest::newRow("disabled") << 1.0 << 1.0 << 2 << disabled;
    QTest::newRow("normal, dpr 2") << 1.0 << 2.0 << 0 << normal;
    QTest::newRow("edit target, scale 2") << 2.0 << 1.0 << 1 << highlight;
    QTest::newRow("normal, scale 1.5") << 1.5 << 1.0 << 0 << normal;
}

void TestEqualizerGraph::pixels()
{
    QFETCH(double, scale);
    QFETCH(double, ratio);
    QFETCH(int, state);
    QFETCH(QColor, handle);
    Fixture fixture(QSize(437, 191) * scale);
    fixture.memory.setValueByKey("fx_eq_midgain", 300); // +12 dB at 1 kHz
    if (state == 1)
        fixture.graph.setEditTarget(Graph::TargetMiddle);
    fixture.graph.setEnabled(state != 2);

    QPixmap pixmap(fixture.graph.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::black);
    fixture.graph.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
    const QImage image = pixmap.toImage();
    const auto at = [&](QPointF p) { return image.pixelColor((p * ratio).toPoint()); };
    const Plot plot(fixture.graph.width(), fixture.graph.height());

    QCOMPARE(at(fixture.graph.getTargetPoint(Graph::TargetMiddle)), handle);
    // Under the curve the total's body tints the black background.
    const QColor body = at(QPointF(plot.x(800), plot.y(4.5)));
    const int expectedBody = state == 2 ? 128 * 40 / 255 : 40;
    QVERIFY2(qAbs(body.red() - expectedBody) <= 2 && qAbs(body.blue() - expectedBody) <= 2,
        qPrintable(body.name()));
    // Above the curve there is only the background.
    QCOMPARE(at(QPointF(plot.x(140), plot.y(4.5))), QColor(Qt::black));

    // A crisp frame: whole device pixels of the frame colour, nothing blended beside them.
    const int y = int(plot.y(-3.0) * ratio);
    int left = 0;
    while (left < image.width() && image.pixelColor(left, y) == QColor(Qt::black))
        ++left;
    const int width = qMax(1, qRound(plot.u * ratio));
    for (int i = 0; i < width; ++i)
        QCOMPARE(image.pixelColor(left + i, y), QColor(74, 76, 82));
    QCOMPARE(image.pixelColor(left + width, y), QColor(Qt::black));

    // A band that is off has no handle.
    fixture.memory.setValueByKey("fx_eq_mid_onf", 0);
    pixmap.fill(Qt::black);
    fixture.graph.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
    QVERIFY(pixmap.toImage().pixelColor((fixture.graph.getTargetPoint(Graph::TargetMiddle) * ratio).toPoint())
        != handle);
}

QTEST_MAIN(TestEqualizerGraph)
#include "tst_equalizergraph.moc"
