#pragma once

#include <QByteArray>

// What the host can tell about a saved state's bytes on its own: where the
// channel-strip chunk that the plug-in restores from begins, whether the file
// holds all of it, and whether it carries morph data. The plug-in's reader
// stays the authority; this only lets the host explain what happened.
class StateFileLayout
{
public:
    explicit StateFileLayout(const QByteArray &bytes);

    // Offset of the chunk the plug-in reads (the second one in the newer
    // layout, the only one in the older), or -1 when the file has none there.
    qint64 chunkOffset() const { return m_chunkOffset; }
    // The end that the chunk's header states, or -1 when it states none.
    qint64 statedEnd() const { return m_statedEnd; }
    // Bytes between the end of the file and the chunk's stated end.
    qint64 missingBytes() const;
    // Whether the chunk holds a morph data ("ORD ") chunk.
    bool hasMorphData() const { return m_hasMorphData; }

private:
    void readForm(const QByteArray &bytes);

    qint64 m_size = 0;
    qint64 m_chunkOffset = -1;
    qint64 m_statedEnd = -1;
    bool m_hasMorphData = false;
};
