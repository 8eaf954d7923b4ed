#include "ORVChStrip/Chunk/YChannelStripChunk.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/ChStripFileBinException.h"
#include "ORVChStrip/Chunk/YStream.h"
#include "ORVChStrip/Chunk/YWriteBinChunk.h"

namespace {

constexpr int TableValues = YChannelStripChunk::TableRows * YChannelStripChunk::TableColumns;

template<typename T> T reversedBytes(T value)
{
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    std::reverse(bytes, bytes + sizeof(T));
    std::memcpy(&value, bytes, sizeof(T));
    return value;
}

// Positions are 32-bit signed and wrap like the file format's own sums.
int wrapped(int64_t value)
{
    return static_cast<int>(static_cast<uint32_t>(static_cast<uint64_t>(value)));
}

[[noreturn]] void fail(int code, YStream &stream)
{
    throw ChStripFileBinException(true, code, stream);
}

} // namespace

YChannelStripChunk::YChannelStripChunk()
    : m_endianKind(CheckEndianKind())
{ }

int YChannelStripChunk::CheckEndianKind()
{
    const uint16_t probe = 1;
    unsigned char first = 0;
    std::memcpy(&first, &probe, 1);
    return first == 1 ? 0 : 1;
}

// --- writing ---------------------------------------------------------------

void YChannelStripChunk::SaveBinALL(
    YStream &stream, const float *params, int count, const char *systemName, const Table *table)
{
    YWriteBinChunk form(stream, m_endianKind, static_cast<int>(FormId));
    WriteBinFileInfoChunk(stream);
    WriteBinORDChunk(stream, systemName, table);
    WriteBinPluginParamChunk(stream, params, count);
}

void YChannelStripChunk::WriteBinFileInfoChunk(YStream &stream)
{
    YWriteBinChunk chunk(stream, m_endianKind, static_cast<int>(FileInfoId));
    chunk.WriteNumber(FormatVersion);
}

void YChannelStripChunk::WriteBinORDChunk(YStream &stream, const char *systemName, const Table *table)
{
    YWriteBinChunk chunk(stream, m_endianKind, static_cast<int>(MorphTableId));
    char name[SystemNameLength] = {};
    if (systemName)
        std::memcpy(name, systemName, sizeof name);
    chunk.WriteStringData(name, sizeof name);

    short values[TableValues] = {};
    if (table)
        std::memcpy(values, table, sizeof values);
    if (m_endianKind == 1) {
        for (short &value : values)
            value = reversedBytes(value);
    }
    chunk.WriteStringData(reinterpret_cast<const char *>(values), sizeof values);
}

void YChannelStripChunk::WriteBinPluginParamChunk(YStream &stream, const float *params, int count)
{
    YWriteBinChunk chunk(stream, m_endianKind, static_cast<int>(ParameterId));
    if (!params)
        return;
    for (int i = 0; i < count; ++i) {
        float value = params[i];
        if (m_endianKind == 1)
            value = reversedBytes(value);
        chunk.WriteStringData(reinterpret_cast<const char *>(&value), 4);
    }
}

// --- reading ---------------------------------------------------------------

bool YChannelStripChunk::LoadBinALL(
    YStream &stream, AnalyzerError &error, float *params, char *systemName, Table *table)
{
    m_parameterCount = 0;
    m_hadMorphData = false;
    try {
        const int start = stream.GetMarker();
        unsigned char head[8] = {};
        for (unsigned char &byte : head)
            stream.Read(&byte, 1);
        const bool form32 = std::memcmp(head, "CHST", 4) == 0;
        const bool form64 = !form32 && std::memcmp(head + 4, "CHST", 4) == 0;
        if (!form32 && !form64)
            fail(ChStripFileException::AbnormalChunkId, stream);
        stream.SetMarker(start, YStreamFromStart);
        if (form32)
            LoadBinALL32(stream, params, systemName, table);
        else
            LoadBinALL64(stream, params, systemName, table);
    } catch (const ChStripFileBinException &exception) {
        error.setError(exception);
        return false;
    }
    return true;
}

