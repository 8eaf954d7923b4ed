#include <QTest>

#include "ChunkBytes.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/ChStripFileBinException.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YNullStream.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"

using namespace ChunkBytes;

namespace {

constexpr float Canary = -42.0f;

// The caller's buffers, with room behind the 26 floats to catch an overrun.
struct Buffers
{
    Buffers()
    {
        for (float &value : params)
            value = Canary;
        std::memset(name, 'n', sizeof name);
        for (auto &row : table)
            for (short &cell : row)
                cell = 7;
    }
    float params[32];
    char name[256];
    short table[10][17];
};

struct Loaded
{
    bool ok = false;
    QByteArray message;
    int parameterCount = 0;
    int position = 0;
    int errorCode = 0;
    long long errorPosition = -1;
};

Loaded load(const QByteArray &bytes, Buffers &buffers, qint64 start = 0)
{
    auto *memory = new MemoryBStream(bytes);
    YPlx3Stream stream(memory);
    memory->release();
    stream.SetMarker(int(start), YStreamFromStart);
    YChannelStripChunk chunk;
    AnalyzerError error;
    Loaded loaded;
    loaded.ok = chunk.LoadBinALL(stream, error, buffers.params, buffers.name, buffers.table);
    if (loaded.ok == error.isError())
        qWarning("LoadBinALL result and error flag disagree");
    loaded.ok = loaded.ok && !error.isError();
    loaded.message = error.message();
    loaded.errorCode = error.code();
    loaded.errorPosition = error.position();
    loaded.parameterCount = chunk.lastParameterCount();
    loaded.position = stream.GetMarker();
    return loaded;
}

QByteArray readError(int code, int position)
{
    return QByteArray("read csv-file error.\n") + ChStripFileException::GetErrorMessage(code)
        + QByteArray("file-pos : 0x") + QByteArray::number(position, 16).rightJustified(8, '0');
}

QByteArray fileInfo32()
{
    return chunk32("FINF", le32(2));
}

QByteArray fileInfo64()
{
    return chunk64("FINF", le64(2));
}

} // namespace

class TestChunkFile : public QObject
{
    Q_OBJECT

private slots:
    void writtenLayout();
    void roundTrip_data();
    void roundTrip();
    void errors_data();
    void errors();
    void exceptionMessages();
    void parameterCap_data();
    void parameterCap();
    void missingAndRepeatedChunks();
    void badSizesEndTheWalk_data();
    void badSizesEndTheWalk();
    void skipFormChunk();
    void analyzerErrorCap();
};

void TestChunkFile::writtenLayout()
{
    float params[26];
    for (int i = 0; i < 26; ++i)
        params[i] = float(i) / 25.0f;
    char name[256] = "Vocal Smooth";
    short table[10][17];
    for (int r = 0; r < 10; ++r)
        for (int k = 0; k < 17; ++k)
            table[r][k] = short(r * 17 + k - 100);

    auto *memory = new MemoryBStream;
    {
        YPlx3Stream stream(memory);
        YChannelStripChunk().SaveBinALL(stream, params, 26, name, table);
    }
    const QByteArray bytes = memory->data();
    memory->release();

    QCOMPARE(bytes.size(), 736);
    QCOMPARE(bytes.left(4), QByteArray("CHST"));
    QCOMPARE(bytes.mid(4, 4), le32(728));
    QCOMPARE(bytes.mid(8, 12), QByteArray("FINF") + le32(4) + le32(2));
    QCOMPARE(bytes.mid(20, 8), QByteArray("ORD ") + le32(596));
    QCOMPARE(bytes.mid(28, 256), QByteArray(name, 256));
    QCOMPARE(qFromLittleEndian<qint16>(bytes.constData() + 284), qint16(-100));
    QCOMPARE(qFromLittleEndian<qint16>(bytes.constData() + 284 + 2 * 170 - 2), qint16(9 * 17 + 16 - 100));
    QCOMPARE(bytes.mid(624, 8), QByteArray("PRM ") + le32(104));
    QCOMPARE(bytes.mid(632), floats(QList<float>(params, params + 26)));

    // The counting stream measures the same, and smaller counts shrink "PRM ".
    for (const auto &[count, length] : { std::pair { 26, 736 }, { 22, 720 }, { 0, 632 }, { -5, 632 } }) {
        YNullStream sink;
        YChannelStripChunk().SaveBinALL(sink, params, count, name, table);
        QCOMPARE(sink.GetLength(), length);
        QCOMPARE(sink.GetMarker(), length);
    }
}

