#include "ValueRangeCheck.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "Interfaces/ChannelStripValueTables.h"
#include "ValueText.h"

using namespace ChannelStripTables;

double ValueRangeCheck::physical(const ParameterDefinition &parameter, int value)
{
    switch (parameter.kind) {
    case ValueKind::Frequency: return FreqTable[std::clamp(value, 0, FreqCount - 1)];
    case ValueKind::Gain: return GainTable[std::clamp(value, 0, GainCount - 1)];
    case ValueKind::Quality: return QTable[std::clamp(value, 0, QCount - 1)];
    case ValueKind::Ratio: return RatioTable[std::clamp(value, 0, RatioCount - 1)];
    case ValueKind::Linear: return value * parameter.step + parameter.offset;
    case ValueKind::Knee:
    case ValueKind::Switch:
    case ValueKind::Text: break;
    }
    return value;
}

bool ValueRangeCheck::contains(const ParameterDefinition &parameter, const QString &input)
{
    switch (parameter.kind) {
    case ValueKind::Knee:
    case ValueKind::Switch:
    case ValueKind::Text: return true; // the parser refuses every other word
    default: break;
    }
    QString text = input.trimmed();
    for (const QString &suffix : { parameter.unit, QStringLiteral(":1") }) {
        if (!suffix.isEmpty() && text.endsWith(suffix, Qt::CaseInsensitive))
            text = text.chopped(suffix.size()).trimmed();
    }
    double x = 0.0;
    if (!ValueText::parseNumber(text, &x))
        return true;
    const int low = parameter.minimum;
    const int high = parameter.maximum;
    if (high <= low)
        return x == physical(parameter, low);
    const double lowest = physical(parameter, low);
    const double highest = physical(parameter, high);
    // The last ratio step is limiting, above every number.
    if (parameter.kind == ValueKind::Ratio && high == RatioCount - 1)
        return x >= lowest - (physical(parameter, low + 1) - lowest) / 2;
    return x >= lowest - (physical(parameter, low + 1) - lowest) / 2
        && x <= highest + (highest - physical(parameter, high - 1)) / 2;
}

QString ValueRangeCheck::describe(const ParameterDefinition &parameter)
{
    const auto text = [&](int value) {
        const QString shown = ValueText::format(parameter, value);
        if (parameter.unit.isEmpty())
            return shown;
        // "1.2k" reads "1.2 kHz" with its unit.
        return shown.endsWith(QLatin1Char('k')) ? shown.chopped(1) + QStringLiteral(" k") + parameter.unit
                                                : shown + QLatin1Char(' ') + parameter.unit;
    };
    if (parameter.kind == ValueKind::Knee || parameter.kind == ValueKind::Switch) {
        QStringList words;
        for (int value = parameter.minimum; value <= parameter.maximum; ++value)
            words << text(value);
        const QString last = words.takeLast();
        return words.isEmpty() ? last : words.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
    }
    return text(parameter.minimum) + QStringLiteral(" to ") + text(parameter.maximum);
}
