#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "Common/EffectEditor.h"
#include "Common/Widgets/ButtonGroupController.h"
#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/PullDownButtonMenu.h"
#include "Common/Widgets/PushButtonController.h"
#include "Common/Widgets/SvgLabel.h"
#include "host/Simulation/HostModel.h"
#include "host/Simulation/ParameterMemory.h"

using namespace CommonController_MemAPI;
using Trigger = PushButtonController::CheckTrigger;
using Menu = PullDownButtonControllerPrivate::Menu;

namespace {

// A host that confirms writes only when told to, so a test can look at a
// bound control between its write and the host's Update.
class DeferredMemory : public ParameterMemory
{
public:
    using ParameterMemory::ParameterMemory;
    int setValue(unsigned short prmId, unsigned short ch, int value, int index, int, int) override
    {
        m_pending.append({ prmId, ch, value, index });
        return 0;
    }
    void deliver()
    {
        const auto pending = std::exchange(m_pending, {});
        for (const Write &w : pending)
            ParameterMemory::setValue(w.prmId, w.ch, w.value, w.index, 0, 1);
    }
    QVector<Write> m_pending;
};

HostModel smallModel()
{
    ParameterSpec selector { "t_sel", 0, 3, 1, ValueKind::Linear };
    ParameterSpec onOff { "t_sw", 0, 1, 0, ValueKind::Switch };
    return HostModel({ { 1, 1 } }, { selector, onOff }, {});
}

// The smallest editor: just enough to carry a scale.
class ScaledEditor : public EffectEditor
{
public:
    FUID uid() const override { return FUID(); }
    void loadUids(std::vector<FUID> &) const override { }
    IComponent *getPlxComponent() const override { return nullptr; }
    void setMemAPI(IMemAPI *) override { }
    void setCh(int, int) override { }
};

class CountingLabel : public SvgLabel
{
public:
    using SvgLabel::SvgLabel;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        SvgLabel::paintEvent(event);
    }
};

QString writeSvg(const QTemporaryDir &dir, const QString &name, const QString &colour)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"20\" height=\"20\" "
                              "viewBox=\"0 0 20 20\"><rect width=\"20\" height=\"20\" fill=\"%1\"/></svg>")
                   .arg(colour)
                   .toUtf8());
    return path;
}

QColor centrePixel(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

} // namespace

class TestControlsButtons : public QObject
{
    Q_OBJECT

private slots:
    void normalizedRounding_data();
    void normalizedRounding();
    void boundWaitsForUpdate();
    void rangeSetters_data();
    void rangeSetters();
    void checkTrigger_data();
    void checkTrigger();
    void toggles_data();
    void toggles();
    void momentaryReleasedOnFocusLoss();
    void paintsStateArtwork();
    void pullDownReleaseGuard();
    void pullDownKeys();
    void pullDownText_data();
    void pullDownText();
    void buttonGroupMaximum();
    void buttonGroupClicksAndDefault_data();
    void buttonGroupClicksAndDefault();
    void svgLabelLoadsOnce();
    void svgLabelArtwork_data();
    void svgLabelArtwork();
};

void TestControlsButtons::normalizedRounding_data()
{
    QTest::addColumn<bool>("bound");
    QTest::addColumn<float>("normalized");
    QTest::addColumn<int>("expected");
    // Bound rounds; unbound splits 0..3 into four equal buckets.
    QTest::newRow("unbound 1.0") << false << 1.0f << 3;
    QTest::newRow("bound 1.0") << true << 1.0f << 3;
    QTest::newRow("unbound 0.5") << false << 0.5f << 2;
    QTest::newRow("bound 0.5") << true << 0.5f << 2;
    QTest::newRow("unbound 0.2") << false << 0.2f << 0;
    QTest::newRow("bound 0.2") << true << 0.2f << 1;
    QTest::newRow("unbound 0.74") << false << 0.74f << 2;
    QTest::newRow("bound 0.9") << true << 0.9f << 3;
    QTest::newRow("unbound above 1") << false << 7.0f << 3;
    QTest::newRow("bound below 0") << true << -2.0f << 0;
}

