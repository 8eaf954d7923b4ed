#include "Common/Widgets/PullDownButtonController.h"

#include <QAction>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "Common/Widgets/PullDownButtonMenu.h"

namespace CommonController_MemAPI {

namespace {

// How long a closed menu lives on; the events of its last moments may
// still be on their way to it.
constexpr int MenuDisposalMs = 2000;
constexpr int PageSteps = 5;

} // namespace

PullDownButtonController::PullDownButtonController(QWidget *parent)
    : PushButtonController(parent)
{
    setSvgAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

PullDownButtonController::~PullDownButtonController() = default;

void PullDownButtonController::setTextList(const QStringList &list)
{
    if (list == m_textList)
        return;
    m_textList = list;
    setMaximumValue(list.isEmpty() ? minimumValue() : minimumValue() + int(list.size()) - 1);
    updateAccessibility();
    update();
}

void PullDownButtonController::setEmptyText(const QString &text)
{
    if (text == m_emptyText)
        return;
    m_emptyText = text;
    updateAccessibility();
    update();
}

void PullDownButtonController::setInvisibleText(const QString &text)
{
    if (text == m_invisibleText)
        return;
    m_invisibleText = text;
    updateAccessibility();
    update();
}

void PullDownButtonController::setAutoPullDown(bool enabled)
{
    m_autoPullDown = enabled;
}

void PullDownButtonController::setIntProperty(int &member, int value)
{
    if (value == member)
        return;
    member = value;
    update();
}

void PullDownButtonController::setIndexWidth(int width)
{
    setIntProperty(m_indexWidth, width);
}
void PullDownButtonController::setIndexMargin(int margin)
{
    setIntProperty(m_indexMargin, margin);
}
void PullDownButtonController::setIndexOrigin(int origin)
{
    setIntProperty(m_indexOrigin, origin);
}

void PullDownButtonController::setVisibleList(const QList<bool> &list)
{
    if (list == m_visibleList)
        return;
    m_visibleList = list;
    updateAccessibility();
    update();
}

bool PullDownButtonController::isHidden(int position) const
{
    return position >= 0 && position < m_visibleList.size() && !m_visibleList.at(position);
}

QString PullDownButtonController::displayText() const
{
    const int current = position();
    if (isHidden(current) && !m_invisibleText.isEmpty())
        return m_invisibleText;
    QString text;
    if (current >= 0 && current < m_textList.size())
        text = m_textList.at(current);
    return text.isEmpty() ? m_emptyText : text;
}

void PullDownButtonController::valueChanged()
{
    updateAccessibility();
    update();
}

void PullDownButtonController::buttonPress()
{
    if (m_autoPullDown)
        openPullDown();
}

void PullDownButtonController::buttonRelease() { }

void PullDownButtonController::buttonToggle(bool) { }

void PullDownButtonController::openPullDown()
{
    if (m_textList.isEmpty())
        return;

    auto *menu = new PullDownButtonControllerPrivate::Menu(this);
    m_pMenu = menu;
    menu->setFont(font());
    menu->setStyle(style());
    menu->setPalette(palette());
    menu->setAccessibleName(!accessibleName().isEmpty() ? accessibleName()
            : !text().isEmpty()                         ? text()
                                                        : AccessibleNameFallback::readable(objectName()));

    m_actions.clear();
    const int current = position();
    for (int i = 0; i < m_textList.size(); ++i) {
        const QString text = m_indexWidth > 0
            ? QString::number(m_indexOrigin + i) + QLatin1Char(' ') + m_textList.at(i)
            : m_textList.at(i);
        QAction *action = menu->addAction(text);
        action->setCheckable(true);
        action->setChecked(i == current);
        if (isHidden(i))
            action->setVisible(false);
        m_actions.append(action);
    }
    if (current >= 0 && current < m_actions.size())
        menu->setActiveAction(m_actions.at(current));

    menu->installEventFilter(this);
    QPointer<PullDownButtonController> alive(this);
    QAction *chosen = menu->exec(mapToGlobal(QPoint(0, height())));
    if (!alive)
        return;
    // The press that opened the menu never saw its release.
    setDown(false);
    if (window())
        window()->activateWindow();

    if (chosen) {
        const int index = int(m_actions.indexOf(chosen));
        if (index >= 0) {
            const int before = value();
            gestureSetValue(minimumValue() + index, lastModifiers());
            if (value() != before)
                emit changed();
        }
        emit selected();
    }

    m_actions.clear();
    if (menu) {
        menu->removeEventFilter(this);
        QTimer::singleShot(MenuDisposalMs, menu, [menu] { delete menu; });
    }
}

void PullDownButtonController::moveActiveAction(int direction, int steps)
{
    QList<int> candidates;
    for (int i = 0; i < m_actions.size(); ++i) {
        if (m_actions.at(i)->isVisible() && m_actions.at(i)->isEnabled())
            candidates.append(i);
    }
    if (candidates.isEmpty() || !m_pMenu)
        return;
    const int active = int(candidates.indexOf(int(m_actions.indexOf(m_pMenu->activeAction()))));
    int target;
    if (active < 0)
        target = direction > 0 ? 0 : int(candidates.size()) - 1;
    else
        target = std::clamp(active + direction * steps, 0, int(candidates.size()) - 1);
    m_pMenu->setActiveAction(m_actions.at(candidates.at(target)));
}

bool PullDownButtonController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_pMenu || event->type() != QEvent::KeyPress)
        return PushButtonController::eventFilter(watched, event);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Up: moveActiveAction(-1, 1); return true;
    case Qt::Key_Down: moveActiveAction(1, 1); return true;
    case Qt::Key_PageUp: moveActiveAction(-1, PageSteps); return true;
    case Qt::Key_PageDown: moveActiveAction(1, PageSteps); return true;
    default: return false;
    }
}

void PullDownButtonController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintButton(painter);

    const int current = position();
    const bool hasEntry = current >= 0 && current < m_textList.size();
    if (!hasEntry && m_emptyText.isEmpty()) {
        paintFocusMark(painter);
        return;
    }

    const QPalette::ColorGroup group
        = !isEnabled() ? QPalette::Disabled : (hasFocus() ? QPalette::Active : QPalette::Inactive);
    painter.setPen(palette().color(group, isOn() ? QPalette::HighlightedText : QPalette::ButtonText));
    painter.setFont(font());

    const double s = scale();
    QRectF textRect = QRectF(rect()).adjusted(
        textLeftMargin() * s, textTopMargin() * s, -textRightMargin() * s, -textBottomMargin() * s);
    if (m_indexWidth > 0) {
        const QRectF box(textRect.left(), textRect.top(), qRound(m_indexWidth * s), textRect.height());
        if (hasEntry)
            painter.drawText(box, Qt::AlignCenter, QString::number(m_indexOrigin + current));
        textRect.setLeft(textRect.left() + m_indexWidth * s + m_indexMargin * s);
    }
    painter.drawText(textRect, int(textAlignment()), displayText());
    paintFocusMark(painter);
}

void PullDownButtonController::updateAccessibility()
{
    PushButtonController::updateAccessibility();
    const QString description = displayText();
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

} // namespace CommonController_MemAPI
