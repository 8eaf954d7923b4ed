#include <QPainter>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "MinimalEditor.h"
#include "ORVChStrip/CompressorGraphPainter.h"
#include "ORVChStrip/Filter/CompressorCurve.h"
#include "ORVChStrip/ORVChStripCompressorGraph.h"
#include "ParameterMemory.h"

// Textbook quadratic knee of width w around threshold te, for checking the
// curve's knee shapes independently.
static double quadraticKnee(double x, double te, double ratio, double w)
{
    const double slope = 1.0 / ratio - 1.0;
    if (x - te <= -w / 2)
        return x;
    if (x - te >= w / 2)
        return x + slope * (x - te);
    const double d = x - te + w / 2;
    return x + slope * d * d / (2.0 * w);
}

class TestCompressorGraph : public QObject
{
    Q_OBJECT

private slots:
    void effectiveThreshold_data();
    void effectiveThreshold();
    void kneeShapes_data();
    void kneeShapes();
    void identityCases_data();
    void identityCases();
    void outline();
    void observers_data();
    void observers();
    void painterDrawsTheArea_data();
    void painterDrawsTheArea();
    void widgetShowsThePainterImage_data();
    void widgetShowsThePainterImage();
    void readoutFollowsTheOffsets_data();
    void readoutFollowsTheOffsets();
    void readoutStaysClearOfTheCurve_data();
    void readoutStaysClearOfTheCurve();
};

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
        const double slope = 1.0 / ratio - 1.0;
        for (double x = -60.0; x <= 0.0; x += 0.5) {
            const double y = CompressorCurve::outputLevel(x, -30.0, slope, knee);
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

    const QSizeF size(191, 191);
    const QPolygonF points = CompressorGraphPainter::outline(size, 2, { 100, 0, 40, 0 });
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

void TestCompressorGraph::observers_data()
{
    QTest::addColumn<bool>("editorFirst");
    QTest::newRow("editor, then memory") << true;
    // As a form builds it: the memory may arrive before the editor.
    QTest::newRow("memory, then editor") << false;
}

void TestCompressorGraph::observers()
{
    QFETCH(bool, editorFirst);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MinimalEditor editor;
    editor.setModelInfo(&model);
    const unsigned short ratioId = model.parameterId(ChannelStripKeys::CompressorRatio);
    {
        ORVChStripCompressorGraph graph;
        if (editorFirst)
            graph.setEditor(&editor);
        graph.setMemAPI(&memory);
        QCOMPARE(memory.totalObserverCount(), editorFirst ? 5 : 0);
        graph.setEditor(&editor);
        QCOMPARE(memory.totalObserverCount(), 5);
        QCOMPARE(memory.observerCount(ratioId, 0), 1);
        graph.setCh(1);
        QCOMPARE(memory.observerCount(ratioId, 0), 0);
        QCOMPARE(memory.observerCount(ratioId, 1), 1);
        memory.setValueByKey(ChannelStripKeys::CompressorRatio, 80, 1);
        QCOMPARE(graph.currentSettings().ratioIndex, 80);
        graph.setMemAPI(nullptr);
        QCOMPARE(memory.totalObserverCount(), 0);
        QCOMPARE(graph.currentSettings().ratioIndex, CompressorCurve::Settings().ratioIndex);
        graph.setMemAPI(&memory);
    }
    QCOMPARE(memory.totalObserverCount(), 0);
}

void TestCompressorGraph::painterDrawsTheArea_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("ratio");
    QTest::newRow("scale 1") << 1.0 << 1.0;
    QTest::newRow("scale 1, dpr 2") << 1.0 << 2.0;
    QTest::newRow("scale 1.5") << 1.5 << 1.0;
}

void TestCompressorGraph::painterDrawsTheArea()
{
    QFETCH(double, scale);
    QFETCH(double, ratio);
    const QSize size = QSize(191, 191) * scale;
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    const auto paint = [&](bool enabled) {
        image.fill(Qt::black);
        CompressorGraphPainter painter;
        painter.setEnabled(enabled);
        QPainter p(&image);
        // T = 0 dB, no drive: the diagonal.
        painter.paint(p, size, { 100, 0, 40, CompressorCurve::Soft });
    };
    paint(true);
    const auto at = [&](double fx, double fy) {
        return image.pixelColor(int(fx * image.width()), int(fy * image.height()));
    };
    // On the diagonal: the curve's colour; below it the tinted body; above it
    // nothing but the background.
    QCOMPARE(at(0.5, 0.5), QColor(247, 147, 30));
    const QColor body = at(0.8, 0.9);
    QVERIFY(qAbs(body.red() - 247 * 40 / 255) <= 2 && qAbs(body.green() - 147 * 40 / 255) <= 2);
    QCOMPARE(at(0.2, 0.1), QColor(Qt::black));

    // The frame is whole device pixels of the frame colour with nothing
    // blended beside it.
    const int y = int(0.45 * image.height());
    int left = 0;
    while (left < image.width() && image.pixelColor(left, y) == QColor(Qt::black))
        ++left;
    const int expectedWidth = qMax(1, qRound(scale * ratio));
    for (int i = 0; i < expectedWidth; ++i)
        QCOMPARE(image.pixelColor(left + i, y), QColor(74, 76, 82));
    QCOMPARE(image.pixelColor(left + expectedWidth, y), QColor(Qt::black));

    paint(false);
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(128, 128, 128));
}

