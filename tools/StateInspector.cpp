#include "tools/StateInspector.h"

#include <QJsonArray>
#include <QTextStream>
#include <algorithm>

#include "ORVChStrip/Chunk/ChStripFileException.h"
#include "ORVChStrip/Chunk/NormalizedValue.h"
#include "ORVChStrip/Chunk/SavedStateLayout.h"
#include "ORVChStrip/Chunk/SavedStateReader.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"

using namespace ORVChStripParameters;
using namespace SavedStateLayout;
using Part = SavedStateReader::Part;
using Problem = SavedStateReader::Problem;

namespace {

constexpr int MorphPoints = YChannelStripChunk::TableRows - 1; // the last row is the end mark

QString quoted(const QByteArray &bytes)
{
    QString text;
    for (const char c : bytes)
        text += c >= 0x20 && c < 0x7F ? QString(QLatin1Char(c))
                                      : QStringLiteral("\\x%1").arg(uchar(c), 2, 16, QLatin1Char('0'));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// The chunk reader's failures in the words of this tool. The reader
// reports the position it had reached, right after the header it rejected.
QString readerProblem(int code)
{
    switch (code) {
    case ChStripFileException::NotChStripFile:
        return QStringLiteral("expected a \"CHST\" form header before this offset");
    case ChStripFileException::AbnormalChunkId:
        return QStringLiteral(
            "expected the chunk id \"CHST\", \"ORD \" or \"PRM \" in the header before this offset");
    case ChStripFileException::AbnormalChunkSize:
        return QStringLiteral("expected a chunk size from 0 up (and at least 4 for \"FINF\") in the header "
                              "before this offset");
    case ChStripFileException::NoFileInformation:
        return QStringLiteral(
            "expected the \"FINF\" file-information chunk in the header before this offset");
    default: return QStringLiteral("expected a readable channel-strip chunk");
    }
}

// What a chunk inside a form holds.
QString note(const SavedStateReader::ChunkHeader &chunk)
{
    if (chunk.id == "ORD ")
        return QStringLiteral("morph system name and table");
    if (chunk.id == "PRM ")
        return QStringLiteral("%1 floats").arg(chunk.size / 4);
    return QStringLiteral("skipped");
}

QString foundText(const QByteArray &found)
{
    return found.size() < MarkerSize ? QStringLiteral("the end of the file") : quoted(found);
}

QJsonArray valuesJson(const QVector<StateInspector::Value> &values)
{
    QJsonArray array;
    for (const StateInspector::Value &value : values) {
        array.append(QJsonObject {
            { QStringLiteral("key"), value.key.isEmpty() ? QJsonValue() : value.key },
            { QStringLiteral("value"), double(value.value) },
            { QStringLiteral("text"), value.text.isEmpty() ? QJsonValue() : value.text },
        });
    }
    return array;
}

void writeValues(QTextStream &out, const QString &title, const QVector<StateInspector::Value> &values)
{
    if (values.isEmpty())
        return;
    out << title << ":\n";
    for (const StateInspector::Value &value : values) {
        out << "  " << (value.key.isEmpty() ? QStringLiteral("(unused)") : value.key).leftJustified(20) << ' '
            << value.text.leftJustified(12) << ' ' << QString::number(double(value.value), 'g', 9) << '\n';
    }
}

} // namespace

StateInspector::StateInspector(QList<ParameterDefinition> parameters)
    : m_texts(std::move(parameters))
{ }

void StateInspector::reset(const QString &kind)
{
    const StoredValueText texts = m_texts;
    *this = StateInspector();
    m_texts = texts;
    m_kind = kind;
}

bool StateInspector::fail(qint64 offset, const QString &message)
{
    m_errorOffset = offset;
    m_error = message;
    return false;
}

QString StateInspector::morphCellText(int row, int column) const
{
    if (row < 0 || row >= MorphPoints || row >= m_table.size() || column < 0
        || column >= OrvaneDataParameterCount)
        return QString();
    return m_texts.integer(OrvaneDataParameterList[column], m_table.at(row).at(column));
}

QVector<StateInspector::Value> StateInspector::bigEndianFloats(
    const QByteArray &bytes, qint64 offset, int count, const char *const *keys, int keyCount) const
{
    QVector<Value> values;
    for (int i = 0; i < count; ++i) {
        const auto *p = reinterpret_cast<const unsigned char *>(bytes.constData() + offset + 4 * i);
        const char *key = i < keyCount ? keys[i] : nullptr;
        const float value = NormalizedValue::readBigEndianFloat(p);
        values.append({ QString::fromLatin1(key), value, m_texts.normalized(key, value) });
    }
    return values;
}

bool StateInspector::inspectChunk(const QByteArray &bytes)
{
    reset(QStringLiteral("chunk"));
    SavedStateReader reader(bytes);
    YChannelStripChunk::Contents contents;
    const bool read = reader.readChunkFile(contents);
    describe(reader, bytes);
    if (!read)
        return failWith(reader);
    takeContents(reader, contents);
    return true;
}

bool StateInspector::inspectState(const QByteArray &bytes)
{
    reset(QStringLiteral("state"));
    SavedStateReader reader(bytes);
    YChannelStripChunk::Contents contents;
    const bool read = reader.readState(contents);
    describe(reader, bytes);
    if (!read)
        return failWith(reader);
    takeContents(reader, contents);
    const SavedStateReader::Item &chunk = reader.items().constLast();
    const qint64 end = chunk.offset + chunk.headerSize + chunk.size;
    if (end < bytes.size())
        m_entries.append(
            { QStringLiteral("trailing bytes"), end, bytes.size() - end, 0, QStringLiteral("not read") });
    return true;
}

// The parts that the reader passed, with the values they hold.
void StateInspector::describe(SavedStateReader &reader, const QByteArray &bytes)
{
    if (reader.chunkOffset() >= 0)
        m_chunkLayout = reader.isWideChunk() ? QStringLiteral("64-bit") : QStringLiteral("32-bit");
    for (const SavedStateReader::Item &item : reader.items()) {
        switch (item.part) {
        case Part::Version:
            m_version = reader.version();
            m_versionNumber = reader.versionNumber();
            m_entries.append({ QStringLiteral("version"), item.offset, item.size, 0, quoted(m_version) });
            break;
        case Part::GenericBlock:
            m_stateLayout = reader.isNewerLayout() ? QStringLiteral("newer") : QStringLiteral("older");
            m_entries.append({ QStringLiteral("generic floats"), item.offset, item.size, 0,
                QStringLiteral("%1 big-endian floats").arg(ParameterListCount) });
            m_generic
                = bigEndianFloats(bytes, item.offset, ParameterListCount, ParameterList, ParameterListCount);
            break;
        case Part::ParameterMarker:
            m_entries.append({ QString::fromLatin1(ParameterMarker), item.offset, item.size, 0,
                QStringLiteral("extended block") });
            break;
        case Part::Count:
            m_entries.append(
                { QStringLiteral("count"), item.offset, item.size, 0, QString::number(item.value) });
            break;
        case Part::ExtendedBlock:
            m_entries.append({ QStringLiteral("extended floats"), item.offset, item.size, 0,
                QStringLiteral("%1 big-endian floats").arg(item.value) });
            m_extended
                = bigEndianFloats(bytes, item.offset, int(item.value), ParameterListEx, ParameterListExCount);
            break;
        case Part::ChunkMarker:
            m_entries.append({ QString::fromLatin1(ChunkMarker), item.offset, item.size, 0,
                QStringLiteral("chunk follows") });
            break;
        case Part::FirstChunk:
        case Part::Chunk: listForm(reader, item); break;
        }
    }
}

void StateInspector::listForm(SavedStateReader &reader, const SavedStateReader::Item &form)
{
    const bool wide = form.headerSize == WideFormHeaderSize;
    m_entries.append({ QString::fromLatin1(FormMagic), form.offset, form.size, 0,
        QStringLiteral("%1 form, size field %2")
            .arg(wide ? QStringLiteral("64-bit") : QStringLiteral("32-bit"))
            .arg(form.size) });
    const QList<SavedStateReader::ChunkHeader> chunks = reader.formContents(form);
    for (int i = 0; i < chunks.size(); ++i) {
        const SavedStateReader::ChunkHeader &chunk = chunks.at(i);
        // The first is the file information.
        m_entries.append({ quoted(chunk.id).mid(1).chopped(1), chunk.offset, chunk.size, 1,
            i == 0 ? QString() : note(chunk) });
    }
}

void StateInspector::takeContents(
    const SavedStateReader &reader, const YChannelStripChunk::Contents &contents)
{
    m_hasMorphData = reader.hasMorphData();
    if (m_hasMorphData) {
        const char *name = contents.systemName;
        m_systemName = QByteArray(name, int(qstrnlen(name, YChannelStripChunk::SystemNameLength)));
        for (const auto &row : contents.table)
            m_table.append(QVector<short>(row, row + YChannelStripChunk::TableColumns));
    }
    const int count = std::min(reader.parameterCount(), int(YChannelStripChunk::ParameterCapacity));
    for (int i = 0; i < count; ++i) {
        const char *key = i < ParameterListExCount ? ParameterListEx[i] : nullptr;
        const float value = contents.values[i];
        m_chunkValues.append({ QString::fromLatin1(key), value, m_texts.normalized(key, value) });
    }
}

// What the reader stopped at, as what was expected where and what was found.
bool StateInspector::failWith(SavedStateReader &reader)
{
    const SavedStateReader::Failure &failure = reader.failure();
    const qint64 size = reader.length();
    const qint64 at = failure.offset;
    if (failure.problem == Problem::FormCut) {
        const qint64 available = size - at - failure.headerSize;
        const quint64 end = quint64(at + failure.headerSize) + quint64(failure.value);
        return fail(size,
            QStringLiteral("the data end %1 bytes before the end that the \"CHST\" form at offset %2 states "
                           "(offset %3); the file is truncated")
                .arg(failure.value - available)
                .arg(at)
                .arg(end));
    }
    switch (failure.part) {
    case Part::Version:
        return fail(size,
            QStringLiteral("expected the %1-byte version at offset 0, the file has %2 bytes")
                .arg(DataVersionSize)
                .arg(size));
    case Part::GenericBlock:
        return fail(size,
            QStringLiteral(
                "expected %1 generic floats (%2 bytes) from offset %3, the file ends %4 bytes short")
                .arg(ParameterListCount)
                .arg(GenericBlockSize)
                .arg(GenericBlockOffset)
                .arg(FirstChunkOffset - size));
    case Part::FirstChunk:
        if (failure.problem == Problem::WrongId)
            return fail(at,
                QStringLiteral("expected %1 (the first chunk of the newer layout), found %2")
                    .arg(quoted(FormMagic), foundText(failure.found)));
        if (failure.problem == Problem::NegativeSize)
            return fail(
                at, QStringLiteral("expected the first chunk's size from 0 up, found %1").arg(failure.value));
        return fail(at, QStringLiteral("expected the first chunk's 4-byte size, found the end of the file"));
    case Part::ParameterMarker:
        return fail(at,
            QStringLiteral("expected %1 (%2), found %3")
                .arg(quoted(ParameterMarker), QStringLiteral("extended block"), foundText(failure.found)));
    case Part::Count:
        return fail(at, QStringLiteral("expected the 4-byte float count, found the end of the file"));
    case Part::ExtendedBlock:
        return fail(size,
            QStringLiteral("expected %1 floats (%2 bytes) from offset %3, the file ends %4 bytes short")
                .arg(failure.value)
                .arg(failure.value * 4)
                .arg(at)
                .arg(failure.value * 4 - (size - at)));
    case Part::ChunkMarker:
        return fail(at,
            QStringLiteral("expected %1 (%2), found %3")
                .arg(quoted(ChunkMarker), QStringLiteral("chunk follows"), foundText(failure.found)));
    case Part::Chunk: break;
    }
    if (failure.problem == Problem::DataEnd)
        return fail(size,
            QStringLiteral(
                "expected the 8-byte header of a \"CHST\" form from offset %1, the file ends %2 bytes short")
                .arg(at)
                .arg(FormHeaderSize - (size - at)));
    if (failure.problem == Problem::WrongId)
        return fail(at,
            QStringLiteral(
                "expected \"CHST\" (a channel-strip form) here or, in the 64-bit layout, at offset %1; "
                "found %2")
                .arg(at + MarkerSize)
                .arg(quoted(failure.found)));
    return fail(at, readerProblem(failure.readerCode));
}

QJsonObject StateInspector::toJson() const
{
    QJsonObject object { { QStringLiteral("kind"), m_kind } };
    if (!m_stateLayout.isEmpty())
        object.insert(QStringLiteral("layout"), m_stateLayout);
    if (!m_chunkLayout.isEmpty())
        object.insert(QStringLiteral("chunk_layout"), m_chunkLayout);
    if (m_kind == QLatin1String("state")) {
        object.insert(QStringLiteral("version"), QString::fromLatin1(m_version));
        object.insert(QStringLiteral("version_number"), m_versionNumber);
    }
    QJsonArray entries;
    for (const Entry &entry : m_entries)
        entries.append(QJsonObject { { QStringLiteral("name"), entry.name },
            { QStringLiteral("offset"), entry.offset }, { QStringLiteral("size"), entry.size },
            { QStringLiteral("depth"), entry.depth }, { QStringLiteral("note"), entry.note } });
    object.insert(QStringLiteral("entries"), entries);
    if (!isValid()) {
        object.insert(QStringLiteral("error"), m_error);
        object.insert(QStringLiteral("error_offset"), m_errorOffset);
        return object;
    }
    object.insert(QStringLiteral("has_morph_data"), m_hasMorphData);
    object.insert(QStringLiteral("morph_system_name"),
        m_hasMorphData ? QJsonValue(QString::fromLatin1(m_systemName)) : QJsonValue());
    QJsonArray table;
    QJsonArray texts;
    for (int r = 0; r < m_table.size(); ++r) {
        QJsonArray cells;
        QJsonArray cellTexts;
        for (int k = 0; k < m_table.at(r).size(); ++k) {
            cells.append(m_table.at(r).at(k));
            const QString text = morphCellText(r, k);
            cellTexts.append(text.isEmpty() ? QJsonValue() : text);
        }
        table.append(cells);
        texts.append(cellTexts);
    }
    object.insert(QStringLiteral("morph_table"), table);
    object.insert(QStringLiteral("morph_table_texts"), texts);
    QJsonArray columns;
    for (const char *key : OrvaneDataParameterList)
        columns.append(QString::fromLatin1(key));
    object.insert(QStringLiteral("morph_columns"), columns);
    if (!m_generic.isEmpty())
        object.insert(QStringLiteral("generic"), valuesJson(m_generic));
    if (!m_extended.isEmpty())
        object.insert(QStringLiteral("extended"), valuesJson(m_extended));
    object.insert(QStringLiteral("chunk_values"), valuesJson(m_chunkValues));
    return object;
}

void StateInspector::writeText(QTextStream &out) const
{
    if (m_kind == QLatin1String("state"))
        out << "State, " << (m_stateLayout.isEmpty() ? QStringLiteral("unknown") : m_stateLayout)
            << " layout, version " << quoted(m_version) << " (" << m_versionNumber << ")\n";
    if (!m_chunkLayout.isEmpty())
        out << "Chunk layout: " << m_chunkLayout << '\n';
    out << "\n  Offset      Size  Item\n";
    for (const Entry &entry : m_entries)
        out << QStringLiteral("%1%2").arg(entry.offset, 8).arg(entry.size, 10) << "  "
            << QString(2 * entry.depth, QLatin1Char(' ')) << entry.name
            << (entry.note.isEmpty() ? QString() : QStringLiteral("  (%1)").arg(entry.note)) << '\n';
    if (!isValid())
        return;
    if (!m_hasMorphData)
        out << "\nNo \"ORD \" chunk: the state holds no morph system name or table.\n";
    else
        out << "\nMorph system name: " << quoted(m_systemName) << '\n';
    if (m_hasMorphData)
        out << "Morph table (one line per column, morph points 0 to " << MorphPoints - 1 << "):\n";
    for (int k = 0; k < OrvaneDataParameterCount && m_hasMorphData; ++k) {
        out << "  " << QString::fromLatin1(OrvaneDataParameterList[k]).leftJustified(20);
        for (int r = 0; r < MorphPoints && r < m_table.size(); ++r) {
            const QString text = morphCellText(r, k);
            out << ' ' << (text.isEmpty() ? QString::number(m_table.at(r).at(k)) : text).rightJustified(10);
        }
        out << '\n';
    }
    if (m_table.size() > MorphPoints) {
        const QVector<short> &endRow = m_table.at(MorphPoints);
        const bool marked = std::all_of(
            endRow.begin(), endRow.begin() + OrvaneDataParameterCount, [](short cell) { return cell == -1; });
        out << "  end mark row " << MorphPoints << ": " << (marked ? "all -1" : "not all -1") << '\n';
    }
    out << '\n';
    writeValues(out, QStringLiteral("Generic values (%1)").arg(m_generic.size()), m_generic);
    writeValues(out, QStringLiteral("Extended values (%1)").arg(m_extended.size()), m_extended);
    writeValues(out, QStringLiteral("Chunk values (restored)"), m_chunkValues);
}
