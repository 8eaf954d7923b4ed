#include "ORVChStrip/ORVD/OrvdMorphRecord.h"

#include <QtEndian>
#include <cstring>

static_assert(
    OrvdMorphRecord::ValuesOffset + OrvdMorphRecord::PointCount * OrvdMorphRecord::ColumnCount * 2 + 2
        == OrvdMorphRecord::Size,
    "the fields fill the record");

namespace {

constexpr int VersionOffset = 4;
constexpr int PointCountOffset = 6;
constexpr int ColumnCountOffset = 8;

// The bytes of a NUL-padded field up to the first NUL.
QByteArray fieldText(const unsigned char *field, int capacity)
{
    const auto *text = reinterpret_cast<const char *>(field);
    return QByteArray(text, int(qstrnlen(text, size_t(capacity))));
}

// `utf8` cut to at most `limit` bytes without splitting a character.
QByteArray cutUtf8(QByteArray utf8, int limit)
{
    if (utf8.size() <= limit)
        return utf8;
    int end = limit;
    while (end > 0 && (uchar(utf8.at(end)) & 0xC0) == 0x80)
        --end;
    utf8.truncate(end);
    return utf8;
}

} // namespace

OrvdMorphRecord::ReadResult OrvdMorphRecord::read(
    const unsigned char *data, qsizetype size, OrvdMorphRecord *out)
{
    if (!data || size != Size)
        return ReadResult::WrongSize;
    if (std::memcmp(data, Magic, sizeof Magic) != 0)
        return ReadResult::WrongMagic;
    if (qFromLittleEndian<quint16>(data + VersionOffset) != Version)
        return ReadResult::UnsupportedVersion;
    if (qFromLittleEndian<quint16>(data + PointCountOffset) != PointCount
        || qFromLittleEndian<quint16>(data + ColumnCountOffset) != ColumnCount)
        return ReadResult::WrongShape;

    OrvdMorphRecord record;
    record.name = QString::fromUtf8(fieldText(data + NameOffset, NameCapacity));
    record.systemId = fieldText(data + SystemIdOffset, SystemIdCapacity);
    const unsigned char *value = data + ValuesOffset;
    for (Point &point : record.points) {
        for (int16_t &column : point) {
            column = qFromLittleEndian<qint16>(value);
            value += 2;
        }
    }
    if (out)
        *out = record;
    return ReadResult::Ok;
}

OrvdMorphRecord::ReadResult OrvdMorphRecord::read(const QByteArray &bytes, OrvdMorphRecord *out)
{
    return read(reinterpret_cast<const unsigned char *>(bytes.constData()), bytes.size(), out);
}

QString OrvdMorphRecord::describe(ReadResult result, qsizetype size)
{
    switch (result) {
    case ReadResult::Ok: return QString();
    case ReadResult::WrongSize: return QStringLiteral("the record is %1 bytes, not %2").arg(size).arg(Size);
    case ReadResult::WrongMagic: return QStringLiteral("the record does not begin with \"ORVD\"");
    case ReadResult::UnsupportedVersion: return QStringLiteral("the record has an unknown version");
    case ReadResult::WrongShape:
        return QStringLiteral("the record does not hold %1 points of %2 values")
            .arg(PointCount)
            .arg(ColumnCount);
    }
    return QString();
}

QByteArray OrvdMorphRecord::write() const
{
    QByteArray bytes(Size, '\0');
    auto *data = reinterpret_cast<unsigned char *>(bytes.data());
    std::memcpy(data, Magic, sizeof Magic);
    qToLittleEndian<quint16>(Version, data + VersionOffset);
    qToLittleEndian<quint16>(PointCount, data + PointCountOffset);
    qToLittleEndian<quint16>(ColumnCount, data + ColumnCountOffset);

    const QByteArray nameBytes = cutUtf8(name.toUtf8(), NameCapacity - 1);
    std::memcpy(data + NameOffset, nameBytes.constData(), size_t(nameBytes.size()));
    const QByteArray idBytes = systemId.left(SystemIdCapacity - 1);
    std::memcpy(data + SystemIdOffset, idBytes.constData(), size_t(idBytes.size()));

    unsigned char *value = data + ValuesOffset;
    for (const Point &point : points) {
        for (const int16_t column : point) {
            qToLittleEndian<qint16>(column, value);
            value += 2;
        }
    }
    return bytes;
}

QString OrvdMorphRecord::fitProblem() const
{
    const qsizetype nameSize = name.toUtf8().size();
    if (nameSize > NameCapacity - 1)
        return QStringLiteral("the name is %1 bytes of UTF-8, at most %2 fit")
            .arg(nameSize)
            .arg(NameCapacity - 1);
    if (systemId.size() > SystemIdCapacity - 1)
        return QStringLiteral("the id is %1 bytes, at most %2 fit")
            .arg(systemId.size())
            .arg(SystemIdCapacity - 1);
    if (systemId.contains('\0') || name.contains(QChar(0)))
        return QStringLiteral("the name and id may not contain NUL characters");
    return QString();
}
