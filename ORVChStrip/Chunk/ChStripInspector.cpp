#include "ORVChStrip/Chunk/ChStripInspector.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTextStream>
#include <QtEndian>
#include <cstring>

#include "Common/EffectComponent.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripParameters.h"

using namespace ORVChStripParameters;

namespace {

constexpr qint64 GenericOffset = 4;
constexpr qint64 GenericSize = 4 * ParameterListCount;
constexpr qint64 ChunkOffset = GenericOffset + GenericSize;

QString quoted(const QByteArray &bytes)
{
    QString text;
    for (const char c : bytes)
        text += c >= 0x20 && c < 0x7F ? QString(QLatin1Char(c))
                                      : QStringLiteral("\\x%1").arg(uchar(c), 2, 16, QLatin1Char('0'));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

QString hex(qint64 offset)
{
    return QStringLiteral("0x%1").arg(offset, 8, 16, QLatin1Char('0'));
}

qint32 littleInt32(const QByteArray &bytes, qint64 offset)
{
    return qFromLittleEndian<qint32>(bytes.constData() + offset);
}

QVector<ChStripInspector::Value> bigEndianFloats(
    const QByteArray &bytes, qint64 offset, int count, const char *const *keys, int keyCount)
{
    QVector<ChStripInspector::Value> values;
    for (int i = 0; i < count; ++i) {
        const auto *p = reinterpret_cast<const unsigned char *>(bytes.constData() + offset + 4 * i);
        const char *key = i < keyCount ? keys[i] : nullptr;
        values.append({ QString::fromLatin1(key), EffectComponent::readBigEndianFloat(p) });
    }
    return values;
}

QJsonArray valuesJson(const QVector<ChStripInspector::Value> &values)
{
    QJsonArray array;
    for (const ChStripInspector::Value &value : values)
        array.append(QJsonObject { { QStringLiteral("key"), value.key.isEmpty() ? QJsonValue() : value.key },
            { QStringLiteral("value"), double(value.value) } });
    return array;
}

void writeValues(QTextStream &out, const QString &title, const QVector<ChStripInspector::Value> &values)
{
    if (values.isEmpty())
        return;
    out << title << ":\n";
    for (const ChStripInspector::Value &value : values)
        out << "  " << (value.key.isEmpty() ? QStringLiteral("(unused)") : value.key).leftJustified(20) << ' '
            << QString::number(double(value.value), 'g', 9) << '\n';
}

} // namespace

void ChStripInspector::reset(const QString &kind)
{
    *this = ChStripInspector();
    m_kind = kind;
}

bool ChStripInspector::fail(qint64 offset, const QString &message)
{
    m_errorOffset = offset;
    m_error = QStringLiteral("offset %1: %2").arg(hex(offset), message);
    return false;
}

bool ChStripInspector::inspectChunk(const QByteArray &bytes)
{
    reset(QStringLiteral("chunk"));
    qint64 length = 0;
    return readChunk(bytes, 0, true, &length);
}

bool ChStripInspector::inspectState(const QByteArray &bytes)
{
    reset(QStringLiteral("state"));
    const qint64 size = bytes.size();
    if (size < 4)
        return fail(0, QStringLiteral("expected the 4-byte version, found %1 bytes").arg(size));
    m_version = bytes.left(4);
    m_versionNumber
        = ORVChStripComponent::versionNumber(reinterpret_cast<const unsigned char *>(m_version.constData()));
    m_entries.append({ QStringLiteral("version"), 0, 4, 0, quoted(m_version) });
    if (size < ChunkOffset)
        return fail(size,
            QStringLiteral("expected %1 generic floats (%2 bytes) from offset %3, found %4 bytes")
                .arg(ParameterListCount)
                .arg(GenericSize)
                .arg(hex(GenericOffset))
                .arg(size - GenericOffset));
    m_entries.append({ QStringLiteral("generic floats"), GenericOffset, GenericSize, 0,
        QStringLiteral("%1 big-endian floats").arg(ParameterListCount) });
    m_generic = bigEndianFloats(bytes, GenericOffset, ParameterListCount, ParameterList, ParameterListCount);

    qint64 offset = ChunkOffset;
    auto marker = [&](const char *expected, const QString &role) {
        if (size < offset + 4)
            return fail(offset,
                QStringLiteral("expected %1 (%2), found the end of the file").arg(quoted(expected), role));
        const QByteArray found = bytes.mid(offset, 4);
        if (found != expected)
            return fail(offset,
                QStringLiteral("expected %1 (%2), found %3").arg(quoted(expected), role, quoted(found)));
        m_entries.append({ QString::fromLatin1(expected), offset, 4, 0, role });
        offset += 4;
        return true;
    };

    if (m_versionNumber >= ORVChStripComponent::FirstDoubleChunkVersion) {
        m_stateLayout = QStringLiteral("newer");
        if (size < offset + 8 || bytes.mid(offset, 4) != "CHST")
            return fail(offset,
                QStringLiteral("expected \"CHST\" (the first chunk of the newer layout), found %1")
                    .arg(size < offset + 4 ? QStringLiteral("the end of the file")
                                           : quoted(bytes.mid(offset, 4))));
        const qint32 formSize = littleInt32(bytes, offset + 4);
        if (formSize < 0 || offset + 8 + formSize > size)
            return fail(offset + 4,
                QStringLiteral("expected the first chunk's size (at most %1), found %2")
                    .arg(size - offset - 8)
                    .arg(formSize));
        qint64 ignored = 0;
        readChunk(bytes, offset, false, &ignored);
        offset += 8 + formSize;
        if (!marker(ORVChStripComponent::ParameterMarker, QStringLiteral("extended block")))
            return false;
        if (size < offset + 4)
            return fail(offset, QStringLiteral("expected the 4-byte float count, found the end of the file"));
        const quint32 count = qFromLittleEndian<quint32>(bytes.constData() + offset);
        m_entries.append({ QStringLiteral("count"), offset, 4, 0, QString::number(count) });
        offset += 4;
        if (qint64(count) * 4 > size - offset)
            return fail(offset,
                QStringLiteral("expected %1 floats (%2 bytes), found %3 bytes")
                    .arg(count)
                    .arg(qint64(count) * 4)
                    .arg(size - offset));
        m_entries.append({ QStringLiteral("extended floats"), offset, qint64(count) * 4, 0,
            QStringLiteral("%1 big-endian floats").arg(count) });
        m_extended = bigEndianFloats(bytes, offset, int(count), ParameterListEx, ParameterListExCount);
        offset += qint64(count) * 4;
        if (!marker(ORVChStripComponent::ChunkMarker, QStringLiteral("chunk follows")))
            return false;
    } else {
        m_stateLayout = QStringLiteral("older");
    }

    qint64 length = 0;
    if (!readChunk(bytes, offset, true, &length))
        return false;
    if (offset + length < size)
        m_entries.append({ QStringLiteral("trailing bytes"), offset + length, size - offset - length, 0,
            QStringLiteral("not read") });
    return true;
}

// Lists the chunk's headers (bounded by the data) and, for the chunk that a
// restore uses, loads it with the real reader.
bool ChStripInspector::readChunk(const QByteArray &bytes, qint64 offset, bool primary, qint64 *length)
{
    const QByteArray head = bytes.mid(offset, 8);
    const bool wide = head.size() == 8 && head.left(4) != "CHST" && head.mid(4, 4) == "CHST";
    if (primary)
        m_chunkLayout = wide ? QStringLiteral("64-bit") : QStringLiteral("32-bit");
    listChunks(bytes, offset, wide);
    *length = 0;
    if (head.size() == 8 && (head.left(4) == "CHST" || wide)) {
        const qint64 sizeField = wide
            ? (bytes.size() >= offset + 16 ? qFromLittleEndian<qint64>(bytes.constData() + offset + 8) : 0)
            : littleInt32(bytes, offset + 4);
        *length = qBound<qint64>(0, sizeField + (wide ? 16 : 8), bytes.size() - offset);
    }
    if (!primary)
        return true;

    auto *memory = new MemoryBStream(bytes.mid(offset));
    YPlx3Stream stream(memory);
    memory->release();
    YChannelStripChunk chunk;
    AnalyzerError error;
    float values[YChannelStripChunk::ParameterCapacity] = {};
    char name[YChannelStripChunk::SystemNameLength] = {};
    short table[YChannelStripChunk::TableRows][YChannelStripChunk::TableColumns] = {};
    if (!chunk.LoadBinALL(stream, error, values, name, table)) {
        const QString message = QString::fromLatin1(error.message()).trimmed();
        const QRegularExpressionMatch position
            = QRegularExpression(QStringLiteral("file-pos : 0x([0-9a-f]+)")).match(message);
        const qint64 at = offset + (position.hasMatch() ? position.captured(1).toLongLong(nullptr, 16) : 0);
        return fail(at,
            QStringLiteral("expected a channel-strip chunk: %1")
                .arg(QString(message).replace(QLatin1Char('\n'), QStringLiteral("; "))));
    }
    m_systemName = QByteArray(name, int(qstrnlen(name, sizeof name)));
    m_table.clear();
    for (const auto &row : table)
        m_table.append(QVector<short>(row, row + YChannelStripChunk::TableColumns));
    const int count = qMin(chunk.lastParameterCount(), int(YChannelStripChunk::ParameterCapacity));
    m_chunkValues.clear();
    for (int i = 0; i < count; ++i)
        m_chunkValues.append(
            { QString::fromLatin1(i < ParameterListExCount ? ParameterListEx[i] : nullptr), values[i] });
    return true;
}

void ChStripInspector::listChunks(const QByteArray &bytes, qint64 offset, bool wide)
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
    if (!readHeader(offset, &id, &formSize) || id != "CHST")
        return;
    m_entries.append({ QStringLiteral("CHST"), offset, formSize, 0,
        QStringLiteral("%1 form, size field %2")
            .arg(wide ? QStringLiteral("64-bit") : QStringLiteral("32-bit"))
            .arg(formSize) });
    qint64 at = offset + header;
    qint64 size = 0;
    if (!readHeader(at, &id, &size))
        return;
    m_entries.append({ QString::fromLatin1(id), at, size, 1, QString() });
    // The reader goes on right after the version, whatever the size says.
    at += header + (wide ? 8 : 4);
    const qint64 end = offset + formSize + header;
    while (at < end && readHeader(at, &id, &size) && size >= 0) {
        QString note;
        if (id == "ORD ")
            note = QStringLiteral("morph system name and table");
        else if (id == "PRM ")
            note = QStringLiteral("%1 floats").arg(size / 4);
        else
            note = QStringLiteral("skipped");
        m_entries.append({ QString::fromLatin1(id), at, size, 1, note });
        if (size > bytes.size())
            break;
        at += size + header;
    }
}

