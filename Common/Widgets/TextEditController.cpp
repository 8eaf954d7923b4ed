#include "Common/Widgets/TextEditController.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>

#include "Common/Widgets/TextEditLineEdit.h"

namespace CommonController_MemAPI {

namespace {

constexpr double FineFactor = 4.0;
constexpr int WheelUnit = 120;

} // namespace

TextEditController::TextEditController(QWidget *parent)
    : ValueController(parent)
{
    updateAccessibleText(); // the shown text, which the base could not read yet
}

TextEditControllerPrivate::LineEdit *TextEditController::typingField()
{
    // Built for the first edit: a panel has many fields and few are typed in.
    if (!m_pLineEdit) {
        m_pLineEdit = new TextEditControllerPrivate::LineEdit(this);
        m_pLineEdit->hide();
        m_pLineEdit->setMaxLength(m_textMaxLength);
        if (testAttribute(Qt::WA_SetStyle))
            m_pLineEdit->setStyle(style());
        connect(m_pLineEdit, &QLineEdit::editingFinished, this, &TextEditController::editFinish);
    }
    return m_pLineEdit;
}

TextEditController::~TextEditController() = default;

void TextEditController::setPostfix(const QString &postfix)
{
    if (postfix == m_postfix)
        return;
    m_postfix = postfix;
    updateAccessibleText();
    update();
}

void TextEditController::setExpandUnit(bool expand)
{
    m_expandUnit = expand;
}

void TextEditController::setAlignment(Qt::Alignment alignment)
{
    if (alignment == m_alignment)
        return;
    m_alignment = alignment;
    if (m_pLineEdit)
        m_pLineEdit->setAlignment(alignment);
    update();
}

void TextEditController::setTextTrim(bool trim)
{
    if (trim == m_textTrim)
        return;
    m_textTrim = trim;
    update();
}

void TextEditController::setTextLeftMargin(int margin)
{
    if (margin == m_textLeftMargin)
        return;
    m_textLeftMargin = margin;
    update();
}

void TextEditController::setTextRightMargin(int margin)
{
    if (margin == m_textRightMargin)
        return;
    m_textRightMargin = margin;
    update();
}

void TextEditController::setTextMaxLength(int length)
{
    if (length == m_textMaxLength)
        return;
    m_textMaxLength = length;
    if (m_pLineEdit)
        m_pLineEdit->setMaxLength(length);
}

void TextEditController::setStepSize(int step)
{
    m_stepSize = step;
}

QSize TextEditController::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return QSize(metrics.horizontalAdvance(QStringLiteral("00000.0")) + m_textLeftMargin + m_textRightMargin,
        metrics.height());
}

bool TextEditController::isEditing() const
{
    return m_pLineEdit && !m_pLineEdit->isHidden();
}

QString TextEditController::valueText() const
{
    const QString text = string();
    return m_textTrim ? text.trimmed() : text;
}

QString TextEditController::shownText() const
{
    QString text = valueText();
    if (text.isEmpty())
        return text;
    if (!m_postfix.isEmpty() && !text.endsWith(m_postfix))
        text += m_postfix;
    return text;
}

QString TextEditController::editText() const
{
    QString text = valueText();
    if (!m_postfix.isEmpty() && text.endsWith(m_postfix))
        text.chop(m_postfix.size());
    if (!m_expandUnit || text.isEmpty())
        return text;
    double multiplier = 0.0;
    switch (text.back().toLower().unicode()) {
    case 'g': multiplier = 1e9; break;
    case 'm': multiplier = 1e6; break;
    case 'k': multiplier = 1e3; break;
    default: return text;
    }
    bool ok = false;
    const double number = QStringView(text).chopped(1).toDouble(&ok);
    return ok ? QString::number(number * multiplier, 'g', 6) : text;
}

void TextEditController::edit()
{
    if (!isEnabled() || isEditing())
        return;
    typingField();
    m_pLineEdit->setGeometry(rect());
    m_pLineEdit->setFont(font());
    m_pLineEdit->setAlignment(m_alignment);
    QPalette palette = m_pLineEdit->palette();
    palette.setColor(QPalette::Base, this->palette().color(QPalette::Window));
    m_pLineEdit->setPalette(palette);
    m_pLineEdit->setText(editText());
    m_pLineEdit->selectAll();
    m_pLineEdit->show();
    m_pLineEdit->setFocus(Qt::OtherFocusReason);
    if (m_pLineEdit->hasFocus()) {
        update();
        emit textEdit(true);
    } else {
        m_pLineEdit->hide();
    }
}

