#include "Common/Widgets/ValueController.h"

#include <QMouseEvent>

namespace CommonController_MemAPI {

ValueController::ValueController(QWidget *parent)
    : QWidget(parent)
    , m_accessibleName(this)
    , m_pFocusMark(new FocusMark(this))
{
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QObject::objectNameChanged, this, [this] { m_accessibleName.refresh(); });
    updateAccessibleText();
}

void ValueController::setScale(double scale)
{
    if (storeScale(scale)) {
        updateGeometry();
        update();
    }
}

void ValueController::valueChangedRequest()
{
    valueChanged();
    emit valueChanged(value());
}

void ValueController::valueChanged()
{
    updateAccessibleText();
    update();
}

void ValueController::notifyModifiersChange(Qt::KeyboardModifiers modifiers)
{
    emit modifiersChange(this, modifiers);
}

void ValueController::updateAccessibleText()
{
    const QString text = describedText();
    setAccessibleDescription(text.isEmpty() ? QString::number(value()) : text);
}

void ValueController::endDrag()
{
    if (!m_dragging)
        return;
    m_dragging = false;
    endEdit();
    emit drag(false);
}

void ValueController::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_dragging) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    endDrag();
}

void ValueController::hideEvent(QHideEvent *event)
{
    endDrag();
    QWidget::hideEvent(event);
}

} // namespace CommonController_MemAPI
