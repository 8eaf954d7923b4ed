#include <QFont>
#include <QImage>
#include <QPainter>
#include <QTest>

#include "ORVChStrip/MorphingListPainter.h"

using Row = MorphingListPainter::Row;

namespace {

// Rows: a closed folder, a good entry (selected), a good entry, a broken entry.
Row rowAt(int index)
{
    Row row;
    row.name = QStringLiteral("Entry %1 with a name").arg(index);
    row.folder = index == 0;
    row.selected = index == 1;
    row.broken = index == 3;
    return row;
}

// The brightest text pixel of a row (its red channel) on the dark background.
int brightestIn(const QImage &image, const QRect &logical)
{
    const qreal dpr = image.devicePixelRatio();
    int brightest = 0;
    const QRect device(logical.topLeft() * dpr, logical.size() * dpr);
    for (int y = device.top(); y <= device.bottom(); ++y) {
        for (int x = device.left(); x <= device.right(); ++x)
            brightest = std::max(brightest, qRed(image.pixel(x, y)));
    }
    return brightest;
}

} // namespace

class TestMorphingListPainter : public QObject
{
    Q_OBJECT

private slots:
    void rowsAtScaleAndRatio_data();
    void rowsAtScaleAndRatio();
    void hitTesting();
    void scrollThumbFollowsValue();
};

void TestMorphingListPainter::rowsAtScaleAndRatio_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<qreal>("dpr");
    QTest::newRow("scale 1") << 1.0 << qreal(1);
    QTest::newRow("scale 2") << 2.0 << qreal(1);
    QTest::newRow("scale 1, ratio 2") << 1.0 << qreal(2);
}

void TestMorphingListPainter::rowsAtScaleAndRatio()
{
    QFETCH(double, scale);
    QFETCH(qreal, dpr);
    MorphingListPainter painter;
    painter.setScale(scale);
    const int width = qRound(300 * scale);
    const int pitch = painter.rowPitch();
    QCOMPARE(pitch, qRound(27 * scale) + qRound(2 * scale));
    QCOMPARE(painter.contentHeight(4), 4 * pitch - painter.rowGap());

    QImage image(QSize(width, 4 * pitch) * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    {
        QPainter p(&image);
        painter.paintRows(p, QRect(0, 0, width, 4 * pitch), width, 4, rowAt, QFont(), dpr);
    }
    const auto pixel = [&](int x, int y) { return image.pixel(QPoint(x, y) * dpr); };
    const int right = width - 3;
    QCOMPARE(pixel(right, pitch + pitch / 2), MorphingListPainter::SelectedItemBackgroundColor);
    QCOMPARE(pixel(right, 2 * pitch + pitch / 2), MorphingListPainter::ItemBackgroundColor);
    // The gap between rows is the list's background.
    QCOMPARE(pixel(right, pitch - 1), MorphingListPainter::ItemBackgroundColor);

    // The folder's icon draws at the left of its row.
    const QRect iconArea(qRound(6 * scale), 0, qRound(20 * scale), painter.rowHeight());
    QVERIFY(brightestIn(image, iconArea) > 60);

    // The broken entry's name is drawn clearly fainter than a good one's.
    const QRect good(0, 2 * pitch, width, painter.rowHeight());
    const QRect broken(0, 3 * pitch, width, painter.rowHeight());
    const int goodInk = brightestIn(image, good);
    QVERIFY2(goodInk > 150, qPrintable(QString::number(goodInk)));
    QVERIFY2(
        brightestIn(image, broken) < goodInk * 0.6, qPrintable(QString::number(brightestIn(image, broken))));
}

void TestMorphingListPainter::hitTesting()
{
    MorphingListPainter painter;
    painter.setScale(2.0);
    const int pitch = painter.rowPitch(); // 58
    QCOMPARE(painter.rowAt(QPoint(10, 0), 3), 0);
    QCOMPARE(painter.rowAt(QPoint(10, pitch + 1), 3), 1);
    QCOMPARE(painter.rowAt(QPoint(10, pitch - 1), 3), -1); // in the gap
    QCOMPARE(painter.rowAt(QPoint(10, 3 * pitch + 1), 3), -1);
    QCOMPARE(painter.rowAt(QPoint(10, -1), 3), -1);
    // The icon column moves right with the row's depth.
    QVERIFY(painter.isInFolderIcon(0, QPoint(60, 10)));
    QVERIFY(!painter.isInFolderIcon(0, QPoint(70, 10)));
    QVERIFY(painter.isInFolderIcon(1, QPoint(100, 10)));
}

void TestMorphingListPainter::scrollThumbFollowsValue()
{
    MorphingListPainter painter;
    QImage image(20, 200, QImage::Format_ARGB32_Premultiplied);
    const auto thumbRows = [&](int value) {
        image.fill(Qt::transparent);
        QPainter p(&image);
        painter.paintScrollBar(p, QRectF(image.rect()), { 0, 300, value, 100 });
        p.end();
        QList<int> rows;
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(10, y) == MorphingListPainter::ScrollBarColor)
                rows << y;
        }
        return rows;
    };
    // A quarter of the content is in view: the thumb is a quarter as tall.
    const QList<int> top = thumbRows(0);
    QVERIFY(!top.isEmpty());
    QVERIFY(top.first() <= 1);
    QVERIFY(qAbs(top.size() - 50) <= 2);
    const QList<int> bottom = thumbRows(300);
    QVERIFY(bottom.last() >= 198);
    QVERIFY(qAbs(bottom.size() - 50) <= 2);
}

QTEST_MAIN(TestMorphingListPainter)
#include "tst_morphinglistpainter.moc"
