#pragma once

class ChStripFileBinException;

// Flag and message of a failed chunk load, with the failure's code and the
// stream position where it happened, so that nobody has to read them back
// out of the message.
class AnalyzerError
{
public:
    static constexpr int MessageCapacity = 1024; // 1023 characters and the terminator

    bool isError() const { return m_error; }
    const char *message() const { return m_message; }
    // ChStripFileException's code; Unrecognized for an error set by text alone.
    int code() const { return m_code; }
    // The stream position of the failure (low 32 bits); -1 when not known.
    long long position() const { return m_position; }

    // Sets the flag. A text longer than 1023 characters keeps its first 1020
    // followed by "...".
    void setError(const char *text);
    // The exception's message, code and position.
    void setError(const ChStripFileBinException &exception);

private:
    bool m_error = false;
    char m_message[MessageCapacity] = {};
    int m_code = 0;
    long long m_position = -1;
};
