#include "StateFileLayout.h"

#include <QtEndian>
#include <limits>

namespace {

constexpr qint64 GenericBlockEnd = 4 + 4 * 22;
// "2621" read as raw character codes: from here on the chunk is written twice.
constexpr int FirstDoubleChunkVersion = 55949;

bool hasId(const QByteArray &bytes, qint64 at, const char *id)
{
    return at >= 0 && at + 4 <= bytes.size() && bytes.mid(at, 4) == QByteArray(id, 4);
}

qint64 int32At(const QByteArray &bytes, qint64 at)
{
    return at + 4 <= bytes.size() ? qFromLittleEndian<qint32>(bytes.constData() + at) : -1;
}

qint64 int64At(const QByteArray &bytes, qint64 at)
{
    return at + 8 <= bytes.size() ? qFromLittleEndian<qint64>(bytes.constData() + at) : -1;
}

} // namespace

StateFileLayout::StateFileLayout(const QByteArray &bytes)
    : m_size(bytes.size())
{
    if (bytes.size() < 4)
        return;
    const auto *v = reinterpret_cast<const unsigned char *>(bytes.constData());
    qint64 at = GenericBlockEnd;
    if (v[0] * 1000 + v[1] * 100 + v[2] * 10 + v[3] >= FirstDoubleChunkVersion) {
        const qint64 firstSize = int32At(bytes, at + 4);
        if (!hasId(bytes, at, "CHST") || firstSize < 0)
            return;
        at += 8 + firstSize;
        const qint64 count = int32At(bytes, at + 4);
        if (!hasId(bytes, at, "prms") || count < 0)
            return;
        at += 8 + 4 * count;
        if (!hasId(bytes, at, "chnk"))
            return;
        at += 4;
    }
    m_chunkOffset = at;
    readForm(bytes);
}

void StateFileLayout::readForm(const QByteArray &bytes)
{
    const qint64 at = m_chunkOffset;
    qint64 headerSize = 0;
    qint64 formSize = -1;
    if (hasId(bytes, at, "CHST")) {
        headerSize = 8;
        formSize = int32At(bytes, at + 4);
    } else if (hasId(bytes, at + 4, "CHST")) {
        headerSize = 16;
        formSize = int64At(bytes, at + 8);
    }
    if (formSize < 0 || formSize > (std::numeric_limits<qint64>::max)() / 2)
        return;
    m_statedEnd = at + headerSize + formSize;

    // The walk starts after the file-information chunk's version field, as
    // the plug-in's reader does.
    const qint64 end = qMin(m_statedEnd, m_size);
    qint64 pos = at + 2 * headerSize + headerSize / 2;
    while (pos + headerSize <= end) {
        const qint64 size = headerSize == 8 ? int32At(bytes, pos + 4) : int64At(bytes, pos + 8);
        if (size < 0)
            return;
        if (hasId(bytes, pos + (headerSize == 8 ? 0 : 4), "ORD ")) {
            m_hasMorphData = true;
            return;
        }
        pos += headerSize + size;
    }
}

qint64 StateFileLayout::missingBytes() const
{
    return m_statedEnd > m_size ? m_statedEnd - m_size : 0;
}
