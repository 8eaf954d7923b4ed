#pragma once

#include <QApplication>
#include <QHash>
#include <QKeySequence>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>
#include <functional>

// Pointer input sent straight to a widget, with the keyboard modifiers held
// at each step of a gesture (QTest's mouseMove carries none). A press and a
// move hold the left button; a release holds none.
inline void sendMouse(
    QWidget *widget, QEvent::Type type, QPoint position, Qt::KeyboardModifiers modifiers = {})
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(
        type, QPointF(position), widget->mapToGlobal(QPointF(position)), button, held, modifiers);
    QApplication::sendEvent(widget, &event);
}

// One wheel turn of `angle` (eighths of a degree, 120 a notch); true when the
// widget took it.
inline bool sendWheel(QWidget *widget, QPoint position, QPoint angle, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(QPointF(position), widget->mapToGlobal(QPointF(position)), QPoint(), angle,
        Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

// Plays input written as steps separated by ";": "press X Y", "move X Y",
// "release X Y" and "dblclick X Y", each optionally followed by "shift" or
// "ctrl" for the key held; "wheel DX DY" (over the widget's centre, with
// "shift" likewise); "key NAME" with a key name as QKeySequence spells it
// ("Up", "PgDown", "Home"); "wait", the double-click interval and a little
// more; "expect N", which compares `value()` with N.
inline void playInput(QWidget *widget, const QString &script, const std::function<int()> &value)
{
    static const QHash<QString, QEvent::Type> mouse { { "press", QEvent::MouseButtonPress },
        { "move", QEvent::MouseMove }, { "release", QEvent::MouseButtonRelease },
        { "dblclick", QEvent::MouseButtonDblClick } };
    for (const QString &step : script.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList w = step.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const Qt::KeyboardModifiers modifiers = w.contains(QLatin1String("shift")) ? Qt::ShiftModifier
            : w.contains(QLatin1String("ctrl"))                                    ? Qt::ControlModifier
                                                                                   : Qt::NoModifier;
        const QPoint numbers = w.size() > 2 ? QPoint(w[1].toInt(), w[2].toInt()) : QPoint();
        if (mouse.contains(w[0]))
            sendMouse(widget, mouse[w[0]], numbers, modifiers);
        else if (w[0] == QLatin1String("wheel"))
            sendWheel(widget, widget->rect().center(), numbers, modifiers);
        else if (w[0] == QLatin1String("key") && !QKeySequence::fromString(w[1]).isEmpty())
            QTest::keyClick(widget, QKeySequence::fromString(w[1])[0].key());
        else if (w[0] == QLatin1String("wait"))
            QTest::qWait(QApplication::doubleClickInterval() + 100);
        else if (w[0] == QLatin1String("expect"))
            QCOMPARE(value(), w[1].toInt());
        else
            QFAIL(qPrintable(QStringLiteral("unknown step '%1'").arg(step)));
    }
}
