#include "ORVChStrip/Chunk/AnalyzerError.h"

#include <cstdio>
#include <cstring>

#include "ORVChStrip/Chunk/ChStripFileBinException.h"

void AnalyzerError::setError(const char *text)
{
    m_error = true;
    m_code = ChStripFileException::Unrecognized;
    m_position = -1;
    if (!text)
        text = "";
    if (std::strlen(text) < MessageCapacity)
        std::snprintf(m_message, sizeof m_message, "%s", text);
    else
        std::snprintf(m_message, sizeof m_message, "%.*s...", MessageCapacity - 4, text);
}

void AnalyzerError::setError(const ChStripFileBinException &exception)
{
    setError(exception.what());
    m_code = exception.code();
    m_position = static_cast<long long>(exception.position());
}