void TestControlsButtons::normalizedRounding()
{
    QFETCH(bool, bound);
    QFETCH(float, normalized);
    QFETCH(int, expected);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sel", 1);
    PushButtonController button;
    if (bound)
        button.setMemAPIValue(&memory, model.parameterId("t_sel"), 0);
    else
        button.setMaximumValue(3);
    button.setNormalized(normalized);
    QCOMPARE(button.value(), expected);
}

void TestControlsButtons::boundWaitsForUpdate()
{
    HostModel model = smallModel();
    DeferredMemory memory(&model);
    PushButtonController button;
    button.setCheckable(true);
    const unsigned short id = model.parameterId("t_sw");
    button.setMemAPIValue(&memory, id, 0);
    QSignalSpy spy(&button, qOverload<int>(&PushButtonController::valueChanged));

    button.setValue(1);
    QCOMPARE(memory.m_pending.size(), 1);
    QCOMPARE(memory.m_pending.first().value, 1);
    QCOMPARE(button.value(), 0);
    QVERIFY(!button.isChecked());
    QCOMPARE(spy.count(), 0);

    memory.deliver();
    QCOMPARE(button.value(), 1);
    QVERIFY(button.isChecked());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toInt(), 1);
    QCOMPARE(button.accessibleDescription(), QStringLiteral("on"));

    // Another client's change reaches the control the same way.
    memory.ParameterMemory::setValue(id, 0, 0, 0, 0, 1);
    QVERIFY(!button.isChecked());
    QCOMPARE(spy.count(), 2);

    // The host's range rules a bound control.
    button.setMaximumValue(7);
    QCOMPARE(button.maximumValue(), 1);
    memory.setFailing(true);
    QCOMPARE(button.value(), 0);
    QCOMPARE(button.maximumValue(), 0);
}

void TestControlsButtons::rangeSetters_data()
{
    QTest::addColumn<int>("newMinimum");
    QTest::addColumn<int>("newMaximum");
    QTest::addColumn<QList<int>>("expected"); // minimum, maximum, default, value
    // Start: range 0..10, default 4, value 6; the minimum is set first.
    QTest::newRow("minimum raises default and value") << 5 << 10 << QList<int> { 5, 10, 5, 6 };
    QTest::newRow("maximum lowers default and value") << 0 << 3 << QList<int> { 0, 3, 3, 3 };
    QTest::newRow("minimum above maximum collapses") << 12 << 12 << QList<int> { 12, 12, 12, 12 };
    QTest::newRow("maximum below minimum collapses") << 2 << 1 << QList<int> { 1, 1, 1, 1 };
}

void TestControlsButtons::rangeSetters()
{
    QFETCH(int, newMinimum);
    QFETCH(int, newMaximum);
    QFETCH(QList<int>, expected);
    PushButtonController button;
    button.setMaximumValue(10);
    button.setDefaultValue(4);
    button.setValue(6);
    QSignalSpy spy(&button, qOverload<int>(&PushButtonController::valueChanged));
    button.setMinimumValue(newMinimum);
    button.setMaximumValue(newMaximum);
    QCOMPARE(
        (QList<int> { button.minimumValue(), button.maximumValue(), button.defaultValue(), button.value() }),
        expected);
    QVERIFY(spy.count() >= 1);
    button.setDefaultValue(100);
    QCOMPARE(button.defaultValue(), expected.at(1));
}

void TestControlsButtons::checkTrigger_data()
{
    QTest::addColumn<int>("old");
    QTest::addColumn<int>("requested");
    QTest::addColumn<int>("expected");
    using P = PushButtonController;
    QTest::newRow("nothing on defaults") << int(P::Release | P::On | P::Off) << 0 << int(P::Press | P::Off);
    QTest::newRow("new press wins") << int(P::Release | P::On) << int(P::Press | P::Release | P::On)
                                    << int(P::Press | P::On);
    QTest::newRow("new release wins")
        << int(P::Press | P::On) << int(P::Press | P::Release | P::On) << int(P::Release | P::On);
    QTest::newRow("edges cleared after press")
        << int(P::Press | P::On | P::Off) << int(P::On) << int(P::Release | P::On);
    QTest::newRow("directions cleared after on")
        << int(P::Release | P::On) << int(P::Release) << int(P::Release | P::Off);
    QTest::newRow("directions cleared after off")
        << int(P::Press | P::Off) << int(P::Press) << int(P::Press | P::On);
    QTest::newRow("unknown bits dropped")
        << int(P::Release | P::On) << int(P::Release | P::On | 4 | 64) << int(P::Release | P::On);
}

