#include "ORVChStrip/Preset/PresetFile.h"

#include <QtEndian>
#include <cstring>

#include "Interfaces/IBStream.h"
#include "Interfaces/IComponent.h"
#include "ORVChStrip/Chunk/ReadOnlyBStream.h"

namespace {

const PresetFile::ChunkID kChunkIDs[PresetFile::kNumPresetChunks] = {
    { 'P', 'L', 'X', '3' },
    { 'C', 'o', 'm', 'p' },
    { 'C', 'o', 'n', 't' },
    { 'P', 'r', 'o', 'g' },
    { 'I', 'n', 'f', 'o' },
    { 'L', 'i', 's', 't' },
};

} // namespace

const PresetFile::ChunkID &PresetFile::getChunkID(ChunkType type)
{
    return kChunkIDs[type];
}

bool PresetFile::isRestorableChunk(int64_t offset, int64_t size, int64_t length)
{
    return offset >= 0 && size > 0 && offset <= length && size <= length - offset;
}

bool PresetFile::isChunkType(const ChunkID id, ChunkType type)
{
    return std::memcmp(id, getChunkID(type), sizeof(ChunkID)) == 0;
}

PresetFile::PresetFile(IBStream *stream)
    : m_stream(stream)
{
    if (m_stream)
        m_stream->addRef();
}

PresetFile::~PresetFile()
{
    if (m_stream)
        m_stream->release();
}

const PresetFile::Entry *PresetFile::getEntry(ChunkType type) const
{
    for (int32_t i = 0; i < m_entryCount; ++i) {
        if (isChunkType(m_entries[i].id, type))
            return &m_entries[i];
    }
    return nullptr;
}

bool PresetFile::readExactly(void *buffer, int32_t size)
{
    int32_t done = 0;
    return m_stream && m_stream->read(buffer, size, &done) == kResultOk && done == size;
}

bool PresetFile::writeExactly(const void *buffer, int32_t size)
{
    int32_t done = 0;
    return m_stream && m_stream->write(buffer, size, &done) == kResultOk && done == size;
}

bool PresetFile::readInt32(int32_t &value)
{
    uchar bytes[4];
    if (!readExactly(bytes, 4))
        return false;
    value = qFromLittleEndian<qint32>(bytes);
    return true;
}

bool PresetFile::readInt64(int64_t &value)
{
    uchar bytes[8];
    if (!readExactly(bytes, 8))
        return false;
    value = qFromLittleEndian<qint64>(bytes);
    return true;
}

bool PresetFile::writeInt32(int32_t value)
{
    uchar bytes[4];
    qToLittleEndian<qint32>(value, bytes);
    return writeExactly(bytes, 4);
}

bool PresetFile::writeInt64(int64_t value)
{
    uchar bytes[8];
    qToLittleEndian<qint64>(value, bytes);
    return writeExactly(bytes, 8);
}

bool PresetFile::seekTo(int64_t position)
{
    int64_t landed = -1;
    return m_stream && m_stream->seek(position, IBStream::kIBSeekSet, &landed) == kResultOk
        && landed == position;
}

bool PresetFile::tell(int64_t &position)
{
    return m_stream && m_stream->tell(&position) == kResultOk;
}

bool PresetFile::readChunkList()
{
    m_entryCount = 0;
    if (!seekTo(0))
        return false;

    ChunkID magic;
    int32_t version = 0;
    char classString[kClassIDSize + 1] = {};
    int64_t listOffset = 0;
    if (!readExactly(magic, 4) || !isChunkType(magic, kHeader))
        return false;
    if (!readInt32(version) || !readExactly(classString, kClassIDSize))
        return false;
    if (!readInt64(listOffset) || listOffset < 1 || !seekTo(listOffset))
        return false;
    if (!m_classID.fromString(classString))
        return false;

    ChunkID listID;
    int32_t count = 0;
    if (!readExactly(listID, 4) || !isChunkType(listID, kChunkList) || !readInt32(count))
        return false;
    if (count > kMaxEntries)
        count = kMaxEntries;
    for (int32_t i = 0; i < count; ++i) {
        Entry &entry = m_entries[m_entryCount];
        if (!readExactly(entry.id, 4) || !readInt64(entry.offset) || !readInt64(entry.size))
            break;
        ++m_entryCount;
    }
    return m_entryCount > 0;
}

