#include <QPluginLoader>
#include <QProcess>
#include <QTemporaryDir>
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
    void hostLoadsThePlugin_data();
    void hostLoadsThePlugin();

private:
    QPluginLoader m_loader;
    QObject *m_pInstance = nullptr;
};

namespace {

ParameterDefinition parameter(const char *key)
{
    ParameterDefinition parameter;
    parameter.key = key;
    parameter.maximum = 1;
    return parameter;
}

} // namespace

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
    QTest::newRow("listed first") << QList<int> { 32, 9 } << true;
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
    HostModel model(effects, { parameter("fx_cmp_byps") }, {});
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
    QCOMPARE(memory.observerCount(model.parameterId("fx_cmp_kne"), 2), 0);
    QCOMPARE(memory.observerCount(model.parameterId("fx_eq_midgain"), 2), 0);
    QVERIFY(other.observerCount(model.parameterId("fx_mrp_vl"), 2) >= 1);

    delete parent;
    QCOMPARE(other.meterObserverCount(), 0);
    QCOMPARE(other.totalObserverCount(), 0);
}

void tst_PluginEntry::hostLoadsThePlugin_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QSize>("size");      // of the screenshot, when there is one
    QTest::addColumn<QString>("message"); // on the error stream otherwise
    QTest::newRow("scale 1, values set") << QStringList { "--set", "fx_eq_midfrq=1.2k", "--fs", "96000" } << 0
                                         << QSize(1015, 572) << QString();
    QTest::newRow("scale 2, mono") << QStringList { "--scale", "2", "--mono" } << 0 << QSize(2030, 1144)
                                   << QString();
    QTest::newRow("missing plug-in") << QStringList { "--plugin", "/nonexistent/x.so" } << 1 << QSize()
                                     << "/nonexistent/x.so";
}

void tst_PluginEntry::hostLoadsThePlugin()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QSize, size);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString picture = dir.filePath(QStringLiteral("panel.png"));
    if (!arguments.contains(QStringLiteral("--plugin")))
        arguments << QStringLiteral("--plugin") << QStringLiteral(ORV_PLUGIN_PATH);
    QProcess host;
    host.start(QStringLiteral(ORV_HOST_PATH), arguments << QStringLiteral("--screenshot") << picture);
    QVERIFY(host.waitForFinished(60000));
    const QString errors = QString::fromLocal8Bit(host.readAllStandardError());
    QVERIFY2(host.exitCode() == exitCode, qPrintable(errors));
    if (exitCode == 0) {
        QCOMPARE(QImage(picture).size(), size);
    } else {
        QVERIFY2(errors.contains(message), qPrintable(errors));
        QVERIFY(!QFile::exists(picture));
    }
}

QTEST_MAIN(tst_PluginEntry)
#include "tst_pluginentry.moc"
