#include "Common/Widgets/KnobController.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace CommonController_MemAPI {

namespace {

// The shortened constants are the ones the angle arithmetic is defined with.
constexpr double Degree = 0.017453292519888888;
constexpr double Pi = 3.14159265358;
constexpr double TwoPi = 6.28318530716;
constexpr double FineFactor = 4.0;
constexpr int WheelUnit = 120;

bool isExactlyShift(Qt::KeyboardModifiers modifiers)
{
    return modifiers == Qt::ShiftModifier;
}

} // namespace

KnobController::KnobController(QWidget *parent)
    : KnobArtworkController(parent)
{ }

KnobController::~KnobController() = default;

void KnobController::setStartAngle(double degrees)
{
    if (degrees == m_startAngle)
        return;
    m_startAngle = degrees;
    update();
}

void KnobController::setSpanAngle(double degrees)
{
    if (degrees == m_spanAngle)
        return;
    m_spanAngle = degrees;
    update();
}

void KnobController::setInside(double radius)
{
    if (radius == m_inside)
        return;
    m_inside = radius;
    m_outside = std::max(m_outside, radius);
    update();
}

void KnobController::setOutside(double radius)
{
    if (radius == m_outside)
        return;
    m_outside = radius;
    m_inside = std::min(m_inside, radius);
    update();
}

void KnobController::setThick(double width)
{
    if (width == m_thick)
        return;
    m_thick = width;
    update();
}

void KnobController::setKnobType(KnobType type)
{
    if (type == m_knobType)
        return;
    m_knobType = type;
    update();
}

void KnobController::setOperationType(OperationType type)
{
    m_operationType = type;
}

void KnobController::setValueChangeStep(int step)
{
    m_valueChangeStep = step;
}

QSize KnobController::sizeHint() const
{
    QSize size = m_artwork.background().defaultSize().expandedTo(m_artwork.knob().defaultSize());
    if (size.isEmpty())
        size = QSize(36, 36);
    return (QSizeF(size) * scale()).toSize();
}

double KnobController::pointerAngle(const QPoint &position) const
{
    return std::atan2(double(position.y() - height() / 2), double(position.x() - width() / 2));
}

float KnobController::angleToNormalized(double angle) const
{
    const double span = m_spanAngle * Degree;
    if (!(span > 0.0))
        return 0.0f;
    const double gap = (360.0 - m_spanAngle) * 0.5 * Degree;
    const double start = (m_startAngle - 90.0) * Degree;
    double t = angle - (start - gap);
    if (t < -64 * TwoPi) // an absurd start angle; keep the loop short
        t = std::fmod(t, TwoPi);
    while (t < 0.0)
        t += TwoPi;
    return float(std::clamp((t - gap) / span, 0.0, 1.0));
}

void KnobController::anchorAt(const QPoint &position)
{
    m_anchorValue = value();
    m_anchorNormalized = normalized();
    m_anchorPosition = position;
    m_lastPosition = position;
    m_rotation = 0.0;
}

void KnobController::jumpToAngle(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    const float before = normalized();
    setNormalized(angleToNormalized(pointerAngle(position)));
    if (modifiers != Qt::NoModifier && normalized() != before)
        emit modifiersChange(this, modifiers);
}

void KnobController::mousePressEvent(QMouseEvent *event)
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
    if (m_dragging) // a second press without a release: keep one edit bracket
        endDrag();
    const QPoint position = event->position().toPoint();
    beginEdit();
    if (m_operationType == Circular && !isExactlyShift(modifiers) && !(modifiers & Qt::ControlModifier))
        jumpToAngle(position, modifiers);
    m_dragging = true;
    m_fine = isExactlyShift(modifiers);
    anchorAt(position);
    emit drag(true);
}

void KnobController::mouseMoveEvent(QMouseEvent *event)
{
    if (!acceptDragStep(event))
        return;
    const QPoint position = event->position().toPoint();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    const bool fine = isExactlyShift(modifiers);
    if (fine != m_fine && m_operationType == Circular
        && !(modifiers & (Qt::ShiftModifier | Qt::ControlModifier)))
        jumpToAngle(position, modifiers);
    setFine(fine);

    double delta = pointerAngle(position) - pointerAngle(m_lastPosition);
    if (delta > Pi)
        delta -= TwoPi;
    else if (delta < -Pi)
        delta += TwoPi;
    m_rotation += delta;

    const double factor = m_fine ? FineFactor : 1.0;
    if (m_operationType == Linear) {
        const int before = value();
        int steps = linearDragSteps(position - m_anchorPosition, factor);
        if (!m_fine)
            steps *= m_valueChangeStep;
        setValue(m_anchorValue + steps);
        if (modifiers != Qt::NoModifier && value() != before)
            emit modifiersChange(this, modifiers);
    } else if (m_spanAngle != 0.0) {
        const float before = normalized();
        setNormalized(float(m_rotation / (m_spanAngle * Degree) / factor + m_anchorNormalized));
        if (modifiers != Qt::NoModifier && normalized() != before)
            emit modifiersChange(this, modifiers);
    }
    m_lastPosition = position;
}

