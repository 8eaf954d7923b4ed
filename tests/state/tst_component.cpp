#include <QTest>

#include "BoundComponent.h"
#include "EditorHost.h"
#include "GoldenFile.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/Chunk/NormalizedValue.h"
#include "ORVChStrip/ORVChStripParameters.h"

using namespace ORVChStripParameters;

namespace {

constexpr int SnapshotChannels = 20; // channel 1 and its morph points on channels 9 to 17
const QString Golden = QStringLiteral("state/saved.state");

// The settings of the golden state, on channel 1: every value away from its
// default, a morph name with a Latin-1 byte and a morph table of distinct cells.
void setKnownSettings(ParameterMemory &memory)
{
    constexpr int ch = 1;
    memory.setText("fx_mrp_systmname", "Warm \xe9tage", ch);
    for (int k = 0; k < OrvaneDataParameterCount; ++k)
        for (int r = 0; r < MorphPointCount; ++r)
            memory.setValueByKey(OrvaneDataParameterList[k], 2 + k + r, ch * 9 + r);
    memory.setValueByKey("fx_mrpcmp_atck", 50, ch * 9 + 3);
    memory.setValueByKey("fx_mrpcmp_kne", 2, ch * 9 + 0);
    // The morph position first: moving it moves the parameters it drives.
    memory.setValueByKey("fx_mrp_vl", 375, ch);
    memory.setValueByKey("fx_cmp_atck", 200, ch); // maximum
    memory.setValueByKey("fx_cmp_drv", 0, ch);    // minimum
    memory.setValueByKey("fx_cmp_rls", 1234, ch);
    memory.setValueByKey("fx_cmp_kne", 1, ch);
    memory.setValueByKey("fx_eq_midfrq", 90, ch);
    memory.setValueByKey("fx_eq_peqgain", 17, ch);
    memory.setValueByKey("fx_eq_hsv_onf", 0, ch);
    memory.setValueByKey("fx_cmp_sc_onf", 1, ch);
}

// Version, 22 generic floats, then the 26-value chunk right away.
QByteArray olderLayout(const char *version)
{
    const QByteArray newer = goldenFile(Golden);
    return QByteArray(version, 4) + newer.mid(4, 88) + newer.mid(928);
}

// The morph set of a snapshot: the name and every cell on the morph points' channels.
QMap<QString, QString> morphSet(QMap<QString, QString> snapshot)
{
    snapshot.removeIf([](QMap<QString, QString>::iterator entry) {
        return entry.key().section(QLatin1Char('@'), 1).toInt() < 9
            && !entry.key().startsWith(QLatin1String("fx_mrp_systmname"));
    });
    return snapshot;
}

} // namespace

class TestComponent : public QObject
{
    Q_OBJECT

private slots:
    void savesGoldenState();
    void restoreOrChangeNothing_data();
    void restoreOrChangeNothing();
    void missingMorphDataKeepsMorphSet_data();
    void missingMorphDataKeepsMorphSet();
    void withoutHost();
    void failingHostReadsStoreZero();
    void storedFloatsRound();
    void editorHandsOutItsComponent();
};

void TestComponent::savesGoldenState()
{
    BoundComponent host;
    setKnownSettings(host.memory);
    const QByteArray bytes = host.save();
    const QString difference = goldenDifference(bytes, Golden);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void TestComponent::restoreOrChangeNothing_data()
{
    const QByteArray good = goldenFile(Golden);
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("restored");
    // clang-format off
    QTest::newRow("3690") << good << true;
    // Character codes, not digit values, choose the layout: "0zzz" counts as newer.
    QTest::newRow("2620 reads the older layout") << olderLayout("2620") << true;
    QTest::newRow("1999 reads the older layout") << olderLayout("1999") << true;
    QTest::newRow("2621 wants the newer layout") << olderLayout("2621") << false;
    QTest::newRow("0zzz is newer") << olderLayout("0zzz") << false;
    QTest::newRow("2621 reads the newer layout") << QByteArray(good).replace(0, 4, "2621") << true;
    // One row per way the component refuses; which bytes the reader refuses is the inspector's test.
    QTest::newRow("version cut") << QByteArray("36") << false;
    QTest::newRow("no prms") << QByteArray(good).replace(812, 4, "PRMS") << false;
    QTest::newRow("last byte missing") << good.chopped(1) << false;
    QTest::newRow("no file information") << QByteArray(good).replace(936, 4, "FINx") << false;
    // clang-format on
}

void TestComponent::restoreOrChangeNothing()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, restored);
    BoundComponent source, target;
    setKnownSettings(source.memory);
    target.memory.setValueByKey("fx_eq_midgain", 33, 1);
    target.memory.setText("fx_mrp_systmname", "Before", 1);
    target.memory.clearWrites();
    const QMap<QString, QString> before = target.memory.snapshot(SnapshotChannels);
    QCOMPARE(target.restore(bytes), restored ? kResultOk : kResultFalse);
    // A refused stream changes nothing at all.
    QCOMPARE(target.memory.snapshot(SnapshotChannels),
        restored ? source.memory.snapshot(SnapshotChannels) : before);
    QCOMPARE(target.memory.morphBatchCount(), restored ? 1 : 0);
    if (!restored) {
        QVERIFY(target.memory.writes().isEmpty());
        return;
    }
    QCOMPARE(target.save(), goldenFile(Golden));
    // Every key but the unused slot is written once, the morph position first.
    const QVector<ParameterMemory::Write> writes = target.memory.writes();
    QSet<unsigned short> written;
    for (const ParameterMemory::Write &write : writes)
        written.insert(write.ch == 1 ? write.prmId : 0);
    QCOMPARE(writes.size(), ParameterListExCount - 1);
    QCOMPARE(written.size(), ParameterListExCount - 1);
    QVERIFY(!written.contains(0));
    QCOMPARE(writes.first().prmId, target.model.parameterId(ChannelStripKeys::MorphValue));
}

