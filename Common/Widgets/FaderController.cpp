#include "Common/Widgets/FaderController.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace CommonController_MemAPI {

namespace {

constexpr double FineFactor = 4.0;
constexpr int WheelUnit = 120;
constexpr int RampStep = 5;

} // namespace

FaderController::FaderController(QWidget *parent)
    : KnobArtworkController(parent)
{
    m_rampTimer.setParent(this); // findable by name, e.g. by tests
    m_rampTimer.setSingleShot(true);
    m_rampTimer.setObjectName(QStringLiteral("rampTimer"));
    connect(&m_rampTimer, &QTimer::timeout, this, qOverload<>(&FaderController::ramp));
    m_doubleClickTimer.setSingleShot(true);
    connect(&m_doubleClickTimer, &QTimer::timeout, this, &FaderController::doubleClickTimeout);
}

FaderController::~FaderController() = default;

void FaderController::setOrientation(Qt::Orientation orientation)
{
    if (orientation == m_orientation)
        return;
    m_orientation = orientation;
    updateGeometry();
    update();
}

void FaderController::setEnableDoubleClick(bool enable)
{
    m_enableDoubleClick = enable;
}

void FaderController::setReverse(bool reverse)
{
    if (reverse == m_reverse)
        return;
    m_reverse = reverse;
    update();
}

void FaderController::setOperationType(OperationType type)
{
    m_operationType = type;
}

QSize FaderController::sizeHint() const
{
    QSize size = m_artwork.background().defaultSize();
    if (size.isEmpty())
        size = m_orientation == Qt::Vertical ? QSize(28, 160) : QSize(160, 28);
    return (QSizeF(size) * scale()).toSize();
}

QSizeF FaderController::thumbSize() const
{
    return QSizeF(m_artwork.knob().defaultSize()) * scale();
}

QRectF FaderController::thumbRect() const
{
    const QSizeF thumb = thumbSize();
    const double n = m_reverse ? 1.0 - normalized() : normalized();
    if (m_orientation == Qt::Vertical)
        return QRectF(
            QPointF(0.5 * (width() - thumb.width()), (1.0 - n) * (height() - thumb.height())), thumb);
    return QRectF(QPointF(n * (width() - thumb.width()), 0.0), thumb);
}

bool FaderController::isOnThumb(const QPoint &position) const
{
    const QRectF rect = thumbRect();
    return !rect.isEmpty() && rect.contains(position);
}

double FaderController::trackPosition(const QPoint &position) const
{
    const QSizeF thumb = thumbSize();
    if (m_orientation == Qt::Vertical) {
        const double length = height() - thumb.height();
        return length > 0 ? 1.0 - (position.y() - thumb.height() / 2) / length : 0.0;
    }
    const double length = width() - thumb.width();
    return length > 0 ? (position.x() - thumb.width() / 2) / length : 0.0;
}

void FaderController::anchorAt(const QPoint &position)
{
    m_anchorNormalized = normalized();
    m_anchorPosition = position;
    m_lastPosition = position;
}

void FaderController::startDrag(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    if (!m_dragging)
        beginEdit();
    m_dragging = true;
    m_fine = modifiers == Qt::ShiftModifier;
    anchorAt(position);
    emit drag(true);
    if (m_operationType == Ramp)
        ramp(false);
}

void FaderController::endDrag()
{
    m_rampTimer.stop();
    ValueController::endDrag();
}

void FaderController::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isEnabled()) {
        QWidget::mousePressEvent(event);
        return;
    }
    event->accept();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    const QPoint position = event->position().toPoint();
    const bool onThumb = isOnThumb(position);
    if (modifiers == Qt::ControlModifier) {
        if (onThumb || m_operationType == Jump)
            gestureSetDefault(modifiers);
        return;
    }
    if (m_dragging) // a second press without a release: keep one edit bracket
        endDrag();
    if (!onThumb) {
        switch (m_operationType) {
        case Touch: return;
        case Jump: {
            beginEdit();
            m_dragging = true; // the jump and the drag after it share one edit
            const float before = normalized();
            const double r = trackPosition(position);
            setNormalized(float(m_reverse ? 1.0 - r : r));
            if (modifiers != Qt::NoModifier && normalized() != before)
                emit modifiersChange(this, modifiers);
            if (m_enableDoubleClick) {
                m_justJumped = true;
                m_doubleClickTimer.start(QApplication::doubleClickInterval());
            }
            break;
        }
        case Ramp:
        case Relative: break;
        }
    }
    startDrag(position, modifiers);
}