void KnobController::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && isEnabled() && (event->modifiers() & Qt::ControlModifier)) {
        event->accept();
        gestureSetDefault(event->modifiers());
        return;
    }
    // Otherwise the second click is one more press.
    mousePressEvent(event);
}

void KnobController::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (!isEnabled())
        return;
    setFocus(Qt::MouseFocusReason);
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    const int unit = shift && m_valueChangeStep == 1 ? 3 * WheelUnit : WheelUnit;
    int steps = m_wheel.take(WheelAccumulator::dominantDelta(event->angleDelta()), unit);
    if (!shift)
        steps *= m_valueChangeStep;
    if (steps != 0)
        gestureSetValue(value() + steps, event->modifiers());
}

void KnobController::keyPressEvent(QKeyEvent *event)
{
    if (!isEnabled()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int current = value();
    int target = 0;
    switch (event->key()) {
    case Qt::Key_Home: target = minimumValue(); break;
    case Qt::Key_End: target = maximumValue(); break;
    case Qt::Key_Left:
    case Qt::Key_Down: target = current - 1; break;
    case Qt::Key_Up:
    case Qt::Key_Right: target = current + 1; break;
    case Qt::Key_PageUp: target = current + 10 * m_valueChangeStep; break;
    case Qt::Key_PageDown: target = current - 10 * m_valueChangeStep; break;
    default: QWidget::keyPressEvent(event); return;
    }
    event->accept();
    gestureSetValue(target, event->modifiers());
}

void KnobController::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled())
            endDrag(); // a drag must not outlive the control's usability
        update();
    }
}

QRectF KnobController::centredRect(const SvgLayer &layer) const
{
    const QSize size = (QSizeF(layer.defaultSize()) * scale()).toSize();
    return QRectF(QPointF((width() - size.width()) * 0.5, (height() - size.height()) * 0.5), QSizeF(size));
}

void KnobController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal dpr = devicePixelRatioF();
    const float n = normalized();

    if (m_artwork.background().isValid())
        m_artwork.background().paint(&painter, centredRect(m_artwork.background()), dpr);

    if (m_artwork.shadow().isValid()) {
        const QRectF rect = centredRect(m_artwork.shadow());
        painter.drawPixmap(rect.topLeft(),
            m_artwork.shadow().blurred(rect.size().toSize(), dpr, m_artwork.shadowBlur() * scale()));
    }

    if (m_artwork.knob().isValid()) {
        const QRectF rect = centredRect(m_artwork.knob());
        const QPixmap knob = m_artwork.knob().pixmap(rect.size().toSize(), dpr);
        painter.save();
        painter.setOpacity(m_artwork.knobOpacity(isEnabled()));
        if (m_knobType == RotateKnob) {
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.translate(width() * 0.5, height() * 0.5);
            painter.rotate(m_spanAngle * n + m_startAngle);
            painter.drawPixmap(QPointF(-rect.width() * 0.5, -rect.height() * 0.5), knob);
        } else {
            painter.drawPixmap(rect.topLeft(), knob);
        }
        painter.restore();
    }

    if (m_knobType == LineIndex) {
        const QPalette::ColorGroup group = !isEnabled() ? QPalette::Disabled
            : hasFocus()                                ? QPalette::Active
                                                        : QPalette::Inactive;
        const double theta = (m_spanAngle * n + m_startAngle - 90.0) * Degree;
        const QPointF direction(std::cos(theta), std::sin(theta));
        const QPointF centre(width() * 0.5, height() * 0.5);
        painter.setPen(QPen(palette().color(group, QPalette::WindowText), m_thick * scale(), Qt::SolidLine,
            Qt::FlatCap, Qt::BevelJoin));
        painter.drawLine(
            centre + direction * (m_inside * scale()), centre + direction * (m_outside * scale()));
    }

    focusMark().paint(painter, QRectF(rect()), FocusMark::Round, scale());
}

} // namespace CommonController_MemAPI
