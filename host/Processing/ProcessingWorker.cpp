#include "ProcessingWorker.h"

#include <QTimer>
#include <algorithm>
#include <cmath>

#include "AudioFileWriter.h"
#include "SharedStripSettings.h"
#include "SignalSource.h"

ProcessingWorker::ProcessingWorker(std::unique_ptr<SignalSource> source, int channelCount,
    const SharedStripSettings *settings, QObject *parent)
    : QObject(parent)
    , m_source(std::move(source))
    , m_settings(settings)
    , m_processor(m_source->sampleRate(), channelCount)
    , m_inputSpectrum(m_source->sampleRate(), channelCount)
    , m_outputSpectrum(m_source->sampleRate(), channelCount)
    , m_left(BlockFrames)
    , m_right(BlockFrames)
{
    if (m_settings)
        m_processor.setSettings(m_settings->read(&m_settingsGeneration));
}

ProcessingWorker::~ProcessingWorker() = default;

void ProcessingWorker::setOutput(std::unique_ptr<AudioFileWriter> writer)
{
    m_output = std::move(writer);
}

double ProcessingWorker::sampleRate() const
{
    return m_processor.sampleRate();
}

void ProcessingWorker::applyNewSettings()
{
    if (m_settings && m_settings->generation() != m_settingsGeneration)
        m_processor.setSettings(m_settings->read(&m_settingsGeneration));
}

// A spectrum switched on again starts from new audio, not from what was
// heard before it went off.
void ProcessingWorker::followSpectrumWish()
{
    const bool wanted = m_spectrumWanted.load(std::memory_order_relaxed);
    if (wanted && !m_analysing) {
        m_inputSpectrum.reset();
        m_outputSpectrum.reset();
    }
    m_analysing = wanted;
}

SpectrumFrame ProcessingWorker::spectrumFrame() const
{
    SpectrumFrame frame;
    frame.input = m_inputSpectrum.levels();
    frame.output = m_outputSpectrum.levels();
    return frame;
}

void ProcessingWorker::processFrames(long long frames)
{
    float *const channels[2] = { m_left.data(), m_right.data() };
    followSpectrumWish();
    while (frames > 0) {
        const int block = int(std::min<long long>(frames, BlockFrames));
        applyNewSettings();
        m_source->render(m_left.data(), m_right.data(), block);
        if (m_analysing)
            m_inputSpectrum.process(channels, block);
        m_processor.process(channels, block);
        if (m_analysing)
            m_outputSpectrum.process(channels, block);
        if (m_output)
            m_output->write(channels, block);
        frames -= block;
    }
}

void ProcessingWorker::start()
{
    if (!m_timer) {
        m_timer = new QTimer(this);
        m_timer->setInterval(IntervalMs);
        connect(m_timer, &QTimer::timeout, this, &ProcessingWorker::tick);
    }
    m_clock.start();
    m_framesDone = 0;
    m_timer->start();
}

void ProcessingWorker::stop()
{
    if (m_timer)
        m_timer->stop();
    QString error;
    if (m_output && !m_output->finish(&error))
        emit outputFailed(error);
    m_output.reset();
}

void ProcessingWorker::tick()
{
    // Keep pace with the clock; after a stall, skip ahead rather than catch up.
    const long long due = std::llround(m_clock.nsecsElapsed() * 1e-9 * sampleRate());
    const long long mostAtOnce = std::llround(0.5 * sampleRate());
    const long long frames = std::min(due - m_framesDone, mostAtOnce);
    m_framesDone = due;
    if (frames <= 0)
        return;
    processFrames(frames);
    emit meterReadingReady(m_processor.takeMeterReading());
    if (m_analysing)
        emit spectrumFrameReady(spectrumFrame());
}
