#include <QTest>
#include <QtEndian>

#include "ChunkBytes.h"
#include "HostModel.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/NormalizedValue.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ParameterMemory.h"

using namespace ORVChStripParameters;

namespace {

constexpr int Channel = 1;
constexpr int SnapshotChannels = 20; // the strip's channel and its morph points 9..17

// A fake host with a component bound to it on channel 1.
struct Host
{
    Host()
        : model(HostModel::channelStrip())
        , memory(&model)
    {
        component->addRef();
        component->setModelInfo(&model);
        component->setMemAPI(&memory);
        component->setCh(Channel);
    }
    ~Host() { component->release(); }

    QByteArray save()
    {
        auto *stream = new MemoryBStream;
        const int32_t result = component->getState(stream);
        const QByteArray bytes = stream->data();
        stream->release();
        return result == kResultOk ? bytes : QByteArray();
    }
    int32_t restore(const QByteArray &bytes)
    {
        auto *stream = new MemoryBStream(bytes);
        const int32_t result = component->setState(stream);
        stream->release();
        return result;
    }
    // Settings away from every default, a morph name and a morph table.
    void customise()
    {
        // The morph position first: moving it moves the parameters it drives.
        memory.setText("fx_mrp_systmname", "Warm \xe9tage", Channel);
        for (int k = 0; k < OrvaneDataParameterCount; ++k)
            for (int r = 0; r < MorphPointCount; ++r)
                memory.setValueByKey(OrvaneDataParameterList[k], 2 + k + r, Channel * 9 + r);
        memory.setValueByKey("fx_mrp_vl", 375, Channel);
        memory.setValueByKey("fx_cmp_atck", 200, Channel); // maximum
        memory.setValueByKey("fx_cmp_drv", 0, Channel);    // minimum
        memory.setValueByKey("fx_eq_midfrq", 90, Channel);
        memory.setValueByKey("fx_eq_hsv_onf", 0, Channel);
        memory.setValueByKey("fx_cmp_sc_onf", 1, Channel);
        memory.setValueByKey("fx_eq_peqgain", 17, Channel);
        memory.setValueByKey("fx_cmp_rls", 1234, Channel);
    }

    HostModel model;
    ParameterMemory memory;
    ORVChStripComponent *component = new ORVChStripComponent;
};

float bigEndianFloat(const QByteArray &bytes, int offset)
{
    return NormalizedValue::readBigEndianFloat(
        reinterpret_cast<const unsigned char *>(bytes.constData() + offset));
}

// Version, 22 generic floats, then a 26-value chunk right away.
QByteArray olderLayout(const char *version, const QByteArray &newerState)
{
    const QByteArray chunk = newerState.mid(92 + 720 + 4 + 4 + 104 + 4);
    return QByteArray(version, 4) + newerState.mid(4, 88) + chunk;
}

} // namespace

class TestComponent : public QObject
{
    Q_OBJECT

private slots:
    void stateLayout();
    void roundTrip();
    void restoreWritesMorphPositionFirst();
    void versionSelectsLayout_data();
    void versionSelectsLayout();
    void malformedStreamChangesNothing_data();
    void malformedStreamChangesNothing();
    void missingMorphDataKeepsMorphSet_data();
    void missingMorphDataKeepsMorphSet();
    void withoutHost();
    void failingHostReadsStoreZero();
    void storedFloatsRound();
    void editorHandsOutItsComponent();
};

