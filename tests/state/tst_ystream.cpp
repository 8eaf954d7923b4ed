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
    void readLineAny_data();
    void readLineAny();
    void writeLine_data();
    void writeLine();
    void nullStreamCounts();
    void plx3StreamForwards();
    void plx3StreamTakesAReference();
};

void TestYStream::readLineAny_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("extra");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("position");

    QTest::newRow("crlf") << QByteArray("ab\r\ncd") << 6 << QByteArray() << 2 << QByteArray("ab") << 4;
    QTest::newRow("earliest terminator wins")
        << QByteArray("ab\ncd\r") << 6 << QByteArray() << 2 << QByteArray("ab") << 3;
    QTest::newRow("lone cr") << QByteArray("abc\rd") << 5 << QByteArray() << 3 << QByteArray("abc") << 4;
    QTest::newRow("no terminator") << QByteArray("abcdef") << 4 << QByteArray() << 4 << QByteArray("abcd")
                                   << 4;
    QTest::newRow("extra delimiter") << QByteArray("ab,c\nd") << 6 << QByteArray(",") << 2 << QByteArray("ab")
                                     << 3;
    QTest::newRow("short stream") << QByteArray("xy") << 10 << QByteArray() << 2 << QByteArray("xy") << 2;
    QTest::newRow("empty line") << QByteArray("\r\nz") << 3 << QByteArray() << 0 << QByteArray() << 2;
}

void TestYStream::readLineAny()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, size);
    QFETCH(QByteArray, extra);
    MemoryStream m(bytes);
    QByteArray buffer(size + 1, '#');
    const int length = m.stream.ReadLine(buffer.data(), size, extra.isEmpty() ? nullptr : extra.constData());
    QTEST(length, "length");
    QTEST(QByteArray(buffer.constData()), "text");
    QTEST(m.stream.GetMarker(), "position");
}

void TestYStream::writeLine_data()
{
    QTest::addColumn<int>("ending"); // 0 LF, 1 CR, 2 CRLF
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("lf, own length") << 0 << 0 << QByteArray("hello\n");
    QTest::newRow("cr, given length") << 1 << 3 << QByteArray("hel\r");
    QTest::newRow("crlf") << 2 << 0 << QByteArray("hello\r\n");
}

void TestYStream::writeLine()
{
    QFETCH(int, ending);
    QFETCH(int, length);
    MemoryStream m;
    const YStream::WriteLineFunc functions[]
        = { &YStream::WriteLineLF, &YStream::WriteLineCR, &YStream::WriteLineCRLF };
    m.stream.SetWriteLineFunc(functions[ending]);
    // The result is the text's own Write, without the line end.
    QCOMPARE(m.stream.WriteLine("hello", length), length ? length : 5);
    QTEST(m.memory->data(), "written");
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
    MemoryStream m(QByteArray("0123456789"));
    char buffer[4] = {};
    QCOMPARE(m.stream.SetMarker(3, YStreamFromStart), 3);
    QCOMPARE(m.stream.GetLength(), 10);
    QCOMPARE(m.stream.GetMarker(), 3); // the length is measured without moving
    QCOMPARE(m.stream.Read(buffer, 4), 4);
    QCOMPARE(QByteArray(buffer, 4), QByteArray("3456"));
    QCOMPARE(m.stream.SetMarker(-2, YStreamFromEnd), 8);
    QCOMPARE(m.stream.Read(buffer, 4), 2); // short read: bytes actually read
    QCOMPARE(m.stream.SetMarker(-1, YStreamFromCurrent), 9);
    QCOMPARE(m.stream.Write("AB", 2), 2);
    QCOMPARE(m.memory->data(), QByteArray("012345678AB"));
    // A failing host call reads as 0 bytes and reports no position.
    QCOMPARE(m.stream.Read(buffer, -1), 0);
    QCOMPARE(m.stream.SetMarker(-100, YStreamFromStart), 0);
}

void TestYStream::plx3StreamTakesAReference()
{
    auto *memory = new MemoryBStream;
    {
        YPlx3Stream stream(memory);
        QCOMPARE(memory->addRef(), 3u);
        memory->release();
    }
    QCOMPARE(memory->addRef(), 2u); // back to our own reference
    memory->release();
    memory->release();
    YPlx3Stream none(nullptr);
    QCOMPARE(none.GetLength(), 0);
    QCOMPARE(none.Write("x", 1), 0);
}

QTEST_GUILESS_MAIN(TestYStream)
#include "tst_ystream.moc"
