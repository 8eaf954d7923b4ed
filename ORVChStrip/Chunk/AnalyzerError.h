#pragma once

// Flag and message of a failed chunk load.
class AnalyzerError
{
public:
    static constexpr int MessageCapacity = 1024; // 1023 characters and the terminator

    bool isError() const { return m_error; }
    const char *message() const { return m_message; }

    // Sets the flag. A text longer than 1023 characters keeps its first 1020
    // followed by "...".
    void setError(const char *text);

private:
    bool m_error = false;
    char m_message[MessageCapacity] = {};
};
