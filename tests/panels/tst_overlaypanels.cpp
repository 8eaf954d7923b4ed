#include <QHelpEvent>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <functional>

#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripPalette.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/PanelToolTips.h"

namespace {

// The opacities of a fade, for a failure message.
QString traceText(const QList<double> &trace)
{
    QStringList values;
    for (double value : trace)
        values << QString::number(value, 'f', 2);
    return values.join(QLatin1String(", "));
}

// A panel over a stand-in editor that records every opacity it is given
// after construction, and may act on a given step.
template<class Panel> class Traced : public Panel
{
public:
    Traced(QList<double> *trace, std::function<void(int)> *onStep, QWidget *parent)
        : Panel(parent)
        , m_trace(trace)
        , m_onStep(onStep)
    { }
    void setOpacity(double opacity) override
    {
        Panel::setOpacity(opacity);
        m_trace->append(opacity);
        if (*m_onStep)
            (*m_onStep)(int(m_trace->size()));
    }

private:
    QList<double> *m_trace;
    std::function<void(int)> *m_onStep;
};

struct Scene
{
    explicit Scene(const QString &kind)
    {
        editor.resize(1015, 572);
        editor.setAutoFillBackground(true);
        editor.setPalette(QPalette(Qt::white));
        if (kind == QLatin1String("about"))
            panel = new Traced<ORVChStripAbout>(&trace, &onStep, &editor);
        else
            panel = new Traced<ORVChStripPresetConverter>(&trace, &onStep, &editor);
        editor.show();
    }
    QWidget editor;
    QList<double> trace;
    std::function<void(int)> onStep;
    FadingOverlay *panel = nullptr;
};

// from, from + step, ... count values, compared with a tolerance for the sums of 0.1.
bool isRamp(const QList<double> &values, double from, double step, int count)
{
    if (values.size() != count)
        return false;
    for (int i = 0; i < count; ++i) {
        if (std::abs(values[i] - (from + i * step)) > 1e-9)
            return false;
    }
    return true;
}

void addKinds()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("about") << "about";
    QTest::newRow("converter") << "converter";
}

} // namespace

class TestOverlayPanels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fadeInAndOut_data() { addKinds(); }
    void fadeInAndOut();
    void clickClosesAbout_data();
    void clickClosesAbout();
    void opacityFadesVeilAndTexts_data();
    void opacityFadesVeilAndTexts();
    void aboutShowsProductRelease();
    void toolTipsWearThePanelColours_data();
    void toolTipsWearThePanelColours();

private:
    QTemporaryDir m_home;
};

void TestOverlayPanels::initTestCase()
{
    // The converter reads and writes its setting; keep it off the user's.
    QVERIFY(m_home.isValid());
    qputenv("HOME", QFile::encodeName(m_home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("data"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_home.filePath(QStringLiteral("config"))));
}

void TestOverlayPanels::fadeInAndOut()
{
    QFETCH(QString, kind);
    Scene scene(kind);
    FadingOverlay *panel = scene.panel;
    QVERIFY(panel->isHidden());
    QCOMPARE(panel->geometry(), QRect(0, 0, 1015, 572));

    panel->open();
    QVERIFY(panel->isVisible());
    panel->open(); // the same direction again changes nothing
    QTRY_VERIFY(!panel->isFading());
    panel->open();
    QTest::qWait(2 * FadingOverlay::FadeIntervalMs);
    QVERIFY2(isRamp(scene.trace, 0.1, 0.1, 10), qPrintable(traceText(scene.trace)));

    scene.trace.clear();
    panel->close();
    QTRY_VERIFY(panel->isHidden());
    QVERIFY2(isRamp(scene.trace, 0.9, -0.1, 10), qPrintable(traceText(scene.trace)));

    // After a fade out, and after being hidden directly, it fades in anew.
    for (int round = 0; round < 2; ++round) {
        scene.trace.clear();
        panel->open();
        QTRY_VERIFY(!panel->isFading());
        QVERIFY2(isRamp(scene.trace, 0.1, 0.1, 10), qPrintable(traceText(scene.trace)));
        panel->hide();
    }
}

void TestOverlayPanels::clickClosesAbout_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("target"); // object name, empty for the panel itself
    QTest::addColumn<int>("clickAfter"); // opacity steps; 0: once fully open
    QTest::addColumn<bool>("closes");

    QTest::newRow("background") << "about" << QString() << 0 << true;
    QTest::newRow("background while fading in") << "about" << QString() << 3 << true;
    QTest::newRow("version line") << "about" << QStringLiteral("m_pVersionLabel") << 0 << true;
    // The converter asks a question: only its buttons end it.
    QTest::newRow("converter background") << "converter" << QString() << 0 << false;
}

