#pragma once

#include <cstdint>

class AnalyzerError;
class YStream;

// A four-character chunk id as an integer, first character most significant.
constexpr uint32_t makeChunkId(const char (&text)[5])
{
    return uint32_t(uint8_t(text[0])) << 24 | uint32_t(uint8_t(text[1])) << 16
        | uint32_t(uint8_t(text[2])) << 8 | uint32_t(uint8_t(text[3]));
}

// Reader and writer of the channel-strip chunk file: a "CHST" form holding
// "FINF" (format version), "ORD " (morph system name and morph table) and
// "PRM " (parameter floats). Ids read first character first; numbers are
// little-endian. The writer produces the 32-bit layout (8-byte headers); the
// reader also accepts the 64-bit layout (16-byte headers).
class YChannelStripChunk
{
public:
    static constexpr int ParameterCapacity = 26;
    static constexpr int SystemNameLength = 256;
    static constexpr int TableRows = 10;
    static constexpr int TableColumns = 17;
    static constexpr int FormatVersion = 2;

    static constexpr uint32_t FormId = makeChunkId("CHST");
    static constexpr uint32_t FileInfoId = makeChunkId("FINF");
    static constexpr uint32_t MorphTableId = makeChunkId("ORD ");
    static constexpr uint32_t ParameterId = makeChunkId("PRM ");

    using Table = short[TableColumns];
    // What one form carries, in the buffers the reader fills.
    struct Contents
    {
        float values[ParameterCapacity] = {};
        char systemName[SystemNameLength] = {};
        Table table[TableRows] = {};
    };

    YChannelStripChunk();

    int endianKind() const { return m_endianKind; }
    // 0 on a little-endian processor, 1 on a big-endian one.
    static int CheckEndianKind();

    // Writes a whole form. `count` floats go into "PRM " (none for count <= 0);
    // a null name or table writes zeros.
    void SaveBinALL(
        YStream &stream, const float *params, int count, const char *systemName, const Table *table);
    // Reads a form of either layout at the current position into the caller's
    // buffers (26 floats, 256 bytes, 10 x 17 values). Never throws a chunk
    // error: a failure sets `error` with the reader's message. Returns true
    // when the form loaded. A chunk that is missing leaves its buffer as it was.
    bool LoadBinALL(YStream &stream, AnalyzerError &error, float *params, char *systemName, Table *table);
    // One layout each; these throw ChStripFileBinException.
    void LoadBinALL32(YStream &stream, float *params, char *systemName, Table *table);
    void LoadBinALL64(YStream &stream, float *params, char *systemName, Table *table);
    // Skips one 32-bit-layout form at the current position; returns the new position.
    int SkipFormChunk(YStream &stream);

    // The number of values the last "PRM " chunk held. The 32-bit reader
    // stops at 26; the 64-bit one counts them all but stores at most 26 and
    // steps over the rest, so a caller's buffer is never overrun.
    int lastParameterCount() const { return m_parameterCount; }
    // Whether the last load took any bytes of morph data from an "ORD " chunk.
    bool lastHadMorphData() const { return m_hadMorphData; }

    void WriteBinFileInfoChunk(YStream &stream);
    void WriteBinORDChunk(YStream &stream, const char *systemName, const Table *table);
    void WriteBinPluginParamChunk(YStream &stream, const float *params, int count);

    int ReadBinFormChunk(YStream &stream);
    int64_t ReadBinFormChunk64(YStream &stream);
    void ReadBinFileInfoChunk(YStream &stream);
    void ReadBinFileInfoChunk64(YStream &stream);
    void ReadBinChunkHeader(YStream &stream, uint32_t *id, int32_t *size);
    void ReadBinChunkHeader64(YStream &stream, uint64_t *id, int64_t *size);
    void ReadBinORDChunk(YStream &stream, char *systemName, Table *table);
    void ReadBinORDChunk64(YStream &stream, char *systemName, Table *table);
    void ReadBinPluginParamChunk(YStream &stream, float *params);
    void ReadBinPluginParamChunk64(YStream &stream, float *params);
    void ReadBinOtherChunk(YStream &stream);
    void ReadBinOtherChunk64(YStream &stream);
    uint32_t ReadID(YStream &stream);
    uint64_t ReadID64(YStream &stream);

private:
    int32_t readNumber32(YStream &stream);
    int64_t readNumber64(YStream &stream);
    void readMorphTable(YStream &stream, char *systemName, Table *table);
    void readFloats(YStream &stream, float *params, int count);
    template<typename ReadHeader, typename ReadChunk>
    void walkChunks(
        YStream &stream, int start, int formSize, int headerSize, ReadHeader readHeader, ReadChunk readChunk);

    int m_endianKind;
    int m_parameterCount = 0;
    bool m_hadMorphData = false;
};