QJsonObject ChStripInspector::toJson() const
{
    QJsonObject object { { QStringLiteral("kind"), m_kind } };
    if (!m_stateLayout.isEmpty())
        object.insert(QStringLiteral("layout"), m_stateLayout);
    if (!m_chunkLayout.isEmpty())
        object.insert(QStringLiteral("chunkLayout"), m_chunkLayout);
    if (m_kind == QLatin1String("state")) {
        object.insert(QStringLiteral("version"), QString::fromLatin1(m_version));
        object.insert(QStringLiteral("versionNumber"), m_versionNumber);
    }
    QJsonArray entries;
    for (const Entry &entry : m_entries)
        entries.append(QJsonObject { { QStringLiteral("name"), entry.name },
            { QStringLiteral("offset"), entry.offset }, { QStringLiteral("size"), entry.size },
            { QStringLiteral("depth"), entry.depth }, { QStringLiteral("note"), entry.note } });
    object.insert(QStringLiteral("entries"), entries);
    if (!isValid()) {
        object.insert(QStringLiteral("error"), m_error);
        object.insert(QStringLiteral("errorOffset"), m_errorOffset);
        return object;
    }
    object.insert(QStringLiteral("morphSystemName"), QString::fromLatin1(m_systemName));
    QJsonArray table;
    for (const QVector<short> &row : m_table) {
        QJsonArray cells;
        for (short cell : row)
            cells.append(cell);
        table.append(cells);
    }
    object.insert(QStringLiteral("morphTable"), table);
    if (!m_generic.isEmpty())
        object.insert(QStringLiteral("generic"), valuesJson(m_generic));
    if (!m_extended.isEmpty())
        object.insert(QStringLiteral("extended"), valuesJson(m_extended));
    object.insert(QStringLiteral("chunkValues"), valuesJson(m_chunkValues));
    return object;
}