template<typename ReadHeader, typename ReadChunk>
void YChannelStripChunk::walkChunks(
    YStream &stream, int start, int formSize, int headerSize, ReadHeader readHeader, ReadChunk readChunk)
{
    const int end = wrapped(int64_t(start) + formSize + headerSize);
    // Past the stream's end every read yields nothing, so the walk stops
    // there; it also stops when a huge size would wrap the position around.
    const int length = stream.GetLength();
    int pos = stream.GetMarker();
    while (pos < end && pos < length) {
        int64_t size = readHeader();
        stream.SetMarker(-headerSize, YStreamFromCurrent);
        readChunk();
        const int64_t next = int64_t(pos) + wrapped(size) + headerSize;
        if (next > INT_MAX || next <= pos)
            break;
        pos = static_cast<int>(next);
        stream.SetMarker(pos, YStreamFromStart);
    }
}

void YChannelStripChunk::LoadBinALL32(YStream &stream, float *params, char *systemName, Table *table)
{
    const int start = stream.GetMarker();
    stream.SetMarker(start, YStreamFromStart);
    const int formSize = ReadBinFormChunk(stream);
    ReadBinFileInfoChunk(stream);

    uint32_t id = 0;
    walkChunks(
        stream, start, formSize, 8,
        [&]() -> int64_t {
            int32_t size = 0;
            ReadBinChunkHeader(stream, &id, &size);
            return size;
        },
        [&] {
            if (id == ParameterId)
                ReadBinPluginParamChunk(stream, params);
            else if (id == MorphTableId)
                ReadBinORDChunk(stream, systemName, table);
            else
                ReadBinOtherChunk(stream);
        });
}

void YChannelStripChunk::LoadBinALL64(YStream &stream, float *params, char *systemName, Table *table)
{
    const int start = stream.GetMarker();
    stream.SetMarker(start, YStreamFromStart);
    const int formSize = wrapped(ReadBinFormChunk64(stream));
    ReadBinFileInfoChunk64(stream);

    uint64_t id = 0;
    walkChunks(
        stream, start, formSize, 16,
        [&]() -> int64_t {
            int64_t size = 0;
            ReadBinChunkHeader64(stream, &id, &size);
            return size;
        },
        [&] {
            if (id == ParameterId)
                ReadBinPluginParamChunk64(stream, params);
            else if (id == MorphTableId)
                ReadBinORDChunk64(stream, systemName, table);
            else
                ReadBinOtherChunk64(stream);
        });
}

int YChannelStripChunk::SkipFormChunk(YStream &stream)
{
    const int start = stream.GetMarker();
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
    if (id != FormId)
        fail(ChStripFileException::NotChStripFile, stream);
    return stream.SetMarker(wrapped(int64_t(start) + size + 8), YStreamFromStart);
}

int YChannelStripChunk::ReadBinFormChunk(YStream &stream)
{
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
    if (id != FormId)
        fail(ChStripFileException::NotChStripFile, stream);
    return size;
}

int64_t YChannelStripChunk::ReadBinFormChunk64(YStream &stream)
{
    uint64_t id = 0;
    int64_t size = 0;
    ReadBinChunkHeader64(stream, &id, &size);
    if (id != FormId)
        fail(ChStripFileException::NotChStripFile, stream);
    return size;
}

// The version is read and not used. The walk goes on right after it, not
// after the chunk's stated size, so a longer "FINF" misaligns what follows;
// files in the field depend on that reading, so it stays.
void YChannelStripChunk::ReadBinFileInfoChunk(YStream &stream)
{
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
    if (id != FileInfoId)
        fail(ChStripFileException::NoFileInformation, stream);
    if (size < 4)
        fail(ChStripFileException::AbnormalChunkSize, stream);
    readNumber32(stream);
}

void YChannelStripChunk::ReadBinFileInfoChunk64(YStream &stream)
{
    uint64_t id = 0;
    int64_t size = 0;
    ReadBinChunkHeader64(stream, &id, &size);
    if (id != FileInfoId)
        fail(ChStripFileException::NoFileInformation, stream);
    if (size < 4)
        fail(ChStripFileException::AbnormalChunkSize, stream);
    readNumber64(stream);
}

void YChannelStripChunk::ReadBinChunkHeader(YStream &stream, uint32_t *id, int32_t *size)
{
    *id = ReadID(stream);
    *size = readNumber32(stream);
    if (*size < 0)
        fail(ChStripFileException::AbnormalChunkSize, stream);
}

void YChannelStripChunk::ReadBinChunkHeader64(YStream &stream, uint64_t *id, int64_t *size)
{
    *id = ReadID64(stream);
    *size = readNumber64(stream);
    if (*size < 0)
        fail(ChStripFileException::AbnormalChunkSize, stream);
}

