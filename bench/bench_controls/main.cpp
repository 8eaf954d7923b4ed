// Repaint cost of the knob and the fader beside the stock QDial and QSlider of
// the same size, the processor load of a meter fed 60 readings a second, and
// the calls one step of a knob drag makes into the host's parameter memory.
//
//   bench_controls [--json] [--iterations N]

#include <QApplication>
#include <QDial>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QSlider>
#include <QTextStream>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <functional>
#include <sys/resource.h>
#include <vector>

#include "Common/Widgets/FaderController.h"
#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "CountingMemory.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/resources/OrvResources.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;

namespace {

// Median time of one full paint of the widget into a pixmap at the screen's
// device pixel ratio, in microseconds. The value changes before every
// paint, as it does during a drag.
double medianRepaintMicroseconds(QWidget *widget, const std::function<void(int)> &setValue, int iterations)
{
    QPixmap canvas(widget->size() * widget->devicePixelRatioF());
    canvas.setDevicePixelRatio(widget->devicePixelRatioF());
    const auto paint = [&] {
        canvas.fill(Qt::transparent);
        widget->render(&canvas);
    };
    for (int i = 0; i < 50; ++i) { // warm the caches
        setValue(i);
        paint();
    }
    std::vector<qint64> samples;
    samples.reserve(size_t(iterations));
    QElapsedTimer timer;
    for (int i = 0; i < iterations; ++i) {
        setValue(i);
        timer.start();
        paint();
        samples.push_back(timer.nsecsElapsed());
    }
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2] / 1000.0;
}

double processorSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// A meter as the editor shows it, fed 60 readings a second through the event
// loop for about two seconds: processor time over wall time, in percent.
// Without a meter the same loop measures what the feeding itself costs.
double meterCpuPercent(bool withMeter)
{
    MeterController meter;
    meter.resize(12, 318);
    if (withMeter)
        meter.show();
    QApplication::processEvents();

    QTimer feed;
    feed.setTimerType(Qt::PreciseTimer);
    int tick = 0;
    QObject::connect(&feed, &QTimer::timeout, &meter, [&] {
        // A level that swings like music: -60 dB to 0 dB and back.
        const double phase = tick++ * 0.11;
        meter.setValue(int(-300 + 300 * std::sin(phase) * std::cos(phase * 0.37)));
    });
    QEventLoop loop;
    QTimer::singleShot(2000, &loop, &QEventLoop::quit);
    QElapsedTimer wall;
    const double startCpu = processorSeconds();
    wall.start();
    feed.start(1000 / 60);
    loop.exec();
    feed.stop();
    const double cpu = processorSeconds() - startCpu;
    return 100.0 * cpu / (wall.nsecsElapsed() / 1e9);
}

