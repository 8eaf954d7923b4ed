#include <QTemporaryDir>
#include <QTest>

#include "ORVChStrip/Chunk/FileBStream.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/ReadOnlyBStream.h"
#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"
#include "PresetTestFiles.h"

using namespace PresetTestFiles;

namespace {

// A stream over bytes whose reads stop at `cutAt` as a file that shrank or a
// failing disk would, while seeking to its end still tells the full length.
// Every read hands out at most `piece` bytes.
class FlakyStream : public MemoryBStream
{
public:
    enum Stop { EndsEarly, Fails };

    FlakyStream(const QByteArray &bytes, qint64 cutAt, Stop stop, int piece)
        : MemoryBStream(bytes)
        , m_cutAt(cutAt)
        , m_stop(stop)
        , m_piece(piece)
    { }

    int32_t read(void *buffer, int32_t numBytes, int32_t *numBytesRead) override
    {
        int64_t position = 0;
        tell(&position);
        if (m_cutAt >= 0 && position >= m_cutAt) {
            if (numBytesRead)
                *numBytesRead = 0;
            return m_stop == Fails ? kResultFalse : kResultOk;
        }
        qint64 wanted = qMin<qint64>(numBytes, m_piece);
        if (m_cutAt >= 0)
            wanted = qMin(wanted, m_cutAt - position);
        return MemoryBStream::read(buffer, int32_t(wanted), numBytesRead);
    }

private:
    qint64 m_cutAt;
    Stop m_stop;
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
    void loadClassMatching_data();
    void loadClassMatching();
    void converterTakesWholeStateOrNothing_data();
    void converterTakesWholeStateOrNothing();

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
    const QString path = m_dir.filePath(QStringLiteral("many.plxpreset"));
    QVERIFY(writeFile(path, bytes));

    FileBStream *stream = FileBStream::openFile(path, QIODevice::ReadOnly);
    QVERIFY(stream);
    PresetFile file(stream);
    stream->release();
    QVERIFY(file.readChunkList());
    QCOMPARE(file.getEntryCount(), 128);

    const PresetFileInfo info = PresetFileInfo::read(path);
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
    QTest::newRow("read clamped") << qint64(0) << int(IBStream::kIBSeekSet) << qint64(0) << 100
                                  << QByteArray("cdefgh");
    QTest::newRow("from end") << qint64(-2) << int(IBStream::kIBSeekEnd) << qint64(4) << 10
                              << QByteArray("gh");
    QTest::newRow("past end") << qint64(50) << int(IBStream::kIBSeekSet) << qint64(6) << 4 << QByteArray();
    QTest::newRow("before start") << qint64(-3) << int(IBStream::kIBSeekCur) << qint64(0) << 1
                                  << QByteArray("c");
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

void TestPresetFile::loadClassMatching_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<FUID>>("alternatives");
    QTest::addColumn<bool>("loads");

    const QByteArray stereo = goldenPreset(), mono = goldenPreset(MonoID);
    QTest::newRow("stereo") << stereo << QList<FUID>() << true;
    QTest::newRow("another class") << mono << QList<FUID>() << false;
    QTest::newRow("alternative") << mono << QList<FUID> { ThirdID, MonoID } << true;
    QTest::newRow("state cut short") << stereo.left(400) << QList<FUID>() << false;
    QTest::newRow("chunk past end") << QByteArray(stereo).replace(ListOffset + 20, 8, le(2000, 8))
                                    << QList<FUID>() << false;
}

void TestPresetFile::loadClassMatching()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<FUID>, alternatives);
    QFETCH(bool, loads);

    auto *stream = new MemoryBStream(bytes);
    auto *component = new ORVChStripPresetConverterComponent;
    QCOMPARE(PresetFile::loadPreset(stream, StereoID, component, alternatives), loads);
    const QByteArray held(
        reinterpret_cast<const char *>(component->state().data()), qsizetype(component->state().size()));
    QCOMPARE(held, loads ? goldenState() : QByteArray());
    component->release();
    stream->release();
}

void TestPresetFile::converterTakesWholeStateOrNothing_data()
{
    QTest::addColumn<int>("cutAt"); // -1: never
    QTest::addColumn<int>("stop");
    QTest::addColumn<int>("piece");
    QTest::addColumn<bool>("taken");
    QTest::newRow("whole") << -1 << int(FlakyStream::EndsEarly) << 4096 << true;
    QTest::newRow("reads come in small pieces") << -1 << int(FlakyStream::EndsEarly) << 100 << true;
    QTest::newRow("read fails") << 700 << int(FlakyStream::Fails) << 4096 << false;
    QTest::newRow("last byte missing") << 999 << int(FlakyStream::EndsEarly) << 100 << false;
}

void TestPresetFile::converterTakesWholeStateOrNothing()
{
    QFETCH(int, cutAt);
    QFETCH(int, stop);
    QFETCH(int, piece);
    QFETCH(bool, taken);

    // Through the chunk window as a preset load hands it over, 48 bytes in.
    const QByteArray state = stateBytes(1000);
    auto *source = new FlakyStream(QByteArray(48, 'h') + state + QByteArray(30, 't'),
        cutAt < 0 ? -1 : 48 + cutAt, FlakyStream::Stop(stop), piece);
    auto *window = new ReadOnlyBStream(source, 48, state.size());
    auto *component = new ORVChStripPresetConverterComponent;
    QCOMPARE(component->setState(window) == kResultOk, taken);
    const QByteArray held(
        reinterpret_cast<const char *>(component->state().data()), qsizetype(component->state().size()));
    QCOMPARE(held, taken ? state : QByteArray());
    component->release();
    window->release();
    source->release();
}

QTEST_GUILESS_MAIN(TestPresetFile)
#include "tst_presetfile.moc"
