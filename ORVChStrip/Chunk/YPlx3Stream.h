#pragma once

#include "ORVChStrip/Chunk/YStream.h"

class IBStream;

// A YStream over the host's IBStream. It holds a reference to the host
// stream for its lifetime. Host result codes are dropped: callers see byte
// counts and positions only, so a failed call reads as 0 bytes.
class YPlx3Stream : public YStream
{
public:
    explicit YPlx3Stream(IBStream *stream);
    ~YPlx3Stream() override;

    int Read(void *buffer, int count) override;
    int Write(const void *data, int count) override;
    int SetMarker(int offset, YStreamFrom from) override;
    int GetMarker() override;
    // Seeks to the end and back; the position is kept.
    int GetLength() override;

    IBStream *stream() const { return m_pStream; }

private:
    IBStream *m_pStream;
};
