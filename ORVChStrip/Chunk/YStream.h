#pragma once

// Origin of YStream::SetMarker.
enum YStreamFrom : int {
    YStreamFromStart = 0,
    YStreamFromCurrent = 1,
    YStreamFromEnd = 2,
};

// A small byte stream under the chunk file code. Positions, lengths and
// counts are signed 32-bit. Line reading and writing go through replaceable
// functions so that a caller can choose its line ends.
class YStream
{
public:
    using ReadLineFunc = int (*)(YStream &stream, char *buffer, int size, const char *extraDelimiters);
    using WriteLineFunc = int (*)(YStream &stream, const char *text, int length);

    YStream() = default;
    virtual ~YStream();

    YStream(const YStream &) = delete;
    YStream &operator=(const YStream &) = delete;

    virtual int Read(void *buffer, int count) = 0;
    virtual int Write(const void *data, int count) = 0;
    virtual int SetMarker(int offset, YStreamFrom from) = 0;
    virtual int GetMarker() = 0;
    virtual int GetLength() = 0;
    // `buffer` must hold size + 1 bytes: the line is left zero-terminated.
    virtual int ReadLine(char *buffer, int size, const char *extraDelimiters = nullptr);
    // A length of 0 writes the zero-terminated text's own length.
    virtual int WriteLine(const char *text, int length = 0);

    void SetReadLineFunc(ReadLineFunc function);
    void SetWriteLineFunc(WriteLineFunc function);

    // Reads up to `size` bytes, ends the line at the earliest "\r\n", CR, LF
    // or extra delimiter, and leaves the position after that terminator.
    static int ReadLineANY(YStream &stream, char *buffer, int size, const char *extraDelimiters);
    // Each writes the text and its line end; the result is that of the text's Write.
    static int WriteLineLF(YStream &stream, const char *text, int length);
    static int WriteLineCR(YStream &stream, const char *text, int length);
    static int WriteLineCRLF(YStream &stream, const char *text, int length);

    static void *GetMem(int size);
    static void ReleaseMem(void *memory);

private:
    ReadLineFunc m_readLineFunc = &YStream::ReadLineANY;
    WriteLineFunc m_writeLineFunc = &YStream::WriteLineLF;
};
