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

const QString Golden32 = QStringLiteral("chunk/written-32bit.chst");
const QString Golden64 = QStringLiteral("chunk/same-64bit.chst");
constexpr float Canary = -42.0f;

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

// One load into buffers filled with canaries, with room behind the 26 floats
// to catch an overrun.
struct Load
{
    explicit Load(const QByteArray &bytes, int start = 0)
    {
        std::fill(std::begin(params), std::end(params), Canary);
        std::memset(name, 'n', sizeof name);
        std::fill(&table[0][0], &table[0][0] + 170, short(7));
        auto *memory = new MemoryBStream(bytes);
        YPlx3Stream stream(memory);
        memory->release();
        stream.SetMarker(start, YStreamFromStart);
        loaded = chunk.LoadBinALL(stream, error, params, name, table);
        position = stream.GetMarker();
    }
    // The result and the error flag agree.
    bool succeeded() const { return loaded && !error.isError(); }
    bool failed() const { return !loaded && error.isError(); }
    QList<float> values() const { return QList<float>(std::begin(params), std::end(params)); }

    float params[32];
    char name[256];
    short table[10][17];
    YChannelStripChunk chunk;
    AnalyzerError error;
    bool loaded = false;
    int position = 0;
};

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
    void loads_data();
    void loads();
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
    const Load load(bytes, start);
    const Written written;
    QVERIFY2(load.succeeded(), load.error.message());
    QCOMPARE(load.chunk.lastParameterCount(), 26);
    QCOMPARE(load.position, int(bytes.size()));
    QCOMPARE(load.values(), QList<float>(written.params, written.params + 26) + QList<float>(6, Canary));
    QCOMPARE(QByteArray(load.name, 256), QByteArray(written.name, 256));
    QVERIFY(std::equal(&load.table[0][0], &load.table[0][0] + 170, &written.table[0][0]));
}

void TestChunkFile::errors_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<int>("position");

    const QByteArray id = "The chunk ID is abnormal.\n", size = "The chunk size is abnormal.\n";
    const QByteArray chunk = goldenFile(Golden32), wide = goldenFile(Golden64);
    // clang-format off
    QTest::newRow("C,H,S,x is an abnormal id, not 'not a file'") << QByteArray(chunk).replace(0, 4, "CHSx") << 2 << id << 0x08;
    QTest::newRow("stream shorter than a header") << QByteArray("CH") << 2 << id << 0x02;
    QTest::newRow("64-bit id with a non-zero high word") << QByteArray(wide).replace(0, 4, "ABCD") << 1 << QByteArray("It's not ChStrip file.\n") << 0x10;
    QTest::newRow("negative form size") << QByteArray(chunk).replace(4, 4, le(-1, 4)) << 3 << size << 0x08;
    QTest::newRow("no file information") << QByteArray(chunk).replace(8, 4, "FINx") << 4 << QByteArray("No file information chunk.\n") << 0x10;
    QTest::newRow("file information too small") << QByteArray(chunk).replace(12, 4, le(2, 4)) << 3 << size << 0x10;
    QTest::newRow("negative chunk size, 0xFFFFFFFF") << QByteArray(chunk).replace(24, 4, le(-1, 4)) << 3 << size << 0x1C;
    QTest::newRow("negative chunk size in the 64-bit layout") << QByteArray(wide).replace(48, 8, le(-8, 8)) << 3 << size << 0x38;
    // clang-format on
}

void TestChunkFile::errors()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, message);
    QFETCH(int, position);
    const Load load(bytes);
    QVERIFY(load.failed());
    QCOMPARE(QByteArray(load.error.message()),
        "read csv-file error.\n" + message + "file-pos : 0x"
            + QByteArray::number(position, 16).rightJustified(8, '0'));
    QTEST(load.error.code(), "code");
    QCOMPARE(load.error.position(), position);
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
    QCOMPARE(QByteArray(ChStripFileBinException(false, 3, stream).what()),
        QByteArray("write csv-file error.\nThe chunk size is abnormal.\nfile-pos : 0x000001a2"));
}

