#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

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
