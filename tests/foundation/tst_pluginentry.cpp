#include <QPluginLoader>
#include <QTest>

#include "ChannelStripModel.h"
#include "HostModel.h"
#include "Interfaces/IQXEffect.h"
#include "Interfaces/IQXEffectEditor.h"
#include "ParameterMemory.h"

// The plug-in as a host sees it: loaded through QPluginLoader, reached only
// through the interface headers.
class tst_PluginEntry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void answersInterfaceIds();
    void createsEditorOnlyForListedEffect_data();
    void createsEditorOnlyForListedEffect();
    void reportsClassIds();
    void registersAndReleasesObservers();

private:
    QPluginLoader m_loader;
    QObject *m_pInstance = nullptr;
};

void tst_PluginEntry::initTestCase()
{
    m_loader.setFileName(QStringLiteral(ORV_PLUGIN_PATH));
    m_pInstance = m_loader.instance();
    QVERIFY2(m_pInstance, qPrintable(m_loader.errorString()));
}

void tst_PluginEntry::answersInterfaceIds()
{
    void *effect = m_pInstance->qt_metacast("IQXEffect/1.0");
    void *channelEffect = m_pInstance->qt_metacast("IQXEffectChFx/1.0");
    QVERIFY(effect);
    QVERIFY(channelEffect);
    QCOMPARE(m_pInstance->qt_metacast("IQXEffect"), effect);
    QCOMPARE(m_pInstance->qt_metacast("IQXEffectChFx"), channelEffect);
    QVERIFY(effect != channelEffect);
    QVERIFY(!m_pInstance->qt_metacast("IQXEffect/2.0"));
    QCOMPARE(static_cast<IQXEffectChFx *>(channelEffect)->fxType(), 1);
}

void tst_PluginEntry::createsEditorOnlyForListedEffect_data()
{
    QTest::addColumn<QList<int>>("effectIds");
    QTest::addColumn<bool>("created");
    QTest::newRow("listed last") << QList<int> { 4, 9, 32 } << true;
    QTest::newRow("not listed") << QList<int> { 4, 9 } << false;
    QTest::newRow("no effects") << QList<int> {} << false;
}

void tst_PluginEntry::createsEditorOnlyForListedEffect()
{
    QFETCH(QList<int>, effectIds);
    QFETCH(bool, created);

    QList<FxEntry> effects;
    for (int id : effectIds)
        effects.append({ 1, static_cast<unsigned short>(id) });
    HostModel model(effects, HostModel::channelStrip().parameters(), {});
    auto *effect = qobject_cast<IQXEffect *>(m_pInstance);
    QWidget parent;
    IQXEffectEditor *editor = effect->create(&parent, 32, &model);
    QCOMPARE(editor != nullptr, created);
    if (editor) {
        QCOMPARE(editor->parentWidget(), &parent);
        QCOMPARE(editor->size(), QSize(1015, 572));
    }
    QVERIFY(!effect->create(&parent, 32, nullptr));
}

void tst_PluginEntry::reportsClassIds()
{
    HostModel model = HostModel::channelStrip();
    QWidget parent;
    IQXEffectEditor *editor = qobject_cast<IQXEffect *>(m_pInstance)
                                  ->create(&parent, ChannelStripModel::ChannelStripFxId, &model);
    QVERIFY(editor);
    std::vector<FUID> uids { FUID(1, 2, 3, 4) };
    editor->loadUids(uids);
    QCOMPARE(uids.size(), size_t(3));
    QCOMPARE(QString::fromStdString(uids[1].toString()), QStringLiteral("504C586373744D757220636820737472"));
    QCOMPARE(QString::fromStdString(uids[2].toString()), QStringLiteral("504C5863737453757220636820737472"));
    QCOMPARE(editor->uid(), uids[2]);
}

void tst_PluginEntry::registersAndReleasesObservers()
{
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    ParameterMemory other(&model);
    auto *parent = new QWidget;
    IQXEffectEditor *editor
        = qobject_cast<IQXEffect *>(m_pInstance)->create(parent, ChannelStripModel::ChannelStripFxId, &model);
    QVERIFY(editor);

    editor->setMemAPI(&memory);
    editor->setCh(2, 3);
    QCOMPARE(memory.meterObserverCount(), 1);
    // The editor and the parts that draw these values (graphs, controls) follow them.
    QVERIFY(memory.observerCount(model.parameterId("fx_cmp_kne"), 2) >= 1);
    QVERIFY(memory.observerCount(model.parameterId("fx_eq_midgain"), 2) >= 1); // a morphing parameter
    QCOMPARE(memory.observerCount(model.parameterId("fx_cmp_kne"), 0), 0);     // moved off channel 0

    // Moving to another memory leaves nothing behind in the old one.
    editor->setMemAPI(&other);
    QCOMPARE(memory.meterObserverCount(), 0);
    QCOMPARE(memory.totalObserverCount(), 0);
    QVERIFY(other.observerCount(model.parameterId("fx_mrp_vl"), 2) >= 1);

    delete parent;
    QCOMPARE(other.meterObserverCount(), 0);
    QCOMPARE(other.totalObserverCount(), 0);
}

QTEST_MAIN(tst_PluginEntry)
#include "tst_pluginentry.moc"
