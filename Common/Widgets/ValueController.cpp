#include "Common/Widgets/ValueController.h"

#include <QAccessible>
#include <QMouseEvent>

#include "Common/Widgets/AccessibleControlFactory.h"

namespace CommonController_MemAPI {

ValueController::ValueController(QWidget *parent)
    : QWidget(parent)
    , m_accessibleName(this)
    , m_pFocusMark(new FocusMark(this))
{
    AccessibleControlFactory::install();
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
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, value());
        QAccessible::updateAccessibility(&event);
    }
    update();
}

void ValueController::notifyModifiersChange(Qt::KeyboardModifiers modifiers)
{
    emit modifiersChange(this, modifiers);
}

void ValueController::setValueSuffix(const QString &suffix)
{
    if (suffix == m_valueSuffix)
        return;
    m_valueSuffix = suffix;
    updateAccessibleText();
}

QString ValueController::accessibleValueText() const
{
    QString text = describedText();
    if (text.isEmpty())
        return QString::number(value());
    if (!m_valueSuffix.isEmpty() && !text.endsWith(m_valueSuffix))
        text += m_valueSuffix;
    return text;
}

void ValueController::updateAccessibleText()
{
    // The description repeats the value text: the screen-reader bridge carries
    // only the number of a value, and a reader speaks a changed description of
    // the focused control, so the unit is heard as the value moves.
    setAccessibleDescription(accessibleValueText());
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

bool ValueController::acceptDragStep(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton) || !m_dragging || !isEnabled()
        || event->position().toPoint() == m_lastPosition) {
        QWidget::mouseMoveEvent(event);
        return false;
    }
    event->accept();
    return true;
}

void ValueController::setFine(bool fine)
{
    if (fine == m_fine)
        return;
    m_fine = fine;
    anchorAt(m_lastPosition);
}

} // namespace CommonController_MemAPI
