#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/ReadOnlyBStream.h"
#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"
#include "PresetTestFiles.h"

using namespace PresetTestFiles;

namespace {

// A golden preset's stream whose reads inside the component state stop at
// `cutAt`, as on a failing disk, and hand out at most `piece` bytes each.
class FlakyStream : public MemoryBStream
{
public:
    FlakyStream(const QByteArray &bytes, int cutAt, bool fails, int piece)
        : MemoryBStream(bytes)
        , m_cutAt(cutAt < 0 ? ListOffset : cutAt)
        , m_fails(fails)
        , m_piece(piece)
    { }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead) override
    {
        const qint64 at = position();
        const bool damaged = at >= m_cutAt && at < ListOffset;
        if (damaged && m_fails)
            return kResultFalse;
        const qint64 wanted = damaged ? 0 : qMin<qint64>(numBytes, m_piece);
        return MemoryBStream::read(
            buffer, int32_t(at < m_cutAt ? qMin(wanted, m_cutAt - at) : wanted), numBytesRead);
    }

private:
    qint64 m_cutAt;
    bool m_fails;
    int m_piece;
};

} // namespace

class TestPresetFile : public QObject
{
    Q_OBJECT

private slots:
    void savesGoldenFile();
    void checkID_data();
    void checkID();
    void listCappedOnRead();
    void chunkLimitOnWrite();
    void windowReads_data();
    void windowReads();
    void loadTakesWholeStateOrNothing_data();
    void loadTakesWholeStateOrNothing();

private:
    QTemporaryDir m_dir;
};

void TestPresetFile::savesGoldenFile()
{
    const QString path = m_dir.filePath(QStringLiteral("saved.plxpreset"));
    QVERIFY(MyPlxPresetFile::saveState(path, StereoID, goldenState()));
    const QString difference = goldenDifference(readFile(path), QStringLiteral("preset/stereo.plxpreset"));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void TestPresetFile::checkID_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes"); // empty: no file at all
    QTest::addColumn<int>("expected");     // checkID against the stereo class
    QTest::addColumn<QString>("reason");   // start of PresetFileInfo's error

    const QByteArray good = goldenPreset();
    const QString name = QStringLiteral("preset.plxpreset");
    // clang-format off
    QTest::newRow("stereo preset") << name << good << 1 << QString();
    QTest::newRow("odd file name") << QStringLiteral("Wärme – ボーカル it's \"100%\" #1 & more.plxpreset") << good << 1 << QString();
    QTest::newRow("mono preset") << name << goldenPreset(MonoID) << 0 << QString();
    QTest::newRow("lower-case class id") << name << goldenPreset().replace(8, 32, QByteArray(StereoID.toString().c_str()).toLower()) << 1 << QString();
    QTest::newRow("missing file") << name << QByteArray() << -1 << QStringLiteral("cannot open");
    QTest::newRow("bad magic") << name << QByteArray(good).replace(0, 4, "XXXX") << -1 << QStringLiteral("bad magic 'XXXX' at offset 0, expected 'PLX3'");
    QTest::newRow("too short") << name << good.left(30) << -1 << QStringLiteral("file is 30 bytes long");
    QTest::newRow("list offset 0") << name << QByteArray(good).replace(40, 8, le(0, 8)) << -1 << QStringLiteral("chunk list offset 0 in bytes 40-47");
    QTest::newRow("list offset past end") << name << QByteArray(good).replace(40, 8, le(9999, 8)) << -1 << QStringLiteral("chunk list offset 9999 in bytes 40-47 lies past");
    QTest::newRow("list offset off by one") << name << QByteArray(good).replace(40, 8, le(ListOffset + 1, 8)) << -1 << QStringLiteral("chunk list at offset 1713: expected 'List'");
    QTest::newRow("class id not hex") << name << QByteArray(good).replace(8, 1, "G") << -1 << QStringLiteral("class id in bytes 8-39");
    QTest::newRow("no entries") << name << QByteArray(good).replace(ListOffset + 4, 4, le(0, 4)) << -1 << QStringLiteral("chunk list at offset 1712 declares 0 entries");
    QTest::newRow("list cut short") << name << good.left(ListOffset + 18) << -1 << QStringLiteral("chunk list at offset 1712: file ends before the first entry");
    // clang-format on
}

void TestPresetFile::checkID()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(int, expected);
    QFETCH(QString, reason);

    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    if (!bytes.isEmpty())
        QVERIFY(writeFile(path, bytes));
    QCOMPARE(MyPlxPresetFile::checkID(path, StereoID), expected);
    QCOMPARE(MyPlxPresetFile::checkID(QFile::encodeName(path).constData(), StereoID), expected);

    // The description agrees with the loader on what is a preset.
    const PresetFileInfo info = PresetFileInfo::read(path);
    QCOMPARE(info.isValid(), expected != -1);
    QVERIFY2(info.error.startsWith(reason), qPrintable(info.error));
}

void TestPresetFile::listCappedOnRead()
{
    // A file whose list declares 200 entries and holds all of them.
    QByteArray bytes = goldenPreset().left(ListOffset) + "List" + le(200, 4);
    for (int i = 0; i < 200; ++i)
        bytes += "Comp" + le(48, 8) + le(1664, 8);
    auto *stream = new MemoryBStream(bytes);
    PresetFile file(stream);
    stream->release();
    QVERIFY(file.readChunkList());
    QCOMPARE(file.getEntryCount(), 128);

    QBuffer device(&bytes);
    QVERIFY(device.open(QIODevice::ReadOnly));
    const PresetFileInfo info = PresetFileInfo::read(device, QStringLiteral("many"));
    QVERIFY(info.isValid());
    QCOMPARE(info.declaredCount, 200);
    QCOMPARE(info.chunks.size(), 128);
    QCOMPARE(info.warnings.size(), 1);
}

