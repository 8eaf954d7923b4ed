#include "tools/MorphRecordCommands.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>
#include <optional>

#include "ChannelStripModel.h"
#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "ORVChStrip/Chunk/BoundedFileReader.h"
#include "ORVChStrip/Chunk/StateParameterLists.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ValueText.h"
#include "tools/PrintableName.h"
#include "tools/ToolCommand.h"

using ORVChStripParameters::OrvaneDataParameterList;

namespace {

const QString Show = QStringLiteral("morph show");
const QString Make = QStringLiteral("morph make");
const QString ShowUsage = QStringLiteral("morph show FILE [--json]");
const QString MakeUsage = QStringLiteral("morph make --from TABLE.json --out FILE.ord [--json]");

// A table is a few kilobytes of JSON; this leaves room for long
// descriptions and still refuses /dev/zero or a wrong file at once.
constexpr qint64 TableReadLimit = 1024 * 1024;

// The simulated host's description of every morph column, in record order.
QList<ParameterDefinition> morphColumns()
{
    const QList<ParameterDefinition> parameters = ChannelStripModel::parameters();
    QList<ParameterDefinition> columns;
    for (const char *key : OrvaneDataParameterList) {
        const auto found = std::find_if(parameters.begin(), parameters.end(),
            [key](const ParameterDefinition &parameter) { return parameter.key == key; });
        ParameterDefinition column;
        if (found != parameters.end())
            column = *found;
        column.key = key;
        columns.append(column);
    }
    return columns;
}

QString valueText(const ParameterDefinition &column, int value)
{
    if (value < column.minimum || value > column.maximum)
        return QStringLiteral("?%1").arg(value);
    // "1.2kHz" and "100Hz" beside "-3.0 dB" and "30 ms".
    const QString text = ValueText::format(column, value);
    if (column.unit.isEmpty())
        return text;
    return text + (column.kind == ValueKind::Frequency ? QString() : QStringLiteral(" ")) + column.unit;
}

void showText(ToolContext &context, const QString &file, const OrvdMorphRecord &record)
{
    const QList<ParameterDefinition> columns = morphColumns();
    context.out << "File:   " << PrintableName::escaped(QDir::toNativeSeparators(file)) << '\n'
                << "Name:   " << PrintableName::escaped(record.name) << '\n'
                << "Id:     " << PrintableName::escaped(QString::fromLatin1(record.systemId)) << '\n'
                << "Points: " << OrvdMorphRecord::PointCount << '\n';
    constexpr int KeyWidth = 20;
    constexpr int ValueWidth = 10;
    QString header = QStringLiteral("Column").leftJustified(KeyWidth);
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point)
        header += QString::number(point + 1).rightJustified(ValueWidth);
    context.out << header << '\n';
    for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
        QString line = QString::fromLatin1(columns.at(column).key).leftJustified(KeyWidth);
        for (const OrvdMorphRecord::Point &point : record.points)
            line += valueText(columns.at(column), point[column]).rightJustified(ValueWidth);
        context.out << line << '\n';
    }
}

void showJson(ToolContext &context, const QString &file, const OrvdMorphRecord &record)
{
    const QList<ParameterDefinition> columns = morphColumns();
    QJsonArray keys;
    for (const ParameterDefinition &column : columns)
        keys.append(QString::fromLatin1(column.key));
    QJsonArray values;
    QJsonArray texts;
    for (const OrvdMorphRecord::Point &point : record.points) {
        QJsonArray pointValues;
        QJsonArray pointTexts;
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
            pointValues.append(point[column]);
            pointTexts.append(valueText(columns.at(column), point[column]));
        }
        values.append(pointValues);
        texts.append(pointTexts);
    }
    const QJsonObject object {
        { QStringLiteral("file"), PrintableName::forJson(QDir::toNativeSeparators(file)) },
        { QStringLiteral("name"), record.name },
        { QStringLiteral("id"), QString::fromLatin1(record.systemId) },
        { QStringLiteral("columns"), keys },
        { QStringLiteral("points"), values },
        { QStringLiteral("texts"), texts },
    };
    context.out << QJsonDocument(object).toJson(QJsonDocument::Indented);
}

