#include "ValueText.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "Interfaces/ChannelStripValueTables.h"

using namespace ChannelStripTables;

namespace ValueText {

namespace {

const char *const KneeNames[] = { "SOFT", "MEDIUM", "HARD" };

// The step whose table entry lies nearest to x; the count comes with the
// table, so a table can never be searched with another one's length.
template<std::size_t Count> int nearestStep(const double (&table)[Count], double x)
{
    int best = 0;
    for (int i = 1; i < int(Count); ++i) {
        if (std::abs(table[i] - x) < std::abs(table[best] - x))
            best = i;
    }
    return best;
}

QString trimmedNumber(double x, int decimals)
{
    QString text = QString::number(x, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text;
}

// Drops a trailing unit ("Hz", "dB", "ms", "%", ":1") so "1.2 kHz" reads as "1.2k".
QString withoutUnit(QString text, const QString &unit)
{
    text = text.trimmed();
    for (const QString &suffix : { unit, QStringLiteral(":1") }) {
        if (!suffix.isEmpty() && text.endsWith(suffix, Qt::CaseInsensitive))
            text.chop(suffix.size());
    }
    return text.trimmed();
}

} // namespace

bool parseNumber(QString text, double *number)
{
    text = text.trimmed();
    double multiplier = 1.0;
    if (!text.isEmpty()) {
        switch (text.back().unicode()) {
        case 'k':
        case 'K': multiplier = 1e3; break;
        case 'M': multiplier = 1e6; break;
        case 'G':
        case 'g': multiplier = 1e9; break;
        default: break;
        }
        if (multiplier != 1.0)
            text.chop(1);
    }
    bool ok = false;
    const double x = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(x))
        return false;
    *number = x * multiplier;
    return true;
}

QString format(const ParameterDefinition &parameter, int value)
{
    switch (parameter.kind) {
    case ValueKind::Frequency: {
        const double f = FreqTable[std::clamp(value, 0, FreqCount - 1)];
        return f >= 1000.0 ? trimmedNumber(f / 1000.0, 2) + QLatin1Char('k') : trimmedNumber(f, 1);
    }
    case ValueKind::Gain: {
        const double g = GainTable[std::clamp(value, 0, GainCount - 1)];
        const QString text = QString::number(g, 'f', 1);
        return g > 0.04                     ? QLatin1Char('+') + text
            : text == QLatin1String("-0.0") ? QStringLiteral("0.0")
                                            : text;
    }
    case ValueKind::Quality: return QString::number(QTable[std::clamp(value, 0, QCount - 1)], 'f', 2);
    case ValueKind::Ratio: {
        const int step = std::clamp(value, 0, RatioCount - 1);
        if (step == RatioCount - 1)
            return QStringLiteral("INF:1");
        const double r = RatioTable[step];
        return QString::number(r, 'f', r < 10.0 ? 2 : r < 100.0 ? 1 : 0) + QStringLiteral(":1");
    }
    case ValueKind::Knee: return QString::fromLatin1(KneeNames[std::clamp(value, 0, 2)]);
    case ValueKind::Switch: return value ? QStringLiteral("ON") : QStringLiteral("OFF");
    case ValueKind::Linear: {
        const double x = value * parameter.step + parameter.offset;
        const QString text = QString::number(x, 'f', parameter.decimals);
        if (parameter.signedOutput && x > 0.5 * std::pow(10.0, -parameter.decimals))
            return QLatin1Char('+') + text;
        return text.startsWith(QLatin1String("-")) && text.toDouble() == 0.0 ? text.mid(1) : text;
    }
    case ValueKind::Text: return QString(QChar(value & 0xff));
    }
    return QString();
}

bool parse(const ParameterDefinition &parameter, const QString &input, int *value)
{
    const QString text = withoutUnit(input, parameter.unit);
    if (text.isEmpty())
        return false;
    int result = 0;
    double x = 0;
    switch (parameter.kind) {
    case ValueKind::Knee: {
        bool ok = false;
        result = text.toInt(&ok);
        if (!ok) {
            result = -1;
            for (int i = 0; i < 3; ++i) {
                if (QString::fromLatin1(KneeNames[i]).startsWith(text, Qt::CaseInsensitive))
                    result = i;
            }
        }
        if (result < 0 || result > 2)
            return false;
        break;
    }
    case ValueKind::Switch: {
        const QString word = text.toLower();
        if (word == QLatin1String("on") || word == QLatin1String("1") || word == QLatin1String("true"))
            result = 1;
        else if (word == QLatin1String("off") || word == QLatin1String("0") || word == QLatin1String("false"))
            result = 0;
        else
            return false;
        break;
    }
    case ValueKind::Ratio:
        if (text.compare(QLatin1String("inf"), Qt::CaseInsensitive) == 0
            || text == QStringLiteral("\u221e")) {
            result = RatioCount - 1;
            break;
        }
        if (!parseNumber(text, &x))
            return false;
        result = nearestStep(RatioTable, x);
        break;
    case ValueKind::Frequency:
        if (!parseNumber(text, &x))
            return false;
        result = nearestStep(FreqTable, x);
        break;
    case ValueKind::Gain:
        if (!parseNumber(text, &x))
            return false;
        result = nearestStep(GainTable.values, x);
        break;
    case ValueKind::Quality:
        if (!parseNumber(text, &x))
            return false;
        result = nearestStep(QTable, x);
        break;
    case ValueKind::Linear:
        if (!parseNumber(text, &x))
            return false;
        result = static_cast<int>(std::lround(std::clamp(
            (x - parameter.offset) / parameter.step, double(parameter.minimum), double(parameter.maximum))));
        break;
    case ValueKind::Text: return false;
    }
    *value = std::clamp(result, parameter.minimum, parameter.maximum);
    return true;
}

} // namespace ValueText