void TestControlsButtons::checkTrigger()
{
    QFETCH(int, old);
    QFETCH(int, requested);
    QFETCH(int, expected);
    PushButtonController button;
    QCOMPARE(int(button.checkTrigger()),
        int(PushButtonController::Release | PushButtonController::On | PushButtonController::Off));
    button.setCheckTrigger(Trigger(old));
    QCOMPARE(int(button.checkTrigger()), old);
    button.setCheckTrigger(Trigger(requested));
    QCOMPARE(int(button.checkTrigger()), expected);
}

void TestControlsButtons::toggles_data()
{
    QTest::addColumn<int>("trigger");
    QTest::addColumn<bool>("startOn");
    QTest::addColumn<int>("afterPress");
    QTest::addColumn<int>("afterRelease");
    using P = PushButtonController;
    QTest::newRow("release toggles on") << int(P::Release | P::On | P::Off) << false << 0 << 1;
    QTest::newRow("release toggles off") << int(P::Release | P::On | P::Off) << true << 1 << 0;
    QTest::newRow("press toggles on") << int(P::Press | P::On | P::Off) << false << 1 << 1;
    QTest::newRow("press toggles off") << int(P::Press | P::On | P::Off) << true << 0 << 0;
    QTest::newRow("release, on only, stays on") << int(P::Release | P::On) << true << 1 << 1;
    QTest::newRow("press, off only, stays off") << int(P::Press | P::Off) << false << 0 << 0;
}

void TestControlsButtons::toggles()
{
    QFETCH(int, trigger);
    QFETCH(bool, startOn);
    QFETCH(int, afterPress);
    QFETCH(int, afterRelease);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sw", startOn ? 1 : 0);
    PushButtonController button;
    button.resize(22, 22);
    button.setCheckable(true);
    button.setCheckTrigger(Trigger(trigger));
    QCOMPARE(int(button.checkTrigger()), trigger);
    button.setMemAPIValue(&memory, model.parameterId("t_sw"), 0);
    QCOMPARE(button.isChecked(), startOn);
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QSignalSpy modifiers(&button, &PushButtonController::modifiersChange);

    QTest::mousePress(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterPress);
    QTest::mouseRelease(&button, Qt::LeftButton, Qt::ShiftModifier, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterRelease);
    QCOMPARE(button.isChecked(), afterRelease != 0);
    QVERIFY(!button.isDown());
    QCOMPARE(clicked.count(), 1);
    // A change made with a modifier held is announced for repetition.
    QCOMPARE(modifiers.count(), afterRelease != int(startOn) ? 1 : 0);
    QCOMPARE(button.accessibleDescription(), afterRelease ? QStringLiteral("on") : QStringLiteral("off"));

    // The right button never toggles.
    QTest::mouseClick(&button, Qt::RightButton, {}, QPoint(11, 11));
    QCOMPARE(memory.value("t_sw"), afterRelease);
}

void TestControlsButtons::momentaryReleasedOnFocusLoss()
{
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    QWidget window;
    auto *first = new QLineEdit(&window);
    auto *second = new QLineEdit(&window);
    second->move(0, 40);
    auto *button = new PushButtonController(&window);
    button->move(0, 80);
    button->resize(22, 22);
    button->setMemAPIValue(&memory, model.parameterId("t_sw"), 0);
    button->setObjectName(QStringLiteral("m_pCompressorBypassButton"));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    first->setFocus();
    QTRY_VERIFY(first->hasFocus());

    QTest::mousePress(button, Qt::LeftButton, {}, QPoint(11, 11));
    QVERIFY(button->isDown());
    QCOMPARE(memory.value("t_sw"), 1);
    second->setFocus();
    QTRY_VERIFY(second->hasFocus());
    QVERIFY(!button->isDown());
    QCOMPARE(memory.value("t_sw"), 0);
    // The button never takes the focus itself.
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
    // Without text or a set name, the object name speaks for it.
    QCOMPARE(button->accessibleName(), QStringLiteral("Compressor Bypass Button"));
    button->setAccessibleName(QStringLiteral("Bypass"));
    button->setObjectName(QStringLiteral("m_pOther"));
    QCOMPARE(button->accessibleName(), QStringLiteral("Bypass"));
}

