#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <cstdio>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ValueText.h"
#include "X11HostSession.h"

namespace Keys = ChannelStripKeys;

namespace {

#define VERIFY_SESSION(session, action) QVERIFY2((session).action, qPrintable((session).errorString()))

// Where the controls sit in the editor's form, in design units.
const QRectF MiddleGainKnob(714, 318, 36, 36);
const QRectF MiddleFrequencyText(643, 354, 60, 14);
const QRectF MiddleBandSwitch(578, 377, 22, 22);
const QRectF MiddleBandKnobs(596, 318, 154, 36); // the quality, frequency and gain knobs
const QRectF MorphingKnob(408, 431, 128, 128);
const QRectF SpectrumSwitch(868, 68, 17, 17);
const QRectF EqualizerPlotLowerHalf(470, 180, 400, 75); // below the 0 dB line, clear of the handles
const QRectF MorphingPresetButton(569, 479, 292, 33);
// The morphing list slides over the equaliser: its first row and its OK button.
const QRectF MorphingListTopEdge(408, 40, 505, 1);
const QRectF MorphingListBottomLeft(408, 571, 1, 1);
const QRectF MorphingListFirstRow(420, 74, 451, 27);
const QRectF MorphingListOk(797, 530, 104, 28);
const QRectF MakerLogo(11, 7, 93, 23);
const QRectF EmptyTopBar(200, 10, 300, 20);
const QRectF CompressorKnobs(22, 302, 178, 66); // nothing moves here on its own
const QRectF AboutVersionLabel(585, 516, 400, 18);

const QColor SelectedRowColor(242, 242, 242);
const QColor ListOutlineColor(128, 128, 128);

const ParameterDefinition *parameterOf(const QString &key)
{
    static const HostModel model = HostModel::channelStrip();
    return model.parameter(model.parameterId(key.toLatin1().constData()));
}

// The host's integer value for a value text; NaN when it does not read.
double valueOf(const QString &key, const QString &text)
{
    const ParameterDefinition *parameter = parameterOf(key);
    int value = 0;
    return parameter && ValueText::parse(*parameter, text, &value) ? value : std::nan("");
}

// The text the host shows for what it reads from `typed`.
QString textOf(const QString &key, const QString &typed)
{
    const ParameterDefinition *parameter = parameterOf(key);
    int value = 0;
    return parameter && ValueText::parse(*parameter, typed, &value) ? ValueText::format(*parameter, value)
                                                                    : QString();
}

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

bool isFilledWith(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != color.rgb())
                return false;
        }
    }
    return !image.isNull();
}

double meanLuminance(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qGray(image.pixel(x, y));
    }
    return image.isNull() ? 0.0 : sum / (image.width() * image.height());
}

// The largest difference of one colour channel between two pictures of one size.
int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({ largest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                std::abs(qBlue(p) - qBlue(q)) });
        }
    }
    return largest;
}

// The host value texts of the morphing parameters at one point of a morph table.
QMap<QString, QString> morphPointTexts(const QString &tablePath, int point)
{
    QMap<QString, QString> texts;
    QFile file(tablePath);
    if (!file.open(QIODevice::ReadOnly))
        return texts;
    const QJsonObject table = QJsonDocument::fromJson(file.readAll()).object();
    const QJsonArray columns = table.value(QLatin1String("columns")).toArray();
    const QJsonArray values = table.value(QLatin1String("points")).toArray().at(point).toArray();
    const HostModel model = HostModel::channelStrip();
    for (const ParameterDefinition &parameter : model.parameters()) {
        if (parameter.morphColumnKey.isEmpty())
            continue;
        for (int column = 0; column < columns.size(); ++column) {
            if (columns.at(column).toString().toLatin1() == parameter.morphColumnKey)
                texts.insert(QString::fromLatin1(parameter.key),
                    ValueText::format(parameter, values.at(column).toInt()));
        }
    }
    return texts;
}

} // namespace

