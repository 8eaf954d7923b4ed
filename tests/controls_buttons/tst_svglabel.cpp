#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "Common/Widgets/SvgLabel.h"

using namespace CommonController_MemAPI;

namespace {

class CountingLabel : public SvgLabel
{
public:
    using SvgLabel::SvgLabel;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        SvgLabel::paintEvent(event);
    }
};

QString writeSvg(const QTemporaryDir &dir, const QString &name, const QString &colour)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"20\" "
                              "viewBox=\"0 0 20 20\"><rect width=\"20\" height=\"20\" fill=\"%1\"/></svg>")
                   .arg(colour)
                   .toUtf8());
    return path;
}

} // namespace

class TestSvgLabel : public QObject
{
    Q_OBJECT

private slots:
    void svgLabelLoadsOnce();
    void svgLabelArtwork_data();
    void svgLabelArtwork();
};

void TestSvgLabel::svgLabelLoadsOnce()
{
    QTemporaryDir dir;
    const QString red = writeSvg(dir, QStringLiteral("red.svg"), QStringLiteral("#ff0000"));
    CountingLabel label;
    label.resize(40, 40);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QTRY_VERIFY(label.paints > 0);
    label.paints = 0;
    label.setSvg(red);
    label.setSvg(red);
    QTRY_COMPARE(label.paints, 1);
    QTest::qWait(30);
    QCOMPARE(label.paints, 1);
    label.setOpacity(1.0);
    label.setDisableSvg(QString());
    QTest::qWait(30);
    QCOMPARE(label.paints, 1);
}

void TestSvgLabel::svgLabelArtwork_data()
{
    QTest::addColumn<bool>("normal");
    QTest::addColumn<bool>("disabledArt");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<QString>("expected"); // "red", "blue" or "none"
    QTest::newRow("normal") << true << true << true << 1.0 << "red";
    QTest::newRow("disabled shows its own") << true << true << false << 1.0 << "blue";
    QTest::newRow("disabled without own shows normal") << true << false << false << 1.0 << "red";
    QTest::newRow("only disabled, enabled") << false << true << true << 1.0 << "none";
    QTest::newRow("opacity 0") << true << true << true << 0.0 << "none";
}

void TestSvgLabel::svgLabelArtwork()
{
    QFETCH(bool, normal);
    QFETCH(bool, disabledArt);
    QFETCH(bool, enabled);
    QFETCH(double, opacity);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    SvgLabel label;
    label.resize(60, 30);
    QPalette palette = label.palette();
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    label.setPalette(palette);
    if (normal)
        label.setSvg(writeSvg(dir, QStringLiteral("red.svg"), QStringLiteral("#ff0000")));
    if (disabledArt)
        label.setDisableSvg(writeSvg(dir, QStringLiteral("blue.svg"), QStringLiteral("#0000ff")));
    label.setOpacity(opacity);
    label.setEnabled(enabled);

    const QImage image = label.grab().toImage();
    const QColor corner = image.pixelColor(2, 2);
    if (expected == QLatin1String("red"))
        QCOMPARE(corner, QColor(Qt::red));
    else if (expected == QLatin1String("blue"))
        QCOMPARE(corner, QColor(Qt::blue));
    else
        QVERIFY2(corner.red() < 40 && corner.blue() < 40, qPrintable(corner.name()));

    // The label's own text is not faded with the artwork.
    label.setEnabled(true);
    QFont font = label.font();
    font.setPixelSize(24);
    label.setFont(font);
    label.setText(QStringLiteral("WWW"));
    const QImage withText = label.grab().toImage();
    int light = 0;
    for (int y = 0; y < withText.height(); ++y)
        for (int x = 0; x < withText.width(); ++x)
            light += qGray(withText.pixel(x, y)) > 200 ? 1 : 0;
    QVERIFY2(light > 50, qPrintable(QString::number(light)));
}

QTEST_MAIN(TestSvgLabel)
#include "tst_svglabel.moc"