int runShow(ToolContext &context, const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        if (argument.startsWith(QLatin1Char('-')))
            return context.failUsage(Show, argument, ShowUsage);
    }
    if (arguments.size() != 1)
        return context.failUsage(Show, arguments.value(1), ShowUsage);
    const QString path = arguments.first();
    BoundedFileReader reader(OrvdMorphRecord::Size, QStringLiteral("a morph data file"));
    if (!reader.read(path))
        return context.fail(Show, path, reader.errorString());
    OrvdMorphRecord record;
    const OrvdMorphRecord::ReadResult result = OrvdMorphRecord::read(reader.bytes(), &record);
    if (result != OrvdMorphRecord::ReadResult::Ok)
        return context.fail(Show, path,
            QStringLiteral("not a morph data file: %1")
                .arg(OrvdMorphRecord::describe(result, reader.bytes().size())));
    if (context.json)
        showJson(context, path, record);
    else
        showText(context, path, record);
    return 0;
}

// Where `text` holds a control character (a line break, an escape sequence),
// which a name printed on one line or sent to the host's display cannot show.
qsizetype controlCharacterAt(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar::Category category = text.at(i).category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph)
            return i;
    }
    return -1;
}

// The record a table describes, or nothing with `problem` saying why.
std::optional<OrvdMorphRecord> recordFromTable(const QJsonObject &table, QString *problem)
{
    OrvdMorphRecord record;
    const QJsonValue name = table.value(QLatin1String("name"));
    if (!name.isString() || name.toString().trimmed().isEmpty()) {
        *problem = QStringLiteral("\"name\" must be a non-empty string");
        return std::nullopt;
    }
    record.name = name.toString();
    if (const qsizetype at = controlCharacterAt(record.name); at >= 0) {
        *problem = QStringLiteral("\"name\" holds a control character (%1 at character %2)")
                       .arg(PrintableName::escaped(record.name.at(at)))
                       .arg(at + 1);
        return std::nullopt;
    }
    const QJsonValue id = table.value(QLatin1String("id"));
    if (!id.isString() && !id.isUndefined()) {
        *problem = QStringLiteral("\"id\" must be a string");
        return std::nullopt;
    }
    const QString idText = id.toString();
    for (const QChar c : idText) {
        if (c.unicode() < 0x20 || c.unicode() > 0x7e) {
            *problem = QStringLiteral("\"id\" must be printable ASCII");
            return std::nullopt;
        }
    }
    record.systemId = idText.toLatin1();

    const QJsonArray keys = table.value(QLatin1String("columns")).toArray();
    for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
        const QString expected = QString::fromLatin1(OrvaneDataParameterList[column]);
        const QString given = keys.at(column).toString();
        if (given != expected) {
            *problem
                = QStringLiteral("\"columns\" must list the %1 morph columns in record order; column %2 is "
                                 "\"%3\", expected \"%4\"")
                      .arg(OrvdMorphRecord::ColumnCount)
                      .arg(column + 1)
                      .arg(given, expected);
            return std::nullopt;
        }
    }
    if (keys.size() != OrvdMorphRecord::ColumnCount) {
        *problem = QStringLiteral("\"columns\" lists %1 columns, expected %2")
                       .arg(keys.size())
                       .arg(OrvdMorphRecord::ColumnCount);
        return std::nullopt;
    }

    const QList<ParameterDefinition> columns = morphColumns();
    const QJsonArray points = table.value(QLatin1String("points")).toArray();
    if (points.size() != OrvdMorphRecord::PointCount) {
        *problem = QStringLiteral("\"points\" holds %1 points, a morph set has %2")
                       .arg(points.size())
                       .arg(OrvdMorphRecord::PointCount);
        return std::nullopt;
    }
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        const QJsonArray values = points.at(point).toArray();
        if (values.size() != OrvdMorphRecord::ColumnCount) {
            *problem = QStringLiteral("point %1 holds %2 values, expected %3")
                           .arg(point + 1)
                           .arg(values.size())
                           .arg(OrvdMorphRecord::ColumnCount);
            return std::nullopt;
        }
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
            const ParameterDefinition &definition = columns.at(column);
            const QString where = QStringLiteral("point %1, column %2")
                                      .arg(point + 1)
                                      .arg(QString::fromLatin1(definition.key));
            const QJsonValue value = values.at(column);
            const double number = value.toDouble(std::nan(""));
            if (!value.isDouble() || number != std::floor(number)) {
                *problem = QStringLiteral("%1: %2 is not an integer value")
                               .arg(where,
                                   QString::fromUtf8(
                                       QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact))
                                       .mid(1)
                                       .chopped(1));
                return std::nullopt;
            }
            if (number < definition.minimum || number > definition.maximum) {
                *problem = QStringLiteral("%1: %2 is outside the range %3..%4")
                               .arg(where)
                               .arg(number, 0, 'f', 0)
                               .arg(definition.minimum)
                               .arg(definition.maximum);
                return std::nullopt;
            }
            record.points[point][column] = static_cast<int16_t>(number);
        }
    }
    *problem = record.fitProblem();
    if (!problem->isEmpty())
        return std::nullopt;
    return record;
}

