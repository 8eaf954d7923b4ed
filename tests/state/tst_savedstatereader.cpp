#include <QTest>

#include "ChunkBytes.h"
#include "ORVChStrip/Chunk/ChStripFileException.h"
#include "ORVChStrip/Chunk/SavedStateReader.h"

using namespace ChunkBytes;
using Part = SavedStateReader::Part;
using Problem = SavedStateReader::Problem;

Q_DECLARE_METATYPE(Part)
Q_DECLARE_METATYPE(Problem)

namespace {

// A channel-strip form as the component writes it, with `floatCount` values.
QByteArray form(int floatCount)
{
    return chunk32("CHST",
        chunk32("FINF", le32(2)) + chunk32("ORD ", morphTable("Warm"))
            + chunk32("PRM ", floats(QList<float>(floatCount, 0.25f))));
}

// The newer layout: 1664 bytes, the first form at 92, "prms" at 812, the
// count at 816, the floats at 820, "chnk" at 924 and the form read at 928.
QByteArray newerState()
{
    return QByteArray("3690") + QByteArray(88, '\0') + form(22) + QByteArray("prms") + le32(26)
        + QByteArray(104, '\0') + QByteArray("chnk") + form(26);
}

QByteArray olderState(const QByteArray &chunk)
{
    return QByteArray("2620") + QByteArray(88, '\0') + chunk;
}

QByteArray wideForm()
{
    return chunk64("CHST",
        chunk64("FINF", le64(2)) + chunk64("ORD ", morphTable("Wide")) + chunk64("PRM ", floats({ 0.5f })));
}

QByteArray patched(QByteArray bytes, int offset, const QByteArray &with)
{
    return bytes.replace(offset, with.size(), with);
}

} // namespace

class TestSavedStateReader : public QObject
{
    Q_OBJECT

private slots:
    void readsLayout_data();
    void readsLayout();
    void refuses_data();
    void refuses();
};

void TestSavedStateReader::readsLayout_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("chunkFile");
    QTest::addColumn<QList<qint64>>("offsets");
    QTest::addColumn<qint64>("chunkOffset");
    QTest::addColumn<bool>("hasMorphData");
    QTest::addColumn<int>("parameterCount");

    const QByteArray newer = newerState();
    QTest::newRow("newer layout") << newer << false << QList<qint64> { 0, 4, 92, 812, 816, 820, 924, 928 }
                                  << qint64(928) << true << 26;
    QTest::newRow("newer layout, trailing bytes")
        << newer + "tail" << false << QList<qint64> { 0, 4, 92, 812, 816, 820, 924, 928 } << qint64(928)
        << true << 26;
    // Version bytes count as character codes: "2621" is the first newer one.
    QTest::newRow("2621 is newer") << patched(newer, 0, "2621") << false
                                   << QList<qint64> { 0, 4, 92, 812, 816, 820, 924, 928 } << qint64(928)
                                   << true << 26;
    QTest::newRow("older layout") << olderState(form(26)) << false << QList<qint64> { 0, 4, 92 } << qint64(92)
                                  << true << 26;
    QTest::newRow("older layout, 64-bit form")
        << olderState(wideForm()) << false << QList<qint64> { 0, 4, 92 } << qint64(92) << true << 1;
    QTest::newRow("no ORD chunk") << patched(newer, 948, "ORx ") << false
                                  << QList<qint64> { 0, 4, 92, 812, 816, 820, 924, 928 } << qint64(928)
                                  << false << 26;
    QTest::newRow("chunk file") << form(26) << true << QList<qint64> { 0 } << qint64(0) << true << 26;
}

void TestSavedStateReader::readsLayout()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, chunkFile);
    SavedStateReader reader(bytes);
    YChannelStripChunk::Contents contents;
    QVERIFY(chunkFile ? reader.readChunkFile(contents) : reader.readState(contents));
    QVERIFY(!reader.failed());
    QList<qint64> offsets;
    for (const SavedStateReader::Item &item : reader.items())
        offsets << item.offset;
    QTEST(offsets, "offsets");
    QTEST(reader.chunkOffset(), "chunkOffset");
    QTEST(reader.hasMorphData(), "hasMorphData");
    QTEST(reader.parameterCount(), "parameterCount");
    if (reader.hasMorphData())
        QVERIFY(QByteArray(contents.systemName).startsWith("W"));
    QCOMPARE(contents.values[0], reader.parameterCount() > 1 ? 0.25f : 0.5f);
}