void TestOverlayPanels::clickClosesAbout()
{
    QFETCH(QString, kind);
    QFETCH(QString, target);
    QFETCH(int, clickAfter);
    QFETCH(bool, closes);
    Scene scene(kind);
    FadingOverlay *panel = scene.panel;
    QWidget *clicked = target.isEmpty() ? panel : panel->findChild<QWidget *>(target);
    QVERIFY(clicked);
    const QPoint where = target.isEmpty() ? QPoint(60, 300) : clicked->rect().center();
    const auto click = [&] { QTest::mouseClick(clicked, Qt::LeftButton, {}, where); };

    scene.onStep = [&](int step) {
        if (step == clickAfter)
            QMetaObject::invokeMethod(panel, click, Qt::QueuedConnection);
    };
    panel->open();
    QTRY_VERIFY(!panel->isFading());
    if (clickAfter == 0) {
        click();
        QTest::qWait(3 * FadingOverlay::FadeIntervalMs);
        QTRY_VERIFY(!panel->isFading());
    } else {
        // Reversed at 0.3: down from there, no jump.
        QVERIFY2(isRamp(scene.trace.mid(clickAfter), 0.3, -0.1, 4), qPrintable(traceText(scene.trace)));
    }
    QCOMPARE(panel->isHidden(), closes);
}

void TestOverlayPanels::opacityFadesVeilAndTexts_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<int>("veilAlpha");
    QTest::addColumn<int>("textAlpha");

    for (const char *kind : { "about", "converter" }) {
        QTest::addRow("%s full", kind) << kind << 1.0 << 224 << 255;
        QTest::addRow("%s 0.3", kind) << kind << 0.3 << 67 << 77;
        QTest::addRow("%s above one", kind) << kind << 1.5 << 224 << 255;
        QTest::addRow("%s below zero", kind) << kind << -0.5 << 0 << 0;
    }
}

void TestOverlayPanels::opacityFadesVeilAndTexts()
{
    QFETCH(QString, kind);
    QFETCH(double, opacity);
    QFETCH(int, veilAlpha);
    QFETCH(int, textAlpha);
    Scene scene(kind);
    scene.panel->show();
    scene.panel->setOpacity(opacity);

    // The veil darkens the white editor behind an empty part of the panel.
    const int grey = qGray(scene.editor.grab().toImage().pixel(60, 300));
    QVERIFY2(std::abs(grey - (255 - veilAlpha)) <= 1, qPrintable(QString::number(grey)));

    int texts = 0;
    for (const QLabel *label : scene.panel->findChildren<QLabel *>()) {
        if (label->text().isEmpty())
            continue; // the logos
        ++texts;
        QCOMPARE(label->palette().color(QPalette::WindowText).alpha(), textAlpha);
    }
    QCOMPARE(texts, kind == QLatin1String("about") ? 2 : 4);
}

void TestOverlayPanels::aboutShowsProductRelease()
{
    ORVChStripAbout about;
    auto *version = about.findChild<QLabel *>(QStringLiteral("m_pVersionLabel"));
    QVERIFY(version);
    QCOMPARE(version->text(), QStringLiteral("Orvane Channel Strip Ver 3.3.0"));
    // A new language re-runs the form's texts; the number must survive it.
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&about, &change);
    QCOMPARE(version->text(), QStringLiteral("Orvane Channel Strip Ver 3.3.0"));
}

void TestOverlayPanels::toolTipsWearThePanelColours_data()
{
    QTest::addColumn<QString>("asked"); // the widget under the pointer
    QTest::addColumn<bool>("dressed");
    QTest::newRow("a control of the panel") << "control" << true;
    // Asked of a child without a tip, the control above it answers.
    QTest::newRow("inside a control") << "inner" << true;
    QTest::newRow("beside the panel, in the host") << "host" << false;
}

void TestOverlayPanels::toolTipsWearThePanelColours()
{
    QFETCH(QString, asked);
    QFETCH(bool, dressed);
    QWidget window;
    window.resize(400, 200);
    auto *panel = new QWidget(&window);
    panel->setGeometry(0, 0, 200, 200);
    ORVChStripPalette::applyTo(panel);
    auto *control = new QWidget(panel);
    control->setGeometry(10, 10, 100, 50);
    control->setToolTip(QStringLiteral("Threshold"));
    auto *inner = new QWidget(control);
    inner->setGeometry(0, 0, 20, 20);
    auto *host = new QWidget(&window);
    host->setGeometry(250, 10, 100, 50);
    host->setToolTip(QStringLiteral("The host's own"));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QWidget *target = asked == QLatin1String("control") ? control
        : asked == QLatin1String("inner")               ? inner
                                                        : host;
    QHelpEvent request(QEvent::ToolTip, QPoint(5, 5), target->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(target, &request);
    QTRY_VERIFY(PanelToolTips::shownTip());
    const QWidget *tip = PanelToolTips::shownTip();
    QCOMPARE(QToolTip::text(), target->toolTip().isEmpty() ? control->toolTip() : target->toolTip());
    const QColor panelBase = panel->palette().color(QPalette::ToolTipBase);
    QCOMPARE(tip->palette().color(QPalette::ToolTipBase) == panelBase, dressed);
    QCOMPARE(tip->palette().color(QPalette::ToolTipBase) == QToolTip::palette().color(QPalette::ToolTipBase),
        !dressed);
    QToolTip::hideText();
    QTRY_VERIFY(!PanelToolTips::shownTip());
}

QTEST_MAIN(TestOverlayPanels)
#include "tst_overlaypanels.moc"
