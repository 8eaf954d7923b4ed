#include "ORVChStrip/ORVChStripComponent.h"

#include <QtEndian>
#include <cstring>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IBStream.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IORVDMorphHandler.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"
#include "ORVChStrip/ORVChStripParameters.h"

using namespace ORVChStripParameters;

namespace {

constexpr int Rows = YChannelStripChunk::TableRows;
constexpr int Columns = YChannelStripChunk::TableColumns;
constexpr int FloatCount = YChannelStripChunk::ParameterCapacity;
constexpr int NameLength = YChannelStripChunk::SystemNameLength;
static_assert(ParameterListExCount <= FloatCount, "the extended list fits the chunk's buffer");
static_assert(OrvaneDataParameterCount <= Columns, "the morph columns fit the table");

// 256 name characters, 9 points per morph column and the end record.
constexpr int MaxMorphRecords = NameLength + OrvaneDataParameterCount * MorphPointCount + 1;

// True when the stream ends before the end that the channel-strip form at
// the current position announces in its header (either layout). The chunk
// reader does not notice short reads, so a state cut inside its last chunk
// would restore with the missing bytes as zeros. The position is kept.
bool endsBeforeFormEnd(IBStream *state)
{
    int64_t start = 0;
    int64_t length = 0;
    if (state->tell(&start) != kResultOk || state->seek(0, IBStream::kIBSeekEnd, &length) != kResultOk)
        return false; // a stream that cannot tell is left to the reader
    unsigned char header[16] = {};
    int32_t got = 0;
    const bool positioned = state->seek(start, IBStream::kIBSeekSet) == kResultOk;
    if (positioned)
        state->read(header, sizeof header, &got);
    state->seek(start, IBStream::kIBSeekSet);
    if (!positioned)
        return false;

    int64_t headerSize = 0;
    int64_t formSize = 0;
    if (got >= 4 && std::memcmp(header, "CHST", 4) == 0) {
        headerSize = 8;
        formSize = qFromLittleEndian<qint32>(header + 4);
    } else if (got >= 8 && std::memcmp(header + 4, "CHST", 4) == 0) {
        headerSize = 16;
        formSize = qFromLittleEndian<qint64>(header + 8);
    } else {
        return got < 8; // not a form: the reader refuses it unless the stream is cut
    }
    if (got < headerSize)
        return true;
    if (formSize < 0)
        return false; // the reader reports the abnormal size
    return formSize > length - start - headerSize;
}

} // namespace

struct ORVChStripComponent::Snapshot
{
    float values[FloatCount] = {};
    char name[NameLength] = {};
    short table[Rows][Columns] = {};
};

QList<const char *> ORVChStripComponent::getParameterList(const unsigned char *) const
{
    return QList<const char *>(ParameterList, ParameterList + ParameterListCount);
}

int ORVChStripComponent::versionNumber(const unsigned char *version)
{
    return version[0] * 1000 + version[1] * 100 + version[2] * 10 + version[3];
}

void ORVChStripComponent::gather(Snapshot &snapshot) const
{
    for (int i = 0; i < ParameterListExCount; ++i) {
        float value = 0.0f;
        snapshot.values[i] = readNormalized(ParameterListEx[i], &value) ? value : 0.0f;
    }

    gatherMorphSet(snapshot);
}

void ORVChStripComponent::gatherMorphSet(Snapshot &snapshot) const
{
    unsigned short id = 0;
    if (findParameter(ChannelStripKeys::MorphSystemName, &id)) {
        for (int i = 0; i < NameLength; ++i) {
            int c = 0;
            snapshot.name[i] = memAPI()->getValue(id, channel(), &c, i) < 0 ? 0 : static_cast<char>(c);
        }
    }

    for (int k = 0; k < OrvaneDataParameterCount; ++k) {
        if (findParameter(OrvaneDataParameterList[k], &id)) {
            for (int r = 0; r < MorphPointCount; ++r) {
                int v = 0;
                const auto pointChannel = static_cast<unsigned short>(ch() * MorphPointCount + r);
                snapshot.table[r][k]
                    = memAPI()->getValue(id, pointChannel, &v, 0) < 0 ? 0 : static_cast<short>(v);
            }
        }
        snapshot.table[Rows - 1][k] = -1; // end mark
    }
}

int32_t ORVChStripComponent::getState(IBStream *state)
{
    if (const int32_t result = EffectComponent::getState(state))
        return result;
    if (!memAPI() || !modelInfo())
        return kResultFalse;

    Snapshot snapshot;
    gather(snapshot);

    YChannelStripChunk chunk;
    {
        YPlx3Stream stream(state);
        chunk.SaveBinALL(stream, snapshot.values, ParameterListCount, snapshot.name, snapshot.table);
    }
    if (const int32_t result = writeAll(state, ParameterMarker, 4))
        return result;
    const uint32_t count = ParameterListExCount;
    if (const int32_t result = writeAll(state, &count, 4))
        return result;
    for (int i = 0; i < ParameterListExCount; ++i) {
        unsigned char bytes[4];
        writeBigEndianFloat(snapshot.values[i], bytes);
        if (const int32_t result = writeAll(state, bytes, 4))
            return result;
    }
    if (const int32_t result = writeAll(state, ChunkMarker, 4))
        return result;
    YPlx3Stream stream(state);
    chunk.SaveBinALL(stream, snapshot.values, ParameterListExCount, snapshot.name, snapshot.table);
    return kResultOk;
}

