#include "Common/Widgets/TextEditLineEdit.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

#include "Common/Widgets/TextEditController.h"

namespace CommonController_MemAPI::TextEditControllerPrivate {

LineEdit::LineEdit(TextEditController *control)
    : QLineEdit(control)
    , m_pControl(control)
{
    setFrame(false);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    hide();
}

void LineEdit::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        m_pControl->editCancel();
        return;
    }
    QLineEdit::keyPressEvent(event);
    // QLineEdit passes Return on to its parent, where it would open the edit
    // it has just finished.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept();
}

void LineEdit::focusOutEvent(QFocusEvent *event)
{
    QLineEdit::focusOutEvent(event);
    // QLineEdit reports a focus loss only when the text was edited; an
    // untouched editor must close as well.
    if (!isHidden() && !m_finishSuppressed)
        emit editingFinished();
}

void LineEdit::contextMenuEvent(QContextMenuEvent *event)
{
    QPointer<LineEdit> self(this);
    QMenu menu(this);
    QAction *cut = menu.addAction(tr("Cut"), this, &QLineEdit::cut);
    cut->setEnabled(hasSelectedText());
    QAction *copy = menu.addAction(tr("Copy"), this, &QLineEdit::copy);
    copy->setEnabled(hasSelectedText());
    menu.addAction(tr("Paste"), this, &QLineEdit::paste);
    menu.addSeparator();
    menu.addAction(tr("Select All"), this, &QLineEdit::selectAll);
    menu.addSeparator();
    menu.addAction(tr("Cancel"), m_pControl, &TextEditController::editCancel);

    // The menu takes the focus; that must not commit the text.
    m_finishSuppressed = true;
    menu.exec(event->globalPos());
    if (!self)
        return;
    m_finishSuppressed = false;
    if (!isHidden())
        setFocus(Qt::PopupFocusReason);
    event->accept();
}

} // namespace CommonController_MemAPI::TextEditControllerPrivate
