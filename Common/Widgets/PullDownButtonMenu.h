#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QPointer>

namespace CommonController_MemAPI {

class PullDownButtonController;

namespace PullDownButtonControllerPrivate {

// The menu a pull-down button opens. The release of the click that opened
// it lands in the menu; within the first moments it selects nothing.
class Menu : public QMenu
{
    Q_OBJECT

public:
    static constexpr int ReleaseGuardMs = 100;

    explicit Menu(PullDownButtonController *button);

    PullDownButtonController *button() const { return m_pButton; }
    qint64 age() const { return m_timer.elapsed(); }

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QPointer<PullDownButtonController> m_pButton;
    QElapsedTimer m_timer;
};

} // namespace PullDownButtonControllerPrivate
} // namespace CommonController_MemAPI