void FaderController::mouseMoveEvent(QMouseEvent *event)
{
    if (!acceptDragStep(event))
        return;
    const QPoint position = event->position().toPoint();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    setFine(modifiers == Qt::ShiftModifier);
    if (m_operationType != Ramp) {
        const QSizeF thumb = thumbSize();
        const double factor = m_fine ? FineFactor : 1.0;
        double delta = 0.0;
        if (m_orientation == Qt::Vertical) {
            const double length = height() - thumb.height();
            delta = length > 0 ? (m_anchorPosition.y() - position.y()) / length / factor : 0.0;
        } else {
            const double length = width() - thumb.width();
            delta = length > 0 ? (position.x() - m_anchorPosition.x()) / length / factor : 0.0;
        }
        const float before = normalized();
        setNormalized(float(m_reverse ? m_anchorNormalized - delta : m_anchorNormalized + delta));
        if (modifiers != Qt::NoModifier && normalized() != before)
            emit modifiersChange(this, modifiers);
    }
    m_lastPosition = position;
}

void FaderController::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (m_enableDoubleClick && event->button() == Qt::LeftButton && isEnabled() && !m_justJumped) {
        const QPoint position = event->position().toPoint();
        if (isOnThumb(position) || m_operationType == Jump) {
            event->accept();
            gestureSetDefault(event->modifiers());
            return;
        }
    }
    // Otherwise the second click is one more press.
    mousePressEvent(event);
}

void FaderController::doubleClickTimeout()
{
    m_justJumped = false;
}

void FaderController::ramp()
{
    ramp(true);
}

void FaderController::ramp(bool repeat)
{
    if (!m_dragging || m_operationType != Ramp)
        return;
    const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
    const int minimum = minimumValue();
    const int maximum = maximumValue();
    // The target spans the range less one; a pointer past the end of the
    // track still reaches the end through the clamp of setValue().
    const int offset = int(trackPosition(m_lastPosition) * (maximum - minimum - 1) + 0.5);
    const int target = m_reverse ? maximum - offset : minimum + offset;
    const int step = (modifiers & Qt::ShiftModifier) ? 1 : RampStep;
    const int current = value();
    int next = current;
    if (current < target)
        next = std::min(current + step, target);
    else if (current > target)
        next = std::max(current - step, target);

    const float before = normalized();
    setValue(next);
    const bool moved = normalized() != before;
    if (modifiers != Qt::NoModifier && moved)
        emit modifiersChange(this, modifiers);
    if (moved)
        m_rampTimer.start(repeat ? RampRepeatDelay : RampFirstDelay);
}

void FaderController::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (!isEnabled())
        return;
    setFocus(Qt::MouseFocusReason);
    const int unit = (event->modifiers() & Qt::ShiftModifier) ? 3 * WheelUnit : WheelUnit;
    int steps = m_wheel.take(WheelAccumulator::dominantDelta(event->angleDelta()), unit);
    if (m_reverse)
        steps = -steps;
    if (steps != 0)
        gestureSetValue(value() + steps, event->modifiers());
}

void FaderController::keyPressEvent(QKeyEvent *event)
{
    if (!isEnabled()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const bool vertical = m_orientation == Qt::Vertical;
    int delta = 0;
    switch (event->key()) {
    case Qt::Key_Left: delta = vertical ? 0 : -1; break;
    case Qt::Key_Right: delta = vertical ? 0 : 1; break;
    case Qt::Key_Down: delta = vertical ? -1 : 0; break;
    case Qt::Key_Up: delta = vertical ? 1 : 0; break;
    case Qt::Key_PageUp: delta = 10; break;
    case Qt::Key_PageDown: delta = -10; break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
    if (delta == 0) // the arrows across the fader do nothing
        return;
    gestureSetValue(value() + (m_reverse ? -delta : delta), event->modifiers());
}

void FaderController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled())
            endDrag();
        update();
    }
}

void FaderController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal dpr = devicePixelRatioF();

    if (m_artwork.background().isValid())
        m_artwork.background().paint(&painter, QRectF(rect()), dpr);

    const QRectF thumb = thumbRect();
    const QSize thumbPixels = thumb.size().toSize();
    if (thumbPixels.isEmpty())
        return;
    // Whole pixels keep the cached layers sharp.
    const QPointF topLeft(std::round(thumb.x()), std::round(thumb.y()));
    if (m_artwork.shadow().isValid())
        painter.drawPixmap(
            topLeft, m_artwork.shadow().blurred(thumbPixels, dpr, m_artwork.shadowBlur() * scale()));
    if (m_artwork.knob().isValid()) {
        painter.setOpacity(m_artwork.knobOpacity(isEnabled()));
        painter.drawPixmap(topLeft, m_artwork.knob().pixmap(thumbPixels, dpr));
    }
    focusMark().paint(painter, QRectF(topLeft, thumb.size()), FocusMark::Rounded, scale());
}

} // namespace CommonController_MemAPI