void TestComponent::stateLayout()
{
    Host host;
    host.customise();
    const QByteArray bytes = host.save();
    QCOMPARE(bytes.size(), 4 + 88 + 720 + 4 + 4 + 104 + 4 + 736);
    QCOMPARE(bytes.left(4), QByteArray("3690"));
    QCOMPARE(bigEndianFloat(bytes, 4 + 4 * 1), 1.0f);        // fx_cmp_atck at its maximum
    QCOMPARE(bigEndianFloat(bytes, 4 + 4 * 0), 0.0f);        // fx_cmp_drv at its minimum
    QCOMPARE(bytes.mid(4 + 4 * 21, 4), QByteArray(4, '\0')); // the unused slot
    QCOMPARE(bytes.mid(92, 8), QByteArray("CHST") + ChunkBytes::le32(712));
    QCOMPARE(bytes.mid(812, 4), QByteArray("prms"));
    QCOMPARE(qFromLittleEndian<quint32>(bytes.constData() + 816), 26u);
    QCOMPARE(bigEndianFloat(bytes, 820 + 4 * 24), 0.0f); // fx_eq_hsv_onf off
    QCOMPARE(bigEndianFloat(bytes, 820 + 4 * 25), 1.0f); // fx_cmp_sc_onf on
    QCOMPARE(bytes.mid(924, 4), QByteArray("chnk"));
    QCOMPARE(bytes.mid(928, 8), QByteArray("CHST") + ChunkBytes::le32(728));
    QCOMPARE(bytes.mid(928 + 28, 11), QByteArray("Warm \xe9tage", 11)); // zero-padded
    // Row 9 of the table is the end mark; row 2 column 0 is the stored point.
    QCOMPARE(qFromLittleEndian<qint16>(bytes.constData() + 928 + 284 + 2 * (9 * 17)), qint16(-1));
    QCOMPARE(qFromLittleEndian<qint16>(bytes.constData() + 928 + 284 + 2 * (2 * 17)), qint16(4));
    // Both chunks carry the same name; the first only 22 floats.
    QCOMPARE(bytes.mid(92 + 28, 256), bytes.mid(928 + 28, 256));
}

void TestComponent::roundTrip()
{
    Host source;
    source.customise();
    const QByteArray bytes = source.save();

    Host target;
    QCOMPARE(target.restore(bytes), kResultOk);
    QCOMPARE(target.memory.snapshot(SnapshotChannels), source.memory.snapshot(SnapshotChannels));
    QCOMPARE(target.memory.text("fx_mrp_systmname", Channel), QByteArray("Warm \xe9tage"));
    QCOMPARE(target.memory.value("fx_mrpeq_peqgain", Channel * 9 + 8), 2 + 16 + 8);
    QCOMPARE(target.memory.value("fx_cmp_rls", Channel), 1234);
    QCOMPARE(target.memory.morphBatchCount(), 1);
    QCOMPARE(target.save(), bytes);
}

void TestComponent::restoreWritesMorphPositionFirst()
{
    Host source;
    source.customise();
    Host target;
    QCOMPARE(target.restore(source.save()), kResultOk);
    const QVector<ParameterMemory::Write> writes = target.memory.writes();
    QCOMPARE(writes.size(), ParameterListExCount - 1); // every key but the unused slot
    QCOMPARE(writes.first().prmId, target.model.parameterId(ChannelStripKeys::MorphValue));
    QSet<unsigned short> written;
    for (const ParameterMemory::Write &write : writes) {
        QCOMPARE(write.ch, Channel);
        written.insert(write.prmId);
    }
    for (const char *key : ParameterListEx) {
        if (key)
            QVERIFY2(written.contains(target.model.parameterId(key)), key);
    }
}

void TestComponent::versionSelectsLayout_data()
{
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("older");
    QTest::addColumn<int>("result");
    // Character codes, not digit values: "0zzz" counts as newer.
    QTest::newRow("2620 reads the older layout") << QByteArray("2620") << true << 0;
    QTest::newRow("2620 refuses the newer layout's markers") << QByteArray("1999") << true << 0;
    QTest::newRow("2621 wants the newer layout") << QByteArray("2621") << true << 1;
    QTest::newRow("2621 newer layout") << QByteArray("2621") << false << 0;
    QTest::newRow("0zzz is newer") << QByteArray("0zzz") << true << 1;
}

void TestComponent::versionSelectsLayout()
{
    QFETCH(QByteArray, version);
    QFETCH(bool, older);
    Host source;
    source.customise();
    QByteArray bytes = source.save();
    bytes = older ? olderLayout(version.constData(), bytes) : version + bytes.mid(4);
    Host target;
    const int32_t result = target.restore(bytes);
    QTEST(int(result), "result");
    if (result == kResultOk)
        QCOMPARE(target.memory.snapshot(SnapshotChannels), source.memory.snapshot(SnapshotChannels));
}

