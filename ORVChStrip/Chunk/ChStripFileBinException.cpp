#include "ORVChStrip/Chunk/ChStripFileBinException.h"

#include <cstdint>
#include <cstdio>

#include "ORVChStrip/Chunk/YStream.h"

ChStripFileBinException::ChStripFileBinException(bool reading, int code, YStream &stream)
    : ChStripFileException(code)
    , m_position(static_cast<uint32_t>(stream.GetMarker()))
{
    char operation[32];
    char where[32];
    std::snprintf(operation, sizeof operation, "%s csv-file error.\n", reading ? "read" : "write");
    std::snprintf(where, sizeof where, "file-pos : 0x%08lx", m_position);
    std::snprintf(m_message, sizeof m_message, "%s%s%s", operation, GetErrorMessage(code), where);
}
