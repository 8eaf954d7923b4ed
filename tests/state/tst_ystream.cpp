#include <QTest>

#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/YNullStream.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"

namespace {

// A YPlx3Stream over its own memory stream, released with it.
struct MemoryStream
{
    explicit MemoryStream(const QByteArray &bytes = {})
        : memory(new MemoryBStream(bytes))
        , stream(memory)
    {
        memory->release(); // the YPlx3Stream holds the remaining reference
    }
    MemoryBStream *memory;
    YPlx3Stream stream;
};

} // namespace

class TestYStream : public QObject
{
    Q_OBJECT

private slots:
    void lineReadsAndWrites_data();
    void lineReadsAndWrites();
    void nullStreamCounts();
    void plx3StreamForwards();
};

void TestYStream::lineReadsAndWrites_data()
{
    QTest::addColumn<QByteArray>("function"); // ReadLineANY, or the line end that WriteLine writes
    QTest::addColumn<QByteArray>("bytes");    // the stream before
    QTest::addColumn<int>("size");            // the buffer size to read, the length to write
    QTest::addColumn<QByteArray>("extra");    // extra delimiters of a read
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("text"); // the line read, the stream after a write
    QTest::addColumn<int>("position");

    // clang-format off
    QTest::newRow("crlf read") << QByteArray("read") << QByteArray("ab\r\ncd") << 6 << QByteArray() << 2 << QByteArray("ab") << 4;
    QTest::newRow("earliest terminator wins") << QByteArray("read") << QByteArray("ab\ncd\r") << 6 << QByteArray() << 2 << QByteArray("ab") << 3;
    QTest::newRow("lone cr") << QByteArray("read") << QByteArray("abc\rd") << 5 << QByteArray() << 3 << QByteArray("abc") << 4;
    QTest::newRow("no terminator") << QByteArray("read") << QByteArray("abcdef") << 4 << QByteArray() << 4 << QByteArray("abcd") << 4;
    QTest::newRow("extra delimiter") << QByteArray("read") << QByteArray("ab,c\nd") << 6 << QByteArray(",") << 2 << QByteArray("ab") << 3;
    QTest::newRow("short stream") << QByteArray("read") << QByteArray("xy") << 10 << QByteArray() << 2 << QByteArray("xy") << 2;
    QTest::newRow("empty line") << QByteArray("read") << QByteArray("\r\nz") << 3 << QByteArray() << 0 << QByteArray() << 2;
    // A write returns the text's own Write, without the line end.
    QTest::newRow("lf, own length") << QByteArray("\n") << QByteArray() << 0 << QByteArray() << 5 << QByteArray("hello\n") << 6;
    QTest::newRow("cr, given length") << QByteArray("\r") << QByteArray() << 3 << QByteArray() << 3 << QByteArray("hel\r") << 4;
    QTest::newRow("crlf write") << QByteArray("\r\n") << QByteArray() << 0 << QByteArray() << 5 << QByteArray("hello\r\n") << 7;
    // clang-format on
}

void TestYStream::lineReadsAndWrites()
{
    QFETCH(QByteArray, function);
    QFETCH(QByteArray, bytes);
    QFETCH(int, size);
    QFETCH(QByteArray, extra);
    MemoryStream m(bytes);
    int result = 0;
    QByteArray text;
    if (function == "read") {
        QByteArray buffer(size + 1, '#');
        result = m.stream.ReadLine(buffer.data(), size, extra.isEmpty() ? nullptr : extra.constData());
        text = buffer.constData();
    } else {
        m.stream.SetWriteLineFunc(function == "\n" ? &YStream::WriteLineLF
                : function == "\r"                 ? &YStream::WriteLineCR
                                                   : &YStream::WriteLineCRLF);
        result = m.stream.WriteLine("hello", size);
        text = m.memory->data();
    }
    QTEST(result, "result");
    QTEST(text, "text");
    QTEST(m.stream.GetMarker(), "position");
}

void TestYStream::nullStreamCounts()
{
    YNullStream stream;
    char bytes[16] = {};
    QCOMPARE(stream.Write(bytes, 10), 10);
    QCOMPARE(stream.SetMarker(-4, YStreamFromEnd), 6);
    QCOMPARE(stream.Write(bytes, 2), 2);
    QCOMPARE(stream.GetLength(), 10);
    QCOMPARE(stream.GetMarker(), 8);
    QCOMPARE(stream.Write(bytes, 0), 0);
    QCOMPARE(stream.Write(bytes, -3), 0);
    QCOMPARE(stream.GetMarker(), 8);

    // Reading reports nothing and never passes the end.
    QCOMPARE(stream.Read(bytes, 5), 0);
    QCOMPARE(stream.GetMarker(), 10);

    // Seeks stay inside the data; an unknown origin keeps the position.
    for (const auto &[offset, from, position] :
        { std::tuple { -100, 1, 0 }, { 50, 0, 10 }, { 2, 9, 4 }, { INT_MAX, 1, 10 } }) {
        stream.SetMarker(4, YStreamFromStart);
        QCOMPARE(stream.SetMarker(offset, static_cast<YStreamFrom>(from)), position);
        QCOMPARE(stream.GetMarker(), position);
    }
    QCOMPARE(stream.GetLength(), 10);
}

void TestYStream::plx3StreamForwards()
{
    auto *memory = new MemoryBStream(QByteArray("0123456789"));
    {
        YPlx3Stream stream(memory);
        QCOMPARE(memory->addRef(), 3u); // ours, the stream's and this one
        memory->release();
        char buffer[4] = {};
        QCOMPARE(stream.SetMarker(3, YStreamFromStart), 3);
        QCOMPARE(stream.GetLength(), 10);
        QCOMPARE(stream.GetMarker(), 3); // the length is measured without moving
        QCOMPARE(stream.Read(buffer, 4), 4);
        QCOMPARE(QByteArray(buffer, 4), QByteArray("3456"));
        QCOMPARE(stream.SetMarker(-2, YStreamFromEnd), 8);
        QCOMPARE(stream.Read(buffer, 4), 2); // short read: bytes actually read
        QCOMPARE(stream.SetMarker(-1, YStreamFromCurrent), 9);
        QCOMPARE(stream.Write("AB", 2), 2);
        QCOMPARE(memory->data(), QByteArray("012345678AB"));
        // A failing host call reads as 0 bytes and reports no position.
        QCOMPARE(stream.Read(buffer, -1), 0);
        QCOMPARE(stream.SetMarker(-100, YStreamFromStart), 0);
    }
    QCOMPARE(memory->release(), 0u); // the stream gave its reference back
    YPlx3Stream none(nullptr);
    QCOMPARE(none.GetLength(), 0);
    QCOMPARE(none.Write("x", 1), 0);
}

QTEST_GUILESS_MAIN(TestYStream)
#include "tst_ystream.moc"
