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
class RecordingModel : public HostModel
{
public:
    RecordingModel()
        : HostModel(HostModel::channelStrip())
    { }
    bool findParameter(unsigned short *index, const char *key) override
    {
        const bool found = HostModel::findParameter(index, key);
        (found ? askedParameters : missing).insert(QByteArray(key));
        return found;
    }
    bool findMeter(unsigned short *index, const char *key) override
    {
        const bool found = HostModel::findMeter(index, key);
        (found ? askedMeters : missing).insert(QByteArray(key));
        return found;
    }

    QSet<QByteArray> askedParameters;
    QSet<QByteArray> askedMeters;
    QSet<QByteArray> missing;
};

} // namespace

class TestPluginKeys : public QObject
{
    Q_OBJECT

private slots:
    void pluginAsksOnlyForKnownKeys();
};

void TestPluginKeys::pluginAsksOnlyForKnownKeys()
{
    RecordingModel model;
    ParameterMemory memory(&model);
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
    // The lookups really happened: every listed key was asked for and found,
    // and the gallery shows every meter.
    for (const auto &[list, count] : { std::pair(ParameterListEx, ParameterListExCount),
             { OrvaneDataParameterList, OrvaneDataParameterCount },
             { MorphingParameterList, MorphingParameterCount } }) {
        for (int i = 0; i < count; ++i)
            QVERIFY2(!list[i] || model.askedParameters.contains(list[i]), list[i]);
    }
    QCOMPARE(model.askedMeters.size(), model.meters().size());
}

QTEST_MAIN(TestPluginKeys)
#include "tst_pluginkeys.moc"
