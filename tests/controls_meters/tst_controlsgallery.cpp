#include <QPluginLoader>
#include <QtTest>
#include <memory>

#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/MeterController.h"
#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/RoundGainReductionMeterController.h"
#include "Common/Widgets/TextEditController.h"
#include "HostModel.h"
#include "Interfaces/IORVControlsGallery.h"
#include "ORVChStrip/ControlsGallery.h"
#include "ParameterMemory.h"

using namespace CommonController_MemAPI;

class tst_ControlsGallery : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void boundControlsFollowTheMemory_data();
    void boundControlsFollowTheMemory();
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
    // The host's text of a parameter's current value on channel 0.
    QByteArray valueText(const char *key)
    {
        char buffer[256] = {};
        const unsigned short id = m_model.parameterId(key);
        if (m_pMemory->getValueString(id, 0, m_pMemory->value(key), buffer, int(sizeof buffer)) < 0)
            return {};
        return QByteArray(buffer).trimmed();
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

void tst_ControlsGallery::boundControlsFollowTheMemory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("value");

    QTest::newRow("attack knob") << "m_pKnob_fx_cmp_atck" << QByteArray("fx_cmp_atck") << 150;
    QTest::newRow("middle frequency text") << "m_pText_fx_eq_midfrq" << QByteArray("fx_eq_midfrq") << 20;
    QTest::newRow("output fader") << "m_pOutputFader" << QByteArray("fx_eq_peqgain") << 40;
    QTest::newRow("ratio pull-down") << "m_pRatioPullDown" << QByteArray("fx_cmp_rto") << 60;
    QTest::newRow("knee group") << "m_pKneeButtonGroup" << QByteArray("fx_cmp_kne") << 2;
    QTest::newRow("bypass switch") << "m_pBypassSwitch" << QByteArray("fx_cmp_byps") << 1;
}

void tst_ControlsGallery::boundControlsFollowTheMemory()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, key);
    QFETCH(int, value);

    auto *widget = m_pGallery->findChild<QWidget *>(name);
    auto *controller = dynamic_cast<AbstractController *>(widget);
    QVERIFY(controller && controller->isBound());
    QSignalSpy spy(widget, SIGNAL(valueChanged(int)));
    QVERIFY(m_pMemory->setValueByKey(key.constData(), value));
    QCOMPARE(controller->value(), value);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(controller->string().trimmed().toLatin1(), valueText(key.constData()));
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

    // A typed frequency is parsed by the memory.
    auto *text = control<TextEditController>("m_pField_fx_eq_midfrq");
    QVERIFY(text);
    QCOMPARE(text->postfix(), QStringLiteral(" Hz"));
    text->setString(QStringLiteral("2k"));
    QCOMPARE(valueText("fx_eq_midfrq"), QByteArray("2k"));
    QCOMPARE(control<KnobController>("m_pKnob_fx_eq_midfrq")->value(), m_pMemory->value("fx_eq_midfrq"));
}

void tst_ControlsGallery::metersFollowTheirRoutes()
{
    QCOMPARE(m_pMemory->meterObserverCount(), 1);
    auto *bar = control<MeterController>("m_pBarMeter");
    auto *peak = control<MeterController>("m_pPeakMeter");
    auto *reduction = control<RoundGainReductionMeterController>("m_pGainReductionMeter");
    QVERIFY(bar && peak && reduction);

    QVector<unsigned int> values(int(m_model.meterArraySize()), static_cast<unsigned int>(-1270));
    const unsigned short eq = m_model.meterBase("meter_eq");
    const unsigned short comp = m_model.meterBase("meter_comp");
    values[eq] = static_cast<unsigned int>(-65);
    values[eq + 1] = static_cast<unsigned int>(-123);
    values[eq + 2] = 0; // channel 1 is not shown
    values[comp] = static_cast<unsigned int>(-60);
    m_pMemory->publishMeters(values);
    QCOMPARE(bar->value(), -65);
    QCOMPARE(peak->value(), -123);
    QCOMPARE(reduction->value(), -60);

    // A short array leaves the meters beyond it as they were.
    values.resize(eq);
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