class TestRealWindow : public QObject
{
    Q_OBJECT

private slots:
    void knobDragWritesItsParameter_data() { addScaleRows(); }
    void knobDragWritesItsParameter();
    void typedValueReachesTheHost_data() { addScaleRows(); }
    void typedValueReachesTheHost();
    void bandSwitchDisablesItsKnobs_data() { addScaleRows(); }
    void bandSwitchDisablesItsKnobs();
    void spectrumSwitchShowsTheSignal();
    void morphKnobSweepsTheChosenSet();
    void aboutPanelFadesInAndOut();
    void keyboardAloneDrivesThePanel();

private:
    static void addScaleRows();
    // The row's scales, for the tests that run at every scale.
    static X11HostSession::Options scaledOptions();
};

void TestRealWindow::addScaleRows()
{
    QTest::addColumn<double>("editorScale");
    QTest::addColumn<double>("qtScaleFactor");
    QTest::newRow("scale 1") << 1.0 << 1.0;
    QTest::newRow("scale 2") << 2.0 << 1.0;
    QTest::newRow("Qt scale factor 2") << 1.0 << 2.0;
}

X11HostSession::Options TestRealWindow::scaledOptions()
{
    QFETCH(double, editorScale);
    QFETCH(double, qtScaleFactor);
    X11HostSession::Options options;
    options.editorScale = editorScale;
    options.qtScaleFactor = qtScaleFactor;
    return options;
}

void TestRealWindow::knobDragWritesItsParameter()
{
    X11HostSession host;
    VERIFY_SESSION(host, start(scaledOptions()));
    const QString key = QLatin1String(Keys::EqualizerMiddleGain);
    const QRect knob = host.toScreen(MiddleGainKnob);
    const double radius = knob.width() * 0.4;
    const QImage before = host.grab(knob);

    // Pressing at twelve o'clock sets the middle of the range; turning
    // clockwise raises the gain, anticlockwise lowers it.
    VERIFY_SESSION(host, drag(arc(knob.center(), radius, 270, 400)));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return valueOf(key, text) > valueOf(key, "+10 dB"); },
            "the gain to rise above +10 dB"));
    QVERIFY2(largestDifference(host.grab(knob), before) > 64, "the knob does not show its new value");

    VERIFY_SESSION(host, drag(arc(knob.center(), radius, 270, 140)));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return valueOf(key, text) < valueOf(key, "-10 dB"); },
            "the gain to fall below -10 dB"));

    // The wheel steps up and back down by as many notches.
    const QString dragged = host.parameters().value(key);
    VERIFY_SESSION(host, wheel(knob.center(), 3));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return valueOf(key, text) > valueOf(key, dragged); },
            "the wheel to raise the gain"));
    VERIFY_SESSION(host, wheel(knob.center(), -3));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return text == dragged; }, "the wheel to lower the gain back"));

    // What the window shows is what the host saves when the window closes.
    const QString shown = host.parameters().value(key);
    VERIFY_SESSION(host, quit());
    QCOMPARE(host.savedParameters().value(key), shown);
    QCOMPARE(host.state().size(), 1664);
}

void TestRealWindow::typedValueReachesTheHost()
{
    X11HostSession host;
    VERIFY_SESSION(host, start(scaledOptions()));
    const QString key = QLatin1String(Keys::EqualizerMiddleFrequency);
    // The host keeps the step of its frequency table nearest to what is typed.
    const QString stored = textOf(key, "1.2k");
    QVERIFY(!stored.isEmpty());
    QVERIFY(host.parameters().value(key) != stored);

    VERIFY_SESSION(host, doubleClick(host.toScreen(MiddleFrequencyText).center()));
    VERIFY_SESSION(host, type("1.2k"));
    VERIFY_SESSION(host, key("Return"));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [&](const QString &text) { return text == stored; }, stored));
}

