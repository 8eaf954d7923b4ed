#pragma once

#include "ORVChStrip/Chunk/YStream.h"

// A counting sink: measures what a writer would produce without storing it.
class YNullStream : public YStream
{
public:
    int Read(void *buffer, int count) override;
    int Write(const void *data, int count) override;
    int SetMarker(int offset, YStreamFrom from) override;
    int GetMarker() override { return m_position; }
    int GetLength() override { return m_length; }

private:
    int m_length = 0;
    int m_position = 0;
};
