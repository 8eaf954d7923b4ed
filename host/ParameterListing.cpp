#include "ParameterListing.h"

#include <QStringList>
#include <QTextStream>

#include "HostModel.h"
#include "ParameterMemory.h"
#include "ValueText.h"

void printParameterListing(const HostModel &model, QTextStream &out)
{
    out << qSetFieldWidth(20) << Qt::left << "key" << qSetFieldWidth(14) << "range"
        << "default" << qSetFieldWidth(8) << "unit" << qSetFieldWidth(0) << "values\n";
    for (const ParameterDefinition &parameter : model.parameters()) {
        const QString range = QStringLiteral("%1..%2").arg(parameter.minimum).arg(parameter.maximum);
        QString values;
        if (parameter.isText()) {
            values = QStringLiteral("text of %1 characters").arg(parameter.decimals);
        } else if (parameter.kind == ValueKind::Knee || parameter.kind == ValueKind::Switch) {
            // A switch or selector has few values: list every one.
            QStringList words;
            for (int value = parameter.minimum; value <= parameter.maximum; ++value)
                words << ValueText::format(parameter, value);
            values = words.join(QStringLiteral(", "));
        } else
            values = ValueText::format(parameter, parameter.minimum) + QStringLiteral(" .. ")
                + ValueText::format(parameter, parameter.maximum);
        if (!parameter.morphTargetKey.isEmpty())
            values += QStringLiteral("  (morph column of %1, points on ch*9+0..8)")
                          .arg(QString::fromLatin1(parameter.morphTargetKey));
        const QString defaultText = parameter.isText() ? QStringLiteral("empty")
                                                       : ValueText::format(parameter, parameter.defaultValue);
        out << qSetFieldWidth(20) << QString::fromLatin1(parameter.key) << qSetFieldWidth(14) << range
            << defaultText << qSetFieldWidth(8) << parameter.unit << qSetFieldWidth(0) << values << '\n';
    }
    out << "\nmeter               array base  channels  meaning\n";
    for (const MeterDefinition &meter : model.meters()) {
        out << qSetFieldWidth(20) << QString::fromLatin1(meter.key) << qSetFieldWidth(12)
            << model.meterBase(meter.key.constData()) << qSetFieldWidth(10) << meter.channels
            << qSetFieldWidth(0) << meter.description << '\n';
    }
    out << "\nMeter values are tenths of a dB (-1270 = silence); entry base + 2 * channel + side.\n";
}

void printParameterValues(const ParameterMemory &memory, int channel, QTextStream &out)
{
    for (const ParameterDefinition &parameter : memory.model()->parameters()) {
        const char *key = parameter.key.constData();
        QString text = parameter.isText() ? QString::fromUtf8(memory.text(key, channel))
                                          : ValueText::format(parameter, memory.value(key, channel));
        // A name may hold anything; one line per parameter whatever it holds.
        for (QChar &c : text) {
            if (c.category() == QChar::Other_Control)
                c = QLatin1Char(' ');
        }
        out << parameter.key << '=' << text << '\n';
    }
}
