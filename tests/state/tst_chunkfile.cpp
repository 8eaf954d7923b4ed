#include <QTest>

#include <QtEndian>
#include <cstring>

#include "GoldenFile.h"
#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/ChStripFileBinException.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YNullStream.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"

namespace {

QByteArray le(qint64 value, int width)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes.left(width);
}

QByteArray floats(const QList<float> &values)
{
    QByteArray bytes;
    for (float value : values) {
        quint32 bits;
        std::memcpy(&bits, &value, 4);
        bytes += le(bits, 4);
    }
    return bytes;
}

QByteArray chunk32(const char *id, const QByteArray &content)
{
    return QByteArray(id, 4) + le(content.size(), 4) + content;
}

QByteArray chunk64(const char *id, const QByteArray &content)
{
    return QByteArray(4, '\0') + QByteArray(id, 4) + le(content.size(), 8) + content;
}

constexpr float Canary = -42.0f;

// The contents of both golden chunk files.
struct Written
{
    Written()
    {
        for (int i = 0; i < 26; ++i)
            params[i] = float(i - 10) * 0.125f;
        for (int r = 0; r < 10; ++r)
            for (int k = 0; k < 17; ++k)
                table[r][k] = short(r * 17 + k - 100);
    }
    float params[26];
    char name[256] = "Vocal Smooth";
    short table[10][17];
};

// The caller's buffers, with room behind the 26 floats to catch an overrun.
struct Buffers
{
    Buffers()
    {
        std::fill(std::begin(params), std::end(params), Canary);
        std::memset(name, 'n', sizeof name);
        std::fill(&table[0][0], &table[0][0] + 170, short(7));
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

Loaded load(const QByteArray &bytes, Buffers &buffers, int start = 0)
{
    auto *memory = new MemoryBStream(bytes);
    YPlx3Stream stream(memory);
    memory->release();
    stream.SetMarker(start, YStreamFromStart);
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

const QString Golden32 = QStringLiteral("chunk/written-32bit.chst");
const QString Golden64 = QStringLiteral("chunk/same-64bit.chst");

} // namespace

class TestChunkFile : public QObject
{
    Q_OBJECT

private slots:
    void writesGoldenFile();
    void readsBothLayouts_data();
    void readsBothLayouts();
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

void TestChunkFile::writesGoldenFile()
{
    const Written written;
    auto *memory = new MemoryBStream;
    {
        YPlx3Stream stream(memory);
        YChannelStripChunk().SaveBinALL(stream, written.params, 26, written.name, written.table);
    }
    const QString difference = goldenDifference(memory->data(), Golden32);
    memory->release();
    QVERIFY2(difference.isEmpty(), qPrintable(difference));

    // The counting stream measures the same, and smaller counts shrink "PRM ".
    for (const auto &[count, length] : { std::pair { 26, 736 }, { 22, 720 }, { 0, 632 }, { -5, 632 } }) {
        YNullStream sink;
        YChannelStripChunk().SaveBinALL(sink, written.params, count, written.name, written.table);
        QCOMPARE(sink.GetLength(), length);
        QCOMPARE(sink.GetMarker(), length);
    }
}

void TestChunkFile::readsBothLayouts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("start");
    QTest::newRow("32-bit") << goldenFile(Golden32) << 0;
    QTest::newRow("64-bit") << goldenFile(Golden64) << 0;
    QTest::newRow("32-bit behind other data") << "junk" + goldenFile(Golden32) << 4;
}

void TestChunkFile::readsBothLayouts()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, start);
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers, start);
    QVERIFY2(loaded.ok, loaded.message.constData());
    QCOMPARE(loaded.parameterCount, 26);
    QCOMPARE(loaded.position, int(bytes.size()));
    const Written written;
    QCOMPARE(QList<float>(buffers.params, buffers.params + 32),
        QList<float>(written.params, written.params + 26) + QList<float>(6, Canary));
    QCOMPARE(QByteArray(buffers.name, 256), QByteArray(written.name, 256));
    QVERIFY(std::equal(&buffers.table[0][0], &buffers.table[0][0] + 170, &written.table[0][0]));
}

void TestChunkFile::errors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("position");

    const QByteArray wrongId = "The chunk ID is abnormal.\n", wrongSize = "The chunk size is abnormal.\n";
    const QByteArray chunk = goldenFile(Golden32), wide = goldenFile(Golden64);
    QTest::newRow("C,H,S,x is an abnormal id, not 'not a file'")
        << QByteArray(chunk).replace(0, 4, "CHSx") << 2 << wrongId << 0x08;
    QTest::newRow("stream shorter than a header") << QByteArray("CH") << 2 << wrongId << 0x02;
    QTest::newRow("64-bit id with a non-zero high word")
        << QByteArray(wide).replace(0, 4, "ABCD") << 1 << QByteArray("It's not ChStrip file.\n") << 0x10;
    QTest::newRow("negative form size")
        << QByteArray(chunk).replace(4, 4, le(-1, 4)) << 3 << wrongSize << 0x08;
    QTest::newRow("no file information")
        << QByteArray(chunk).replace(8, 4, "FINx") << 4 << QByteArray("No file information chunk.\n") << 0x10;
    QTest::newRow("file information too small")
        << QByteArray(chunk).replace(12, 4, le(2, 4)) << 3 << wrongSize << 0x10;
    QTest::newRow("negative chunk size, 0xFFFFFFFF")
        << QByteArray(chunk).replace(24, 4, le(-1, 4)) << 3 << wrongSize << 0x1C;
    QTest::newRow("negative chunk size in the 64-bit layout")
        << QByteArray(wide).replace(48, 8, le(-8, 8)) << 3 << wrongSize << 0x38;
}