bool PresetFile::writeHeader()
{
    char classString[kClassIDSize + 1] = {};
    unsigned char bytes[16];
    m_classID.toBytes(bytes);
    for (int i = 0; i < 16; ++i)
        std::snprintf(classString + 2 * i, 3, "%02X", bytes[i]);

    return seekTo(0) && writeExactly(getChunkID(kHeader), 4) && writeInt32(kFormatVersion)
        && writeExactly(classString, kClassIDSize) && writeInt64(0);
}

bool PresetFile::writeChunkList()
{
    int64_t listOffset = 0;
    if (!tell(listOffset) || !seekTo(kListOffsetPos) || !writeInt64(listOffset) || !seekTo(listOffset))
        return false;
    if (!writeExactly(getChunkID(kChunkList), 4) || !writeInt32(m_entryCount))
        return false;
    for (int32_t i = 0; i < m_entryCount; ++i) {
        const Entry &entry = m_entries[i];
        if (!writeExactly(entry.id, 4) || !writeInt64(entry.offset) || !writeInt64(entry.size))
            return false;
    }
    return true;
}

bool PresetFile::beginChunk(Entry &entry, ChunkType type)
{
    if (m_entryCount >= kMaxEntries)
        return false;
    std::memcpy(entry.id, getChunkID(type), sizeof(ChunkID));
    entry.size = 0;
    return tell(entry.offset);
}

bool PresetFile::endChunk(Entry &entry)
{
    if (m_entryCount >= kMaxEntries)
        return false;
    int64_t position = 0;
    if (!tell(position) || position < entry.offset)
        return false;
    entry.size = position - entry.offset;
    m_entries[m_entryCount++] = entry;
    return true;
}

bool PresetFile::storeComponentState(IComponent *component)
{
    if (!component)
        return false;
    Entry entry;
    return beginChunk(entry, kComponentState) && component->getState(m_stream) == kResultOk
        && endChunk(entry);
}

bool PresetFile::restoreComponentState(IComponent *component)
{
    const Entry *entry = getEntry(kComponentState);
    if (!component || !entry)
        return false;
    // A chunk that runs past the end of the stream is truncated: refuse it
    // rather than hand the component part of its state.
    int64_t length = -1;
    if (m_stream->seek(0, IBStream::kIBSeekEnd, &length) != kResultOk
        || !isRestorableChunk(entry->offset, entry->size, length))
        return false;
    if (!seekTo(entry->offset))
        return false;
    auto *window = new ReadOnlyBStream(m_stream, entry->offset, entry->size);
    const bool ok = component->setState(window) == kResultOk;
    window->release();
    return ok;
}

bool PresetFile::writeMetaInfo(const char *xml, int32_t size)
{
    if (!xml)
        return false;
    if (size < 0)
        size = static_cast<int32_t>(std::strlen(xml));
    Entry entry;
    return beginChunk(entry, kMetaInfo) && writeExactly(xml, size) && endChunk(entry);
}

bool PresetFile::savePreset(
    IBStream *stream, const FUID &classID, IComponent *component, const char *metaInfo, int32_t metaInfoSize)
{
    if (!stream || !component)
        return false;
    PresetFile file(stream);
    file.setClassID(classID);
    if (!file.writeHeader() || !file.storeComponentState(component))
        return false;
    if (metaInfo && !file.writeMetaInfo(metaInfo, metaInfoSize))
        return false;
    return file.writeChunkList();
}

bool PresetFile::loadPreset(
    IBStream *stream, const FUID &classID, IComponent *component, const QList<FUID> &alternativeIDs)
{
    if (!stream || !component)
        return false;
    PresetFile file(stream);
    if (!file.readChunkList())
        return false;
    if (file.getClassID() != classID && !alternativeIDs.contains(file.getClassID()))
        return false;
    return file.restoreComponentState(component);
}