void sendMouse(QWidget *widget, QEvent::Type type, const QPointF &position, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, position, widget->mapToGlobal(position), Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

// A knob bound to the host's attack parameter, dragged once around its
// centre in small steps: the most calls into the parameter memory that one
// mouse move made (whether or not the value moved).
int hostCallsPerKnobStep()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    CountingMemory counting(&memory);
    KnobController knob;
    knob.resize(36, 36);
    knob.setMemAPIValue(&counting, model.parameterId(ChannelStripKeys::CompressorAttack), 0);

    const QPointF centre(18, 18);
    const auto at = [&](int step) {
        const double angle = 2.0 + step * 0.02;
        return centre + QPointF(std::cos(angle), std::sin(angle)) * 14.0;
    };
    sendMouse(&knob, QEvent::MouseButtonPress, at(0), Qt::LeftButton);
    int most = 0;
    for (int step = 1; step <= 200; ++step) {
        counting.resetCalls();
        sendMouse(&knob, QEvent::MouseMove, at(step), Qt::LeftButton);
        most = std::max(most, counting.calls());
    }
    sendMouse(&knob, QEvent::MouseButtonRelease, at(200), Qt::NoButton);
    return most;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    initializeOrvChStripResources();
    const QStringList arguments = app.arguments();
    const bool json = arguments.contains(QStringLiteral("--json"));
    int iterations = 2000;
    const int at = int(arguments.indexOf(QStringLiteral("--iterations")));
    if (at > 0 && at + 1 < arguments.size())
        iterations = std::max(10, arguments.at(at + 1).toInt());

    KnobController knob;
    knob.resize(36, 36);
    knob.setKnobSvg(QStringLiteral(":/image/orvchstrip/knob_comp.svg"));
    knob.setShadowSvg(QStringLiteral(":/image/orvchstrip/knob_shadow.svg"));
    knob.setMaximumValue(127);
    const double knobUs = medianRepaintMicroseconds(
        &knob, [&](int i) { knob.setValue(i % 128); }, iterations);

    QDial dial;
    dial.resize(36, 36);
    dial.setRange(0, 127);
    const double dialUs = medianRepaintMicroseconds(
        &dial, [&](int i) { dial.setValue(i % 128); }, iterations);

    FaderController fader;
    fader.resize(28, 160);
    fader.setBackgroundSvg(QStringLiteral(":/image/orvchstrip/fader_back.svg"));
    fader.setKnobSvg(QStringLiteral(":/image/orvchstrip/fader_knob.svg"));
    fader.setMaximumValue(127);
    const double faderUs = medianRepaintMicroseconds(
        &fader, [&](int i) { fader.setValue(i % 128); }, iterations);

    QSlider slider(Qt::Vertical);
    slider.resize(28, 160);
    slider.setRange(0, 127);
    const double sliderUs = medianRepaintMicroseconds(
        &slider, [&](int i) { slider.setValue(i % 128); }, iterations);

    const double idlePercent = meterCpuPercent(false);
    const double meterPercent = meterCpuPercent(true);
    const int knobStepCalls = hostCallsPerKnobStep();

    QTextStream out(stdout);
    if (json) {
        const QJsonObject result { { QStringLiteral("knob_repaint_us"), knobUs },
            { QStringLiteral("qdial_repaint_us"), dialUs }, { QStringLiteral("fader_repaint_us"), faderUs },
            { QStringLiteral("qslider_repaint_us"), sliderUs },
            { QStringLiteral("meter_60hz_cpu_percent"), meterPercent },
            { QStringLiteral("host_calls_per_knob_step"), knobStepCalls } };
        out << QJsonDocument(result).toJson(QJsonDocument::Compact) << '\n';
        return 0;
    }
    out << QStringLiteral("Control repaint, median of %1 repaints (value changing as in a drag)\n")
               .arg(iterations);
    out << QStringLiteral("  %1 %2 %3 %4\n")
               .arg(QStringLiteral("control"), -26)
               .arg(QStringLiteral("us"), 8)
               .arg(QStringLiteral("baseline us"), 12)
               .arg(QStringLiteral("ratio"), 7);
    const auto row = [&](const QString &name, double value, const QString &baselineName, double baseline) {
        out << QStringLiteral("  %1 %2 %3 %4   (baseline: %5)\n")
                   .arg(name, -26)
                   .arg(value, 8, 'f', 1)
                   .arg(baseline, 12, 'f', 1)
                   .arg(baseline > 0 ? value / baseline : 0.0, 7, 'f', 2)
                   .arg(baselineName);
    };
    row(QStringLiteral("KnobController 36x36"), knobUs, QStringLiteral("QDial 36x36"), dialUs);
    row(QStringLiteral("FaderController 28x160"), faderUs, QStringLiteral("QSlider 28x160"), sliderUs);
    out << QStringLiteral("Meter 12x318 fed 60 readings/s for 2 s: %1 % of one processor"
                          " (the same loop without a shown meter: %2 %)\n")
               .arg(meterPercent, 0, 'f', 2)
               .arg(idlePercent, 0, 'f', 2);
    out << QStringLiteral("Knob drag: at most %1 calls into the parameter memory per mouse move (goal: 3)\n")
               .arg(knobStepCalls);
    return 0;
}