int32_t ORVChStripComponent::setState(IBStream *state)
{
    if (!state)
        return kResultFalse;
    unsigned char version[DataVersionSize];
    if (const int32_t result = readAll(state, version, DataVersionSize))
        return result;
    if (!memAPI() || !modelInfo())
        return kResultFalse;

    // Everything is parsed before the first write, so a malformed stream
    // leaves the parameter memory as it was.
    YPlx3Stream stream(state);
    stream.SetMarker(GenericBlockSize, YStreamFromCurrent);
    if (versionNumber(version) >= FirstDoubleChunkVersion) {
        char marker[4];
        int32_t size = 0;
        uint32_t count = 0;
        if (readAll(state, marker, 4) || std::memcmp(marker, FormMagic, 4) != 0)
            return kResultFalse;
        if (readAll(state, &size, 4) || size < 0 || state->seek(size, IBStream::kIBSeekCur) != kResultOk)
            return kResultFalse;
        if (readAll(state, marker, 4) || std::memcmp(marker, ParameterMarker, 4) != 0)
            return kResultFalse;
        if (readAll(state, &count, 4) || state->seek(4 * int64_t(count), IBStream::kIBSeekCur) != kResultOk)
            return kResultFalse;
        if (readAll(state, marker, 4) || std::memcmp(marker, ChunkMarker, 4) != 0)
            return kResultFalse;
    }

    if (endsBeforeFormEnd(state))
        return kResultFalse;

    // Parameters the chunk does not carry keep what the morph position
    // implies, and a chunk without morph data keeps the current morph set.
    Snapshot snapshot;
    gatherMorphSet(snapshot);
    for (int i = 0; i < ParameterListExCount; ++i) {
        unsigned short id = 0;
        int min = 0;
        int max = 0;
        int base = 0;
        if (findParameter(ParameterListEx[i], &id) && memAPI()->getRange(id, channel(), &min, &max) >= 0
            && memAPI()->getBaseValue(id, channel(), &base) >= 0)
            snapshot.values[i] = normalized(base, min, max);
    }

    YChannelStripChunk chunk;
    AnalyzerError error;
    try {
        if (!chunk.LoadBinALL(stream, error, snapshot.values, snapshot.name, snapshot.table))
            return kResultFalse;
    } catch (const std::exception &) {
        return kResultFalse; // nothing may cross the host boundary
    }

    if (const int32_t result = sendMorphData(snapshot.name, snapshot.table))
        return result;
    writeParameters(snapshot.values);
    return kResultOk;
}

int32_t ORVChStripComponent::sendMorphData(const char *systemName, const short (*table)[17]) const
{
    IORVDMorphHandler::OMD_PRMINFO batch[MaxMorphRecords];
    int n = 0;
    unsigned short id = 0;
    if (findParameter(ChannelStripKeys::MorphSystemName, &id)) {
        for (int i = 0; i < NameLength; ++i)
            batch[n++] = { id, static_cast<uint16_t>(i), static_cast<signed char>(systemName[i]), channel() };
    }
    for (int k = 0; k < OrvaneDataParameterCount; ++k) {
        if (!findParameter(OrvaneDataParameterList[k], &id))
            continue;
        for (int r = 0; r < MorphPointCount; ++r)
            batch[n++] = { id, 0, table[r][k], static_cast<uint32_t>(ch() * MorphPointCount + r) };
    }
    batch[n] = { IORVDMorphHandler::kEndOfBatch, 0, 0, 0 };

    char iid[16];
    ORVDMorphHandlerIID.toBytes(iid);
    void *handler = nullptr;
    if (memAPI()->queryInterface(iid, &handler) == kResultOk && handler)
        return static_cast<IORVDMorphHandler *>(handler)->setMorphData(batch);
    return kResultOk;
}

void ORVChStripComponent::writeParameters(const float *values) const
{
    // The morph position goes first: the explicit values written after it
    // win over what the position implies.
    for (const bool morphPass : { true, false }) {
        for (int i = 0; i < ParameterListExCount; ++i) {
            const char *key = ParameterListEx[i];
            if (!key || (std::strcmp(key, ChannelStripKeys::MorphValue) == 0) != morphPass)
                continue;
            unsigned short id = 0;
            int min = 0;
            int max = 0;
            if (findParameter(key, &id) && memAPI()->getRange(id, channel(), &min, &max) >= 0)
                memAPI()->setValue(id, channel(), denormalized(values[i], min, max), 0, 0, 1);
        }
    }
}
