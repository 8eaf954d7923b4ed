#include "ORVChStrip/ORVChStripComponent.h"

#include <cstring>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IBStream.h"
#include "Interfaces/IMemAPI.h"
#include "Interfaces/IORVDMorphHandler.h"
#include "ORVChStrip/Chunk/NormalizedValue.h"
#include "ORVChStrip/Chunk/SavedStateReader.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"
#include "ORVChStrip/ORVChStripParameters.h"

using namespace NormalizedValue;
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

} // namespace

QList<const char *> ORVChStripComponent::getParameterList(const unsigned char *) const
{
    return QList<const char *>(ParameterList, ParameterList + ParameterListCount);
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
            snapshot.systemName[i] = memAPI()->getValue(id, channel(), &c, i) < 0 ? 0 : static_cast<char>(c);
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
        chunk.SaveBinALL(stream, snapshot.values, ParameterListCount, snapshot.systemName, snapshot.table);
    }
    if (const int32_t result = writeAll(state, ParameterMarker, SavedStateLayout::MarkerSize))
        return result;
    const uint32_t count = ParameterListExCount;
    if (const int32_t result = writeAll(state, &count, SavedStateLayout::CountSize))
        return result;
    for (int i = 0; i < ParameterListExCount; ++i) {
        unsigned char bytes[4];
        writeBigEndianFloat(snapshot.values[i], bytes);
        if (const int32_t result = writeAll(state, bytes, 4))
            return result;
    }
    if (const int32_t result = writeAll(state, ChunkMarker, SavedStateLayout::MarkerSize))
        return result;
    YPlx3Stream stream(state);
    chunk.SaveBinALL(stream, snapshot.values, ParameterListExCount, snapshot.systemName, snapshot.table);
    return kResultOk;
}

int32_t ORVChStripComponent::setState(IBStream *state)
{
    if (!state)
        return kResultFalse;
    // Everything is parsed before the first write, so a malformed stream
    // leaves the parameter memory as it was.
    Snapshot snapshot;
    if (const int32_t result = readSnapshot(state, snapshot))
        return result;
    if (const int32_t result = sendMorphData(snapshot.systemName, snapshot.table))
        return result;
    writeParameters(snapshot.values);
    return kResultOk;
}

int32_t ORVChStripComponent::readSnapshot(IBStream *state, Snapshot &snapshot) const
{
    try {
        SavedStateReader reader(state);
        if (const int32_t result = reader.readVersion())
            return result;
        if (!memAPI() || !modelInfo() || !reader.readUpToChunk())
            return kResultFalse;

        // Parameters the chunk does not carry keep what the morph position
        // implies, and a chunk without morph data keeps the current morph set.
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
        return reader.loadChunk(snapshot) ? kResultOk : kResultFalse;
    } catch (const std::exception &) {
        return kResultFalse; // nothing may cross the host boundary
    }
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
