#include "ORVChStrip/Chunk/SavedStateReader.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>

#include "Interfaces/IBStream.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/SavedStateLayout.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"

using namespace SavedStateLayout;

namespace {

// The first chunk's size and the float count are written in the processor's
// byte order, so they are read that way too.
template<typename T> T hostOrderAt(const QByteArray &bytes, int at)
{
    T value = 0;
    std::memcpy(&value, bytes.constData() + at, sizeof value);
    return value;
}

} // namespace

SavedStateReader::SavedStateReader(IBStream *stream)
    : m_stream(stream)
{
    m_stream->addRef();
    if (m_stream->tell(&m_start) != kResultOk)
        m_start = 0;
}

SavedStateReader::SavedStateReader(const QByteArray &bytes)
    : m_stream(new MemoryBStream(bytes))
{ }

SavedStateReader::~SavedStateReader()
{
    m_stream->release();
}

int SavedStateReader::versionNumber() const
{
    if (m_version.size() != DataVersionSize)
        return 0;
    return SavedStateLayout::versionNumber(reinterpret_cast<const unsigned char *>(m_version.constData()));
}

bool SavedStateReader::isNewerLayout() const
{
    return versionNumber() >= FirstDoubleChunkVersion;
}

qint64 SavedStateReader::length()
{
    if (m_length == -2) {
        m_length = -1;
        int64_t here = 0;
        int64_t end = 0;
        if (m_stream->tell(&here) == kResultOk) {
            if (m_stream->seek(0, IBStream::kIBSeekEnd, &end) == kResultOk)
                m_length = std::max<int64_t>(end - m_start, 0);
            m_stream->seek(here, IBStream::kIBSeekSet);
        }
    }
    return m_length;
}

QByteArray SavedStateReader::bytesAt(qint64 offset, qint64 count)
{
    QByteArray bytes;
    if (offset < 0 || count <= 0 || m_stream->seek(m_start + offset, IBStream::kIBSeekSet) != kResultOk)
        return bytes;
    bytes.resize(count);
    int32_t got = 0;
    if (m_stream->read(bytes.data(), int32_t(count), &got) != kResultOk)
        got = 0;
    bytes.resize(std::clamp<qint64>(got, 0, count));
    return bytes;
}

bool SavedStateReader::fail(Part part, Problem problem, qint64 offset, QByteArray found, qint64 value)
{
    m_failure.part = part;
    m_failure.problem = problem;
    m_failure.offset = offset;
    m_failure.found = std::move(found);
    m_failure.value = value;
    return false;
}

int32_t SavedStateReader::readVersion()
{
    // Read where the stream stands, as a host's stream may not seek.
    char version[DataVersionSize];
    int32_t got = 0;
    const int32_t result = m_stream->read(version, DataVersionSize, &got);
    if (result != kResultOk || got != DataVersionSize) {
        fail(Part::Version, Problem::DataEnd, 0);
        return result != kResultOk ? result : kResultFalse;
    }
    m_version = QByteArray(version, DataVersionSize);
    m_items.append({ Part::Version, 0, DataVersionSize });
    return kResultOk;
}

bool SavedStateReader::readUpToChunk()
{
    if (failed() || m_version.isEmpty())
        return false;
    if (length() >= 0 && length() < FirstChunkOffset)
        return fail(Part::GenericBlock, Problem::DataEnd, GenericBlockOffset);
    m_items.append({ Part::GenericBlock, GenericBlockOffset, GenericBlockSize });

    qint64 offset = FirstChunkOffset;
    if (isNewerLayout()) {
        if (!readFirstChunk(&offset) || !readMarker(Part::ParameterMarker, ParameterMarker, &offset))
            return false;
        const QByteArray countBytes = bytesAt(offset, CountSize);
        if (countBytes.size() < CountSize)
            return fail(Part::Count, Problem::DataEnd, offset);
        const quint32 count = hostOrderAt<quint32>(countBytes, 0);
        m_items.append({ Part::Count, offset, CountSize, count });
        offset += CountSize;
        const qint64 floatBytes = 4 * qint64(count);
        if (length() >= 0 && floatBytes > length() - offset)
            return fail(Part::ExtendedBlock, Problem::DataEnd, offset, QByteArray(), count);
        m_items.append({ Part::ExtendedBlock, offset, floatBytes, count });
        offset += floatBytes;
        if (!readMarker(Part::ChunkMarker, ChunkMarker, &offset))
            return false;
    }
    return locateChunk(offset);
}

bool SavedStateReader::readFirstChunk(qint64 *offset)
{
    const QByteArray header = bytesAt(*offset, FormHeaderSize);
    if (header.left(MarkerSize) != FormMagic)
        return fail(Part::FirstChunk, Problem::WrongId, *offset, header.left(MarkerSize));
    if (header.size() < FormHeaderSize)
        return fail(Part::FirstChunk, Problem::DataEnd, *offset + MarkerSize);
    const qint32 size = hostOrderAt<qint32>(header, MarkerSize);
    if (size < 0)
        return fail(Part::FirstChunk, Problem::NegativeSize, *offset + MarkerSize, QByteArray(), size);
    if (!checkFormEnd(Part::FirstChunk, *offset, FormHeaderSize, size))
        return false;
    m_items.append({ Part::FirstChunk, *offset, size, 0, FormHeaderSize });
    *offset += FormHeaderSize + size;
    return true;
}

