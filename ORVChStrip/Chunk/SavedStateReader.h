#pragma once

#include <QByteArray>
#include <QList>
#include <cstdint>

#include "ORVChStrip/Chunk/YChannelStripChunk.h"

class IBStream;

// Walks a saved state, or a bare channel-strip chunk file, as the state
// component restores it, and loads the channel-strip chunk with the chunk
// reader. It records every part it passes with its offset and, when it
// stops, which part failed, how and where, so that each caller can say so in
// its own words. It also refuses what the chunk reader would let pass
// silently: a form whose data end before the end its header states.
//
// Offsets count from the stream's position when the reader was made.
class SavedStateReader
{
public:
    enum class Part {
        Version,
        GenericBlock,
        FirstChunk,      // the newer layout's first form
        ParameterMarker, // "prms"
        Count,
        ExtendedBlock,
        ChunkMarker, // "chnk"
        Chunk,       // the form that a restore reads
    };
    enum class Problem {
        None,
        DataEnd,      // the data end before the part is complete
        WrongId,      // a marker or form id other than expected; found holds what is there
        NegativeSize, // a form's size field below 0
        FormCut,      // the data end before the end that the form's header states
        ChunkRefused, // the chunk reader failed; readerCode says why
    };

    // One part of the layout. For a form, size is its size field and
    // headerSize tells the chunk layout (8 or 16); for Count, value holds the count.
    struct Item
    {
        Part part = Part::Version;
        qint64 offset = 0;
        qint64 size = 0;
        qint64 value = 0;
        int headerSize = 0;
    };
    // Where the reader stopped: offset is that of the part or field that
    // failed (of the form for FormCut; the chunk reader's position for
    // ChunkRefused).
    struct Failure
    {
        Part part = Part::Version;
        Problem problem = Problem::None;
        qint64 offset = 0;
        QByteArray found;
        qint64 value = 0; // a negative size, a float count, a form's size field
        int headerSize = 0;
        int readerCode = 0; // ChStripFileException's code
    };
    // A chunk header inside a form, as the chunk reader walks it.
    struct ChunkHeader
    {
        QByteArray id;
        qint64 offset = 0;
        qint64 size = 0;
    };

    // The reader holds a reference to the stream while it lives.
    explicit SavedStateReader(IBStream *stream);
    explicit SavedStateReader(const QByteArray &bytes);
    ~SavedStateReader();
    SavedStateReader(const SavedStateReader &) = delete;
    SavedStateReader &operator=(const SavedStateReader &) = delete;

    // The steps of a restore, in this order. readVersion returns the
    // stream's result code, kResultFalse for a short read.
    int32_t readVersion();
    bool readUpToChunk();
    // Loads the chunk into the caller's buffers; what it does not carry
    // keeps what they held.
    bool loadChunk(YChannelStripChunk::Contents &contents);
    // All three.
    bool readState(YChannelStripChunk::Contents &contents);
    // A bare chunk file: the form at offset 0.
    bool readChunkFile(YChannelStripChunk::Contents &contents);

    QByteArray version() const { return m_version; }
    int versionNumber() const;
    bool isNewerLayout() const;
    const QList<Item> &items() const { return m_items; }
    bool failed() const { return m_failure.problem != Problem::None; }
    const Failure &failure() const { return m_failure; }
    // The offset of the chunk a restore reads, -1 until the walk reaches it.
    qint64 chunkOffset() const { return m_chunkOffset; }
    // Whether the chunk there starts like a form of the 64-bit layout.
    bool isWideChunk() const { return m_wideChunk; }
    // The bytes from the start to the end of the stream; -1 when it cannot tell.
    qint64 length();
    // After loadChunk: whether an "ORD " chunk gave any morph data, and how
    // many values the "PRM " chunk held.
    bool hasMorphData() const { return m_hasMorphData; }
    int parameterCount() const { return m_parameterCount; }

    // The chunk headers inside a form that items() lists, the file
    // information first, bounded by the data.
    QList<ChunkHeader> formContents(const Item &form);

private:
    QByteArray bytesAt(qint64 offset, qint64 count);
    bool fail(Part part, Problem problem, qint64 offset, QByteArray found = QByteArray(), qint64 value = 0);
    bool readMarker(Part part, const char *marker, qint64 *offset);
    bool readFirstChunk(qint64 *offset);
    bool locateChunk(qint64 offset);
    bool checkFormEnd(Part part, qint64 offset, int headerSize, qint64 sizeField);

    IBStream *m_stream;
    int64_t m_start = 0;
    qint64 m_length = -2; // not asked yet
    QByteArray m_version;
    QList<Item> m_items;
    Failure m_failure;
    qint64 m_chunkOffset = -1;
    bool m_wideChunk = false;
    bool m_hasMorphData = false;
    int m_parameterCount = 0;
};
