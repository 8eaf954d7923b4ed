// The editor panel's costs beside a panel of stock Qt widgets with the same
// count and geometry: opening, repainting, one morph step, the meters at
// 30 Hz (alone and with the spectrum) beside what the simulated host's feed
// costs by itself and beside the stock panel's sliders moved the same way, a
// spectrum frame's repaint and the wake-ups while nothing changes.
//
//   bench_editor [--json] [--opens-only N] [--meters-only]
//
// --opens-only opens and paints the editor N times and stops, and
// --meters-only feeds the shown editor's meters for three seconds and stops,
// for a profiler (perf record) to see that work alone.

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QSlider>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/ISpectrumSource.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ParameterMemory.h"
#include "StockPanel.h"

namespace Keys = ChannelStripKeys;

namespace {

double median(std::vector<double> samples)
{
    std::nth_element(samples.begin(), samples.begin() + samples.size() / 2, samples.end());
    return samples[samples.size() / 2];
}

// Median microseconds of `work` over `runs` runs after a few warm-up runs.
double medianMicroseconds(int runs, const std::function<void()> &work)
{
    for (int i = 0; i < 3; ++i)
        work();
    std::vector<double> samples;
    QElapsedTimer timer;
    for (int i = 0; i < runs; ++i) {
        timer.start();
        work();
        samples.push_back(timer.nsecsElapsed() / 1000.0);
    }
    return median(samples);
}

void paintInto(QWidget *panel)
{
    QImage image(panel->size() * panel->devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(panel->devicePixelRatioF());
    panel->render(&image);
}

std::unique_ptr<ORVChStripEditor> openEditor(HostModel &model, ParameterMemory &memory, double scale)
{
    auto editor = std::make_unique<ORVChStripEditor>();
    editor->setModelInfo(&model);
    editor->initialize();
    editor->setMemAPI(&memory);
    editor->setCh(0, 1);
    editor->setScale(scale);
    return editor;
}

// A morph set whose nine points differ, so every step moves every column.
void loadMorphSet(ParameterMemory &memory)
{
    memory.setText(Keys::MorphSystemName, QByteArrayLiteral("Bench sweep"));
    for (const char *column : ORVChStripParameters::OrvaneDataParameterList) {
        int minimum = 0;
        int maximum = 0;
        const unsigned short id = memory.model()->parameterId(column);
        memory.getRange(id, 0, &minimum, &maximum);
        for (int point = 0; point < ORVChStripParameters::MorphPointCount; ++point)
            memory.setValueByKey(column, minimum + (maximum - minimum) * point / 8, point);
    }
}

// Processor time of this process, in seconds.
double processSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

// Counts the timer events that reach a widget tree.
class TimerEventCounter : public QObject
{
public:
    explicit TimerEventCounter(QWidget *root)
        : m_pRoot(root)
    {
        qApp->installEventFilter(this);
    }
    ~TimerEventCounter() override { qApp->removeEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer
            && (watched == m_pRoot || m_pRoot->isAncestorOf(qobject_cast<QWidget *>(watched))
                || watched->parent() == m_pRoot))
            ++m_count;
        return false;
    }

private:
    QWidget *m_pRoot;
    int m_count = 0;
};

void runEventLoop(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// A spectrum frame that moves like programme material: a falling slope with
// a ripple that shifts from frame to frame.
void publishSpectrum(ParameterMemory &memory, int frame)
{
    float output[SpectrumBands::Count];
    float input[SpectrumBands::Count];
    for (int b = 0; b < SpectrumBands::Count; ++b) {
        output[b] = float(-20.0 - 0.3 * b + 6.0 * std::sin(0.4 * b + 0.7 * frame));
        input[b] = output[b] - 3.0f;
    }
    memory.spectrumObservers().publish(output, input);
}

// A level that moves like the bench's meters: meter `i` in frame `frame`, in
// tenths of a dB between -30 and -2.1.
int benchLevel(int frame, int i)
{
    return -300 + ((frame * 7 + i * 13) % 280);
}

// `feedFrame` called 30 times a second for three seconds, with `shown` on
// screen if there is one: the processor time as a share of one core.
double cpuPercentFed(QWidget *shown, const std::function<void(int frame)> &feedFrame)
{
    if (shown)
        shown->show();
    runEventLoop(200);
    int frame = 0;
    QTimer feed;
    QObject::connect(&feed, &QTimer::timeout, [&] { feedFrame(++frame); });
    feed.start(33);
    const double cpuStart = processSeconds();
    QElapsedTimer timer;
    timer.start();
    runEventLoop(3000);
    feed.stop();
    return 100.0 * (processSeconds() - cpuStart) / (timer.nsecsElapsed() / 1e9);
}

// 30 meter arrays a second (and spectrum frames, if asked) published into
// `memory`, with `editor` shown if there is one. Without an editor the
// figure is what the simulated host's feed costs by itself.
double cpuPercentFed(ORVChStripEditor *editor, ParameterMemory &memory, bool spectrum)
{
    QVector<unsigned int> values(int(memory.model()->meterArraySize()));
    return cpuPercentFed(editor, [&](int frame) {
        for (int i = 0; i < values.size(); ++i)
            values[i] = unsigned(benchLevel(frame, i));
        memory.publishMeters(values);
        if (spectrum)
            publishSpectrum(memory, frame);
    });
}

// The stock panel's shown sliders, which stand where the meters are, set to
// the same moving levels 30 times a second.
double stockCpuPercentFed(QWidget *stock)
{
    QList<QSlider *> meters;
    for (QSlider *slider : stock->findChildren<QSlider *>()) {
        if (slider->isVisibleTo(stock)) {
            slider->setRange(-300, 0);
            meters << slider;
        }
    }
    return cpuPercentFed(stock, [&](int frame) {
        for (int i = 0; i < meters.size(); ++i)
            meters.at(i)->setValue(benchLevel(frame, i));
    });
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const bool json = app.arguments().contains(QStringLiteral("--json"));
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    const std::unique_ptr<ORVChStripEditor> template1 = openEditor(model, memory, 1.0);
    const int opensOnly = int(app.arguments().indexOf(QStringLiteral("--opens-only")));
    if (opensOnly > 0 && opensOnly + 1 < app.arguments().size()) {
        for (int i = app.arguments().at(opensOnly + 1).toInt(); i > 0; --i)
            paintInto(openEditor(model, memory, 1.0).get());
        return 0;
    }
    if (app.arguments().contains(QStringLiteral("--meters-only"))) {
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 1.0);
        std::printf("meters 30 Hz   %8.2f %% of one core\n", cpuPercentFed(editor.get(), memory, false));
        return 0;
    }

    QJsonObject figures;
    std::vector<double> editorOpen;
    std::vector<double> stockOpen;
    QElapsedTimer timer;
    // Interleaved, so that a change in the machine's load falls on both.
    for (int i = 0; i < 25; ++i) {
        timer.start();
        {
            const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 1.0);
            paintInto(editor.get());
            editorOpen.push_back(timer.nsecsElapsed() / 1e6);
        }
        timer.start();
        {
            const std::unique_ptr<QWidget> stock(makeStockPanel(template1.get(), 1.0));
            paintInto(stock.get());
            stockOpen.push_back(timer.nsecsElapsed() / 1e6);
        }
    }
    figures[QStringLiteral("editor_open_ms_median")] = median(editorOpen);
    figures[QStringLiteral("stock_open_ms_median")] = median(stockOpen);
    // The earlier names of the same medians, for scripts that read them.
    figures[QStringLiteral("editor_open_ms")] = median(editorOpen);
    figures[QStringLiteral("stock_open_ms")] = median(stockOpen);