void TestComponent::missingMorphDataKeepsMorphSet_data()
{
    QTest::addColumn<QByteArray>("bytes");
    // The "ORD " id of the chunk that is read.
    QTest::newRow("damaged ORD id") << goldenFile(Golden).replace(948, 4, "ORX ");
    QTest::newRow("older layout, damaged ORD id") << olderLayout("2620").replace(92 + 20, 4, "0RD ");
}

void TestComponent::missingMorphDataKeepsMorphSet()
{
    QFETCH(QByteArray, bytes);
    BoundComponent target;
    target.memory.setText("fx_mrp_systmname", "Current set", 1);
    for (int r = 0; r < MorphPointCount; ++r)
        target.memory.setValueByKey("fx_mrpeq_mdgain", 100 + r, 9 + r);
    const QMap<QString, QString> before = target.memory.snapshot(SnapshotChannels);

    QCOMPARE(target.restore(bytes), kResultOk);
    QCOMPARE(target.memory.value("fx_cmp_rls", 1), 1234); // the parameters come from the file ...
    QCOMPARE(target.memory.value("fx_eq_midfrq", 1), 90);
    // ... and the morph set is the one the memory held, not zeros.
    QCOMPARE(morphSet(target.memory.snapshot(SnapshotChannels)), morphSet(before));
}

void TestComponent::withoutHost()
{
    auto *component = new ORVChStripComponent;
    component->addRef();
    auto *stream = new MemoryBStream;
    QCOMPARE(component->getState(nullptr), kResultFalse);
    QCOMPARE(component->setState(nullptr), kResultFalse);
    QCOMPARE(component->getState(stream), kResultFalse);
    QCOMPARE(stream->data(), QByteArray("3690")); // the version goes out first
    stream->seek(0, IBStream::kIBSeekSet);
    QCOMPARE(component->setState(stream), kResultFalse);
    stream->release();
    QCOMPARE(component->release(), 0u);
}

void TestComponent::failingHostReadsStoreZero()
{
    BoundComponent host;
    setKnownSettings(host.memory);
    host.memory.setFailing(true);
    const QByteArray bytes = host.save();
    QCOMPARE(bytes.mid(4, 88), QByteArray(88, '\0'));
    QCOMPARE(bytes.mid(820, 104), QByteArray(104, '\0'));
    QCOMPARE(bytes.mid(928 + 28, 256), QByteArray(256, '\0'));
}

void TestComponent::storedFloatsRound()
{
    // Restoring a stored float rounds to the nearest step, NaN to the minimum.
    QCOMPARE(NormalizedValue::denormalized(0.5f, 1, 200), 101); // 99.5 + 0.5, plus the minimum
    QCOMPARE(NormalizedValue::denormalized(std::numeric_limits<float>::quiet_NaN(), 10, 20), 10);
    QCOMPARE(NormalizedValue::denormalized(1e30f, 0, 100), INT_MAX);
}

void TestComponent::editorHandsOutItsComponent()
{
    EditorHost host;
    host.memory.setValueByKey("fx_eq_midfrq", 99, 3);
    host.editor->setCh(3, 4);
    IComponent *component = host.editor->getPlxComponent();
    QVERIFY(component);
    QCOMPARE(host.editor->getPlxComponent(), component);
    auto *stream = new MemoryBStream;
    QCOMPARE(component->getState(stream), kResultOk);
    QCOMPARE(stream->data().mid(4 + 4 * 12, 4), QByteArray("\x3f\x4c\x63\x19", 4)); // 99 / 124, channel 3
    stream->release();
}

QTEST_MAIN(TestComponent)
#include "tst_component.moc"
