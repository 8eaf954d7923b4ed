#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "Common/Widgets/SvgLabel.h"

using namespace CommonController_MemAPI;

// Which artwork a label shows; its look on the panels is in the golden pictures.
class TestSvgLabel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void artwork_data();
    void artwork();

private:
    QTemporaryDir m_dir;
    QString m_red;
    QString m_blue;
};

void TestSvgLabel::initTestCase()
{
    const auto write = [this](const char *name, const char *colour) {
        QFile file(m_dir.filePath(QLatin1String(name)));
        file.open(QIODevice::WriteOnly);
        file.write(QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"20\">"
                              "<rect width=\"20\" height=\"20\" fill=\"")
            + colour + "\"/></svg>");
        return file.fileName();
    };
    m_red = write("red.svg", "#ff0000");
    m_blue = write("blue.svg", "#0000ff");
}

void TestSvgLabel::artwork_data()
{
    QTest::addColumn<bool>("normal");
    QTest::addColumn<bool>("disabledArt");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("normal") << true << true << true << 1.0 << QColor(Qt::red);
    QTest::newRow("disabled shows its own") << true << true << false << 1.0 << QColor(Qt::blue);
    QTest::newRow("disabled without own shows normal") << true << false << false << 1.0 << QColor(Qt::red);
    QTest::newRow("only disabled, enabled") << false << true << true << 1.0 << QColor(Qt::black);
    QTest::newRow("opacity 0") << true << true << true << 0.0 << QColor(Qt::black);
}

void TestSvgLabel::artwork()
{
    QFETCH(bool, normal);
    QFETCH(bool, disabledArt);
    QFETCH(bool, enabled);
    QFETCH(double, opacity);
    QFETCH(QColor, expected);
    SvgLabel label;
    label.resize(60, 30);
    QPalette palette = label.palette();
    palette.setColor(QPalette::Window, Qt::black);
    label.setPalette(palette);
    label.setSvg(normal ? m_red : QString());
    label.setDisableSvg(disabledArt ? m_blue : QString());
    label.setOpacity(opacity);
    label.setEnabled(enabled);
    QCOMPARE(label.grab().toImage().pixelColor(2, 2), expected);
}

QTEST_MAIN(TestSvgLabel)
#include "tst_svglabel.moc"
