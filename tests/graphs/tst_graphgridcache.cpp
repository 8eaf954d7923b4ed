#include <QPainter>
#include <QTest>

#include "ORVChStrip/GraphGridCache.h"

class TestGraphGridCache : public QObject
{
    Q_OBJECT

private slots:
    void paintsOncePerSizeAndRatio_data();
    void paintsOncePerSizeAndRatio();
};

void TestGraphGridCache::paintsOncePerSizeAndRatio_data()
{
    QTest::addColumn<QList<QSize>>("sizes");
    QTest::addColumn<QList<double>>("ratios");
    QTest::addColumn<int>("paints");
    QTest::newRow("new size") << QList<QSize> { { 40, 20 }, { 80, 40 }, { 80, 40 } }
                              << QList<double> { 1.0, 1.0, 1.0 } << 2;
    QTest::newRow("back and forth") << QList<QSize> { { 40, 20 }, { 80, 40 }, { 40, 20 } }
                                    << QList<double> { 1.0, 1.0, 1.0 } << 3;
    QTest::newRow("no ratio reads as 1")
        << QList<QSize> { { 40, 20 }, { 40, 20 } } << QList<double> { 0.0, 1.0 } << 1;
}

void TestGraphGridCache::paintsOncePerSizeAndRatio()
{
    QFETCH(QList<QSize>, sizes);
    QFETCH(QList<double>, ratios);
    QFETCH(int, paints);
    QSize paintedSize;
    GraphGridCache cache([&](QPainter &painter, const QSize &size) {
        paintedSize = size;
        // A one logical pixel square at the top left corner.
        painter.fillRect(QRectF(0, 0, 1, 1), Qt::red);
    });
    for (int i = 0; i < sizes.size(); ++i) {
        const double ratio = ratios[i] > 0.0 ? ratios[i] : 1.0;
        const QPixmap &pixmap = cache.pixmap(sizes[i], ratios[i]);
        QCOMPARE(pixmap.size(), sizes[i] * ratio);
        QCOMPARE(pixmap.devicePixelRatio(), ratio);
        QCOMPARE(paintedSize, sizes[i]);
        // Drawn at the ratio: the square covers ratio x ratio device pixels,
        // the rest stays transparent.
        const QImage image = pixmap.toImage();
        QCOMPARE(image.pixelColor(int(ratio) - 1, int(ratio) - 1), QColor(Qt::red));
        QCOMPARE(image.pixelColor(int(ratio), 0).alpha(), 0);
    }
    QCOMPARE(cache.paintCount(), paints);
}

QTEST_MAIN(TestGraphGridCache)
#include "tst_graphgridcache.moc"
