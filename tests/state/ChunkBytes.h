#pragma once

#include <QByteArray>
#include <QtEndian>
#include <cstring>

// Builds channel-strip chunk files byte by byte for the tests.
namespace ChunkBytes {

inline QByteArray le32(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

inline QByteArray le64(qint64 value)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

inline QByteArray floats(const QList<float> &values)
{
    QByteArray bytes;
    for (float value : values) {
        quint32 bits;
        std::memcpy(&bits, &value, 4);
        bytes += le32(qint32(bits));
    }
    return bytes;
}

inline QByteArray chunk32(const char *id, const QByteArray &content)
{
    return QByteArray(id, 4) + le32(qint32(content.size())) + content;
}

inline QByteArray chunk64(const char *id, const QByteArray &content)
{
    return QByteArray(4, '\0') + QByteArray(id, 4) + le64(content.size()) + content;
}

// The "ORD " contents: a name padded to 256 bytes and a table whose cell
// (r, k) holds r * 100 + k - 500.
inline QByteArray morphTable(const QByteArray &name)
{
    QByteArray bytes = name.leftJustified(256, '\0', true);
    for (int r = 0; r < 10; ++r) {
        for (int k = 0; k < 17; ++k) {
            QByteArray cell(2, '\0');
            qToLittleEndian(qint16(r * 100 + k - 500), cell.data());
            bytes += cell;
        }
    }
    return bytes;
}

} // namespace ChunkBytes
