#include "ParameterMemory.h"

#include <QString>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "ValueText.h"

// Morph data arrive as one batch through this interface.
class ParameterMemory::MorphHandler final : public IORVDMorphHandler
{
public:
    explicit MorphHandler(ParameterMemory *memory)
        : m_pMemory(memory)
    { }
    int32_t queryInterface(const char *iid, void **obj) override
    {
        return m_pMemory->queryInterface(iid, obj);
    }
    uint32_t addRef() override { return 1; }
    uint32_t release() override { return 1; }
    int32_t getMorphPointCount() override { return 9; }
    int32_t getMorphColumnCount() override { return 17; }
    int32_t setMorphData(const OMD_PRMINFO *first) override { return m_pMemory->applyMorphBatch(first); }

private:
    ParameterMemory *m_pMemory;
};

class ParameterMemory::MeterNotifier final : public IMeterNotifier
{
public:
    explicit MeterNotifier(ParameterMemory *memory)
        : m_pMemory(memory)
    { }
    int addMeterObserver(IMeterObserver *observer) override
    {
        if (!observer)
            return kResultFalse;
        if (!m_pMemory->m_meterObservers.contains(observer))
            m_pMemory->m_meterObservers.append(observer);
        return kResultOk;
    }
    int meterCount() override { return int(m_pMemory->m_pModel->meterArraySize()); }
    int removeMeterObserver(IMeterObserver *observer) override
    {
        return m_pMemory->m_meterObservers.removeAll(observer) ? kResultOk : kResultFalse;
    }

private:
    ParameterMemory *m_pMemory;
};

namespace {

// A malformed batch without its end record must not run away.
constexpr int MaxMorphBatchRecords = 65536;

int textLength(const ParameterDefinition &parameter)
{
    return parameter.decimals;
}

} // namespace

ParameterMemory::ParameterMemory(HostModel *model)
    : m_pModel(model)
    , m_pMeterNotifier(new MeterNotifier(this))
    , m_pMorphHandler(new MorphHandler(this))
{ }

ParameterMemory::~ParameterMemory()
{
    delete m_pMeterNotifier;
    delete m_pMorphHandler;
}

int32_t ParameterMemory::queryInterface(const char *iid, void **obj)
{
    if (!obj)
        return kResultFalse;
    *obj = nullptr;
    if (!iid)
        return kNoInterface;
    char handlerIid[16];
    ORVDMorphHandlerIID.toBytes(handlerIid);
    if (std::memcmp(iid, handlerIid, sizeof handlerIid) == 0) {
        *obj = static_cast<IORVDMorphHandler *>(m_pMorphHandler);
        return kResultOk;
    }
    char spectrumIid[16];
    SpectrumSourceIID.toBytes(spectrumIid);
    if (m_spectrumOffered && std::memcmp(iid, spectrumIid, sizeof spectrumIid) == 0) {
        *obj = static_cast<ISpectrumSource *>(&m_spectrum);
        return kResultOk;
    }
    return kNoInterface;
}

const ParameterDefinition *ParameterMemory::parameterFor(unsigned short prmId) const
{
    return m_pModel->parameter(prmId);
}

int ParameterMemory::storedValue(unsigned short prmId, unsigned short ch) const
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    return m_values.value(slot(prmId, ch), parameter ? parameter->defaultValue : 0);
}

int ParameterMemory::getValue(unsigned short prmId, unsigned short ch, int *value, int index)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !value)
        return -1;
    if (parameter->isText()) {
        if (index < 0 || index >= textLength(*parameter))
            return -1;
        const QByteArray text = m_texts.value(slot(prmId, ch));
        *value = index < text.size() ? static_cast<signed char>(text.at(index)) : 0;
        return kResultOk;
    }
    *value = storedValue(prmId, ch);
    return kResultOk;
}

int ParameterMemory::setValue(unsigned short prmId, unsigned short ch, int value, int index, int, int notify)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter)
        return -1;
    if (parameter->isText() && (index < 0 || index >= textLength(*parameter)))
        return -1;
    m_writes.append({ prmId, ch, value, index });
    store(prmId, ch, value, index, notify != 0);
    return kResultOk;
}

