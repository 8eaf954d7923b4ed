#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <atomic>
#include <memory>
#include <vector>

#include "ChannelStripProcessor.h"
#include "MeterReading.h"
#include "SpectrumAnalyser.h"

class AudioFileWriter;
class QTimer;
class SharedStripSettings;
class SignalSource;

// Runs the strip model on the processing thread: about 30 times a second it
// renders the programme for the time that has passed, processes it in blocks
// with the newest settings and sends one meter reading, and, while a
// spectrum is wanted, one frame of the input's and output's spectrum.
// Processing can also be run directly, for a picture or a test, before the
// thread starts.
class ProcessingWorker : public QObject
{
    Q_OBJECT

public:
    static constexpr int IntervalMs = 33;
    static constexpr int BlockFrames = 256;

    ProcessingWorker(std::unique_ptr<SignalSource> source, int channelCount,
        const SharedStripSettings *settings, QObject *parent = nullptr);
    ~ProcessingWorker() override;

    // Writes everything processed from now on to `writer`.
    void setOutput(std::unique_ptr<AudioFileWriter> writer);
    double sampleRate() const;
    void processFrames(long long frames);
    MeterReading takeMeterReading() { return m_processor.takeMeterReading(); }

    // From any thread: analyse from the next block on, or stop analysing.
    void setSpectrumWanted(bool wanted) { m_spectrumWanted.store(wanted, std::memory_order_relaxed); }
    bool isAnalysing() const { return m_analysing; }
    SpectrumFrame spectrumFrame() const;

public slots:
    // Both run on the processing thread.
    void start();
    void stop();

signals:
    void meterReadingReady(const MeterReading &reading);
    void spectrumFrameReady(const SpectrumFrame &frame);
    void outputFailed(const QString &message);

private:
    void tick();
    void applyNewSettings();
    void followSpectrumWish();

    std::unique_ptr<SignalSource> m_source;
    const SharedStripSettings *m_settings;
    quint64 m_settingsGeneration = 0;
    ChannelStripProcessor m_processor;
    std::unique_ptr<AudioFileWriter> m_output;
    SpectrumAnalyser m_inputSpectrum;
    SpectrumAnalyser m_outputSpectrum;
    std::atomic<bool> m_spectrumWanted { false };
    bool m_analysing = false;
    std::vector<float> m_left;
    std::vector<float> m_right;
    QTimer *m_timer = nullptr;
    QElapsedTimer m_clock;
    long long m_framesDone = 0;
};
