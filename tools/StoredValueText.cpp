#include "tools/StoredValueText.h"

#include <algorithm>

#include "ORVChStrip/Chunk/NormalizedValue.h"
#include "ValueText.h"

StoredValueText::StoredValueText(QList<ParameterDefinition> parameters)
    : m_parameters(std::move(parameters))
{ }

const ParameterDefinition *StoredValueText::parameter(const char *key) const
{
    if (!key)
        return nullptr;
    for (const ParameterDefinition &parameter : m_parameters) {
        if (parameter.key == key)
            return &parameter;
    }
    return nullptr;
}

QString StoredValueText::integer(const char *key, int value) const
{
    const ParameterDefinition *parameter = this->parameter(key);
    if (!parameter || parameter->isText())
        return QString();
    const QString text
        = ValueText::format(*parameter, std::clamp(value, parameter->minimum, parameter->maximum));
    if (parameter->unit.isEmpty())
        return text;
    // "1.2k" reads "1.2 kHz" with its unit.
    if (text.endsWith(QLatin1Char('k')))
        return text.chopped(1) + QStringLiteral(" k") + parameter->unit;
    return text + QLatin1Char(' ') + parameter->unit;
}

QString StoredValueText::normalized(const char *key, float value) const
{
    const ParameterDefinition *parameter = this->parameter(key);
    if (!parameter)
        return QString();
    return integer(key, NormalizedValue::denormalized(value, parameter->minimum, parameter->maximum));
}