void TestChunkFile::loads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("count");           // parameters counted; -1: not asked
    QTest::addColumn<QList<float>>("values"); // the first parameters; canaries follow
    QTest::addColumn<QByteArray>("name");     // how the name begins; "nnnn": not read

    QList<float> thirty;
    for (int i = 0; i < 30; ++i)
        thirty.append(float(i + 1));
    const QByteArray ord = chunk32("ORD ", goldenFile(Golden32).mid(28, 596)), named = "Vocal Smooth";
    const QByteArray info32 = chunk32("FINF", le(2, 4)), info64 = chunk64("FINF", le(2, 8));
    const QByteArray prm32 = chunk32("PRM ", floats({ 0.5f })), prm64 = chunk64("PRM ", floats({ 0.5f }));
    const QByteArray form64 = QByteArray(4, '\0') + "CHST", untouched = "nnnn";
    const QList<float> half { 0.5f }, none;
    // clang-format off
    // The walk steps over the whole "PRM " chunk to what follows it.
    QTest::newRow("32-bit stops at 26") << chunk32("CHST", info32 + chunk32("PRM ", floats(thirty)) + ord) << true << 26 << thirty.first(26) << named;
    QTest::newRow("64-bit counts 30, stores 26") << chunk64("CHST", info64 + chunk64("PRM ", floats(thirty)) + chunk64("ORD ", ord.mid(8))) << true << 30 << thirty.first(26) << named;
    // An unknown chunk of odd size is stepped over; the later "PRM " wins; without "ORD " the name stays.
    QTest::newRow("repeated and unknown chunks") << chunk32("CHST", info32 + chunk32("PRM ", floats({ 0.1f, 0.2f })) + chunk32("ABCD", "abc") + chunk32("PRM ", floats({ 0.9f }))) << true << -1 << QList<float> { 0.9f, 0.2f } << untouched;
    QTest::newRow("values read before a failure stay") << goldenFile(Golden32).replace(628, 4, le(-2, 4)) << false << -1 << none << named;
    // Sizes that would wrap or end the walk early. "FINF" states 8 bytes; the reader takes 4 and
    // reads the next header from "XXXX", whose size (the "PRM " id) steps past the end.
    QTest::newRow("long file information misaligns the walk") << chunk32("CHST", chunk32("FINF", le(2, 4) + "XXXX") + prm32) << true << -1 << none << untouched;
    QTest::newRow("32-bit form size wraps the end") << "CHST" + le(INT_MAX, 4) + info32 + prm32 << true << -1 << none << untouched;
    QTest::newRow("32-bit form claims 2 GB") << "CHST" + le(INT_MAX - 16, 4) + info32 + prm32 << true << -1 << half << untouched;
    QTest::newRow("32-bit chunk size wraps the position") << "CHST" + le(INT_MAX - 16, 4) + info32 + "ABCD" + le(INT_MAX - 8, 4) + prm32 << true << -1 << none << untouched;
    QTest::newRow("64-bit chunk of 2^40 bytes") << form64 + le((qint64(1) << 32) + 200, 8) + info64 + QByteArray(4, '\0') + "PRM " + le((qint64(1) << 40) + 4, 8) + floats(half) << true << -1 << half << untouched;
    QTest::newRow("64-bit form of 2^62 bytes") << form64 + le(qint64(1) << 62, 8) + info64 + prm64 << true << -1 << none << untouched;
    // clang-format on
}

void TestChunkFile::loads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, count);
    QFETCH(QList<float>, values);
    QFETCH(QByteArray, name);
    const Load load(bytes);
    QFETCH(bool, ok);
    QVERIFY2(ok ? load.succeeded() : load.failed(), load.error.message());
    if (count >= 0)
        QCOMPARE(load.chunk.lastParameterCount(), count);
    QCOMPARE(load.values(), values + QList<float>(32 - values.size(), Canary)); // never overrun
    QCOMPARE(QByteArray(load.name, 256).left(name.size()), name);
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
    AnalyzerError fits, cut;
    fits.setError(text.left(1023).constData());
    cut.setError(text.constData());
    QCOMPARE(QByteArray(fits.message()), text.left(1023));
    QVERIFY(cut.isError());
    QCOMPARE(QByteArray(cut.message()), text.left(1020) + "...");
}

QTEST_GUILESS_MAIN(TestChunkFile)
#include "tst_chunkfile.moc"
