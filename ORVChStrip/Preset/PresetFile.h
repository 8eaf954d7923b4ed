#pragma once

#include <QList>
#include <cstdint>

#include "Interfaces/FUID.h"

class IBStream;
class IComponent;

// The preset container of the plug-in standard: a 48-byte header naming the
// plug-in class, data chunks, and a chunk list at the end that locates them.
// All numbers are little-endian. Every operation answers only true or false.
class PresetFile
{
public:
    enum ChunkType {
        kHeader,
        kComponentState,
        kControllerState,
        kProgramData,
        kMetaInfo,
        kChunkList,
        kNumPresetChunks
    };
    using ChunkID = char[4];

    struct Entry
    {
        ChunkID id = { 0, 0, 0, 0 };
        int64_t offset = 0;
        int64_t size = 0;
    };

    static constexpr int32_t kFormatVersion = 1;
    static constexpr int32_t kClassIDSize = 32;
    static constexpr int32_t kHeaderSize = 48;
    static constexpr int64_t kListOffsetPos = 40;
    static constexpr int32_t kMaxEntries = 128;

    static const ChunkID &getChunkID(ChunkType type);
    // The rule for a component state that can be restored: the chunk holds
    // at least one byte and lies wholly inside a stream of `length` bytes.
    static bool isRestorableChunk(int64_t offset, int64_t size, int64_t length);
    static bool isChunkType(const ChunkID id, ChunkType type);

    explicit PresetFile(IBStream *stream);
    ~PresetFile();
    PresetFile(const PresetFile &) = delete;
    PresetFile &operator=(const PresetFile &) = delete;

    IBStream *getStream() const { return m_stream; }
    const FUID &getClassID() const { return m_classID; }
    void setClassID(const FUID &id) { m_classID = id; }

    int32_t getEntryCount() const { return m_entryCount; }
    const Entry &at(int32_t index) const { return m_entries[index]; }
    const Entry *getEntry(ChunkType type) const;

    bool readChunkList();
    bool writeHeader();
    bool writeChunkList();
    bool beginChunk(Entry &entry, ChunkType type);
    bool endChunk(Entry &entry);

    bool storeComponentState(IComponent *component);
    bool restoreComponentState(IComponent *component);
    bool writeMetaInfo(const char *xml, int32_t size = -1);

    static bool savePreset(IBStream *stream, const FUID &classID, IComponent *component,
        const char *metaInfo = nullptr, int32_t metaInfoSize = -1);
    static bool loadPreset(
        IBStream *stream, const FUID &classID, IComponent *component, const QList<FUID> &alternativeIDs = {});

private:
    bool readExactly(void *buffer, int32_t size);
    bool writeExactly(const void *buffer, int32_t size);
    bool readInt32(int32_t &value);
    bool readInt64(int64_t &value);
    bool writeInt32(int32_t value);
    bool writeInt64(int64_t value);
    bool seekTo(int64_t position);
    bool tell(int64_t &position);

    IBStream *m_stream;
    FUID m_classID;
    int32_t m_entryCount = 0;
    Entry m_entries[kMaxEntries];
};