void ParameterMemory::store(
    unsigned short prmId, unsigned short ch, int value, int index, bool notifyObservers)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (parameter->isText()) {
        QByteArray &text = m_texts[slot(prmId, ch)];
        if (text.size() < textLength(*parameter))
            text.resize(textLength(*parameter), '\0');
        const char c = static_cast<char>(value);
        if (text.at(index) == c)
            return;
        text[index] = c;
        if (notifyObservers)
            notify(prmId, ch, value);
        return;
    }
    value = std::clamp(value, parameter->minimum, parameter->maximum);
    if (storedValue(prmId, ch) == value)
        return; // the hardware reports changes only
    m_values.insert(slot(prmId, ch), value);
    if (notifyObservers)
        notify(prmId, ch, value);
    if (parameter->key == "fx_mrp_vl")
        followMorphPosition(ch);
}

void ParameterMemory::notify(unsigned short prmId, unsigned short ch, int value)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    const QByteArray text = parameter ? ValueText::format(*parameter, value).toLocal8Bit() : QByteArray();
    // An observer may unregister others (or itself) while being notified.
    const QList<IPrmObserver *> observers = m_observers.value(slot(prmId, ch));
    for (IPrmObserver *observer : observers) {
        if (m_observers.value(slot(prmId, ch)).contains(observer))
            observer->Update(prmId, ch, value, text.constData());
    }
}

int ParameterMemory::getRange(unsigned short prmId, unsigned short, int *min, int *max)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !min || !max)
        return -1;
    *min = parameter->minimum;
    *max = parameter->maximum;
    return kResultOk;
}

int ParameterMemory::getDefault(unsigned short prmId, unsigned short, int *value)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !value)
        return -1;
    *value = parameter->defaultValue;
    return kResultOk;
}

bool ParameterMemory::morphBaseValue(
    const ParameterDefinition &parameter, unsigned short ch, int *value) const
{
    if (parameter.morphColumnKey.isEmpty() || text("fx_mrp_systmname", ch).isEmpty())
        return false;
    const unsigned short column = m_pModel->parameterId(parameter.morphColumnKey.constData());
    const unsigned short position = m_pModel->parameterId("fx_mrp_vl");
    const ParameterDefinition *positionParameter = parameterFor(position);
    if (!column || !positionParameter)
        return false;
    // The morph position runs across the nine points evenly.
    const double span = positionParameter->maximum - positionParameter->minimum;
    const double x = span > 0 ? 8.0 * (storedValue(position, ch) - positionParameter->minimum) / span : 0.0;
    const int point = std::clamp(int(x), 0, 7);
    const double fraction = std::clamp(x - point, 0.0, 1.0);
    const int base = ch * 9;
    const double a = storedValue(column, static_cast<unsigned short>(base + point));
    const double b = storedValue(column, static_cast<unsigned short>(base + point + 1));
    *value = std::clamp(int(std::lround(a + (b - a) * fraction)), parameter.minimum, parameter.maximum);
    return true;
}

int ParameterMemory::getBaseValue(unsigned short prmId, unsigned short ch, int *value)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !value || parameter->isText())
        return -1;
    if (!morphBaseValue(*parameter, ch, value))
        *value = storedValue(prmId, ch);
    return kResultOk;
}

void ParameterMemory::followMorphPosition(unsigned short ch)
{
    // Moving the morph knob moves every morphing parameter to what the
    // position implies, as the hardware does.
    for (int i = 0; i < m_pModel->parameters().size(); ++i) {
        const ParameterDefinition &parameter = m_pModel->parameters().at(i);
        int base = 0;
        if (morphBaseValue(parameter, ch, &base))
            store(static_cast<unsigned short>(HostModel::FirstParameterId + i), ch, base, 0, true);
    }
}

int ParameterMemory::addPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer, int)
{
    if (!observer || !parameterFor(prmId))
        return -1;
    QList<IPrmObserver *> &observers = m_observers[slot(prmId, ch)];
    if (!observers.contains(observer))
        observers.append(observer);
    return kResultOk;
}

int ParameterMemory::removePrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer)
{
    const auto it = m_observers.find(slot(prmId, ch));
    if (it == m_observers.end() || !it->removeAll(observer))
        return kResultFalse;
    if (it->isEmpty())
        m_observers.erase(it);
    return kResultOk;
}

int ParameterMemory::queryPrmObserver(unsigned short prmId, unsigned short ch, IPrmObserver *observer)
{
    return m_observers.value(slot(prmId, ch)).contains(observer) ? 0 : 1;
}

int ParameterMemory::getMeterNotifier(IMeterNotifier **notifier)
{
    if (!notifier)
        return -1;
    *notifier = m_pMeterNotifier;
    return kResultOk;
}