void TestRealWindow::bandSwitchDisablesItsKnobs()
{
    X11HostSession host;
    VERIFY_SESSION(host, start(scaledOptions()));
    const QString key = QLatin1String(Keys::EqualizerMiddleOn);
    const QRect knobs = host.toScreen(MiddleBandKnobs);
    const QImage enabled = host.grab(knobs);
    QCOMPARE(host.parameters().value(key), QStringLiteral("ON"));

    VERIFY_SESSION(host, click(host.toScreen(MiddleBandSwitch).center()));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [](const QString &text) { return text == "OFF"; }, "the band off"));
    // Disabled knobs are drawn faded: darker than on the dark panel.
    VERIFY_SESSION(host,
        waitUntil([&] { return meanLuminance(host.grab(knobs)) < 0.85 * meanLuminance(enabled); },
            "the band's knobs to fade"));

    VERIFY_SESSION(host, click(host.toScreen(MiddleBandSwitch).center()));
    VERIFY_SESSION(host,
        waitForParameter(
            key, [](const QString &text) { return text == "ON"; }, "the band on"));
    VERIFY_SESSION(host,
        waitUntil([&] { return largestDifference(host.grab(knobs), enabled) <= 2; },
            "the band's knobs to look as before"));
}

void TestRealWindow::spectrumSwitchShowsTheSignal()
{
    X11HostSession host;
    X11HostSession::Options options;
    options.arguments = QStringList { QStringLiteral("--signal"), QStringLiteral("pink") };
    VERIFY_SESSION(host, start(options));
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

void TestRealWindow::morphKnobSweepsTheChosenSet()
{
    // One set in the morph folder: the list's first row.
    const QString table = QStringLiteral(ORV_MORPH_PRESET_DIR "/Mix Bus/Glue.json");
    QTemporaryDir morphFolder;
    QVERIFY(morphFolder.isValid());
    QVERIFY(QFile::copy(
        QStringLiteral(ORV_MORPH_PRESET_DIR "/Mix Bus/Glue.ord"), morphFolder.filePath("Glue.ord")));
    const QMap<QString, QString> first = morphPointTexts(table, 0);
    const QMap<QString, QString> last = morphPointTexts(table, 8);
    QCOMPARE(first.size(), 17);

    X11HostSession::Options options;
    options.environment.insert(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"), morphFolder.path());
    options.arguments = QStringList { QStringLiteral("--dial-mode"), QStringLiteral("2") };
    X11HostSession host;
    VERIFY_SESSION(host, start(options));

    // The list grows upwards from the bottom; its grey outline reaches the
    // top of the equaliser only when it is fully open.
    VERIFY_SESSION(host, click(host.toScreen(MorphingPresetButton).center()));
    const QRect listTop = host.toScreen(MorphingListTopEdge);
    VERIFY_SESSION(host,
        waitUntil([&] { return isFilledWith(host.grab(listTop), ListOutlineColor); },
            "the morphing list to slide in"));
    const QRect firstRow = host.toScreen(MorphingListFirstRow);
    const QPoint rowPixel = firstRow.topLeft() + QPoint(firstRow.width() / 2, 2);
    VERIFY_SESSION(host, click(firstRow.center()));
    VERIFY_SESSION(host,
        waitUntil(
            [&] { return host.grab(QRect(rowPixel, QSize(1, 1))).pixelColor(0, 0) == SelectedRowColor; },
            "the first row to show selected"));
    VERIFY_SESSION(host, click(host.toScreen(MorphingListOk).center()));
    const QString name = QLatin1String(Keys::MorphSystemName);
    VERIFY_SESSION(host,
        waitForParameter(
            name, [](const QString &text) { return text == "Glue"; }, "the set chosen"));
    // The list covers the morph knob until it has slid away; its outline's
    // bottom left corner stays in place until then.
    const QRect listCorner = host.toScreen(MorphingListBottomLeft);
    VERIFY_SESSION(host,
        waitUntil([&] { return !isFilledWith(host.grab(listCorner), ListOutlineColor); },
            "the morphing list to close"));

    // In the linear edit mode (--dial-mode 2) a knob follows how far the
    // pointer is from where it was pressed, right and up, so the X server
    // may merge the motion events of a sweep as it likes.
    const QPoint knob = host.toScreen(MorphingKnob).center();
    const QString position = QLatin1String(Keys::MorphValue);
    const ParameterDefinition *range = parameterOf(position);
    QVERIFY(range);
    struct Sweep
    {
        QPoint by;
        int position;
        QMap<QString, QString> values;
    };
    for (const Sweep &sweep : { Sweep { QPoint(560, -460), range->maximum, last },
             Sweep { QPoint(-450, 560), range->minimum, first } }) {
        VERIFY_SESSION(host, drag(knob, knob + sweep.by));
        VERIFY_SESSION(host,
            waitForParameter(
                position, [&](const QString &text) { return valueOf(position, text) == sweep.position; },
                QStringLiteral("the morph position to reach %1").arg(sweep.position)));
        const QMap<QString, QString> values = host.parameters();
        for (auto it = sweep.values.cbegin(); it != sweep.values.cend(); ++it)
            QCOMPARE(values.value(it.key()), it.value());
    }
}

void TestRealWindow::aboutPanelFadesInAndOut()
{
    X11HostSession host;
    VERIFY_SESSION(host, start({}));
    const QRect quiet = host.toScreen(CompressorKnobs);
    const QRect version = host.toScreen(AboutVersionLabel);
    const QImage closed = host.grab(quiet);
    const double closedLuminance = meanLuminance(closed);
    QVERIFY(closedLuminance > 10);

    // Open, the panel lays black at 224 of 255 over the editor and shows the version in white.
    VERIFY_SESSION(host, click(host.toScreen(MakerLogo).center()));
    VERIFY_SESSION(host,
        waitUntil([&] { return meanLuminance(host.grab(quiet)) < 0.2 * closedLuminance; },
            "the about panel to fade in"));
    VERIFY_SESSION(host,
        waitUntil(
            [&] {
                const QImage label = host.grab(version);
                int brightest = 0;
                for (int y = 0; y < label.height(); ++y)
                    for (int x = 0; x < label.width(); ++x)
                        brightest = std::max(brightest, qGray(label.pixel(x, y)));
                return brightest > 200;
            },
            "the version text"));

    // A click anywhere on it fades it out and leaves the editor as it was.
    VERIFY_SESSION(host, click(host.toScreen(EmptyTopBar).center()));
    VERIFY_SESSION(host,
        waitUntil(
            [&] { return largestDifference(host.grab(quiet), closed) <= 2; }, "the about panel to fade out"));
}

// One pass over the panel without touching the pointer. The window starts
// with the focus on its first control, the maker logo; the counts of Tab
// presses follow the reading order with the side chain off at first.
void TestRealWindow::keyboardAloneDrivesThePanel()
{
    QTemporaryDir morphFolder;
    QVERIFY(morphFolder.isValid());
    QVERIFY(QFile::copy(
        QStringLiteral(ORV_MORPH_PRESET_DIR "/Mix Bus/Glue.ord"), morphFolder.filePath("Glue.ord")));
    const QString table = QStringLiteral(ORV_MORPH_PRESET_DIR "/Mix Bus/Glue.json");
    X11HostSession::Options options;
    options.environment.insert(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"), morphFolder.path());
    X11HostSession host;
    VERIFY_SESSION(host, start(options));
    const auto waitFor = [&host](const char *key, const QString &text) {
        return host.waitForParameter(
            QLatin1String(key), [&](const QString &seen) { return seen == text; },
            QStringLiteral("%1 to read %2").arg(QLatin1String(key), text));
    };

    // Return on the maker logo opens the about panel, Escape closes it.
    const QRect quiet = host.toScreen(CompressorKnobs);
    const double openLuminance = meanLuminance(host.grab(quiet));
    VERIFY_SESSION(host, key("Return"));
    VERIFY_SESSION(host,
        waitUntil([&] { return meanLuminance(host.grab(quiet)) < 0.2 * openLuminance; },
            "the about panel to fade in"));
    VERIFY_SESSION(host, key("Escape"));
    VERIFY_SESSION(host,
        waitUntil([&] { return meanLuminance(host.grab(quiet)) > 0.9 * openLuminance; },
            "the about panel to fade out"));

    // Converter button, compressor switch, then the attack knob and its field.
    const QString attack = QLatin1String(Keys::CompressorAttack);
    VERIFY_SESSION(host, key("Tab Tab Tab Up Up"));
    QVERIFY2(waitFor(Keys::CompressorAttack, textOf(attack, "12")), qPrintable(host.errorString()));
    VERIFY_SESSION(host, key("Tab Return"));
    VERIFY_SESSION(host, type("50"));
    VERIFY_SESSION(host, key("Return"));
    QVERIFY2(waitFor(Keys::CompressorAttack, textOf(attack, "50")), qPrintable(host.errorString()));

    // Release, ratio, then the knee (one stop; arrows choose) and the side chain switch.
    VERIFY_SESSION(host, key("Tab Tab Tab Tab Tab Right"));
    QVERIFY2(waitFor(Keys::CompressorKnee, textOf(QLatin1String(Keys::CompressorKnee), "MEDIUM")),
        qPrintable(host.errorString()));
    VERIFY_SESSION(host, key("Tab space"));
    QVERIFY2(waitFor(Keys::SideChainOn, textOf(QLatin1String(Keys::SideChainOn), "ON")),
        qPrintable(host.errorString()));

    // Drive, the equaliser's switches and the low band's knobs, to the low band switch.
    VERIFY_SESSION(host, key("Tab Tab Tab Tab Tab Tab Tab Tab Tab space"));
    QVERIFY2(waitFor(Keys::EqualizerLowOn, textOf(QLatin1String(Keys::EqualizerLowOn), "OFF")),
        qPrintable(host.errorString()));

    // On to the morph preset button: Return opens the list, Down and Return pick the set.
    VERIFY_SESSION(host, key("Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Tab Return"));
    const QRect listTop = host.toScreen(MorphingListTopEdge);
    VERIFY_SESSION(host,
        waitUntil([&] { return isFilledWith(host.grab(listTop), ListOutlineColor); },
            "the morphing list to slide in"));
    VERIFY_SESSION(host, key("Down Return"));
    QVERIFY2(waitFor(Keys::MorphSystemName, QStringLiteral("Glue")), qPrintable(host.errorString()));

    // The focus is back on the button: Shift+Tab past the knob's field to the knob, End and Home sweep it.
    struct Sweep
    {
        const char *key;
        int point;
    };
    for (const Sweep &sweep : { Sweep { "shift+Tab shift+Tab End", 8 }, Sweep { "Home", 0 } }) {
        VERIFY_SESSION(host, key(QLatin1String(sweep.key)));
        const QMap<QString, QString> expected = morphPointTexts(table, sweep.point);
        QCOMPARE(expected.size(), 17);
        for (auto it = expected.cbegin(); it != expected.cend(); ++it)
            QVERIFY2(waitFor(it.key().toLatin1().constData(), it.value()), qPrintable(host.errorString()));
    }

    // Past the preset button to the output knob.
    const QString output = QLatin1String(Keys::OutputLevel);
    const QString before = host.parameters().value(output);
    VERIFY_SESSION(host, key("Tab Tab Tab Page_Down"));
    VERIFY_SESSION(host,
        waitForParameter(
            output, [&](const QString &text) { return valueOf(output, text) < valueOf(output, before); },
            "the output level to go down"));
    VERIFY_SESSION(host, quit());
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