void TestChunkFile::roundTrip_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("parameterCount");
    const QByteArray table = morphTable("Bright Vox");
    const QList<float> values { 0.0f, 0.25f, 1.0f, 0.125f, -3.5f };
    QTest::newRow("32-bit") << chunk32(
        "CHST", fileInfo32() + chunk32("ORD ", table) + chunk32("PRM ", floats(values)))
                            << 5;
    QTest::newRow("64-bit") << chunk64(
        "CHST", fileInfo64() + chunk64("ORD ", table) + chunk64("PRM ", floats(values)))
                            << 5;
    QTest::newRow("32-bit behind other data") << QByteArray("junk")
            + chunk32("CHST", fileInfo32() + chunk32("PRM ", floats(values)) + chunk32("ORD ", table))
                                              << 5;
}

void TestChunkFile::roundTrip()
{
    QFETCH(QByteArray, bytes);
    const qint64 start = bytes.startsWith("junk") ? 4 : 0;
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers, start);
    QVERIFY2(loaded.ok, loaded.message.constData());
    QTEST(loaded.parameterCount, "parameterCount");
    QCOMPARE(buffers.params[0], 0.0f);
    QCOMPARE(buffers.params[2], 1.0f);
    QCOMPARE(buffers.params[4], -3.5f);
    QCOMPARE(buffers.params[5], Canary);
    QCOMPARE(QByteArray(buffers.name), QByteArray("Bright Vox"));
    QCOMPARE(buffers.table[0][0], short(-500));
    QCOMPARE(buffers.table[9][16], short(900 + 16 - 500));
    QCOMPARE(loaded.position, int(bytes.size()));
}

void TestChunkFile::errors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("position");

    QTest::newRow("C,H,S,x is an abnormal id, not 'not a file'")
        << QByteArray("CHSx") + le32(0) + fileInfo32() << 2 << 0x08;
    QTest::newRow("stream shorter than a header") << QByteArray("CH") << 2 << 0x02;
    QTest::newRow("64-bit id with a non-zero high word")
        << QByteArray("ABCDCHST") + le64(16) + fileInfo64() << 1 << 0x10;
    QTest::newRow("negative form size") << QByteArray("CHST") + le32(-1) << 3 << 0x08;
    QTest::newRow("no file information") << chunk32("CHST", chunk32("ORD ", morphTable("x"))) << 4 << 0x10;
    QTest::newRow("file information too small")
        << chunk32("CHST", chunk32("FINF", QByteArray(2, '\0'))) << 3 << 0x10;
    QTest::newRow("negative chunk size, 0xFFFFFFFF")
        << chunk32("CHST", fileInfo32() + QByteArray("PRM ") + le32(-1) + QByteArray(8, '\0')) << 3 << 0x1C;
    QTest::newRow("negative chunk size in the 64-bit layout")
        << chunk64("CHST", fileInfo64() + QByteArray(4, '\0') + QByteArray("ORD ") + le64(-8)) << 3 << 0x38;
}

void TestChunkFile::errors()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    QFETCH(int, position);
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY(!loaded.ok);
    QCOMPARE(loaded.message, readError(code, position));
    // The same facts without the text.
    QCOMPARE(loaded.errorCode, code);
    QCOMPARE(loaded.errorPosition, position);
}

void TestChunkFile::exceptionMessages()
{
    QCOMPARE(QByteArray(ChStripFileException(1).what()), QByteArray("It's not ChStrip file.\n"));
    for (int code : { 5, -1, 1000 }) {
        QCOMPARE(
            QByteArray(ChStripFileException(code).what()), QByteArray("Error that can't be recognized.\n"));
        QCOMPARE(ChStripFileException(code).code(), 5);
    }
    YNullStream stream;
    stream.Write("0123456789abcdef0123", 0x1A2);
    const ChStripFileBinException writing(false, 3, stream);
    QCOMPARE(QByteArray(writing.what()),
        QByteArray("write csv-file error.\nThe chunk size is abnormal.\nfile-pos : 0x000001a2"));
}

void TestChunkFile::parameterCap_data()
{
    QTest::addColumn<bool>("wide");
    QTest::addColumn<int>("counted");
    QTest::newRow("32-bit stops at 26") << false << 26;
    QTest::newRow("64-bit counts 30, stores 26") << true << 30;
}

void TestChunkFile::parameterCap()
{
    QFETCH(bool, wide);
    QList<float> values;
    for (int i = 0; i < 30; ++i)
        values.append(float(i + 1));
    const QByteArray prm = floats(values);
    QCOMPARE(prm.size(), 120);
    const QByteArray bytes = wide
        ? chunk64("CHST", fileInfo64() + chunk64("PRM ", prm) + chunk64("ORD ", morphTable("after")))
        : chunk32("CHST", fileInfo32() + chunk32("PRM ", prm) + chunk32("ORD ", morphTable("after")));
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY(loaded.ok);
    QTEST(loaded.parameterCount, "counted");
    QCOMPARE(buffers.params[0], 1.0f);
    QCOMPARE(buffers.params[25], 26.0f);
    for (int i = 26; i < 32; ++i)
        QCOMPARE(buffers.params[i], Canary); // never overrun
    // The walk steps over the whole chunk to what follows it.
    QCOMPARE(QByteArray(buffers.name), QByteArray("after"));
}