void TestControlsButtons::paintsStateArtwork()
{
    // The lit lamp is amber; the unlit one is dark. Drawn at twice the size.
    PushButtonController button;
    button.setCheckable(true);
    button.setScale(2.0);
    button.resize(44, 44);
    button.setButtonSvg(QStringLiteral(":/image/orvchstrip/btn_off.svg"));
    button.setOnButtonSvg(QStringLiteral(":/image/orvchstrip/btn_on.svg"));
    button.setShadowSvg(QStringLiteral(":/image/orvchstrip/btn_shadow.svg"));
    const QColor off = centrePixel(&button);
    QVERIFY2(off.red() < 120, qPrintable(off.name()));
    button.setValue(1);
    QVERIFY(button.isChecked());
    const QColor on = centrePixel(&button);
    QVERIFY2(on.red() > 200 && on.green() > 120 && on.blue() < 160, qPrintable(on.name()));

    // A disabled body fades with buttonDisableOpacity.
    button.setButtonDisableOpacity(0.0);
    QCOMPARE(centrePixel(&button), on);
    button.setEnabled(false);
    QVERIFY(centrePixel(&button).red() < 100);
    button.setButtonDisableOpacity(-3.0);
    QCOMPARE(button.buttonDisableOpacity(), 0.0);
}

void TestControlsButtons::pullDownReleaseGuard()
{
    ScaledEditor editor;
    editor.setScale(1.5);
    auto *pullDown = new PullDownButtonController(&editor);
    pullDown->resize(120, 24);
    pullDown->setTextList({ QStringLiteral("Soft"), QStringLiteral("Medium"), QStringLiteral("Hard") });
    QCOMPARE(pullDown->maximumValue(), 2);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QSignalSpy changed(pullDown, &PullDownButtonController::changed);
    QSignalSpy selected(pullDown, &PullDownButtonController::selected);

    QPointer<Menu> menu;
    bool stillOpenAfterEarlyRelease = false;
    qint64 earlyAge = 0;
    double menuScale = 0;
    QTimer::singleShot(0, this, [&] {
        menu = pullDown->findChild<Menu *>();
        if (!menu)
            return;
        menuScale = getWidgetScale(menu);
        const QPoint hard = menu->actionGeometry(menu->actions().at(2)).center();
        QTest::mousePress(menu, Qt::LeftButton, {}, hard);
        earlyAge = menu->age();
        QTest::mouseRelease(menu, Qt::LeftButton, {}, hard);
        stillOpenAfterEarlyRelease = menu->isVisible();
        QTimer::singleShot(Menu::ReleaseGuardMs + 50, menu, [&, hard] {
            QTest::mousePress(menu, Qt::LeftButton, {}, hard);
            QTest::mouseRelease(menu, Qt::LeftButton, {}, hard);
        });
    });
    pullDown->openPullDown();
    QVERIFY(menu);
    if (earlyAge >= Menu::ReleaseGuardMs)
        QSKIP("the machine was too slow to release within the guard");
    QVERIFY(stillOpenAfterEarlyRelease);
    QCOMPARE(menuScale, 1.5);
    QCOMPARE(pullDown->value(), 2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(pullDown->accessibleDescription(), QStringLiteral("Hard"));
    // The closed menu lives on for a while, then goes.
    QVERIFY(menu);
    QTRY_VERIFY_WITH_TIMEOUT(!menu, 4000);
}

void TestControlsButtons::pullDownKeys()
{
    PullDownButtonController pullDown;
    QStringList texts;
    for (int i = 0; i < 12; ++i)
        texts << QStringLiteral("Entry %1").arg(i);
    pullDown.setTextList(texts);
    // Entries 1 and 8 hidden, 3 disabled: the keys skip them.
    QList<bool> visible(12, true);
    visible[1] = visible[8] = false;
    pullDown.setVisibleList(visible);
    pullDown.setValue(0);
    pullDown.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pullDown));

    QStringList trail;
    QTimer::singleShot(0, this, [&] {
        auto *menu = pullDown.findChild<Menu *>();
        if (!menu)
            return;
        menu->actions().at(3)->setEnabled(false);
        auto step = [&](Qt::Key key) {
            QTest::keyClick(menu, key);
            trail << (menu->activeAction() ? menu->activeAction()->text() : QStringLiteral("-"));
        };
        step(Qt::Key_Down);     // 0 -> 2 (1 hidden)
        step(Qt::Key_Down);     // 2 -> 4 (3 disabled)
        step(Qt::Key_PageDown); // five on: 5 6 7 9 10
        step(Qt::Key_PageDown); // stops at the last
        step(Qt::Key_Up);
        step(Qt::Key_PageUp); // 10 9 7 6 5 4
        QTest::keyClick(menu, Qt::Key_Escape);
    });
    pullDown.openPullDown();
    QCOMPARE(trail, QStringList({ "Entry 2", "Entry 4", "Entry 10", "Entry 11", "Entry 10", "Entry 4" }));
    QCOMPARE(pullDown.value(), 0);
}

