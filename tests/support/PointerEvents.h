#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

// Synthetic pointer input sent straight to a widget, as the window system
// would deliver it, for tests that need positions or modifiers QTest's mouse
// functions do not give: a press, move or release of the left button, and
// wheel turns in eighths of a degree (120 per notch).

// A move holds the buttons in `held`; a press holds the left button; a
// release holds none. Returns whether the widget accepted the event.
inline bool sendMouse(QWidget *widget, QEvent::Type type, QPoint position,
    Qt::KeyboardModifiers modifiers = {}, Qt::MouseButtons held = Qt::LeftButton)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    if (type == QEvent::MouseButtonRelease)
        held = Qt::NoButton;
    QMouseEvent event(
        type, QPointF(position), widget->mapToGlobal(QPointF(position)), button, held, modifiers);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

inline bool sendWheel(QWidget *widget, QPoint position, QPoint angle, Qt::KeyboardModifiers modifiers = {})
{
    QWheelEvent event(QPointF(position), widget->mapToGlobal(QPointF(position)), QPoint(), angle,
        Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}