int ParameterMemory::getValueString(unsigned short prmId, unsigned short, int value, char *buffer, int size)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !buffer || size <= 0)
        return -1;
    const QByteArray text = ValueText::format(*parameter, value).toLocal8Bit();
    const int n = std::min<int>(int(text.size()), size - 1);
    std::memcpy(buffer, text.constData(), size_t(n));
    buffer[n] = '\0';
    return kResultOk;
}

int ParameterMemory::setValueString(unsigned short prmId, unsigned short, const char *text, int *value)
{
    const ParameterDefinition *parameter = parameterFor(prmId);
    if (m_failing || !parameter || !text || !value)
        return -1;
    return ValueText::parse(*parameter, QString::fromLocal8Bit(text), value) ? kResultOk : -1;
}

int ParameterMemory::applyMorphBatch(const IORVDMorphHandler::OMD_PRMINFO *record)
{
    if (!record)
        return kResultFalse;
    for (int n = 0; n < MaxMorphBatchRecords && record->prmId != IORVDMorphHandler::kEndOfBatch;
         ++n, ++record) {
        const ParameterDefinition *parameter = parameterFor(record->prmId);
        if (!parameter || record->channel > 0xFFFF)
            continue;
        const auto ch = static_cast<unsigned short>(record->channel);
        if (parameter->isText()) {
            if (record->index < textLength(*parameter))
                store(record->prmId, ch, record->value, record->index, true);
        } else {
            store(record->prmId, ch, record->value, 0, true);
        }
    }
    ++m_morphBatches;
    return kResultOk;
}

int ParameterMemory::value(const char *key, int ch) const
{
    const unsigned short id = m_pModel->parameterId(key);
    return id ? storedValue(id, static_cast<unsigned short>(ch)) : 0;
}

bool ParameterMemory::setValueByKey(const char *key, int value, int ch)
{
    const unsigned short id = m_pModel->parameterId(key);
    return id && setValue(id, static_cast<unsigned short>(ch), value) >= 0;
}

bool ParameterMemory::setValueText(const char *key, const QString &text, int ch)
{
    const unsigned short id = m_pModel->parameterId(key);
    const ParameterDefinition *parameter = parameterFor(id);
    if (!parameter)
        return false;
    if (parameter->isText()) {
        setText(key, text.toLocal8Bit(), ch);
        return true;
    }
    int value = 0;
    return ValueText::parse(*parameter, text, &value)
        && setValue(id, static_cast<unsigned short>(ch), value) >= 0;
}

QByteArray ParameterMemory::text(const char *key, int ch) const
{
    const unsigned short id = m_pModel->parameterId(key);
    QByteArray text = m_texts.value(slot(id, static_cast<unsigned short>(ch)));
    const int end = int(text.indexOf('\0'));
    return end < 0 ? text : text.left(end);
}

void ParameterMemory::setText(const char *key, const QByteArray &text, int ch)
{
    const unsigned short id = m_pModel->parameterId(key);
    const ParameterDefinition *parameter = parameterFor(id);
    if (!parameter || !parameter->isText())
        return;
    for (int i = 0; i < textLength(*parameter); ++i)
        store(id, static_cast<unsigned short>(ch), i < text.size() ? text.at(i) : 0, i, true);
}

int ParameterMemory::observerCount(unsigned short prmId, unsigned short ch) const
{
    return int(m_observers.value(slot(prmId, ch)).size());
}

int ParameterMemory::totalObserverCount() const
{
    int count = 0;
    for (const QList<IPrmObserver *> &observers : m_observers)
        count += int(observers.size());
    return count;
}

QMap<QString, QString> ParameterMemory::snapshot(int channelCount) const
{
    QMap<QString, QString> values;
    for (const ParameterDefinition &parameter : m_pModel->parameters()) {
        for (int ch = 0; ch < channelCount; ++ch) {
            const QString name = QString::fromLatin1(parameter.key) + QLatin1Char('@') + QString::number(ch);
            values.insert(name,
                parameter.isText() ? QString::fromLatin1(text(parameter.key.constData(), ch).toHex())
                                   : QString::number(value(parameter.key.constData(), ch)));
        }
    }
    return values;
}

void ParameterMemory::publishMeters(const QVector<unsigned int> &values)
{
    QVector<unsigned int> copy = values;
    const QList<IMeterObserver *> observers = m_meterObservers;
    for (IMeterObserver *observer : observers) {
        if (m_meterObservers.contains(observer))
            observer->notifyMeterDbUpdated(copy.data(), static_cast<unsigned int>(copy.size()));
    }
}