bool SavedStateReader::readMarker(Part part, const char *marker, qint64 *offset)
{
    const QByteArray found = bytesAt(*offset, MarkerSize);
    if (found != marker)
        return fail(part, Problem::WrongId, *offset, found);
    m_items.append({ part, *offset, MarkerSize });
    *offset += MarkerSize;
    return true;
}

// The form at `offset` in either chunk layout: the chunk reader tells the
// 64-bit one by "CHST" in its second four bytes.
bool SavedStateReader::locateChunk(qint64 offset)
{
    m_chunkOffset = offset;
    const QByteArray head = bytesAt(offset, FormHeaderSize);
    const bool narrow = head.left(MarkerSize) == FormMagic;
    const bool wide = head.size() == FormHeaderSize && !narrow && head.mid(MarkerSize) == FormMagic;
    const int headerSize = wide ? WideFormHeaderSize : FormHeaderSize;
    m_wideChunk = wide;
    if (head.size() == FormHeaderSize && (narrow || wide)) {
        const QByteArray header = bytesAt(offset, headerSize);
        if (header.size() == headerSize) {
            const qint64 size = wide ? qFromLittleEndian<qint64>(header.constData() + 8)
                                     : qFromLittleEndian<qint32>(header.constData() + 4);
            m_items.append({ Part::Chunk, offset, size, 0, headerSize });
            // A negative size is the chunk reader's to report.
            if (size >= 0 && !checkFormEnd(Part::Chunk, offset, headerSize, size))
                return false;
        }
    }
    if (head.size() < FormHeaderSize)
        return fail(Part::Chunk, Problem::DataEnd, offset);
    if (!narrow && !wide)
        return fail(Part::Chunk, Problem::WrongId, offset, head);
    return true;
}

bool SavedStateReader::checkFormEnd(Part part, qint64 offset, int headerSize, qint64 sizeField)
{
    if (length() < 0 || sizeField <= length() - offset - headerSize)
        return true;
    m_failure.headerSize = headerSize;
    return fail(part, Problem::FormCut, offset, QByteArray(), sizeField);
}

bool SavedStateReader::loadChunk(YChannelStripChunk::Contents &contents)
{
    if (failed() || m_chunkOffset < 0)
        return false;
    YPlx3Stream stream(m_stream);
    stream.SetMarker(int(m_start + m_chunkOffset), YStreamFromStart);
    YChannelStripChunk chunk;
    AnalyzerError error;
    if (!chunk.LoadBinALL(stream, error, contents.values, contents.systemName, contents.table)) {
        m_failure.readerCode = error.code();
        return fail(
            Part::Chunk, Problem::ChunkRefused, qMax<qint64>(error.position() - m_start, m_chunkOffset));
    }
    m_hasMorphData = chunk.lastHadMorphData();
    m_parameterCount = chunk.lastParameterCount();
    return true;
}

bool SavedStateReader::readState(YChannelStripChunk::Contents &contents)
{
    return readVersion() == kResultOk && readUpToChunk() && loadChunk(contents);
}

bool SavedStateReader::readChunkFile(YChannelStripChunk::Contents &contents)
{
    return locateChunk(0) && loadChunk(contents);
}

QList<SavedStateReader::ChunkHeader> SavedStateReader::formContents(const Item &form)
{
    const int headerSize = form.headerSize;
    const bool wide = headerSize == WideFormHeaderSize;
    auto readHeader = [&](qint64 at, ChunkHeader *chunk) {
        const QByteArray header = bytesAt(at, headerSize);
        if (header.size() < headerSize)
            return false;
        chunk->id = header.mid(wide ? 4 : 0, 4);
        chunk->offset = at;
        chunk->size = wide ? qFromLittleEndian<qint64>(header.constData() + 8)
                           : qFromLittleEndian<qint32>(header.constData() + 4);
        return true;
    };

    QList<ChunkHeader> chunks;
    ChunkHeader chunk;
    qint64 at = form.offset + headerSize;
    if (!readHeader(at, &chunk))
        return chunks;
    chunks.append(chunk);
    // The chunk reader goes on right after the version, whatever the size says.
    at += headerSize + (wide ? 8 : 4);
    const qint64 total = length();
    const qint64 end = form.size > total ? total : form.offset + form.size + headerSize;
    while (at < end && readHeader(at, &chunk) && chunk.size >= 0) {
        chunks.append(chunk);
        if (chunk.size > total)
            break;
        at += chunk.size + headerSize;
    }
    return chunks;
}
