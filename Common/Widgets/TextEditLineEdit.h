#pragma once

#include <QLineEdit>

namespace CommonController_MemAPI {

class TextEditController;

namespace TextEditControllerPrivate {

// The in-place editor of a TextEditController: a frameless line edit over
// the control. Losing the focus finishes the edit like Return does, unless
// finishing is suppressed (while its own context menu is open, or while the
// control is already closing it); Escape cancels.
class LineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit LineEdit(TextEditController *control);

    TextEditController *control() const { return m_pControl; }
    bool isFinishSuppressed() const { return m_finishSuppressed; }
    void setFinishSuppressed(bool suppressed) { m_finishSuppressed = suppressed; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    TextEditController *m_pControl;
    bool m_finishSuppressed = false;
};

} // namespace TextEditControllerPrivate
} // namespace CommonController_MemAPI
