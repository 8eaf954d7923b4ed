// What only a real window shows: pointer and keys coming through the X
// server to the editor inside the reference host, at every scale. What the
// values mean is checked in process, by the editor's and controls' tests.
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <cstdio>

#include "Interfaces/ChannelStripKeys.h"
#include "PixelChecks.h"
#include "X11HostSession.h"

namespace Keys = ChannelStripKeys;

namespace {

#define VERIFY_SESSION(session, action) QVERIFY2((session).action, qPrintable((session).errorString()))

// Where the controls sit in the editor's form, in design units.
const QRectF MiddleGainKnob(714, 318, 36, 36);
const QRectF SpectrumSwitch(868, 68, 17, 17);
const QRectF EqualizerPlotLowerHalf(470, 180, 400, 75); // below the 0 dB line, clear of the handles
// The morphing list slides over the equaliser: its outline, first row and OK button.
const QRectF MorphingListTopEdge(408, 40, 505, 1);
const QRectF MorphingListBottomLeft(408, 571, 1, 1);
const QRectF MorphingListFirstRow(420, 74, 451, 27);
const QRectF MorphingListOk(797, 530, 104, 28);

const QColor SelectedRowColor(242, 242, 242);
const QColor ListOutlineColor(128, 128, 128);

// Points on a circle round `centre`, from `fromDegrees` to `toDegrees` in
// screen angles (0 is three o'clock, 90 six o'clock: growing clockwise).
QList<QPoint> arc(const QPoint &centre, double radius, double fromDegrees, double toDegrees)
{
    QList<QPoint> points;
    const int steps = int(std::ceil(std::abs(toDegrees - fromDegrees) / 10.0));
    for (int step = 0; step <= steps; ++step) {
        const double angle = (fromDegrees + (toDegrees - fromDegrees) * step / steps) * M_PI / 180.0;
        points << centre
                + QPoint(
                    int(std::lround(radius * std::cos(angle))), int(std::lround(radius * std::sin(angle))));
    }
    return points;
}

} // namespace

class TestRealWindow : public QObject
{
    Q_OBJECT

private slots:
    void knobFollowsThePointer_data();
    void knobFollowsThePointer();
    void spectrumSwitchShowsTheSignal();
    void tabAndPointerReachTheEditorInsideTheHost();
};

void TestRealWindow::knobFollowsThePointer_data()
{
    QTest::addColumn<double>("editorScale");
    QTest::addColumn<double>("qtScaleFactor");
    QTest::newRow("scale 1") << 1.0 << 1.0;
    QTest::newRow("scale 2") << 2.0 << 1.0;
    QTest::newRow("Qt scale factor 2") << 1.0 << 2.0;
}

void TestRealWindow::knobFollowsThePointer()
{
    QFETCH(double, editorScale);
    QFETCH(double, qtScaleFactor);
    X11HostSession host;
    VERIFY_SESSION(host, start({ editorScale, qtScaleFactor, {}, {} }));
    const QString key = QLatin1String(Keys::EqualizerMiddleGain);
    const QRect knob = host.toScreen(MiddleGainKnob);
    const double radius = knob.width() * 0.4;
    const QImage before = host.grab(knob);
    // The host's text of a gain is its value in dB.
    const auto gainAbove
        = [&](double dB) { return [dB](const QString &text) { return text.toDouble() > dB; }; };

    // Pressing at twelve o'clock sets the middle of the range; turning
    // clockwise raises the gain, anticlockwise lowers it.
    VERIFY_SESSION(host, drag(arc(knob.center(), radius, 270, 400)));
    VERIFY_SESSION(host, waitForParameter(key, gainAbove(10.0), "the gain to rise above +10 dB"));
    QVERIFY2(largestDifference(host.grab(knob), before) > 64, "the knob does not show its new value");
    VERIFY_SESSION(host, drag(arc(knob.center(), radius, 270, 140)));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [](const QString &text) { return text.toDouble() < -10.0; },
            "the gain to fall below -10 dB"));

    // The wheel steps up and back down by as many notches.
    const QString dragged = host.parameters().value(key);
    VERIFY_SESSION(host, wheel(knob.center(), 3));
    VERIFY_SESSION(host, waitForParameter(key, gainAbove(dragged.toDouble()), "the wheel to raise the gain"));
    VERIFY_SESSION(host, wheel(knob.center(), -3));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return text == dragged; }, "the wheel to lower it back"));
    VERIFY_SESSION(host, quit());
}

