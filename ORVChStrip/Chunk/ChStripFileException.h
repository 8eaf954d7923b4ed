#pragma once

#include <exception>

// A chunk-file error with one of six fixed messages. Codes outside 0 to 4
// select code 5, "Error that can't be recognized.".
class ChStripFileException : public std::exception
{
public:
    enum Code {
        NoError = 0,
        NotChStripFile = 1,
        AbnormalChunkId = 2,
        AbnormalChunkSize = 3,
        NoFileInformation = 4,
        Unrecognized = 5,
    };
    static constexpr int MessageCapacity = 1024;

    explicit ChStripFileException(int code);

    const char *what() const noexcept override { return m_message; }
    int code() const { return m_code; }

    static const char *GetErrorMessage(int code);

protected:
    char m_message[MessageCapacity];

private:
    int m_code;
};
