#include "StripModelRunner.h"

#include "AudioFileWriter.h"
#include "ParameterMemory.h"
#include "ProcessingWorker.h"
#include "SignalSource.h"
#include "StripSettingsObserver.h"

StripModelRunner::StripModelRunner(ParameterMemory &memory, int firstChannel, bool stereo,
    std::unique_ptr<SignalSource> source, QObject *parent)
    : QObject(parent)
    , m_memory(memory)
    , m_observer(std::make_unique<StripSettingsObserver>(memory, firstChannel, m_settings))
    , m_layout(*memory.model(), firstChannel, stereo)
    , m_pWorker(new ProcessingWorker(std::move(source), stereo ? 2 : 1, &m_settings))
{
    qRegisterMetaType<MeterReading>();
    qRegisterMetaType<SpectrumFrame>();
    m_thread.setObjectName(QStringLiteral("strip model"));
    // Readings still queued when the runner stops are dropped: a stopped
    // strip sends no more meters.
    connect(m_pWorker, &ProcessingWorker::meterReadingReady, this, [this](const MeterReading &reading) {
        if (m_thread.isRunning())
            publish(reading);
    });
    connect(m_pWorker, &ProcessingWorker::spectrumFrameReady, this, [this](const SpectrumFrame &frame) {
        if (m_thread.isRunning())
            publishSpectrum(frame);
    });
    connect(m_pWorker, &ProcessingWorker::outputFailed, this, &StripModelRunner::outputFailed);
    m_memory.spectrumObservers().setObserversChanged([this] { updateSpectrumWish(); });
    updateSpectrumWish();
}

StripModelRunner::~StripModelRunner()
{
    stop();
    m_memory.spectrumObservers().setObserversChanged(nullptr);
    delete m_pWorker;
}

void StripModelRunner::keepSpectrum()
{
    m_keepSpectrum = true;
    updateSpectrumWish();
}

void StripModelRunner::updateSpectrumWish()
{
    m_pWorker->setSpectrumWanted(m_keepSpectrum || m_memory.spectrumObservers().isObserved());
}

void StripModelRunner::setOutput(std::unique_ptr<AudioFileWriter> writer)
{
    if (!m_thread.isRunning())
        m_pWorker->setOutput(std::move(writer));
}

void StripModelRunner::runFor(double seconds)
{
    if (m_thread.isRunning())
        return;
    m_pWorker->processFrames(std::llround(seconds * m_pWorker->sampleRate()));
    publish(m_pWorker->takeMeterReading());
    if (m_pWorker->isAnalysing())
        publishSpectrum(m_pWorker->spectrumFrame());
}

void StripModelRunner::start()
{
    if (m_thread.isRunning())
        return;
    m_pWorker->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(m_pWorker, &ProcessingWorker::start, Qt::QueuedConnection);
}

void StripModelRunner::stop()
{
    if (!m_thread.isRunning()) {
        m_pWorker->stop();
        return;
    }
    // Back to this thread, so that it can be deleted and run here again; only
    // the worker's own thread can hand it over.
    QThread *home = thread();
    QMetaObject::invokeMethod(
        m_pWorker,
        [worker = m_pWorker, home] {
            worker->stop();
            worker->moveToThread(home);
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void StripModelRunner::publish(const MeterReading &reading)
{
    m_lastReading = reading;
    m_memory.publishMeters(m_layout.levels(reading));
    emit meterReadingArrived(reading);
}

void StripModelRunner::publishSpectrum(const SpectrumFrame &frame)
{
    m_lastSpectrum = frame;
    m_memory.spectrumObservers().publish(frame.output.data(), frame.input.data());
}
