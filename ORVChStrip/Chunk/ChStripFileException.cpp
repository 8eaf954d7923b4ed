#include "ORVChStrip/Chunk/ChStripFileException.h"

#include <cstdio>

namespace {

const char *const Messages[] = {
    "No Error.\n",
    "It's not ChStrip file.\n",
    "The chunk ID is abnormal.\n",
    "The chunk size is abnormal.\n",
    "No file information chunk.\n",
    "Error that can't be recognized.\n",
};

int knownCode(int code)
{
    return code >= 0 && code <= 4 ? code : 5;
}

} // namespace

ChStripFileException::ChStripFileException(int code)
    : m_code(knownCode(code))
{
    std::snprintf(m_message, sizeof m_message, "%s", Messages[m_code]);
}

const char *ChStripFileException::GetErrorMessage(int code)
{
    return Messages[knownCode(code)];
}
