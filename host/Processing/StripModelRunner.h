#pragma once

#include <QObject>
#include <QThread>
#include <memory>

#include "MeterReading.h"
#include "SharedStripSettings.h"
#include "SpectrumFrame.h"
#include "StripMeterLayout.h"

class AudioFileWriter;
class ParameterMemory;
class ProcessingWorker;
class SignalSource;
class StripSettingsObserver;

// The GUI thread's side of the processing model: follows the strip's
// parameters, runs the worker on its own thread, and turns each meter
// reading that arrives into the host's meter array for the meter observers.
// meterReadingArrived() carries the same reading on the GUI thread, with the
// detector level and gain reduction for the compressor graph. The strip's
// spectrum is analysed while an editor observes it through the memory's
// spectrum source, or always once keepSpectrum() asks for it.
class StripModelRunner : public QObject
{
    Q_OBJECT

public:
    StripModelRunner(ParameterMemory &memory, int firstChannel, bool stereo,
        std::unique_ptr<SignalSource> source, QObject *parent = nullptr);
    ~StripModelRunner() override;

    void setOutput(std::unique_ptr<AudioFileWriter> writer);
    // Processes `seconds` of the programme at once and publishes the meters:
    // for a picture, before start().
    void runFor(double seconds);
    void start();
    void stop();

    MeterReading lastReading() const { return m_lastReading; }

    // Analyse the spectrum even while no editor observes it (for a dump).
    void keepSpectrum();
    // The frame last sent to the observers; silence before the first.
    const SpectrumFrame &lastSpectrumFrame() const { return m_lastSpectrum; }

signals:
    void meterReadingArrived(const MeterReading &reading);
    void outputFailed(const QString &message);

private:
    void publish(const MeterReading &reading);
    void publishSpectrum(const SpectrumFrame &frame);
    void updateSpectrumWish();

    ParameterMemory &m_memory;
    SharedStripSettings m_settings;
    std::unique_ptr<StripSettingsObserver> m_observer;
    StripMeterLayout m_layout;
    ProcessingWorker *m_pWorker; // owned; lives on m_thread once started
    QThread m_thread;
    MeterReading m_lastReading;
    SpectrumFrame m_lastSpectrum;
    bool m_keepSpectrum = false;
};
