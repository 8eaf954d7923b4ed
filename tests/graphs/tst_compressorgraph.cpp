#include <QPainter>
#include <QTest>
#include <cmath>
#include <functional>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "MinimalEditor.h"
#include "ORVChStrip/CompressorGraphPainter.h"
#include "ORVChStrip/Filter/CompressorCurve.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ParameterMemory.h"
#include "PixelChecks.h"

using namespace ChannelStripKeys;

namespace {

// Textbook quadratic knee of width w around threshold te, for checking the
// curve's knee shapes independently.
double quadraticKnee(double x, double te, double ratio, double w)
{
    const double slope = 1.0 / ratio - 1.0;
    if (x - te <= -w / 2)
        return x;
    if (x - te >= w / 2)
        return x + slope * (x - te);
    const double d = x - te + w / 2;
    return x + slope * d * d / (2.0 * w);
}

} // namespace

class TestCompressorGraph : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void effectiveThreshold_data();
    void effectiveThreshold();
    void kneeShapes_data();
    void kneeShapes();
    void identityCases_data();
    void identityCases();
    void outline();
    void followsTheChannel();
    void widgetShowsThePainterImage();
    void readoutFollowsTheOffsets_data();
    void readoutFollowsTheOffsets();
    void readoutStaysClearOfTheCurve_data();
    void readoutStaysClearOfTheCurve();

private:
    HostModel m_model = HostModel::channelStrip();
    std::unique_ptr<ParameterMemory> m_memory;
    MinimalEditor m_editor;
};

void TestCompressorGraph::init()
{
    m_memory = std::make_unique<ParameterMemory>(&m_model);
    m_editor.setModelInfo(&m_model);
}

void TestCompressorGraph::effectiveThreshold_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("drive");
    QTest::addColumn<double>("expected");
    QTest::newRow("T 0, no drive") << 100 << 0 << 0.0;
    QTest::newRow("T -20, drive 6.2") << 0 << 31 << -26.2;
    QTest::newRow("T -20, drive 3 blends") << 0 << 15 << 3.0 * (-23.0) / 6.2;
    QTest::newRow("T +10 held at 0") << 150 << 10 << 0.0;
    QTest::newRow("T +10, drive 16") << 150 << 80 << -6.0;
}

void TestCompressorGraph::effectiveThreshold()
{
    QFETCH(int, offset);
    QFETCH(int, drive);
    QFETCH(double, expected);
    const double te = CompressorCurve::effectiveThreshold(
        CompressorCurve::threshold(offset), CompressorCurve::drive(drive));
    QVERIFY2(std::abs(te - expected) < 1e-9, qPrintable(QString::number(te)));
    // Below -54 dB the threshold is held.
    QCOMPARE(CompressorCurve::effectiveThreshold(-40.0, 20.0), -54.0);
}

void TestCompressorGraph::kneeShapes_data()
{
    QTest::addColumn<int>("knee");
    QTest::addColumn<double>("width");
    QTest::newRow("soft, 52 dB") << int(CompressorCurve::Soft) << 52.0;
    QTest::newRow("medium, 20 dB") << int(CompressorCurve::Medium) << 20.0;
    QTest::newRow("hard") << int(CompressorCurve::Hard) << 0.0;
}

void TestCompressorGraph::kneeShapes()
{
    QFETCH(int, knee);
    QFETCH(double, width);
    for (double ratio : { 2.0, 4.0, 20.0 }) {
        for (double x = -60.0; x <= 0.0; x += 0.5) {
            const double y = CompressorCurve::outputLevel(x, -30.0, 1.0 / ratio - 1.0, knee);
            const double expected = width > 0 ? quadraticKnee(x, -30.0, ratio, width)
                                              : (x > -30.0 ? -30.0 + (x + 30.0) / ratio : x);
            QVERIFY2(std::abs(y - expected) < 2e-3, qPrintable(QStringLiteral("%1 dB in: %2").arg(x).arg(y)));
        }
    }
    // An unknown knee gives no gain at all.
    QCOMPARE(CompressorCurve::gainFactor(0.2, -0.5, 3), 0.0);
}

void TestCompressorGraph::identityCases_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("drive");
    QTest::addColumn<int>("ratio");
    QTest::addColumn<int>("knee");
    // T = 0 dB without drive forces the hard knee: nothing below 0 dB moves.
    QTest::newRow("T 0 soft 20:1") << 100 << 0 << 96 << int(CompressorCurve::Soft);
    for (int knee = 0; knee < 3; ++knee)
        QTest::addRow("ratio 1:1 knee %d", knee) << 0 << 60 << 0 << knee;
}

void TestCompressorGraph::identityCases()
{
    QFETCH(int, offset);
    QFETCH(int, drive);
    QFETCH(int, ratio);
    QFETCH(int, knee);
    const CompressorCurve::Settings settings { offset, drive, ratio, knee };
    for (double x = -60.0; x <= 0.0; x += 0.25)
        QVERIFY(std::abs(CompressorCurve::outputLevel(x, settings) - x) < 1e-9);
}

void TestCompressorGraph::outline()
{
    QCOMPARE(CompressorCurve::ratio(121), 0.0);
    const QPolygonF points = CompressorGraphPainter::outline(QSizeF(191, 191), 2, { 100, 0, 40, 0 });
    QVERIFY(points.size() > 600);
    QCOMPARE(points.first(), QPointF(196, 196));
    QCOMPARE(points.last(), QPointF(196, 196));
    // Identity on a square widget up to 0 dB: px + py = W; the curve starts
    // just left of -60 dB and ends just right of 0 dB.
    for (int i = 1; i < points.size() - 1 && points[i].x() <= 191.0; ++i)
        QVERIFY(std::abs(points[i].x() + points[i].y() - 191.0) < 1e-9);
    QVERIFY(points[1].x() < 0.0);
    QVERIFY(points[points.size() - 2].x() > 191.0);
}

