#include "ORVChStrip/Chunk/YStream.h"

#include <cstdlib>
#include <cstring>

namespace {

int textLength(const char *text, int length)
{
    if (!text)
        return 0;
    return length != 0 ? length : static_cast<int>(std::strlen(text));
}

int writeText(YStream &stream, const char *text, int length)
{
    const int n = textLength(text, length);
    return n > 0 ? stream.Write(text, n) : 0;
}

} // namespace

YStream::~YStream() = default;

int YStream::ReadLine(char *buffer, int size, const char *extraDelimiters)
{
    return m_readLineFunc ? m_readLineFunc(*this, buffer, size, extraDelimiters) : 0;
}

int YStream::WriteLine(const char *text, int length)
{
    return m_writeLineFunc ? m_writeLineFunc(*this, text, length) : 0;
}

void YStream::SetReadLineFunc(ReadLineFunc function)
{
    m_readLineFunc = function;
}

void YStream::SetWriteLineFunc(WriteLineFunc function)
{
    m_writeLineFunc = function;
}

int YStream::ReadLineANY(YStream &stream, char *buffer, int size, const char *extraDelimiters)
{
    if (!buffer)
        return 0;
    const int start = stream.GetMarker();
    int n = size > 0 ? stream.Read(buffer, size) : 0;
    if (n < 0)
        n = 0;
    else if (size > 0 && n > size)
        n = size;
    buffer[n] = '\0';

    // Every cut shortens the text, so each later search can only find an
    // earlier terminator: the line ends at the earliest one of any kind.
    int length = n;
    int consumed = n;
    auto cutAt = [&](const char *found, int terminatorLength) {
        if (!found)
            return;
        length = static_cast<int>(found - buffer);
        consumed = length + terminatorLength;
        buffer[length] = '\0';
    };
    cutAt(std::strstr(buffer, "\r\n"), 2);
    cutAt(std::strchr(buffer, '\r'), 1);
    cutAt(std::strchr(buffer, '\n'), 1);
    if (extraDelimiters) {
        for (const char *d = extraDelimiters; *d; ++d)
            cutAt(std::strchr(buffer, *d), 1);
    }
    stream.SetMarker(start + consumed, YStreamFromStart);
    return length;
}

int YStream::WriteLineLF(YStream &stream, const char *text, int length)
{
    const int written = writeText(stream, text, length);
    stream.Write("\n", 1);
    return written;
}

int YStream::WriteLineCR(YStream &stream, const char *text, int length)
{
    const int written = writeText(stream, text, length);
    stream.Write("\r", 1);
    return written;
}

int YStream::WriteLineCRLF(YStream &stream, const char *text, int length)
{
    const int written = writeText(stream, text, length);
    stream.Write("\r\n", 2);
    return written;
}

void *YStream::GetMem(int size)
{
    return size > 0 ? std::malloc(static_cast<size_t>(size)) : nullptr;
}

void YStream::ReleaseMem(void *memory)
{
    std::free(memory);
}
