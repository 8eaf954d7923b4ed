#include "Common/Widgets/ButtonGroupController.h"

#include <QAbstractButton>
#include <QChildEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>

#include "Common/Widgets/AccessibleControlFactory.h"
#include "Common/Widgets/PushButtonController.h"

namespace CommonController_MemAPI {

namespace {

constexpr int RefreshDelayMs = 10;

} // namespace

ButtonGroupController::ButtonGroupController(QWidget *parent)
    : QGroupBox(parent)
    , m_accessibleName(this)
{
    AccessibleControlFactory::install();
    // A child event arrives before the child is fully built; register it
    // once it is.
    connect(this, &ButtonGroupController::childAdded, this, &ButtonGroupController::addChild,
        Qt::QueuedConnection);
    connect(this, &QObject::objectNameChanged, this, [this] { updateAccessibility(); });
}

ButtonGroupController::~ButtonGroupController()
{
    for (QAbstractButton *button : std::as_const(m_buttons)) {
        disconnect(button, nullptr, this, nullptr);
        button->removeEventFilter(this);
    }
}

void ButtonGroupController::setScale(double scale)
{
    if (storeScale(scale))
        update();
}

void ButtonGroupController::valueChangedRequest()
{
    valueChanged();
    emit valueChanged(value());
}

void ButtonGroupController::notifyModifiersChange(Qt::KeyboardModifiers modifiers)
{
    emit modifiersChange(this, modifiers);
}

void ButtonGroupController::valueChanged()
{
    updateAccessibility();
    if (m_updatePending)
        return;
    m_updatePending = true;
    QTimer::singleShot(RefreshDelayMs, this, &ButtonGroupController::updateChild);
}

void ButtonGroupController::childEvent(QChildEvent *event)
{
    QGroupBox::childEvent(event);
    QObject *child = event->child();
    if (event->added()) {
        m_pendingChildren.insert(child);
        setMaximumValue(minimumValue() + int(m_buttons.size() + m_pendingChildren.size()));
        emit childAdded(child);
    } else if (event->removed()) {
        // The child may be half destroyed: compare pointers only.
        const bool wasPending = m_pendingChildren.remove(child);
        const auto it = std::find(m_buttons.begin(), m_buttons.end(), child);
        const bool wasButton = it != m_buttons.end();
        if (wasButton) {
            disconnect(child, nullptr, this, nullptr);
            child->removeEventFilter(this);
            m_buttons.erase(it);
        }
        if (wasPending || wasButton)
            setMaximumValue(minimumValue() + int(m_buttons.size() + m_pendingChildren.size()));
    }
}

void ButtonGroupController::addChild(QObject *pObject)
{
    // A child removed while its registration was queued is gone; only
    // children still announced are touched.
    if (!m_pendingChildren.remove(pObject))
        return;
    auto *button = qobject_cast<QAbstractButton *>(pObject);
    if (button && !m_buttons.contains(button)) {
        m_buttons.append(button);
        connect(button, &QAbstractButton::toggled, this, &ButtonGroupController::updateButton);
        button->installEventFilter(this);
    }
    if (m_pendingChildren.isEmpty()) {
        setMaximumValue(minimumValue() + int(m_buttons.size()));
        valueChanged();
    }
}

void ButtonGroupController::updateChild()
{
    m_updatePending = false;
    const int position = value() - minimumValue();
    if (m_pendingChildren.isEmpty() && position >= 0 && position < m_buttons.size()) {
        QAbstractButton *button = m_buttons.at(position);
        if (!button->isChecked())
            button->setChecked(true);
    }
    updateAccessibility();
}

void ButtonGroupController::updateButton(bool checked)
{
    if (!checked)
        return;
    int position = -1;
    for (int i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons.at(i)->isChecked()) {
            position = i;
            break;
        }
    }
    if (position < 0 || position > maximumValue() - minimumValue() || position == value() - minimumValue())
        return;
    gestureSetValue(minimumValue() + position, QGuiApplication::keyboardModifiers());
}

bool ButtonGroupController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && m_enableDefaultSet && isEnabled()) {
        auto *button = qobject_cast<QAbstractButton *>(watched);
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (button && m_buttons.contains(button) && button->isEnabled() && mouse->button() == Qt::LeftButton
            && mouse->modifiers() == Qt::ControlModifier) {
            gestureSetDefault(Qt::ControlModifier);
            event->accept();
            return true;
        }
    }
    return QGroupBox::eventFilter(watched, event);
}

bool ButtonGroupController::event(QEvent *event)
{
    if (event->type() == QEvent::Show)
        updateAccessibility();
    return QGroupBox::event(event);
}

void ButtonGroupController::updateAccessibility()
{
    // A name set by the owner stays; only the one set here follows.
    m_accessibleName.refresh(title());
    // The group speaks as the button it selects.
    QString description;
    const int position = value() - minimumValue();
    if (position >= 0 && position < m_buttons.size()) {
        QAbstractButton *button = m_buttons.at(position);
        description = !button->accessibleName().isEmpty() ? button->accessibleName()
            : !button->text().isEmpty()                   ? QString(button->text()).remove(QLatin1Char('&'))
                                        : AccessibleNameFallback::readable(button->objectName());
    }
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

} // namespace CommonController_MemAPI
