#include <QPixmap>
#include <QTest>

#include "EditorHost.h"
#include "GoldenImage.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/ControlsGallery.h"

using namespace ChannelStripKeys;

// The editor panel and the controls gallery as a user sees them, against the
// pictures in tests/data/golden: every control's artwork in its states, the
// graphs' curves and frames and the meters' bars, at scale 1 and 2.
class tst_GoldenScreens : public QObject
{
    Q_OBJECT

private slots:
    void pictures_data();
    void pictures();
};

void tst_GoldenScreens::pictures_data()
{
    QTest::addColumn<bool>("gallery");
    QTest::addColumn<double>("scale");
    QTest::newRow("editor-scale1") << false << 1.0;
    QTest::newRow("editor-scale2") << false << 2.0;
    QTest::newRow("gallery-scale1") << true << 1.0;
    QTest::newRow("gallery-scale2") << true << 2.0;
}

void tst_GoldenScreens::pictures()
{
    QFETCH(bool, gallery);
    QFETCH(double, scale);
    EditorHost host;
    // Away from the defaults: switches lit and unlit, knobs turned, a shaped
    // curve in both graphs.
    const QList<std::pair<const char *, int>> settings { { EqualizerLowGain, 300 },
        { EqualizerMiddleGain, 90 }, { EqualizerHighOn, 0 }, { CompressorRatio, 80 }, { CompressorDrive, 40 },
        { CompressorKnee, 1 }, { SideChainOn, 1 }, { CompressorAttack, 120 }, { OutputLevel, 150 } };
    for (const auto &[key, value] : settings)
        QVERIFY(host.memory.setValueByKey(key, value));

    QWidget *widget = host.editor.get();
    std::unique_ptr<ControlsGallery> page;
    if (gallery) {
        // As the host shows it: under an editor at scale 1, drawn at the scale.
        page = std::make_unique<ControlsGallery>(&host.model, &host.memory, host.editor.get());
        page->setWindowFlag(Qt::Window);
        widget = page.get();
    } else {
        host.editor->setScale(scale);
    }
    // Meters at fixed levels: the input's left channel over 0 dB, the right
    // and the output near the top, some gain reduction.
    const auto level = [](int tenthsDb) { return static_cast<unsigned int>(tenthsDb); };
    QVector<unsigned int> meters(int(host.model.meterArraySize()), level(-1270));
    const unsigned short input = host.model.meterBase(InputMeter);
    const unsigned short output = host.model.meterBase(OutputMeter);
    meters[input] = level(5);
    meters[input + 1] = meters[output] = meters[output + 1] = level(-95);
    meters[host.model.meterBase(GainReductionMeter)] = level(-60);
    meters[host.model.meterBase(SideChainMeter)] = level(-200);
    host.memory.publishMeters(meters);

    QPixmap picture(widget->size() * (gallery ? scale : 1.0));
    picture.setDevicePixelRatio(gallery ? scale : 1.0);
    picture.fill(Qt::transparent);
    widget->render(&picture);
    QString message;
    QVERIFY2(matchesGolden(picture.toImage(), QString::fromLatin1(QTest::currentDataTag()), &message),
        qPrintable(message));
}

QTEST_MAIN(tst_GoldenScreens)
#include "tst_goldenscreens.moc"
