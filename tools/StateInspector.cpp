#include "tools/StateInspector.h"

#include <QJsonArray>
#include <QTextStream>
#include <QtEndian>
#include <algorithm>
#include <cstring>

#include "Common/EffectComponent.h"
#include "HostModel.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/ChStripFileException.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ValueText.h"

using namespace ORVChStripParameters;
using Layout = ORVChStripComponent;

namespace {

constexpr int MorphPoints = YChannelStripChunk::TableRows - 1; // the last row is the end mark
constexpr char UnreadNameByte = char(0xA5);
constexpr short UnreadTableCell = 0x5A5A;

QString quoted(const QByteArray &bytes)
{
    QString text;
    for (const char c : bytes)
        text += c >= 0x20 && c < 0x7F ? QString(QLatin1Char(c))
                                      : QStringLiteral("\\x%1").arg(uchar(c), 2, 16, QLatin1Char('0'));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

qint32 littleInt32(const QByteArray &bytes, qint64 offset)
{
    return qFromLittleEndian<qint32>(bytes.constData() + offset);
}

// The chunk reader's fixed messages in the words of this tool. The reader
// reports the position it had reached, right after the header it rejected.
QString readerProblem(const char *message)
{
    struct Translation
    {
        int code;
        const char *text;
    };
    static const Translation translations[] = {
        { ChStripFileException::NotChStripFile, "expected a \"CHST\" form header before this offset" },
        { ChStripFileException::AbnormalChunkId,
            "expected the chunk id \"CHST\", \"ORD \" or \"PRM \" in the header before this offset" },
        { ChStripFileException::AbnormalChunkSize,
            "expected a chunk size from 0 up (and at least 4 for \"FINF\") in the header before this "
            "offset" },
        { ChStripFileException::NoFileInformation,
            "expected the \"FINF\" file-information chunk in the header before this offset" },
    };
    for (const Translation &translation : translations) {
        if (std::strstr(message, ChStripFileException::GetErrorMessage(translation.code)))
            return QString::fromLatin1(translation.text);
    }
    return QStringLiteral("expected a readable channel-strip chunk");
}

// The position the reader names, "file-pos : 0x0000001c"; -1 without one.
qint64 readerPosition(const char *message)
{
    const char *at = std::strstr(message, "file-pos : 0x");
    if (!at)
        return -1;
    bool ok = false;
    const qint64 position = QByteArray(at + 13).trimmed().toLongLong(&ok, 16);
    return ok ? position : -1;
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

StateInspector::StateInspector(const HostModel *model)
    : m_model(model)
{ }

void StateInspector::reset(const QString &kind)
{
    *this = StateInspector(m_model);
    m_kind = kind;
}

bool StateInspector::fail(qint64 offset, const QString &message)
{
    m_errorOffset = offset;
    m_error = message;
    return false;
}

QString StateInspector::integerText(const char *key, int value) const
{
    if (!m_model || !key)
        return QString();
    const ParameterDefinition *parameter = m_model->parameter(m_model->parameterId(key));
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

QString StateInspector::valueText(const char *key, float value) const
{
    if (!m_model || !key)
        return QString();
    const ParameterDefinition *parameter = m_model->parameter(m_model->parameterId(key));
    if (!parameter)
        return QString();
    return integerText(key, EffectComponent::denormalized(value, parameter->minimum, parameter->maximum));
}

QString StateInspector::morphCellText(int row, int column) const
{
    if (row < 0 || row >= MorphPoints || row >= m_table.size() || column < 0
        || column >= OrvaneDataParameterCount)
        return QString();
    return integerText(OrvaneDataParameterList[column], m_table.at(row).at(column));
}

QVector<StateInspector::Value> StateInspector::bigEndianFloats(
    const QByteArray &bytes, qint64 offset, int count, const char *const *keys, int keyCount) const
{
    QVector<Value> values;
    for (int i = 0; i < count; ++i) {
        const auto *p = reinterpret_cast<const unsigned char *>(bytes.constData() + offset + 4 * i);
        const char *key = i < keyCount ? keys[i] : nullptr;
        const float value = EffectComponent::readBigEndianFloat(p);
        values.append({ QString::fromLatin1(key), value, valueText(key, value) });
    }
    return values;
}

bool StateInspector::inspectChunk(const QByteArray &bytes)
{
    reset(QStringLiteral("chunk"));
    qint64 length = 0;
    return readChunk(bytes, 0, &length);
}

bool StateInspector::inspectState(const QByteArray &bytes)
{
    reset(QStringLiteral("state"));
    const qint64 size = bytes.size();
    if (size < Layout::DataVersionSize)
        return fail(size,
            QStringLiteral("expected the %1-byte version at offset 0, the file has %2 bytes")
                .arg(Layout::DataVersionSize)
                .arg(size));
    m_version = bytes.left(Layout::DataVersionSize);
    m_versionNumber = Layout::versionNumber(reinterpret_cast<const unsigned char *>(m_version.constData()));
    m_entries.append({ QStringLiteral("version"), 0, Layout::DataVersionSize, 0, quoted(m_version) });
    if (size < Layout::FirstChunkOffset)
        return fail(size,
            QStringLiteral(
                "expected %1 generic floats (%2 bytes) from offset %3, the file ends %4 bytes short")
                .arg(ParameterListCount)
                .arg(Layout::GenericBlockSize)
                .arg(Layout::GenericBlockOffset)
                .arg(Layout::FirstChunkOffset - size));
    m_entries.append({ QStringLiteral("generic floats"), Layout::GenericBlockOffset, Layout::GenericBlockSize,
        0, QStringLiteral("%1 big-endian floats").arg(ParameterListCount) });
    m_generic = bigEndianFloats(
        bytes, Layout::GenericBlockOffset, ParameterListCount, ParameterList, ParameterListCount);

    qint64 offset = Layout::FirstChunkOffset;
    auto marker = [&](const char *expected, const QString &role) {
        if (size < offset + Layout::MarkerSize)
            return fail(offset,
                QStringLiteral("expected %1 (%2), found the end of the file").arg(quoted(expected), role));
        const QByteArray found = bytes.mid(offset, Layout::MarkerSize);
        if (found != expected)
            return fail(offset,
                QStringLiteral("expected %1 (%2), found %3").arg(quoted(expected), role, quoted(found)));
        m_entries.append({ QString::fromLatin1(expected), offset, Layout::MarkerSize, 0, role });
        offset += Layout::MarkerSize;
        return true;
    };

    if (m_versionNumber >= Layout::FirstDoubleChunkVersion) {
        m_stateLayout = QStringLiteral("newer");
        const QByteArray magic = bytes.mid(offset, Layout::MarkerSize);
        if (magic != Layout::FormMagic)
            return fail(offset,
                QStringLiteral("expected %1 (the first chunk of the newer layout), found %2")
                    .arg(quoted(Layout::FormMagic),
                        magic.size() < Layout::MarkerSize ? QStringLiteral("the end of the file")
                                                          : quoted(magic)));
        if (size < offset + Layout::FormHeaderSize)
            return fail(offset + Layout::MarkerSize,
                QStringLiteral("expected the first chunk's 4-byte size, found the end of the file"));
        const qint32 formSize = littleInt32(bytes, offset + Layout::MarkerSize);
        if (formSize < 0)
            return fail(offset + Layout::MarkerSize,
                QStringLiteral("expected the first chunk's size from 0 up, found %1").arg(formSize));
        if (!checkChunkEnd(bytes, offset, false))
            return false;
        listChunks(bytes, offset, false);
        offset += Layout::FormHeaderSize + formSize;
        if (!marker(Layout::ParameterMarker, QStringLiteral("extended block")))
            return false;
        if (size < offset + Layout::CountSize)
            return fail(offset, QStringLiteral("expected the 4-byte float count, found the end of the file"));
        const quint32 count = qFromLittleEndian<quint32>(bytes.constData() + offset);
        m_entries.append({ QStringLiteral("count"), offset, Layout::CountSize, 0, QString::number(count) });
        offset += Layout::CountSize;
        if (qint64(count) * 4 > size - offset)
            return fail(size,
                QStringLiteral("expected %1 floats (%2 bytes) from offset %3, the file ends %4 bytes short")
                    .arg(count)
                    .arg(qint64(count) * 4)
                    .arg(offset)
                    .arg(qint64(count) * 4 - (size - offset)));
        m_entries.append({ QStringLiteral("extended floats"), offset, qint64(count) * 4, 0,
            QStringLiteral("%1 big-endian floats").arg(count) });
        m_extended = bigEndianFloats(bytes, offset, int(count), ParameterListEx, ParameterListExCount);
        offset += qint64(count) * 4;
        if (!marker(Layout::ChunkMarker, QStringLiteral("chunk follows")))
            return false;
    } else {
        m_stateLayout = QStringLiteral("older");
    }

    qint64 length = 0;
    if (!readChunk(bytes, offset, &length))
        return false;
    if (offset + length < size)
        m_entries.append({ QStringLiteral("trailing bytes"), offset + length, size - offset - length, 0,
            QStringLiteral("not read") });
    return true;
}

// The chunk reader takes what a short stream gives and keeps the rest of its
// buffers; a chunk whose data end before its stated end is refused here.
bool StateInspector::checkChunkEnd(const QByteArray &bytes, qint64 offset, bool wide)
{
    const qint64 header = wide ? 16 : 8;
    if (bytes.size() < offset + header)
        return true; // the reader reports a header it cannot read
    const qint64 sizeField
        = wide ? qFromLittleEndian<qint64>(bytes.constData() + offset + 8) : littleInt32(bytes, offset + 4);
    if (sizeField < 0)
        return true; // the reader reports a negative size
    const qint64 available = bytes.size() - offset - header;
    if (sizeField <= available)
        return true;
    const quint64 end = quint64(offset + header) + quint64(sizeField);
    return fail(bytes.size(),
        QStringLiteral("the data end %1 bytes before the end that the \"CHST\" form at offset %2 states "
                       "(offset %3); the file is truncated")
            .arg(sizeField - available)
            .arg(offset)
            .arg(end));
}

// Lists the headers of the chunk that a restore uses (bounded by the data)
// and loads it with the real reader.
bool StateInspector::readChunk(const QByteArray &bytes, qint64 offset, qint64 *length)
{
    const QByteArray head = bytes.mid(offset, 8);
    const bool wide
        = head.size() == 8 && head.left(4) != Layout::FormMagic && head.mid(4, 4) == Layout::FormMagic;
    m_chunkLayout = wide ? QStringLiteral("64-bit") : QStringLiteral("32-bit");
    listChunks(bytes, offset, wide);
    *length = 0;
    if (head.size() == 8 && (head.left(4) == Layout::FormMagic || wide)) {
        const qint64 sizeField = wide
            ? (bytes.size() >= offset + 16 ? qFromLittleEndian<qint64>(bytes.constData() + offset + 8) : 0)
            : littleInt32(bytes, offset + 4);
        const qint64 header = wide ? 16 : 8;
        *length
            = std::clamp<qint64>(sizeField, 0, std::max<qint64>(bytes.size() - offset - header, 0)) + header;
        if (!checkChunkEnd(bytes, offset, wide))
            return false;
    }
    if (head.size() < 8)
        return fail(bytes.size(),
            QStringLiteral(
                "expected the 8-byte header of a \"CHST\" form from offset %1, the file ends %2 bytes short")
                .arg(offset)
                .arg(8 - head.size()));
    if (head.left(4) != Layout::FormMagic && !wide)
        return fail(offset,
            QStringLiteral(
                "expected \"CHST\" (a channel-strip form) here or, in the 64-bit layout, at offset %1; "
                "found %2")
                .arg(offset + 4)
                .arg(quoted(head)));

    auto *memory = new MemoryBStream(bytes.mid(offset));
    YPlx3Stream stream(memory);
    memory->release();
    YChannelStripChunk chunk;
    AnalyzerError error;
    float values[YChannelStripChunk::ParameterCapacity] = {};
    // The reader leaves the buffers of a chunk it does not find as they
    // were; a pattern no "ORD " chunk leaves tells whether there was one.
    char name[YChannelStripChunk::SystemNameLength];
    short table[YChannelStripChunk::TableRows][YChannelStripChunk::TableColumns];
    std::memset(name, UnreadNameByte, sizeof name);
    std::fill(&table[0][0], &table[0][0] + sizeof table / sizeof(short), UnreadTableCell);
    if (!chunk.LoadBinALL(stream, error, values, name, table)) {
        const qint64 position = readerPosition(error.message());
        return fail(offset + std::max<qint64>(position, 0), readerProblem(error.message()));
    }
    m_table.clear();
    m_hasMorphData = std::any_of(std::begin(name), std::end(name), [](char c) { return c != UnreadNameByte; })
        || std::any_of(&table[0][0], &table[0][0] + sizeof table / sizeof(short),
            [](short cell) { return cell != UnreadTableCell; });
    if (m_hasMorphData) {
        m_systemName = QByteArray(name, int(qstrnlen(name, sizeof name)));
        for (const auto &row : table)
            m_table.append(QVector<short>(row, row + YChannelStripChunk::TableColumns));
    }
    const int count = std::min(chunk.lastParameterCount(), int(YChannelStripChunk::ParameterCapacity));
    m_chunkValues.clear();
    for (int i = 0; i < count; ++i) {
        const char *key = i < ParameterListExCount ? ParameterListEx[i] : nullptr;
        m_chunkValues.append({ QString::fromLatin1(key), values[i], valueText(key, values[i]) });
    }
    return true;
}

void StateInspector::listChunks(const QByteArray &bytes, qint64 offset, bool wide)
{
    const int header = wide ? 16 : 8;
    auto readHeader = [&](qint64 at, QByteArray *id, qint64 *size) {
        if (at < 0 || at + header > bytes.size())
            return false;
        *id = bytes.mid(at + (wide ? 4 : 0), 4);
        *size = wide ? qFromLittleEndian<qint64>(bytes.constData() + at + 8) : littleInt32(bytes, at + 4);
        return true;
    };
    QByteArray id;
    qint64 formSize = 0;
    if (!readHeader(offset, &id, &formSize) || id != Layout::FormMagic)
        return;
    m_entries.append({ QString::fromLatin1(Layout::FormMagic), offset, formSize, 0,
        QStringLiteral("%1 form, size field %2")
            .arg(wide ? QStringLiteral("64-bit") : QStringLiteral("32-bit"))
            .arg(formSize) });
    qint64 at = offset + header;
    qint64 size = 0;
    if (!readHeader(at, &id, &size))
        return;
    m_entries.append({ quoted(id).mid(1).chopped(1), at, size, 1, QString() });
    // The reader goes on right after the version, whatever the size says.
    at += header + (wide ? 8 : 4);
    const qint64 end = formSize > bytes.size() ? bytes.size() : offset + formSize + header;
    while (at < end && readHeader(at, &id, &size) && size >= 0) {
        QString note;
        if (id == "ORD ")
            note = QStringLiteral("morph system name and table");
        else if (id == "PRM ")
            note = QStringLiteral("%1 floats").arg(size / 4);
        else
            note = QStringLiteral("skipped");
        m_entries.append({ quoted(id).mid(1).chopped(1), at, size, 1, note });
        if (size > bytes.size())
            break;
        at += size + header;
    }
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