// As a form builds it, the memory may arrive before the editor.
void TestCompressorGraph::followsTheChannel()
{
    const unsigned short ratioId = m_model.parameterId(CompressorRatio);
    {
        ORVChStripCompressorGraph graph;
        graph.setMemAPI(m_memory.get());
        QCOMPARE(m_memory->totalObserverCount(), 0);
        graph.setEditor(&m_editor);
        QCOMPARE(m_memory->totalObserverCount(), 5);
        graph.setCh(1);
        QCOMPARE(m_memory->observerCount(ratioId, 0), 0);
        QCOMPARE(m_memory->observerCount(ratioId, 1), 1);
        m_memory->setValueByKey(CompressorRatio, 80, 1);
        QCOMPARE(graph.currentSettings().ratioIndex, 80);
        graph.setMemAPI(nullptr);
        QCOMPARE(m_memory->totalObserverCount(), 0);
        QCOMPARE(graph.currentSettings().ratioIndex, CompressorCurve::Settings().ratioIndex);
        graph.setMemAPI(m_memory.get());
    }
    QCOMPARE(m_memory->totalObserverCount(), 0);
}

// The widget keeps its grid and curve as cached layers; whatever changed
// since, it must show what the painter draws from the current settings.
void TestCompressorGraph::widgetShowsThePainterImage()
{
    ORVChStripCompressorGraph graph;
    graph.setEditor(&m_editor);
    graph.setMemAPI(m_memory.get());
    const auto compare = [&](double ratio) {
        QPixmap pixmap(graph.size() * ratio);
        pixmap.setDevicePixelRatio(ratio);
        const auto picture = [&](const std::function<void(QPaintDevice &)> &draw) {
            pixmap.fill(Qt::black);
            draw(pixmap);
            return pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
        };
        const auto render = [&](QPaintDevice &device) {
            graph.render(&device, QPoint(), QRegion(), QWidget::DrawChildren);
        };
        picture(render); // the second picture comes from the layers
        const QImage shown = picture(render);
        CompressorGraphPainter painter;
        painter.setEnabled(graph.isEnabled());
        const QImage wanted = picture([&](QPaintDevice &device) {
            QPainter p(&device);
            painter.paint(p, graph.size(), graph.currentSettings());
            painter.paintReadout(p, graph.size(), graph.font(), graph.currentReadout());
        });
        // Within the rounding of the one more blend of a cached layer.
        return largestDifference(shown, wanted);
    };
    graph.resize(212, 191);
    QVERIFY(compare(1.0) <= 2);
    m_memory->setValueByKey(CompressorRatio, 80);
    m_memory->setValueByKey(CompressorDrive, 40);
    m_memory->setValueByKey(CompressorKnee, CompressorCurve::Medium);
    QVERIFY(compare(2.0) <= 2);
    graph.resize(300, 240);
    graph.setEnabled(false);
    QVERIFY(compare(2.0) <= 2);
}

void TestCompressorGraph::readoutFollowsTheOffsets_data()
{
    QTest::addColumn<int>("threshold");
    QTest::addColumn<int>("makeUp");
    QTest::addColumn<QString>("readout");
    QTest::newRow("both raised") << 110 << 115 << "Threshold offset +2.0 dB, make-up offset +1.5 dB";
    QTest::newRow("lowest") << 0 << 0 << "Threshold offset -20.0 dB, make-up offset -10.0 dB";
}

void TestCompressorGraph::readoutFollowsTheOffsets()
{
    QFETCH(int, threshold);
    QFETCH(int, makeUp);
    QFETCH(QString, readout);
    ORVChStripCompressorGraph graph;
    graph.setEditor(&m_editor);
    QVERIFY(graph.readoutText().isEmpty());
    graph.setMemAPI(m_memory.get());
    m_memory->setValueByKey(CompressorThresholdOffset, threshold);
    m_memory->setValueByKey(CompressorMakeUpOffset, makeUp);
    m_memory->setValueByKey(CompressorDrive, 0);
    QCOMPARE(graph.property("readout").toString(), readout);
    // The tip adds where the curve bends: no drive leaves it at 0 dB below a 0 dB threshold.
    const QString tip = graph.toolTipText();
    QVERIFY2(tip.contains(graph.currentReadout().makeUpOffset)
            && tip.contains(QLatin1String("Effective threshold 0.0 dB")),
        qPrintable(tip));
}

void TestCompressorGraph::readoutStaysClearOfTheCurve_data()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("scale 1") << 1.0;
    QTest::newRow("scale 1.5") << 1.5;
    QTest::newRow("scale 2") << 2.0;
}

void TestCompressorGraph::readoutStaysClearOfTheCurve()
{
    QFETCH(double, scale);
    const QSize size = QSize(191, 191) * scale;
    QFont font(QStringLiteral("M+ 1c"));
    font.setPixelSize(int(9 * scale));
    // The widest texts the offsets take, over the highest curve there is:
    // a ratio of 1:1 leaves every level as it is.
    const CompressorGraphPainter::Readout readout { QStringLiteral("-20.0 dB"), QStringLiteral("-10.0 dB") };
    const QRectF box = CompressorGraphPainter::readoutBounds(size, font, readout);
    const QPolygonF area
        = CompressorGraphPainter::outline(QSizeF(size), 1, { 200, 0, 0, CompressorCurve::Hard });
    QVERIFY(!area.intersects(QPolygonF(box)));
    QVERIFY(box.right() < size.width() * 2.0 / 3.0 && box.bottom() < size.height() / 3.0);
}

QTEST_MAIN(TestCompressorGraph)
#include "tst_compressorgraph.moc"
