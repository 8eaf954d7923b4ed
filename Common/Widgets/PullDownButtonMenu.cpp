#include "Common/Widgets/PullDownButtonMenu.h"

#include "Common/Widgets/PullDownButtonController.h"
#include "Common/Widgets/WidgetScale.h"

namespace CommonController_MemAPI::PullDownButtonControllerPrivate {

Menu::Menu(PullDownButtonController *button)
    : QMenu(button)
    , m_pButton(button)
{
    // getWidgetScale() walks from the pop-up to the button it belongs to.
    setProperty(OwnerWidgetProperty, QVariant::fromValue<QObject *>(button));
    m_timer.start();
}

void Menu::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_timer.elapsed() < ReleaseGuardMs) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    QMenu::mouseReleaseEvent(event);
}

} // namespace CommonController_MemAPI::PullDownButtonControllerPrivate