void TestChunkFile::missingAndRepeatedChunks()
{
    Buffers buffers;
    // An unknown chunk of odd size is stepped over.
    const QByteArray bytes = chunk32("CHST",
        fileInfo32() + chunk32("PRM ", floats({ 0.1f, 0.2f })) + chunk32("ABCD", "abc")
            + chunk32("PRM ", floats({ 0.9f })));
    QVERIFY(load(bytes, buffers).ok);
    QCOMPARE(buffers.params[0], 0.9f); // the later chunk wins
    QCOMPARE(buffers.params[1], 0.2f);
    QCOMPARE(buffers.name[0], 'n'); // no "ORD ": name and table as they were
    QCOMPARE(buffers.table[3][3], short(7));

    // Values read before a failure stay.
    Buffers failed;
    const QByteArray broken
        = chunk32("CHST", fileInfo32() + chunk32("ORD ", morphTable("kept")) + QByteArray("ABCD") + le32(-2));
    QVERIFY(!load(broken, failed).ok);
    QCOMPARE(QByteArray(failed.name), QByteArray("kept"));
}

void TestChunkFile::badSizesEndTheWalk_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("read");
    const QByteArray value = floats({ 0.5f });
    // "FINF" states 8 bytes; the reader takes 4 and reads the next header
    // from "XXXX", whose size (the "PRM " id) steps past the end.
    QTest::newRow("long file information misaligns the walk")
        << chunk32("CHST", chunk32("FINF", le32(2) + QByteArray("XXXX")) + chunk32("PRM ", value)) << false;
    QTest::newRow("32-bit form size wraps the end")
        << QByteArray("CHST") + le32(INT_MAX) + fileInfo32() + chunk32("PRM ", value) << false;
    QTest::newRow("32-bit form claims 2 GB")
        << QByteArray("CHST") + le32(INT_MAX - 16) + fileInfo32() + chunk32("PRM ", value) << true;
    QTest::newRow("32-bit chunk size wraps the position") << QByteArray("CHST") + le32(INT_MAX - 16)
            + fileInfo32() + QByteArray("ABCD") + le32(INT_MAX - 8)
            + chunk32("PRM ", value) << false;
    QTest::newRow("64-bit chunk of 2^40 bytes")
        << QByteArray(4, '\0') + QByteArray("CHST") + le64((qint64(1) << 32) + 200) + fileInfo64()
            + QByteArray(4, '\0') + QByteArray("PRM ") + le64((qint64(1) << 40) + 4) + value
        << true;
    QTest::newRow("64-bit form of 2^62 bytes") << QByteArray(4, '\0') + QByteArray("CHST")
            + le64(qint64(1) << 62) + fileInfo64()
            + chunk64("PRM ", value) << false;
}

void TestChunkFile::badSizesEndTheWalk()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, read);
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY2(loaded.ok, loaded.message.constData());
    QCOMPARE(buffers.params[0], read ? 0.5f : Canary);
    for (int i = 1; i < 32; ++i)
        QCOMPARE(buffers.params[i], Canary);
}

void TestChunkFile::skipFormChunk()
{
    const QByteArray form = chunk32("CHST", fileInfo32() + chunk32("PRM ", floats({ 1.0f })));
    auto *memory = new MemoryBStream(form + "tail");
    YPlx3Stream stream(memory);
    memory->release();
    YChannelStripChunk chunk;
    QCOMPARE(chunk.SkipFormChunk(stream), int(form.size()));
    QCOMPARE(stream.GetMarker(), int(form.size()));
    try {
        chunk.SkipFormChunk(stream); // "tail" is no form
        QFAIL("no exception");
    } catch (const ChStripFileBinException &exception) {
        QCOMPARE(exception.code(), 1);
        QCOMPARE(exception.position(), static_cast<unsigned long>(form.size() + 4)); // id only: no size
    }
}

void TestChunkFile::analyzerErrorCap()
{
    // 1023 characters fit; one more and the message ends in "...".
    QByteArray text;
    for (int i = 0; i < 1024; ++i)
        text += char('a' + i % 26);
    AnalyzerError fits;
    fits.setError(text.left(1023).constData());
    QCOMPARE(QByteArray(fits.message()), text.left(1023));
    AnalyzerError cut;
    cut.setError(text.constData());
    QVERIFY(cut.isError());
    QCOMPARE(QByteArray(cut.message()), text.left(1020) + "...");
}

QTEST_GUILESS_MAIN(TestChunkFile)
#include "tst_chunkfile.moc"