void TestSavedStateReader::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("chunkFile");
    QTest::addColumn<Part>("part");
    QTest::addColumn<Problem>("problem");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<int>("readerCode");

    const QByteArray state = newerState();
    const QByteArray chunk = form(26);
    const QByteArray older64 = olderState(wideForm());
    // clang-format off
    QTest::newRow("empty") << QByteArray() << false << Part::Version << Problem::DataEnd << qint64(0) << 0;
    QTest::newRow("version cut") << QByteArray("36") << false << Part::Version << Problem::DataEnd << qint64(0) << 0;
    QTest::newRow("generic block cut") << state.left(50) << false << Part::GenericBlock << Problem::DataEnd << qint64(4) << 0;
    QTest::newRow("first form id") << patched(state, 92, "CHSx") << false << Part::FirstChunk << Problem::WrongId << qint64(92) << 0;
    QTest::newRow("first form id cut") << state.left(94) << false << Part::FirstChunk << Problem::WrongId << qint64(92) << 0;
    QTest::newRow("first form size cut") << state.left(98) << false << Part::FirstChunk << Problem::DataEnd << qint64(96) << 0;
    QTest::newRow("first form size negative") << patched(state, 96, le32(-712)) << false << Part::FirstChunk << Problem::NegativeSize << qint64(96) << 0;
    QTest::newRow("first form cut") << state.left(500) << false << Part::FirstChunk << Problem::FormCut << qint64(92) << 0;
    QTest::newRow("first form size past the end") << patched(state, 96, le32(100000)) << false << Part::FirstChunk << Problem::FormCut << qint64(92) << 0;
    QTest::newRow("no prms") << patched(state, 812, "PRMS") << false << Part::ParameterMarker << Problem::WrongId << qint64(812) << 0;
    QTest::newRow("count cut") << state.left(818) << false << Part::Count << Problem::DataEnd << qint64(816) << 0;
    QTest::newRow("count past the end") << patched(state, 816, le32(-1)) << false << Part::ExtendedBlock << Problem::DataEnd << qint64(820) << 0;
    QTest::newRow("extended floats cut") << state.left(900) << false << Part::ExtendedBlock << Problem::DataEnd << qint64(820) << 0;
    QTest::newRow("no chnk") << patched(state, 924, "chnK") << false << Part::ChunkMarker << Problem::WrongId << qint64(924) << 0;
    QTest::newRow("chnk cut") << state.left(926) << false << Part::ChunkMarker << Problem::WrongId << qint64(924) << 0;
    QTest::newRow("chunk header cut") << state.left(933) << false << Part::Chunk << Problem::DataEnd << qint64(928) << 0;
    QTest::newRow("chunk is no form") << patched(state, 928, "CHSx") << false << Part::Chunk << Problem::WrongId << qint64(928) << 0;
    QTest::newRow("chunk cut after its header") << state.left(941) << false << Part::Chunk << Problem::FormCut << qint64(928) << 0;
    QTest::newRow("last byte missing") << state.left(state.size() - 1) << false << Part::Chunk << Problem::FormCut << qint64(928) << 0;
    QTest::newRow("64-bit form cut") << older64.left(older64.size() - 2) << false << Part::Chunk << Problem::FormCut << qint64(92) << 0;
    // The chunk reader's own refusals, at the position it had reached.
    QTest::newRow("no file information") << patched(state, 936, "FINx") << false << Part::Chunk << Problem::ChunkRefused << qint64(944) << int(ChStripFileException::NoFileInformation);
    QTest::newRow("negative chunk size") << patched(state, 952, le32(-1)) << false << Part::Chunk << Problem::ChunkRefused << qint64(956) << int(ChStripFileException::AbnormalChunkSize);
    QTest::newRow("64-bit form with a high id word") << patched(older64, 92, "A") << false << Part::Chunk << Problem::ChunkRefused << qint64(108) << int(ChStripFileException::NotChStripFile);
    QTest::newRow("chunk file cut") << chunk.left(100) << true << Part::Chunk << Problem::FormCut << qint64(0) << 0;
    QTest::newRow("chunk file header cut") << chunk.left(5) << true << Part::Chunk << Problem::DataEnd << qint64(0) << 0;
    // clang-format on
}

void TestSavedStateReader::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, chunkFile);
    SavedStateReader reader(bytes);
    YChannelStripChunk::Contents contents;
    QVERIFY(!(chunkFile ? reader.readChunkFile(contents) : reader.readState(contents)));
    QVERIFY(reader.failed());
    QTEST(reader.failure().part, "part");
    QTEST(reader.failure().problem, "problem");
    QTEST(reader.failure().offset, "offset");
    QTEST(reader.failure().readerCode, "readerCode");
    // Every part listed was passed before the failure.
    for (const SavedStateReader::Item &item : reader.items())
        QVERIFY(item.offset <= reader.failure().offset);
}

QTEST_GUILESS_MAIN(TestSavedStateReader)
#include "tst_savedstatereader.moc"