void YChannelStripChunk::ReadBinORDChunk(YStream &stream, char *systemName, Table *table)
{
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
    if (id != MorphTableId)
        fail(ChStripFileException::AbnormalChunkId, stream);
    readMorphTable(stream, systemName, table);
}

void YChannelStripChunk::ReadBinORDChunk64(YStream &stream, char *systemName, Table *table)
{
    uint64_t id = 0;
    int64_t size = 0;
    ReadBinChunkHeader64(stream, &id, &size);
    if (id != MorphTableId)
        fail(ChStripFileException::AbnormalChunkId, stream);
    readMorphTable(stream, systemName, table);
}

void YChannelStripChunk::ReadBinPluginParamChunk(YStream &stream, float *params)
{
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
    if (id != ParameterId)
        fail(ChStripFileException::AbnormalChunkId, stream);
    m_parameterCount = size < 4 ? 0 : std::min(size / 4, ParameterCapacity);
    readFloats(stream, params, m_parameterCount);
}

void YChannelStripChunk::ReadBinPluginParamChunk64(YStream &stream, float *params)
{
    uint64_t id = 0;
    int64_t size = 0;
    ReadBinChunkHeader64(stream, &id, &size);
    if (id != ParameterId)
        fail(ChStripFileException::AbnormalChunkId, stream);
    const int64_t count = size < 4 ? 0 : size / 4;
    m_parameterCount = static_cast<int>(std::min<int64_t>(count, INT_MAX));
    // The walk steps over whatever is left of the chunk.
    readFloats(stream, params, static_cast<int>(std::min<int64_t>(count, ParameterCapacity)));
}

void YChannelStripChunk::ReadBinOtherChunk(YStream &stream)
{
    uint32_t id = 0;
    int32_t size = 0;
    ReadBinChunkHeader(stream, &id, &size);
}

void YChannelStripChunk::ReadBinOtherChunk64(YStream &stream)
{
    uint64_t id = 0;
    int64_t size = 0;
    ReadBinChunkHeader64(stream, &id, &size);
}

uint32_t YChannelStripChunk::ReadID(YStream &stream)
{
    uint32_t id = 0;
    stream.Read(&id, 4);
    return m_endianKind == 0 ? reversedBytes(id) : id;
}

uint64_t YChannelStripChunk::ReadID64(YStream &stream)
{
    uint64_t id = 0;
    stream.Read(&id, 8);
    return m_endianKind == 0 ? reversedBytes(id) : id;
}

int32_t YChannelStripChunk::readNumber32(YStream &stream)
{
    int32_t value = 0;
    stream.Read(&value, 4);
    return m_endianKind == 1 ? reversedBytes(value) : value;
}

int64_t YChannelStripChunk::readNumber64(YStream &stream)
{
    int64_t value = 0;
    stream.Read(&value, 8);
    return m_endianKind == 1 ? reversedBytes(value) : value;
}

// Short reads are not detected: bytes that are not there leave the buffers
// as they were.
void YChannelStripChunk::readMorphTable(YStream &stream, char *systemName, Table *table)
{
    char name[SystemNameLength];
    if (systemName)
        std::memcpy(name, systemName, sizeof name);
    else
        std::memset(name, 0, sizeof name);
    const int nameRead = stream.Read(name, sizeof name);
    if (systemName)
        std::memcpy(systemName, name, sizeof name);

    short values[TableValues] = {};
    if (table)
        std::memcpy(values, table, sizeof values);
    const int tableRead = std::max(0, stream.Read(values, sizeof values));
    m_hadMorphData = m_hadMorphData || nameRead > 0 || tableRead > 0;
    const int read = tableRead / 2;
    if (m_endianKind == 1) {
        for (int i = 0; i < read && i < TableValues; ++i)
            values[i] = reversedBytes(values[i]);
    }
    if (table)
        std::memcpy(table, values, sizeof values);
}

void YChannelStripChunk::readFloats(YStream &stream, float *params, int count)
{
    float values[ParameterCapacity] = {};
    count = std::clamp(count, 0, ParameterCapacity);
    if (params)
        std::memcpy(values, params, sizeof(float) * size_t(count));
    const int read = std::max(0, stream.Read(values, 4 * count)) / 4;
    if (m_endianKind == 1) {
        for (int i = 0; i < read && i < count; ++i)
            values[i] = reversedBytes(values[i]);
    }
    if (params)
        std::memcpy(params, values, sizeof(float) * size_t(count));
}