void TestChunkFile::errors()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    QFETCH(QByteArray, message);
    QFETCH(int, position);
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY(!loaded.ok);
    QCOMPARE(loaded.message,
        "read csv-file error.\n" + message + "file-pos : 0x"
            + QByteArray::number(position, 16).rightJustified(8, '0'));
    QCOMPARE(loaded.errorCode, code);
    QCOMPARE(loaded.errorPosition, position);
}

void TestChunkFile::exceptionMessages()
{
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
    const QByteArray ord = goldenFile(Golden32).mid(28, 596); // named "Vocal Smooth"
    const QByteArray bytes = wide
        ? chunk64("CHST", chunk64("FINF", le(2, 8)) + chunk64("PRM ", floats(values)) + chunk64("ORD ", ord))
        : chunk32("CHST", chunk32("FINF", le(2, 4)) + chunk32("PRM ", floats(values)) + chunk32("ORD ", ord));
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY(loaded.ok);
    QTEST(loaded.parameterCount, "counted");
    QCOMPARE(QList<float>(buffers.params, buffers.params + 32), values.first(26) + QList<float>(6, Canary));
    // The walk steps over the whole chunk to what follows it.
    QCOMPARE(QByteArray(buffers.name), QByteArray("Vocal Smooth"));
}

void TestChunkFile::missingAndRepeatedChunks()
{
    Buffers buffers;
    // An unknown chunk of odd size is stepped over.
    const QByteArray bytes = chunk32("CHST",
        chunk32("FINF", le(2, 4)) + chunk32("PRM ", floats({ 0.1f, 0.2f })) + chunk32("ABCD", "abc")
            + chunk32("PRM ", floats({ 0.9f })));
    QVERIFY(load(bytes, buffers).ok);
    QCOMPARE(buffers.params[0], 0.9f); // the later chunk wins
    QCOMPARE(buffers.params[1], 0.2f);
    QCOMPARE(buffers.name[0], 'n'); // no "ORD ": name and table as they were
    QCOMPARE(buffers.table[3][3], short(7));

    // Values read before a failure stay.
    Buffers failed;
    QVERIFY(!load(goldenFile(Golden32).replace(628, 4, le(-2, 4)), failed).ok);
    QCOMPARE(QByteArray(failed.name), QByteArray("Vocal Smooth"));
}

void TestChunkFile::badSizesEndTheWalk_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("read");
    const QByteArray fileInfo32 = chunk32("FINF", le(2, 4)), fileInfo64 = chunk64("FINF", le(2, 8));
    const QByteArray value = floats({ 0.5f });
    // "FINF" states 8 bytes; the reader takes 4 and reads the next header
    // from "XXXX", whose size (the "PRM " id) steps past the end.
    QTest::newRow("long file information misaligns the walk")
        << chunk32("CHST", chunk32("FINF", le(2, 4) + QByteArray("XXXX")) + chunk32("PRM ", value)) << false;
    QTest::newRow("32-bit form size wraps the end")
        << QByteArray("CHST") + le(INT_MAX, 4) + fileInfo32 + chunk32("PRM ", value) << false;
    QTest::newRow("32-bit form claims 2 GB")
        << QByteArray("CHST") + le(INT_MAX - 16, 4) + fileInfo32 + chunk32("PRM ", value) << true;
    QTest::newRow("32-bit chunk size wraps the position") << QByteArray("CHST") + le(INT_MAX - 16, 4)
            + fileInfo32 + QByteArray("ABCD") + le(INT_MAX - 8, 4)
            + chunk32("PRM ", value) << false;
    QTest::newRow("64-bit chunk of 2^40 bytes")
        << QByteArray(4, '\0') + QByteArray("CHST") + le((qint64(1) << 32) + 200, 8) + fileInfo64
            + QByteArray(4, '\0') + QByteArray("PRM ") + le((qint64(1) << 40) + 4, 8) + value
        << true;
    QTest::newRow("64-bit form of 2^62 bytes") << QByteArray(4, '\0') + QByteArray("CHST")
            + le(qint64(1) << 62, 8) + fileInfo64
            + chunk64("PRM ", value) << false;
}

void TestChunkFile::badSizesEndTheWalk()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, read);
    Buffers buffers;
    const Loaded loaded = load(bytes, buffers);
    QVERIFY2(loaded.ok, loaded.message.constData());
    QCOMPARE(QList<float>(buffers.params, buffers.params + 32),
        QList<float>({ read ? 0.5f : Canary }) + QList<float>(31, Canary));
}

void TestChunkFile::skipFormChunk()
{
    const QByteArray form = goldenFile(Golden32);
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
