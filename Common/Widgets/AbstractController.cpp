#include "Common/Widgets/AbstractController.h"

#include <QByteArray>
#include <algorithm>
#include <cmath>

#include "Interfaces/IMemAPI.h"

namespace CommonController_MemAPI {

AbstractController::AbstractController() = default;

AbstractController::~AbstractController()
{
    if (isBound())
        m_pMemAPI->removePrmObserver(m_prmId, m_ch, this);
}

int AbstractController::Update(unsigned short, unsigned short, int value, const char *text)
{
    m_echoed = true;
    if (!isBound())
        return 0;
    // A text parameter reports whichever character changed; only a whole
    // value is taken as pushed.
    if (m_index != 0) {
        readValue();
    } else {
        m_value = value;
        m_string = text ? QString::fromLocal8Bit(text) : readString(value);
    }
    valueChangedRequest();
    return 0;
}

int AbstractController::UpdateProperty(unsigned short, unsigned short, int, int, int, bool, const char *)
{
    if (isBound())
        readFromHost();
    valueChangedRequest();
    return 0;
}

bool AbstractController::isBound() const
{
    return m_pMemAPI && static_cast<short>(m_ch) >= 0;
}

void AbstractController::setMemAPIValue(
    IMemAPI *memAPI, unsigned short prmId, unsigned short ch, unsigned short index)
{
    if (memAPI == m_pMemAPI && prmId == m_prmId && ch == m_ch && index == m_index)
        return;
    if (isBound())
        m_pMemAPI->removePrmObserver(m_prmId, m_ch, this);
    m_pMemAPI = memAPI;
    m_prmId = prmId;
    m_ch = ch;
    m_index = index;
    if (isBound()) {
        m_pMemAPI->addPrmObserver(m_prmId, m_ch, this, m_index);
        readFromHost();
    }
    valueChangedRequest();
}

bool AbstractController::storeScale(double scale)
{
    scale = std::max(0.5, scale);
    if (scale == m_scale)
        return false;
    m_scale = scale;
    return true;
}

// A bound control reads the host once when bound and then keeps what the
// host pushes through Update(): a drag asks the value and the range many
// times a step, and every question is a call into the host.
void AbstractController::readFromHost()
{
    int minimum = 0;
    int maximum = 0;
    if (m_pMemAPI->getRange(m_prmId, m_ch, &minimum, &maximum) < 0)
        minimum = maximum = 0;
    m_minimum = minimum;
    m_maximum = maximum;
    int value = 0;
    m_default = m_pMemAPI->getDefault(m_prmId, m_ch, &value) < 0 ? 0 : value;
    readValue();
}

void AbstractController::readValue()
{
    int value = 0;
    if (m_pMemAPI->getValue(m_prmId, m_ch, &value, m_index) < 0) {
        m_value = 0;
        m_string.clear();
        return;
    }
    m_value = value;
    m_string = readString(value);
}

QString AbstractController::readString(int value) const
{
    char buffer[256] = {};
    if (m_pMemAPI->getValueString(m_prmId, m_ch, value, buffer, sizeof buffer) < 0)
        return QString();
    buffer[sizeof buffer - 1] = '\0';
    return QString::fromLocal8Bit(buffer);
}

int AbstractController::value() const
{
    return m_value;
}

int AbstractController::minimumValue() const
{
    return m_minimum;
}

int AbstractController::maximumValue() const
{
    return m_maximum;
}

int AbstractController::defaultValue() const
{
    return m_default;
}

void AbstractController::setValue(int value)
{
    value = std::min(value, maximumValue());
    value = std::max(value, minimumValue());
    if (isBound()) {
        writeToHost(value);
        return;
    }
    if (value != m_value) {
        m_value = value;
        valueChangedRequest();
    }
}

void AbstractController::writeToHost(int value)
{
    m_echoed = false;
    if (m_pMemAPI->setValue(m_prmId, m_ch, value, m_index, 0, 1) < 0 || m_echoed)
        return;
    // The host reports changes only; a write it did not echo may still have
    // landed on another value than the one shown (a clamp, a rounding).
    const int before = m_value;
    int confirmed = 0;
    if (m_pMemAPI->getValue(m_prmId, m_ch, &confirmed, m_index) < 0 || confirmed == before)
        return;
    m_value = confirmed;
    m_string = readString(confirmed);
    valueChangedRequest();
}

void AbstractController::setMinimumValue(int minimum)
{
    if (m_pMemAPI || minimum == m_minimum)
        return;
    if (minimum <= m_maximum) {
        m_minimum = minimum;
        m_default = std::max(m_default, minimum);
        m_value = std::max(m_value, minimum);
    } else {
        m_minimum = m_maximum = m_default = m_value = minimum;
    }
    valueChangedRequest();
}

void AbstractController::setMaximumValue(int maximum)
{
    if (m_pMemAPI || maximum == m_maximum)
        return;
    if (maximum >= m_minimum) {
        m_maximum = maximum;
        m_default = std::min(m_default, maximum);
        m_value = std::min(m_value, maximum);
    } else {
        m_minimum = m_maximum = m_default = m_value = maximum;
    }
    valueChangedRequest();
}

void AbstractController::setDefaultValue(int value)
{
    if (m_pMemAPI)
        return;
    m_default = std::clamp(value, m_minimum, std::max(m_minimum, m_maximum));
}

namespace {

float normalize(int value, int minimum, int maximum)
{
    if (maximum == minimum)
        return 0.0f; // a collapsed range (a failed host read) has no position
    return static_cast<float>(value - minimum) / static_cast<float>(maximum - minimum);
}

float clampUnit(float f)
{
    return f >= 0.0f ? std::min(f, 1.0f) : 0.0f; // NaN lands on 0
}

} // namespace

float AbstractController::normalized() const
{
    return normalize(value(), minimumValue(), maximumValue());
}

float AbstractController::defaultNormalized() const
{
    return normalize(defaultValue(), minimumValue(), maximumValue());
}

void AbstractController::setNormalized(float normalized)
{
    normalized = clampUnit(normalized);
    const int minimum = minimumValue();
    const int maximum = maximumValue();
    if (isBound()) {
        const int value = minimum + static_cast<int>(double(normalized * float(maximum - minimum)) + 0.5);
        setValue(std::clamp(value, minimum, std::max(minimum, maximum)));
        return;
    }
    // Unbound controls split the range into equal buckets, one per value.
    const int value = std::min(
        minimum + static_cast<int>(double(normalized) * (double(maximum) - double(minimum) + 1.0)), maximum);
    if (value != m_value) {
        m_value = value;
        valueChangedRequest();
    }
}

void AbstractController::setDefaultNormalized(float normalized)
{
    if (m_pMemAPI)
        return;
    const int value = static_cast<int>(double(normalized * float(m_maximum - m_minimum)) + 0.5) + m_minimum;
    m_default = std::clamp(value, m_minimum, std::max(m_minimum, m_maximum));
}

QString AbstractController::string() const
{
    return m_string;
}

void AbstractController::setString(const QString &string)
{
    if (isBound()) {
        const QByteArray text = string.toLocal8Bit();
        int value = 0;
        if (m_pMemAPI->setValueString(m_prmId, m_ch, text.constData(), &value) >= 0)
            writeToHost(value);
        return;
    }
    if (string == m_string)
        return;
    m_string = string;
    bool ok = false;
    const int number = string.toInt(&ok, 10);
    if (ok)
        m_value = std::clamp(number, m_minimum, std::max(m_minimum, m_maximum));
    valueChangedRequest();
}

void AbstractController::gestureSetValue(int value, Qt::KeyboardModifiers modifiers)
{
    const int before = this->value();
    beginEdit();
    setValue(value);
    endEdit();
    if (modifiers != Qt::NoModifier && this->value() != before)
        notifyModifiersChange(modifiers);
}

void AbstractController::gestureSetNormalized(float normalized, Qt::KeyboardModifiers modifiers)
{
    const float before = this->normalized();
    beginEdit();
    setNormalized(normalized);
    endEdit();
    if (modifiers != Qt::NoModifier && this->normalized() != before)
        notifyModifiersChange(modifiers);
}

int AbstractController::linearDragSteps(const QPoint &moved, double fineFactor) const
{
    const int range = std::max(1, maximumValue() - minimumValue() + 1);
    const int pixelsPerStep = std::clamp(200 / range, 1, 20);
    return static_cast<int>((moved.x() - moved.y()) / m_scale / pixelsPerStep / fineFactor);
}

void AbstractController::gestureSetDefault(Qt::KeyboardModifiers modifiers)
{
    gestureSetNormalized(defaultNormalized(), modifiers);
}

} // namespace CommonController_MemAPI