int runMake(ToolContext &context, const QStringList &arguments)
{
    QString from;
    QString out;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        QString *target = argument == QLatin1String("--from") ? &from
            : argument == QLatin1String("--out")              ? &out
                                                              : nullptr;
        if (target && i + 1 < arguments.size())
            *target = arguments.at(++i);
        else if (argument.startsWith(QLatin1String("--from=")))
            from = argument.mid(7);
        else if (argument.startsWith(QLatin1String("--out=")))
            out = argument.mid(6);
        else
            return context.failUsage(Make, target ? QString() : argument, MakeUsage);
    }
    if (from.isEmpty() || out.isEmpty())
        return context.failUsage(Make, QString(), MakeUsage);

    BoundedFileReader table(TableReadLimit, QStringLiteral("a morph table"));
    if (!table.read(from))
        return context.fail(Make, from, table.errorString());
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(table.bytes(), &parseError);
    QString problem;
    std::optional<OrvdMorphRecord> record;
    if (parseError.error != QJsonParseError::NoError)
        problem = QStringLiteral("not valid JSON at offset %1: %2")
                      .arg(parseError.offset)
                      .arg(parseError.errorString());
    else if (!document.isObject())
        problem = QStringLiteral("the table must be a JSON object");
    else
        record = recordFromTable(document.object(), &problem);
    if (!record)
        return context.fail(Make, from, problem);

    // All or nothing: a failed write leaves an existing file as it was.
    AtomicFileWriter writer(out, AtomicFileWriter::Leftovers::RemoveStale);
    if (!writer.write(record->write()))
        return context.fail(Make, out, QStringLiteral("cannot write: %1").arg(writer.errorString()));
    if (!context.json)
        context.out << "Wrote " << PrintableName::escaped(QDir::toNativeSeparators(out)) << " ("
                    << PrintableName::escaped(record->name) << ")\n";
    else
        context.out << QJsonDocument(
            QJsonObject { { QStringLiteral("file"), PrintableName::forJson(QDir::toNativeSeparators(out)) },
                { QStringLiteral("name"), record->name } })
                           .toJson(QJsonDocument::Compact)
                    << '\n';
    return 0;
}

} // namespace

namespace MorphRecordCommands {

bool handles(const QString &subcommand)
{
    return subcommand == QLatin1String("show") || subcommand == QLatin1String("make");
}

int run(ToolContext &context)
{
    const QString subcommand = context.arguments.value(0);
    const QStringList arguments = context.arguments.mid(1);
    return subcommand == QLatin1String("show") ? runShow(context, arguments) : runMake(context, arguments);
}

} // namespace MorphRecordCommands
