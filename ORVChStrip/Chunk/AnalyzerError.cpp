#include "ORVChStrip/Chunk/AnalyzerError.h"

#include <cstdio>
#include <cstring>

void AnalyzerError::setError(const char *text)
{
    m_error = true;
    if (!text)
        text = "";
    if (std::strlen(text) < MessageCapacity)
        std::snprintf(m_message, sizeof m_message, "%s", text);
    else
        std::snprintf(m_message, sizeof m_message, "%.*s...", MessageCapacity - 4, text);
}