void TestPresetFile::chunkLimitOnWrite()
{
    auto *stream = new MemoryBStream;
    PresetFile file(stream);
    stream->release();
    QVERIFY(file.writeHeader());
    for (int i = 0; i < PresetFile::kMaxEntries; ++i) {
        PresetFile::Entry entry;
        QVERIFY(file.beginChunk(entry, PresetFile::kComponentState));
        QCOMPARE(stream->write("ab", 2), int32_t(kResultOk));
        QVERIFY(file.endChunk(entry));
        QCOMPARE(entry.size, qint64(2));
    }
    PresetFile::Entry extra;
    QVERIFY(!file.beginChunk(extra, PresetFile::kMetaInfo));
    QVERIFY(!file.endChunk(extra));
    QCOMPARE(file.getEntryCount(), 128);
    QVERIFY(file.writeChunkList());

    const qint64 listOffset = 48 + 2 * 128;
    QCOMPARE(qFromLittleEndian<qint64>(stream->data().constData() + 40), listOffset);
    QCOMPARE(stream->data().size(), listOffset + 8 + 20 * 128);
}

void TestPresetFile::windowReads_data()
{
    QTest::addColumn<qint64>("seekTo");
    QTest::addColumn<int>("mode");
    QTest::addColumn<qint64>("landed");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<QByteArray>("expected");

    // The window is "cdefgh" inside "abcdefghij".
    // clang-format off
    QTest::newRow("read clamped") << qint64(0) << int(IBStream::kIBSeekSet) << qint64(0) << 100 << QByteArray("cdefgh");
    QTest::newRow("from end") << qint64(-2) << int(IBStream::kIBSeekEnd) << qint64(4) << 10 << QByteArray("gh");
    QTest::newRow("past end") << qint64(50) << int(IBStream::kIBSeekSet) << qint64(6) << 4 << QByteArray();
    QTest::newRow("before start") << qint64(-3) << int(IBStream::kIBSeekCur) << qint64(0) << 1 << QByteArray("c");
    // clang-format on
}

void TestPresetFile::windowReads()
{
    QFETCH(qint64, seekTo);
    QFETCH(int, mode);
    QFETCH(qint64, landed);
    QFETCH(int, wanted);
    QFETCH(QByteArray, expected);

    auto *source = new MemoryBStream(QByteArray("abcdefghij"));
    auto *window = new ReadOnlyBStream(source, 2, 6);
    source->release(); // the window keeps it alive

    // Someone else moving the source must not disturb the window.
    QCOMPARE(source->seek(9, IBStream::kIBSeekSet), int32_t(kResultOk));
    int64_t position = -1;
    QCOMPARE(window->seek(seekTo, mode, &position), int32_t(kResultOk));
    QCOMPARE(position, landed);
    QByteArray buffer(wanted, '\0');
    int32_t got = -1;
    QCOMPARE(window->read(buffer.data(), wanted, &got), int32_t(kResultOk));
    QCOMPARE(buffer.left(got), expected);
    QCOMPARE(window->tell(&position), int32_t(kResultOk));
    QCOMPARE(position, landed + got);

    int32_t written = -1;
    QVERIFY(window->write("z", 1, &written) != kResultOk);
    QCOMPARE(written, 0);
    QCOMPARE(source->data(), QByteArray("abcdefghij"));
    window->release();
}

void TestPresetFile::loadTakesWholeStateOrNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<FUID>>("alternatives");
    QTest::addColumn<int>("cutAt");  // where reads stop, as in a file that shrank; -1: never
    QTest::addColumn<bool>("fails"); // whether a read there fails rather than ends
    QTest::addColumn<int>("piece");  // the most bytes one read hands out
    QTest::addColumn<bool>("loads");

    const QByteArray stereo = goldenPreset(), mono = goldenPreset(MonoID);
    const QList<FUID> none;
    // clang-format off
    QTest::newRow("stereo") << stereo << none << -1 << false << 4096 << true;
    QTest::newRow("reads come in small pieces") << stereo << none << -1 << false << 100 << true;
    QTest::newRow("another class") << mono << none << -1 << false << 4096 << false;
    QTest::newRow("alternative") << mono << QList<FUID> { ThirdID, MonoID } << -1 << false << 4096 << true;
    QTest::newRow("chunk past the end") << QByteArray(stereo).replace(ListOffset + 20, 8, le(2000, 8)) << none << -1 << false << 4096 << false;
    QTest::newRow("read fails inside the state") << stereo << none << 700 << true << 4096 << false;
    QTest::newRow("last byte of the state missing") << stereo << none << 48 + 1663 << false << 100 << false;
    // clang-format on
}

void TestPresetFile::loadTakesWholeStateOrNothing()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<FUID>, alternatives);
    QFETCH(int, cutAt);
    QFETCH(bool, fails);
    QFETCH(int, piece);

    auto *stream = new FlakyStream(bytes, cutAt, fails, piece);
    auto *component = new ORVChStripPresetConverterComponent;
    const bool loaded = PresetFile::loadPreset(stream, StereoID, component, alternatives);
    const QByteArray held(
        reinterpret_cast<const char *>(component->state().data()), qsizetype(component->state().size()));
    component->release();
    stream->release();
    QTEST(loaded, "loads");
    QCOMPARE(held, loaded ? goldenState() : QByteArray());
}

QTEST_GUILESS_MAIN(TestPresetFile)
#include "tst_presetfile.moc"
