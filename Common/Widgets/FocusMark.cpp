#include "Common/Widgets/FocusMark.h"

#include <QEvent>
#include <QFocusEvent>
#include <QPainter>
#include <QWidget>

namespace CommonController_MemAPI {

namespace {

constexpr double LineWidth = 1.5;
constexpr double CornerRadius = 3.0;

} // namespace

FocusMark::FocusMark(QWidget *widget)
    : QObject(widget)
    , m_pWidget(widget)
{
    widget->installEventFilter(this);
}

bool FocusMark::isShown() const
{
    return m_byKeyboard && m_pWidget->hasFocus() && m_pWidget->isEnabled();
}

QColor FocusMark::color(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::WindowText);
}

void FocusMark::paint(QPainter &painter, const QRectF &area, Shape shape, double scale) const
{
    if (!isShown())
        return;
    // A bright line on a dark one: it stands out from light and coloured
    // artwork alike, the knobs' own rings included.
    const double width = LineWidth * scale;
    const QRectF ring = area.adjusted(width, width, -width, -width);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(1.0);
    painter.setBrush(Qt::NoBrush);
    for (const QPen &pen : { QPen(m_pWidget->palette().color(QPalette::Active, QPalette::Shadow), 2 * width),
             QPen(color(m_pWidget->palette()), width) }) {
        painter.setPen(pen);
        if (shape == Round)
            painter.drawEllipse(ring);
        else
            painter.drawRoundedRect(ring, CornerRadius * scale, CornerRadius * scale);
    }
    painter.restore();
}

bool FocusMark::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_pWidget)
        return false;
    switch (event->type()) {
    case QEvent::FocusIn:
        switch (static_cast<QFocusEvent *>(event)->reason()) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason: setByKeyboard(true); break;
        case Qt::MouseFocusReason: setByKeyboard(false); break;
        default: break; // a panel giving the focus back, a window reactivated: as before
        }
        m_pWidget->update();
        break;
    case QEvent::FocusOut: m_pWidget->update(); break;
    case QEvent::KeyPress: setByKeyboard(true); break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel: setByKeyboard(false); break;
    default: break;
    }
    return false;
}

void FocusMark::setByKeyboard(bool byKeyboard)
{
    if (byKeyboard == m_byKeyboard)
        return;
    m_byKeyboard = byKeyboard;
    m_pWidget->update();
}

} // namespace CommonController_MemAPI