void TextEditController::closeLineEdit()
{
    // Moving the focus away must not finish the edit a second time.
    m_pLineEdit->setFinishSuppressed(true);
    if (m_pLineEdit->hasFocus())
        setFocus(Qt::OtherFocusReason);
    m_pLineEdit->hide();
    m_pLineEdit->setFinishSuppressed(false);
    update();
}

void TextEditController::editFinish()
{
    if (!isEditing() || m_pLineEdit->isFinishSuppressed())
        return;
    closeLineEdit();
    const QString text = m_pLineEdit->text();
    if (text != editText()) {
        const int before = value();
        beginEdit();
        setString(text);
        endEdit();
        const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
        if (modifiers != Qt::NoModifier && value() != before)
            emit modifiersChange(this, modifiers);
    }
    emit textEdit(false);
}

void TextEditController::editCancel()
{
    if (!isEditing())
        return;
    m_pLineEdit->setText(editText());
    closeLineEdit();
    emit textEdit(false);
}

void TextEditController::paintEvent(QPaintEvent *)
{
    if (isEditing())
        return; // the line edit covers the control
    QPainter painter(this);
    focusMark().paint(painter, QRectF(rect()), FocusMark::Rounded, scale());
    const QString text = shownText();
    if (text.isEmpty())
        return;
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(palette().color(foregroundRole()));
    const QRectF area
        = QRectF(rect()).adjusted(m_textLeftMargin * scale(), 0, -m_textRightMargin * scale(), 0);
    painter.drawText(area, int(m_alignment) | Qt::TextSingleLine, text);
}

void TextEditController::anchorAt(const QPoint &position)
{
    m_anchorValue = value();
    m_anchorPosition = position;
    m_lastPosition = position;
}

void TextEditController::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isEnabled()) {
        QWidget::mousePressEvent(event);
        return;
    }
    event->accept();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (modifiers == Qt::ControlModifier) {
        gestureSetDefault(modifiers);
        return;
    }
    endDrag();
    beginEdit();
    m_dragging = true;
    m_fine = modifiers == Qt::ShiftModifier;
    anchorAt(event->position().toPoint());
    emit drag(true);
}

void TextEditController::mouseMoveEvent(QMouseEvent *event)
{
    if (!acceptDragStep(event))
        return;
    const QPoint position = event->position().toPoint();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    setFine(modifiers == Qt::ShiftModifier);
    const int before = value();
    int steps = linearDragSteps(position - m_anchorPosition, m_fine ? FineFactor : 1.0);
    if (!m_fine)
        steps *= m_stepSize;
    setValue(m_anchorValue + steps);
    if (modifiers != Qt::NoModifier && value() != before)
        emit modifiersChange(this, modifiers);
    m_lastPosition = position;
}

void TextEditController::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    event->accept();
    endDrag();
    edit();
}

void TextEditController::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (!isEnabled() || isEditing())
        return;
    setFocus(Qt::MouseFocusReason);
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    const int unit = shift && m_stepSize == 1 ? 3 * WheelUnit : WheelUnit;
    int steps = m_wheel.take(WheelAccumulator::dominantDelta(event->angleDelta()), unit);
    if (!shift)
        steps *= m_stepSize;
    if (steps != 0)
        gestureSetValue(value() + steps, event->modifiers());
}

void TextEditController::keyPressEvent(QKeyEvent *event)
{
    if (!isEnabled() || isEditing()) {
        QWidget::keyPressEvent(event);
        return;
    }
    int delta = 0;
    switch (event->key()) {
    case Qt::Key_Up: delta = 1; break;
    case Qt::Key_Down: delta = -1; break;
    case Qt::Key_PageUp: delta = 10 * m_stepSize; break;
    case Qt::Key_PageDown: delta = -10 * m_stepSize; break;
    case Qt::Key_Left:
    case Qt::Key_Right: event->accept(); return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        // Typing a value starts from the keyboard as from a double click.
        event->accept();
        edit();
        return;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
    gestureSetValue(value() + delta, event->modifiers());
}

void TextEditController::keyReleaseEvent(QKeyEvent *event)
{
    if (isEnabled() && !isEditing() && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        event->accept();
        return;
    }
    QWidget::keyReleaseEvent(event);
}

void TextEditController::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (isEditing())
        m_pLineEdit->setGeometry(rect());
}

void TextEditController::hideEvent(QHideEvent *event)
{
    editFinish(); // hiding commits what was typed
    ValueController::hideEvent(event);
}

void TextEditController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endDrag();
    // The field took the font when the edit began; a scale change meanwhile
    // changes it.
    if (event->type() == QEvent::FontChange && isEditing())
        m_pLineEdit->setFont(font());
}

} // namespace CommonController_MemAPI