void ChStripInspector::writeText(QTextStream &out) const
{
    if (m_kind == QLatin1String("state"))
        out << "State, " << m_stateLayout << " layout, version " << quoted(m_version) << " ("
            << m_versionNumber << ")\n";
    if (!m_chunkLayout.isEmpty())
        out << "Chunk layout: " << m_chunkLayout << '\n';
    out << "\nOffset      Size  Item\n";
    for (const Entry &entry : m_entries)
        out << hex(entry.offset) << QStringLiteral("%1").arg(entry.size, 8) << "  "
            << QString(2 * entry.depth, QLatin1Char(' ')) << entry.name
            << (entry.note.isEmpty() ? QString() : QStringLiteral("  (%1)").arg(entry.note)) << '\n';
    if (!isValid())
        return;
    out << "\nMorph system name: " << quoted(m_systemName)
        << "\nMorph table (rows = points, columns = keys):\n";
    out << "      ";
    for (int k = 0; k < OrvaneDataParameterCount; ++k)
        out << QStringLiteral("%1").arg(k + 1, 6);
    out << '\n';
    for (int r = 0; r < m_table.size(); ++r) {
        out << QStringLiteral("  %1:").arg(r, 2);
        for (short cell : m_table.at(r))
            out << QStringLiteral("%1").arg(cell, 6);
        out << '\n';
    }
    for (int k = 0; k < OrvaneDataParameterCount; ++k)
        out << QStringLiteral("  column %1: %2\n")
                   .arg(k + 1, 2)
                   .arg(QLatin1String(OrvaneDataParameterList[k]));
    out << '\n';
    writeValues(out, QStringLiteral("Generic values (22)"), m_generic);
    writeValues(out, QStringLiteral("Extended values (26)"), m_extended);
    writeValues(out, QStringLiteral("Chunk values (restored)"), m_chunkValues);
}