void TestCompressorGraph::widgetShowsThePainterImage_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("dpr 2") << 2.0 << true;
    QTest::newRow("disabled") << 1.0 << false;
}

void TestCompressorGraph::widgetShowsThePainterImage()
{
    QFETCH(double, ratio);
    QFETCH(bool, enabled);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MinimalEditor editor;
    editor.setModelInfo(&model);
    ORVChStripCompressorGraph graph;
    graph.setEditor(&editor);
    graph.resize(212, 191);
    graph.setMemAPI(&memory);
    graph.setEnabled(enabled);
    memory.setValueByKey(ChannelStripKeys::CompressorRatio, 80);
    memory.setValueByKey(ChannelStripKeys::CompressorDrive, 40);
    memory.setValueByKey(ChannelStripKeys::CompressorKnee, CompressorCurve::Medium);

    QPixmap pixmap(graph.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    const auto picture = [&](const std::function<void()> &draw) {
        pixmap.fill(Qt::black);
        draw();
        return pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const auto render = [&] { graph.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren); };
    // Twice, so that the second repaint comes from the grid cache.
    picture(render);
    const QImage shown = picture(render);
    CompressorGraphPainter painter;
    painter.setEnabled(enabled);
    const QImage wanted = picture([&] {
        QPainter p(&pixmap);
        painter.paint(p, graph.size(), graph.currentSettings());
        painter.paintReadout(p, graph.size(), graph.font(), graph.currentReadout());
    });
    QCOMPARE(graph.currentSettings().ratioIndex, 80);
    // The widget blends a cached curve layer where the painter draws
    // directly: the same picture, within the rounding of one more blend.
    QCOMPARE(shown.size(), wanted.size());
    int worst = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb a = shown.pixel(x, y);
            const QRgb b = wanted.pixel(x, y);
            worst = std::max({ worst, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                std::abs(qBlue(a) - qBlue(b)) });
        }
    }
    QVERIFY2(worst <= 2, qPrintable(QStringLiteral("a channel differs by %1").arg(worst)));
}

void TestCompressorGraph::readoutFollowsTheOffsets_data()
{
    QTest::addColumn<int>("threshold");
    QTest::addColumn<int>("makeUp");
    QTest::addColumn<QString>("readout");
    QTest::newRow("defaults") << 100 << 100 << "Threshold offset 0.0 dB, make-up offset 0.0 dB";
    QTest::newRow("both raised") << 110 << 115 << "Threshold offset +2.0 dB, make-up offset +1.5 dB";
    QTest::newRow("lowest") << 0 << 0 << "Threshold offset -20.0 dB, make-up offset -10.0 dB";
}

void TestCompressorGraph::readoutFollowsTheOffsets()
{
    QFETCH(int, threshold);
    QFETCH(int, makeUp);
    QFETCH(QString, readout);
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    MinimalEditor editor;
    editor.setModelInfo(&model);
    ORVChStripCompressorGraph graph;
    graph.setEditor(&editor);
    QVERIFY(graph.readoutText().isEmpty());
    QVERIFY(graph.toolTipText().isEmpty());
    graph.setMemAPI(&memory);
    memory.setValueByKey(ChannelStripKeys::CompressorThresholdOffset, threshold);
    memory.setValueByKey(ChannelStripKeys::CompressorMakeUpOffset, makeUp);
    memory.setValueByKey(ChannelStripKeys::CompressorDrive, 0);

    QCOMPARE(graph.readoutText(), readout);
    QCOMPARE(graph.property("readout").toString(), readout);
    // The tip adds where the curve bends: no drive leaves it at 0 dB below a 0 dB threshold.
    const QString tip = graph.toolTipText();
    QVERIFY2(tip.contains(graph.currentReadout().thresholdOffset)
            && tip.contains(graph.currentReadout().makeUpOffset)
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
