#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

#include "ORVChStrip/ORVChStripAbout.h"
#include "ORVChStrip/ORVChStripPresetConverter.h"

namespace {

// Every opacity a panel is given after construction, in order.
struct OpacityTrace
{
    QList<double> values;
    std::function<void(int step)> onStep;
};

template<class Panel> class Traced : public Panel
{
public:
    Traced(OpacityTrace *trace, QWidget *parent)
        : Panel(parent)
        , m_trace(trace)
    { }
    void setOpacity(double opacity) override
    {
        Panel::setOpacity(opacity);
        m_trace->values << opacity;
        if (m_trace->onStep)
            m_trace->onStep(int(m_trace->values.size()));
    }

private:
    OpacityTrace *m_trace;
};

FadingOverlay *makePanel(const QString &kind, OpacityTrace *trace, QWidget *parent)
{
    if (kind == QLatin1String("about"))
        return new Traced<ORVChStripAbout>(trace, parent);
    return new Traced<ORVChStripPresetConverter>(trace, parent);
}

QList<double> steps(double from, double to)
{
    QList<double> values;
    const double step = from < to ? 0.1 : -0.1;
    for (double v = from; from < to ? v < to + 1e-9 : v > to - 1e-9; v += step)
        values << v;
    return values;
}

bool fuzzyEqual(const QList<double> &a, const QList<double> &b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (std::abs(a[i] - b[i]) > 1e-9)
            return false;
    }
    return true;
}

} // namespace

class TestOverlayPanels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fadeInAndOut_data();
    void fadeInAndOut();
    void reversalContinuesWhereItStands_data();
    void reversalContinuesWhereItStands();
    void aboutClosesOnAnyClick_data();
    void aboutClosesOnAnyClick();
    void opacityFadesVeilAndTexts_data();
    void opacityFadesVeilAndTexts();
    void aboutShowsProductRelease();

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

void TestOverlayPanels::fadeInAndOut_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("about") << "about";
    QTest::newRow("converter") << "converter";
}

void TestOverlayPanels::fadeInAndOut()
{
    QFETCH(QString, kind);
    QWidget editor;
    editor.resize(1015, 572);
    OpacityTrace trace;
    FadingOverlay *panel = makePanel(kind, &trace, &editor);
    editor.show();
    QVERIFY(panel->isHidden());
    QCOMPARE(panel->geometry(), QRect(0, 0, 1015, 572));

    panel->open();
    QVERIFY(panel->isVisible());
    panel->open(); // a second request in the same direction changes nothing
    QTRY_VERIFY(!panel->isFading());
    panel->open();
    QTest::qWait(2 * FadingOverlay::FadeIntervalMs);
    QVERIFY2(fuzzyEqual(trace.values, steps(0.1, 1.0)), qPrintable(QTest::toString(trace.values)));

    trace.values.clear();
    panel->close();
    QVERIFY(panel->isVisible());
    QTRY_VERIFY(panel->isHidden());
    QVERIFY2(fuzzyEqual(trace.values, steps(0.9, 0.0)), qPrintable(QTest::toString(trace.values)));

    // Open again after a full close, and after being hidden directly: the
    // same fade from the start each time.
    for (int round = 0; round < 2; ++round) {
        trace.values.clear();
        panel->open();
        QTRY_VERIFY(!panel->isFading());
        QVERIFY2(fuzzyEqual(trace.values, steps(0.1, 1.0)), qPrintable(QTest::toString(trace.values)));
        panel->hide();
    }
}

void TestOverlayPanels::reversalContinuesWhereItStands_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("opening"); // the fade that gets reversed
    QTest::addColumn<int>("reverseAfter");

    for (const char *kind : { "about", "converter" }) {
        QTest::addRow("%s opening at 0.3", kind) << kind << true << 3;
        QTest::addRow("%s closing at 0.6", kind) << kind << false << 4;
        QTest::addRow("%s opening at 0.1", kind) << kind << true << 1;
    }
}