void TestControlsButtons::pullDownText_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("emptyText");
    QTest::addColumn<QString>("invisibleText");
    QTest::addColumn<QString>("expected");
    // Texts "A", "", "C"; "C" is hidden; the range 0..2 allows no value past it.
    QTest::newRow("plain") << 0 << "none"
                           << "hidden"
                           << "A";
    QTest::newRow("empty entry") << 1 << "none"
                                 << "hidden"
                                 << "none";
    QTest::newRow("hidden entry") << 2 << "none"
                                  << "hidden"
                                  << "hidden";
    QTest::newRow("hidden without invisible text") << 2 << "none"
                                                   << ""
                                                   << "C";
}

void TestControlsButtons::pullDownText()
{
    QFETCH(int, value);
    QFETCH(QString, emptyText);
    QFETCH(QString, invisibleText);
    QFETCH(QString, expected);
    PullDownButtonController pullDown;
    pullDown.setTextList({ QStringLiteral("A"), QString(), QStringLiteral("C") });
    pullDown.setVisibleList({ true, true, false });
    pullDown.setEmptyText(emptyText);
    pullDown.setInvisibleText(invisibleText);
    pullDown.setValue(value);
    QCOMPARE(pullDown.displayText(), expected);
    QCOMPARE(pullDown.accessibleDescription(), expected);
}

void TestControlsButtons::buttonGroupMaximum()
{
    ButtonGroupController group;
    QList<QPushButton *> buttons;
    for (int i = 0; i < 3; ++i) {
        buttons << new QPushButton(&group);
        buttons.last()->setCheckable(true);
    }
    // Announced children count before they are registered.
    QCOMPARE(group.maximumValue(), 3);
    group.setValue(3);
    QTRY_COMPARE(group.buttons().size(), 3);
    QCOMPARE(group.maximumValue(), 3);
    QTest::qWait(30);
    for (QPushButton *button : buttons)
        QVERIFY(!button->isChecked());

    group.setValue(1);
    QTRY_VERIFY(buttons.at(1)->isChecked());

    delete buttons.takeAt(2);
    QCOMPARE(group.buttons().size(), 2);
    QCOMPARE(group.maximumValue(), 2);
    // A child deleted before its registration ran is forgotten safely.
    delete new QPushButton(&group);
    QTest::qWait(30);
    QCOMPARE(group.maximumValue(), 2);
}

void TestControlsButtons::buttonGroupClicksAndDefault_data()
{
    QTest::addColumn<bool>("enableDefaultSet");
    QTest::addColumn<int>("expected");
    QTest::newRow("control-click sets the default") << true << 1;
    QTest::newRow("control-click selects when disabled") << false << 0;
}