void TestComponent::malformedStreamChangesNothing_data()
{
    Host source;
    source.customise();
    const QByteArray good = source.save();
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("result");
    auto patched = [&](int offset, const QByteArray &with) {
        return QByteArray(good).replace(offset, with.size(), with);
    };
    // One row per way the reader refuses; which bytes it refuses is its own test's.
    QTest::newRow("version cut") << QByteArray("36") << 1;
    QTest::newRow("no prms") << patched(812, "PRMS") << 1;
    QTest::newRow("last byte missing") << good.left(good.size() - 1) << 1;
    QTest::newRow("no file information") << patched(936, "FINx") << 1;
}

void TestComponent::malformedStreamChangesNothing()
{
    QFETCH(QByteArray, bytes);
    Host target;
    target.memory.setValueByKey("fx_eq_midgain", 33, Channel);
    target.memory.setText("fx_mrp_systmname", "Before", Channel);
    target.memory.clearWrites();
    const QMap<QString, QString> before = target.memory.snapshot(SnapshotChannels);
    QTEST(int(target.restore(bytes)), "result");
    QCOMPARE(target.memory.snapshot(SnapshotChannels), before);
    QVERIFY(target.memory.writes().isEmpty());
    QCOMPARE(target.memory.morphBatchCount(), 0);
}

void TestComponent::missingMorphDataKeepsMorphSet_data()
{
    Host source;
    source.customise();
    const QByteArray good = source.save();
    QTest::addColumn<QByteArray>("bytes");
    // The "ORD " chunk of the chunk that is read stands at 928 + 20.
    QTest::newRow("damaged ORD id") << QByteArray(good).replace(948, 4, "ORX ");
    QTest::newRow("older layout, damaged ORD id") << olderLayout("2620", good).replace(92 + 20, 4, "0RD ");
}

void TestComponent::missingMorphDataKeepsMorphSet()
{
    QFETCH(QByteArray, bytes);
    Host target;
    target.memory.setText("fx_mrp_systmname", "Current set", Channel);
    for (int r = 0; r < MorphPointCount; ++r)
        target.memory.setValueByKey("fx_mrpeq_mdgain", 100 + r, Channel * 9 + r);
    const QMap<QString, QString> before = target.memory.snapshot(SnapshotChannels);

    QCOMPARE(target.restore(bytes), kResultOk);
    // The parameters come from the file ...
    QCOMPARE(target.memory.value("fx_cmp_rls", Channel), 1234);
    QCOMPARE(target.memory.value("fx_eq_midfrq", Channel), 90);
    // ... and the morph set is the one the memory held, not zeros.
    QCOMPARE(target.memory.text("fx_mrp_systmname", Channel), QByteArray("Current set"));
    const QMap<QString, QString> after = target.memory.snapshot(SnapshotChannels);
    for (int k = 0; k < OrvaneDataParameterCount; ++k) {
        for (int r = 0; r < MorphPointCount; ++r) {
            const QString key
                = QStringLiteral("%1@%2").arg(QLatin1String(OrvaneDataParameterList[k])).arg(Channel * 9 + r);
            QCOMPARE(after.value(key), before.value(key));
        }
    }
    QCOMPARE(target.memory.value("fx_mrpeq_mdgain", Channel * 9 + 4), 104);
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
    Host host;
    host.customise();
    host.memory.setFailing(true);
    const QByteArray bytes = host.save();
    QCOMPARE(bytes.size(), 1664);
    QCOMPARE(bytes.mid(4, 88), QByteArray(88, '\0'));
    QCOMPARE(bytes.mid(928 + 28, 256), QByteArray(256, '\0'));
    QCOMPARE(bytes.mid(820, 104), QByteArray(104, '\0'));
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
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    memory.setValueByKey("fx_eq_midfrq", 99, 3);
    ORVChStripEditor editor;
    editor.setModelInfo(&model);
    editor.setMemAPI(&memory);
    editor.setCh(3, 4);
    IComponent *component = editor.getPlxComponent();
    QVERIFY(component);
    QCOMPARE(editor.getPlxComponent(), component);
    auto *stream = new MemoryBStream;
    QCOMPARE(component->getState(stream), kResultOk);
    QCOMPARE(bigEndianFloat(stream->data(), 4 + 4 * 12), NormalizedValue::normalized(99, 0, 124));
    stream->release();
}

QTEST_MAIN(TestComponent)
#include "tst_component.moc"