void TestOverlayPanels::reversalContinuesWhereItStands()
{
    QFETCH(QString, kind);
    QFETCH(bool, opening);
    QFETCH(int, reverseAfter);
    QWidget editor;
    editor.resize(1015, 572);
    OpacityTrace trace;
    FadingOverlay *panel = makePanel(kind, &trace, &editor);
    editor.show();
    if (!opening) {
        panel->open();
        QTRY_VERIFY(!panel->isFading());
        trace.values.clear();
    }

    trace.onStep = [&](int step) {
        if (step == reverseAfter)
            QMetaObject::invokeMethod(
                panel, opening ? &FadingOverlay::close : &FadingOverlay::open, Qt::QueuedConnection);
    };
    opening ? panel->open() : panel->close();
    QTRY_VERIFY(!panel->isFading());

    const QList<double> &v = trace.values;
    QVERIFY(v.size() > reverseAfter);
    // The reversal repeats the opacity it stood at, then moves back step by step.
    QCOMPARE(v[reverseAfter], v[reverseAfter - 1]);
    for (qsizetype i = reverseAfter + 1; i < v.size(); ++i)
        QVERIFY2(std::abs(v[i] - v[i - 1] - (opening ? -0.1 : 0.1)) < 1e-9, qPrintable(QTest::toString(v)));
    QCOMPARE(v.last(), opening ? 0.0 : 1.0);
    QCOMPARE(panel->isHidden(), opening);
}

void TestOverlayPanels::aboutClosesOnAnyClick_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("target"); // object name, empty for the panel itself
    QTest::addColumn<int>("clickAfter"); // opacity steps; 0: once fully open
    QTest::addColumn<bool>("closes");

    QTest::newRow("about, background, open") << "about" << QString() << 0 << true;
    QTest::newRow("about, background, fading in") << "about" << QString() << 3 << true;
    QTest::newRow("about, product logo") << "about"
                                         << "m_pORVChSTripLogo" << 0 << true;
    QTest::newRow("about, version line") << "about"
                                         << "m_pVersionLabel" << 0 << true;
    // The converter asks a question: only its buttons end it.
    QTest::newRow("converter, background") << "converter" << QString() << 0 << false;
}

void TestOverlayPanels::aboutClosesOnAnyClick()
{
    QFETCH(QString, kind);
    QFETCH(QString, target);
    QFETCH(int, clickAfter);
    QFETCH(bool, closes);
    QWidget editor;
    editor.resize(1015, 572);
    OpacityTrace trace;
    FadingOverlay *panel = makePanel(kind, &trace, &editor);
    editor.show();
    QWidget *clicked = target.isEmpty() ? panel : panel->findChild<QWidget *>(target);
    QVERIFY(clicked);
    const QPoint where = target.isEmpty() ? QPoint(60, 300) : clicked->rect().center();

    trace.onStep = [&](int step) {
        if (step == clickAfter)
            QMetaObject::invokeMethod(
                panel, [&] { QTest::mouseClick(clicked, Qt::LeftButton, {}, where); }, Qt::QueuedConnection);
    };
    panel->open();
    QTRY_VERIFY(!panel->isFading());
    if (clickAfter == 0) {
        trace.values.clear();
        QTest::mouseClick(clicked, Qt::LeftButton, {}, where);
        QTest::qWait(3 * FadingOverlay::FadeIntervalMs);
        QTRY_VERIFY(!panel->isFading());
    }
    QCOMPARE(panel->isHidden(), closes);
    if (closes && clickAfter > 0)
        QVERIFY2(fuzzyEqual(trace.values.mid(clickAfter - 1), QList<double> { 0.3, 0.3, 0.2, 0.1, 0.0 }),
            qPrintable(QTest::toString(trace.values)));
}

void TestOverlayPanels::opacityFadesVeilAndTexts_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<int>("veilAlpha");
    QTest::addColumn<int>("textAlpha");

    for (const char *kind : { "about", "converter" }) {
        QTest::addRow("%s full", kind) << kind << 1.0 << 224 << 255;
        QTest::addRow("%s half", kind) << kind << 0.5 << 112 << 128;
        QTest::addRow("%s 0.3", kind) << kind << 0.3 << 67 << 77;
        QTest::addRow("%s none", kind) << kind << 0.0 << 0 << 0;
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
    QWidget editor;
    editor.resize(1015, 572);
    editor.setAutoFillBackground(true);
    editor.setPalette(QPalette(Qt::white));
    OpacityTrace trace;
    FadingOverlay *panel = makePanel(kind, &trace, &editor);
    editor.show();
    panel->show();
    panel->setOpacity(opacity);

    // The veil darkens the editor behind an empty part of the panel.
    const QImage image = editor.grab().toImage();
    const int grey = qGray(image.pixel(60, 300));
    QVERIFY2(std::abs(grey - (255 - veilAlpha)) <= 1, qPrintable(QString::number(grey)));

    const QList<QLabel *> labels = panel->findChildren<QLabel *>();
    int texts = 0;
    for (const QLabel *label : labels) {
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

QTEST_MAIN(TestOverlayPanels)
#include "tst_overlaypanels.moc"