void TestRealWindow::spectrumSwitchShowsTheSignal()
{
    X11HostSession host;
    VERIFY_SESSION(host, start({ 1.0, 1.0, { QStringLiteral("--signal"), QStringLiteral("pink") }, {} }));
    const QRect plot = host.toScreen(EqualizerPlotLowerHalf);
    const QImage without = host.grab(plot);

    // Pink noise at -18 dBFS fills the lower half of the plot.
    VERIFY_SESSION(host, click(host.toScreen(SpectrumSwitch).center()));
    VERIFY_SESSION(host,
        waitUntil([&] { return meanLuminance(host.grab(plot)) > meanLuminance(without) + 10.0; },
            "the spectrum to fill the plot"));
    VERIFY_SESSION(host, click(host.toScreen(SpectrumSwitch).center()));
    VERIFY_SESSION(host,
        waitUntil(
            [&] { return largestDifference(host.grab(plot), without) <= 2; }, "the plot to look as before"));
}

// The window starts with the focus on the editor's first control, the maker
// logo; Tab stays inside the editor and follows its reading order. In the
// morphing list it opens, the pointer picks the set.
void TestRealWindow::tabAndPointerReachTheEditorInsideTheHost()
{
    QTemporaryDir morphFolder; // holding one set, "Glue": the list's first row
    X11HostSession::Options options;
    options.environment.insert(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"), morphFolder.path());
    QVERIFY(QFile::copy(
        QStringLiteral(ORV_MORPH_PRESET_DIR "/Mix Bus/Glue.ord"), morphFolder.filePath("Glue.ord")));
    X11HostSession host;
    VERIFY_SESSION(host, start(options));

    // The converter button, the compressor switch, then the attack knob.
    VERIFY_SESSION(host, key("Tab Tab Tab Up Up"));
    VERIFY_SESSION(host,
        waitForParameter(
            QLatin1String(Keys::CompressorAttack), [](const QString &text) { return text == "12"; },
            "the attack knob to step up twice"));
    // 31 stops on to the morph preset button, with the side chain off. The
    // list grows upwards from the bottom; its grey outline reaches the top of
    // the equaliser only when it is fully open.
    VERIFY_SESSION(host, key(QStringList(31, QStringLiteral("Tab")).join(' ') + QStringLiteral(" Return")));
    const QRect listTop = host.toScreen(MorphingListTopEdge);
    VERIFY_SESSION(host,
        waitUntil([&] { return isFilledWith(host.grab(listTop), ListOutlineColor); },
            "the morphing list to slide in"));
    const QRect firstRow = host.toScreen(MorphingListFirstRow);
    const QRect rowPixel(firstRow.topLeft() + QPoint(firstRow.width() / 2, 2), QSize(1, 1));
    VERIFY_SESSION(host, click(firstRow.center()));
    VERIFY_SESSION(host,
        waitUntil([&] { return host.grab(rowPixel).pixelColor(0, 0) == SelectedRowColor; },
            "the first row to show selected"));
    VERIFY_SESSION(host, click(host.toScreen(MorphingListOk).center()));
    VERIFY_SESSION(host,
        waitForParameter(
            QLatin1String(Keys::MorphSystemName), [](const QString &text) { return text == "Glue"; },
            "the set chosen"));
    // The list slides away: its outline's bottom left corner goes last.
    const QRect listCorner = host.toScreen(MorphingListBottomLeft);
    VERIFY_SESSION(host,
        waitUntil([&] { return !isFilledWith(host.grab(listCorner), ListOutlineColor); },
            "the morphing list to close"));
}

int main(int argc, char *argv[])
{
    QString why;
    if (!X11HostSession::startServer(&why)) {
        std::printf("FAIL: no X server for the real-window tests: %s\n", why.toLocal8Bit().constData());
        return 1;
    }
    // This program reads the screen as a client of that server, at its own pixels.
    qputenv("QT_QPA_PLATFORM", "xcb");
    for (const char *name : { "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_ENABLE_HIGHDPI_SCALING" })
        qunsetenv(name);
    QGuiApplication app(argc, argv);
    TestRealWindow test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_realwindow.moc"
