#include <QPluginLoader>
#include <QtTest>
#include <memory>

#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PushButtonController.h"
#include "HostModel.h"
#include "Interfaces/IORVControlsGallery.h"
#include "ORVChStrip/ControlsGallery.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;

// What the gallery does beyond what its golden pictures show: gestures reach
// the memory, the meters follow their routes, and it leaves nothing behind.
class tst_ControlsGallery : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void gesturesWriteTheMemory();
    void metersFollowTheirRoutes();
    void leavesNoObserverBehind();
    void pluginOffersTheGallery();

private:
    template<typename T> T *control(const char *name)
    {
        auto *found = m_pGallery->findChild<T *>(QLatin1String(name));
        if (!found)
            qWarning("no control %s", name);
        return found;
    }

    HostModel m_model = HostModel::channelStrip();
    std::unique_ptr<ParameterMemory> m_pMemory;
    std::unique_ptr<ControlsGallery> m_pGallery;
};

void tst_ControlsGallery::init()
{
    m_pMemory = std::make_unique<ParameterMemory>(&m_model);
    m_pGallery = std::make_unique<ControlsGallery>(&m_model, m_pMemory.get());
}

void tst_ControlsGallery::cleanup()
{
    m_pGallery.reset();
    m_pMemory.reset();
}

void tst_ControlsGallery::gesturesWriteTheMemory()
{
    // A click on the check box goes to the memory, and the look follows it.
    auto *checkbox = control<PushButtonController>("m_pLowBandCheckBox");
    QVERIFY(checkbox);
    const int before = m_pMemory->value("fx_eq_lsv_onf");
    QTest::mouseClick(checkbox, Qt::LeftButton);
    QCOMPARE(m_pMemory->value("fx_eq_lsv_onf"), 1 - before);
    QCOMPARE(checkbox->isChecked(), before == 0);
}

void tst_ControlsGallery::metersFollowTheirRoutes()
{
    QCOMPARE(m_pMemory->meterObserverCount(), 1);
    auto *bar = control<MeterController>("m_pBarMeter");
    QVERIFY(bar);
    QVector<unsigned int> values(int(m_model.meterArraySize()), static_cast<unsigned int>(-1270));
    const unsigned short eq = m_model.meterBase("meter_eq");
    values[eq] = static_cast<unsigned int>(-65);
    m_pMemory->publishMeters(values);
    QCOMPARE(bar->value(), -65);
}

void tst_ControlsGallery::leavesNoObserverBehind()
{
    QVERIFY(m_pMemory->totalObserverCount() > 10);
    m_pGallery.reset();
    QCOMPARE(m_pMemory->meterObserverCount(), 0);
    QCOMPARE(m_pMemory->totalObserverCount(), 0);
}

void tst_ControlsGallery::pluginOffersTheGallery()
{
    QPluginLoader loader(QStringLiteral(ORV_PLUGIN_DIR "/orvchstrip"));
    QObject *instance = loader.instance();
    QVERIFY2(instance, qPrintable(loader.errorString()));
    auto *factory = qobject_cast<IORVControlsGallery *>(instance);
    QVERIFY(factory);
    QWidget parent;
    QWidget *gallery = factory->createControlsGallery(&parent, &m_model, m_pMemory.get());
    QVERIFY(gallery);
    QCOMPARE(gallery->parentWidget(), &parent);
    QCOMPARE(m_pMemory->meterObserverCount(), 2);
}

QTEST_MAIN(tst_ControlsGallery)
#include "tst_controlsgallery.moc"
