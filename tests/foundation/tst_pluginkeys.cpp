#include <QSet>
#include <QTest>

#include "HostModel.h"
#include "Interfaces/IComponent.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/ControlsGallery.h"
#include "ORVChStrip/ORVChStripEditor.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ParameterMemory.h"

using namespace ORVChStripParameters;

namespace {

// The reference host's model, noting every key that is asked for and not
// found. The plug-in skips unknown keys silently, so nothing else would tell.
class RecordingModel : public IModelInfo
{
public:
    bool getFxInfo(unsigned short *kind, unsigned short *fxId, unsigned int index) override
    {
        return model.getFxInfo(kind, fxId, index);
    }
    unsigned short getFxCount() override { return model.getFxCount(); }
    bool findParameter(unsigned short *index, const char *key) override
    {
        const bool found = model.findParameter(index, key);
        (found ? askedParameters : missing).insert(QByteArray(key));
        return found;
    }
    bool getParameterInfo(unsigned short *prmId, unsigned short *channels, unsigned short index) override
    {
        return model.getParameterInfo(prmId, channels, index);
    }
    unsigned short getParameterCount() override { return model.getParameterCount(); }
    bool findMeter(unsigned short *index, const char *key) override
    {
        const bool found = model.findMeter(index, key);
        (found ? askedMeters : missing).insert(QByteArray(key));
        return found;
    }
    bool getMeterInfo(unsigned short *base, unsigned short *channels, unsigned short index) override
    {
        return model.getMeterInfo(base, channels, index);
    }

    HostModel model = HostModel::channelStrip();
    QSet<QByteArray> askedParameters;
    QSet<QByteArray> askedMeters;
    QSet<QByteArray> missing;
};

} // namespace

class TestPluginKeys : public QObject
{
    Q_OBJECT

private slots:
    void everyListedKeyIsInTheHostModel_data();
    void everyListedKeyIsInTheHostModel();
    void pluginAsksOnlyForKnownKeys();
};

void TestPluginKeys::everyListedKeyIsInTheHostModel_data()
{
    QTest::addColumn<QList<QByteArray>>("keys");
    const auto listed = [](const char *const *list, int count) {
        QList<QByteArray> keys;
        for (int i = 0; i < count; ++i) {
            if (list[i])
                keys.append(list[i]);
        }
        return keys;
    };
    QTest::newRow("state block with switches") << listed(ParameterListEx, ParameterListExCount);
    QTest::newRow("morph table columns") << listed(OrvaneDataParameterList, OrvaneDataParameterCount);
    QTest::newRow("morphed parameters") << listed(MorphingParameterList, MorphingParameterCount);
}

void TestPluginKeys::everyListedKeyIsInTheHostModel()
{
    QFETCH(QList<QByteArray>, keys);
    QVERIFY(!keys.isEmpty());
    HostModel model = HostModel::channelStrip();
    for (const QByteArray &key : keys)
        QVERIFY2(model.parameterId(key.constData()) != 0, key.constData());
}

void TestPluginKeys::pluginAsksOnlyForKnownKeys()
{
    RecordingModel model;
    ParameterMemory memory(&model.model);
    ORVChStripEditor editor;
    editor.setModelInfo(&model);
    editor.setMemAPI(&memory);
    editor.setCh(0, 1);

    IComponent *component = editor.getPlxComponent();
    QVERIFY(component);
    auto *saved = new MemoryBStream;
    QCOMPARE(component->getState(saved), kResultOk);
    saved->seek(0, IBStream::kIBSeekSet);
    QCOMPARE(component->setState(saved), kResultOk);
    saved->release();
    ControlsGallery gallery(&model, &memory);

    QVERIFY2(model.missing.isEmpty(),
        QByteArrayList(model.missing.begin(), model.missing.end()).join(' ').constData());
    // The lookups really happened: the state alone covers the extended list
    // and the morph table, and the gallery shows every meter.
    QVERIFY(model.askedParameters.size() >= ParameterListExCount - 1 + OrvaneDataParameterCount);
    QCOMPARE(model.askedMeters.size(), model.model.meters().size());
}

QTEST_MAIN(TestPluginKeys)
#include "tst_pluginkeys.moc"