    for (double scale : { 1.0, 2.0 }) {
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, scale);
        const std::unique_ptr<QWidget> stock(makeStockPanel(template1.get(), scale));
        const QString suffix = scale == 1.0 ? QStringLiteral("scale1") : QStringLiteral("scale2");
        figures[QStringLiteral("editor_repaint_us_") + suffix]
            = medianMicroseconds(30, [&] { paintInto(editor.get()); });
        figures[QStringLiteral("stock_repaint_us_") + suffix]
            = medianMicroseconds(30, [&] { paintInto(stock.get()); });
    }

    // One morph step, shown: the host's write, the fifteen parameters it
    // moves, and the repaint of what changed through the backing store.
    {
        loadMorphSet(memory);
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 2.0);
        editor->show();
        QCoreApplication::processEvents();
        int position = 0;
        figures[QStringLiteral("morph_step_us_scale2")] = medianMicroseconds(60, [&] {
            position = (position + 37) % 1001;
            memory.setValueByKey(Keys::MorphValue, position);
            QCoreApplication::processEvents();
        });
    }

    // The shown editor with its spectrum on: one frame through the
    // observer and the plot's repaint, at scale 2.
    memory.offerSpectrum(0, 1);
    const QMap<QString, QVariant> spectrumOn { { QStringLiteral("Spectrum"), true } };
    {
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 2.0);
        editor->setEditorSettings(spectrumOn);
        editor->show();
        QCoreApplication::processEvents();
        int frame = 0;
        figures[QStringLiteral("spectrum_frame_paint_us_scale2")] = medianMicroseconds(60, [&] {
            publishSpectrum(memory, ++frame);
            QCoreApplication::processEvents();
        });
    }
    // Meters and spectrum at 30 Hz, stereo, scale 1.
    {
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 1.0);
        editor->setEditorSettings(spectrumOn);
        figures[QStringLiteral("spectrum_30hz_cpu_percent")] = cpuPercentFed(editor.get(), memory, true);
    }

    // The feed alone, into a memory no editor watches: the share of the
    // figures above that is the simulated host's, not the editor's.
    {
        ParameterMemory unwatched(&model);
        figures[QStringLiteral("feed_30hz_cpu_percent")] = cpuPercentFed(nullptr, unwatched, false);
    }

    // The shown editor fed 30 meter arrays a second, and then left alone.
    {
        const std::unique_ptr<ORVChStripEditor> editor = openEditor(model, memory, 1.0);
        figures[QStringLiteral("meters_30hz_cpu_percent")] = cpuPercentFed(editor.get(), memory, false);

        // Once the meters stop, the compressor graph's operating point goes
        // after half a second; what follows is the editor at rest.
        runEventLoop(700);
        TimerEventCounter counter(editor.get());
        runEventLoop(2000);
        figures[QStringLiteral("idle_wakeups_per_s")] = counter.count() / 2.0;
    }
    {
        const std::unique_ptr<QWidget> stock(makeStockPanel(template1.get(), 1.0));
        figures[QStringLiteral("stock_meters_30hz_cpu_percent")] = stockCpuPercentFed(stock.get());
    }

    if (json) {
        std::printf("%s\n", QJsonDocument(figures).toJson(QJsonDocument::Compact).constData());
        return 0;
    }
    auto f = [&](const char *key) { return figures.value(QLatin1String(key)).toDouble(); };
    std::printf("open           editor %8.2f ms   stock %8.2f ms   (median of 25 each, %.2f times)\n",
        f("editor_open_ms_median"), f("stock_open_ms_median"),
        f("editor_open_ms_median") / f("stock_open_ms_median"));
    std::printf("repaint x1     editor %8.1f us   stock %8.1f us\n", f("editor_repaint_us_scale1"),
        f("stock_repaint_us_scale1"));
    std::printf("repaint x2     editor %8.1f us   stock %8.1f us\n", f("editor_repaint_us_scale2"),
        f("stock_repaint_us_scale2"));
    std::printf("morph step x2  %8.1f us\n", f("morph_step_us_scale2"));
    std::printf("meters 30 Hz   editor %6.2f %%   stock %6.2f %% of one core (the feed alone: %.2f %%)\n",
        f("meters_30hz_cpu_percent"), f("stock_meters_30hz_cpu_percent"), f("feed_30hz_cpu_percent"));
    std::printf("and spectrum   %8.2f %% of one core (goal: below 3 %%)\n", f("spectrum_30hz_cpu_percent"));
    std::printf("spectrum frame x2 %8.1f us (goal: below 1000 us)\n", f("spectrum_frame_paint_us_scale2"));
    std::printf("idle wake-ups  %8.1f per second\n", f("idle_wakeups_per_s"));
    return 0;
}