void TestControlsButtons::buttonGroupClicksAndDefault()
{
    QFETCH(bool, enableDefaultSet);
    QFETCH(int, expected);
    HostModel model = smallModel();
    ParameterMemory memory(&model);
    memory.setValueByKey("t_sel", 2);
    ButtonGroupController group;
    group.resize(200, 40);
    group.setEnableDefaultSet(enableDefaultSet);
    QList<PushButtonController *> buttons;
    for (int i = 0; i < 4; ++i) {
        auto *button = new PushButtonController(&group);
        button->setCheckable(true);
        button->setAutoExclusive(true);
        button->setGeometry(i * 50, 0, 50, 40);
        button->setText(QString(QChar('A' + i)));
        buttons << button;
    }
    QTRY_COMPARE(group.buttons().size(), 4);
    group.setMemAPIValue(&memory, model.parameterId("t_sel"), 0);
    QTRY_VERIFY(buttons.at(2)->isChecked());
    group.show();
    QVERIFY(QTest::qWaitForWindowExposed(&group));

    // A plain click selects through the host.
    QTest::mouseClick(buttons.at(3), Qt::LeftButton, {}, QPoint(25, 20));
    QCOMPARE(memory.value("t_sel"), 3);

    QSignalSpy modifiers(&group, &ButtonGroupController::modifiersChange);
    QTest::mouseClick(buttons.at(0), Qt::LeftButton, Qt::ControlModifier, QPoint(25, 20));
    QCOMPARE(memory.value("t_sel"), expected);
    QCOMPARE(modifiers.count(), 1);
    QTRY_VERIFY(buttons.at(expected)->isChecked());
    QCOMPARE(group.accessibleDescription(), buttons.at(expected)->text());
}

void TestControlsButtons::svgLabelLoadsOnce()
{
    QTemporaryDir dir;
    const QString red = writeSvg(dir, QStringLiteral("red.svg"), QStringLiteral("#ff0000"));
    CountingLabel label;
    label.resize(40, 40);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QTRY_VERIFY(label.paints > 0);
    label.paints = 0;
    label.setSvg(red);
    label.setSvg(red);
    QTRY_COMPARE(label.paints, 1);
    QTest::qWait(30);
    QCOMPARE(label.paints, 1);
    label.setOpacity(1.0);
    label.setDisableSvg(QString());
    QTest::qWait(30);
    QCOMPARE(label.paints, 1);
}

void TestControlsButtons::svgLabelArtwork_data()
{
    QTest::addColumn<bool>("normal");
    QTest::addColumn<bool>("disabledArt");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<double>("opacity");
    QTest::addColumn<QString>("expected"); // "red", "blue" or "none"
    QTest::newRow("normal") << true << true << true << 1.0 << "red";
    QTest::newRow("disabled shows its own") << true << true << false << 1.0 << "blue";
    QTest::newRow("disabled without own shows normal") << true << false << false << 1.0 << "red";
    QTest::newRow("only disabled, enabled") << false << true << true << 1.0 << "none";
    QTest::newRow("only disabled, disabled") << false << true << false << 1.0 << "none";
    QTest::newRow("opacity 0") << true << true << true << 0.0 << "none";
}

void TestControlsButtons::svgLabelArtwork()
{
    QFETCH(bool, normal);
    QFETCH(bool, disabledArt);
    QFETCH(bool, enabled);
    QFETCH(double, opacity);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    SvgLabel label;
    label.resize(60, 30);
    QPalette palette = label.palette();
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::white);
    label.setPalette(palette);
    if (normal)
        label.setSvg(writeSvg(dir, QStringLiteral("red.svg"), QStringLiteral("#ff0000")));
    if (disabledArt)
        label.setDisableSvg(writeSvg(dir, QStringLiteral("blue.svg"), QStringLiteral("#0000ff")));
    label.setOpacity(opacity);
    label.setEnabled(enabled);

    const QImage image = label.grab().toImage();
    const QColor corner = image.pixelColor(2, 2);
    if (expected == QLatin1String("red"))
        QCOMPARE(corner, QColor(Qt::red));
    else if (expected == QLatin1String("blue"))
        QCOMPARE(corner, QColor(Qt::blue));
    else
        QVERIFY2(corner.red() < 40 && corner.blue() < 40, qPrintable(corner.name()));

    // The label's own text is not faded with the artwork.
    label.setEnabled(true);
    QFont font = label.font();
    font.setPixelSize(24);
    label.setFont(font);
    label.setText(QStringLiteral("WWW"));
    const QImage withText = label.grab().toImage();
    int light = 0;
    for (int y = 0; y < withText.height(); ++y)
        for (int x = 0; x < withText.width(); ++x)
            light += qGray(withText.pixel(x, y)) > 200 ? 1 : 0;
    QVERIFY2(light > 50, qPrintable(QString::number(light)));
}

QTEST_MAIN(TestControlsButtons)
#include "tst_controls_buttons.moc"
