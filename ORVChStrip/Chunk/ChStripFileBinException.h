#pragma once

#include "ORVChStrip/Chunk/ChStripFileException.h"

class YStream;

// A chunk-file error with where it happened: "read csv-file error.\n" (or
// "write"), the code's message, and "file-pos : 0x%08lx" with the stream's
// position at the throw.
class ChStripFileBinException : public ChStripFileException
{
public:
    ChStripFileBinException(bool reading, int code, YStream &stream);

    unsigned long position() const { return m_position; }

private:
    unsigned long m_position;
};
