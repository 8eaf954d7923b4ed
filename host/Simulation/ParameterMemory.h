#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QVector>

#include "HostModel.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IORVDMorphHandler.h"
#include "SpectrumObservers.h"

// The simulated parameter memory: every parameter of the model on every
// channel, observers per parameter and channel notified on every change, the
// meter notifier and the morph handler. Tests use it as their fake host; it
// also records every write so a test can check what was written in what order.
class ParameterMemory : public IMemAPI
{
public:
    struct Write
    {
        unsigned short prmId;
        unsigned short ch;
        int value;
        int index;
    };

    explicit ParameterMemory(HostModel *model);
    ~ParameterMemory();

    ParameterMemory(const ParameterMemory &) = delete;
    ParameterMemory &operator=(const ParameterMemory &) = delete;

    // FUnknown: the morph handler answers its interface id, and the spectrum
    // source its own once one is set.
    int32_t queryInterface(const char *iid, void **obj) override;
    uint32_t addRef() override { return 1; }
    uint32_t release() override { return 1; }

    int getValue(unsigned short prmId, unsigned short ch, int *value, int index = 0) override;
    int setValue(unsigned short prmId, unsigned short ch, int value, int index = 0, int reserved = 0,
        int notify = 1) override;
    int getRange(unsigned short prmId, unsigned short ch, int *min, int *max) override;
    int getBaseValue(unsigned short prmId, unsigned short ch, int *value) override;
    int addPrmObserver(
        unsigned short prmId, unsigned short ch, IPrmObserver *observer, int index = 0) override;
    int removePrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) override;
    // 0 while `observer` already observes the parameter on the channel.
    int queryPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer) override;
    int getMeterNotifier(IMeterNotifier **notifier) override;
    int getDefault(unsigned short prmId, unsigned short ch, int *value) override;
    int getValueString(unsigned short prmId, unsigned short ch, int value, char *buffer, int size) override;
    int setValueString(unsigned short prmId, unsigned short ch, const char *text, int *value) override;

    HostModel *model() const { return m_pModel; }

    // Convenience for the host and for tests.
    int value(const char *key, int ch = 0) const;
    bool setValueByKey(const char *key, int value, int ch = 0);
    // Sets a parameter from its value text ("1.2k", "-3 dB", "HARD").
    bool setValueText(const char *key, const QString &text, int ch = 0);
    QByteArray text(const char *key, int ch = 0) const;
    void setText(const char *key, const QByteArray &text, int ch = 0);
    int observerCount(unsigned short prmId, unsigned short ch) const;
    int totalObserverCount() const;

    // Every parameter on channels 0 to channelCount - 1 (texts as strings),
    // keyed "key@ch", for comparing two memories.
    QMap<QString, QString> snapshot(int channelCount) const;
    const QVector<Write> &writes() const { return m_writes; }
    void clearWrites() { m_writes.clear(); }
    // Makes every later getValue/setValue/getRange fail (a host that has gone away).
    void setFailing(bool failing) { m_failing = failing; }

    // Sends a meter array to the meter observers.
    void publishMeters(const QVector<unsigned int> &values);
    int meterObserverCount() const { return int(m_meterObservers.size()); }

    // What the morph handler received, batch by batch.
    int morphBatchCount() const { return m_morphBatches; }

    // A host that analyses a strip offers ISpectrumSource for it; the memory
    // answers for the interface only once offered (the tests' fake host by
    // default does not). ch2 is negative for a mono strip.
    void offerSpectrum(int ch1, int ch2)
    {
        m_spectrumOffered = true;
        m_spectrum.setAnalysedStrip(ch1, ch2);
    }
    SpectrumObservers &spectrumObservers() { return m_spectrum; }

private:
    class MeterNotifier;
    class MorphHandler;
    friend class MorphHandler;

    static quint32 slot(unsigned short prmId, unsigned short ch) { return quint32(prmId) << 16 | ch; }
    const ParameterDefinition *parameterFor(unsigned short prmId) const;
    int storedValue(unsigned short prmId, unsigned short ch) const;
    void store(unsigned short prmId, unsigned short ch, int value, int index, bool notify);
    void notify(unsigned short prmId, unsigned short ch, int value);
    int applyMorphBatch(const IORVDMorphHandler::OMD_PRMINFO *first);
    void followMorphPosition(unsigned short ch);
    bool morphBaseValue(const ParameterDefinition &parameter, unsigned short ch, int *value) const;

    HostModel *m_pModel;
    QHash<quint32, int> m_values;
    QHash<quint32, QByteArray> m_texts;
    QHash<quint32, QList<IPrmObserver *>> m_observers;
    QList<IMeterObserver *> m_meterObservers;
    MeterNotifier *m_pMeterNotifier;
    MorphHandler *m_pMorphHandler;
    QVector<Write> m_writes;
    int m_morphBatches = 0;
    SpectrumObservers m_spectrum;
    bool m_spectrumOffered = false;
    bool m_failing = false;
};
