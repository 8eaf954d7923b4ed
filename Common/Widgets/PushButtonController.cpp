#include "Common/Widgets/PushButtonController.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace CommonController_MemAPI {

PushButtonController::PushButtonController(QWidget *parent)
    : QPushButton(parent)
    , m_artwork(this)
    , m_accessibleName(this)
    , m_pFocusMark(new FocusMark(this))
{
    setFocusPolicy(Qt::NoFocus);
    setMaximumValue(1);

    connect(this, &QAbstractButton::pressed, this, &PushButtonController::buttonPress);
    connect(this, &QAbstractButton::released, this, &PushButtonController::buttonRelease);
    connect(this, &QAbstractButton::toggled, this, &PushButtonController::buttonToggle);
    connect(this, &QObject::objectNameChanged, this, [this] { updateAccessibility(); });
    if (auto *application = qobject_cast<QApplication *>(QCoreApplication::instance()))
        connect(application, &QApplication::focusChanged, this, &PushButtonController::focusChange);
}

PushButtonController::~PushButtonController()
{
    // QWidget's destructor may still move the focus; this part is gone then.
    if (auto *application = qobject_cast<QApplication *>(QCoreApplication::instance()))
        disconnect(application, &QApplication::focusChanged, this, &PushButtonController::focusChange);
}

void PushButtonController::setShadowBlur(double blur)
{
    if (m_artwork.setShadowBlur(blur))
        update();
}

void PushButtonController::setButtonDisableOpacity(double opacity)
{
    if (m_artwork.setDisableOpacity(opacity))
        update();
}

void PushButtonController::loadSvg(ButtonArtwork::Layer layer, const QString &path)
{
    if (m_artwork.load(layer, path))
        update();
}

bool PushButtonController::setMargin(int &member, int margin)
{
    margin = std::max(0, margin);
    if (margin == member)
        return false;
    member = margin;
    if (!text().isEmpty())
        update();
    return true;
}

void PushButtonController::setTextLeftMargin(int margin)
{
    setMargin(m_textLeftMargin, margin);
}
void PushButtonController::setTextRightMargin(int margin)
{
    setMargin(m_textRightMargin, margin);
}
void PushButtonController::setTextTopMargin(int margin)
{
    setMargin(m_textTopMargin, margin);
}
void PushButtonController::setTextBottomMargin(int margin)
{
    setMargin(m_textBottomMargin, margin);
}

void PushButtonController::setSvgAlignment(Qt::Alignment alignment)
{
    if (alignment == m_svgAlignment)
        return;
    m_svgAlignment = alignment;
    if (m_artwork.anyLoaded())
        update();
}

void PushButtonController::setTextAlignment(Qt::Alignment alignment)
{
    if (alignment == m_textAlignment)
        return;
    m_textAlignment = alignment;
    if (!text().isEmpty())
        update();
}

void PushButtonController::setOpacity(double opacity)
{
    if (opacity == m_opacity)
        return;
    m_opacity = opacity;
    update();
}

void PushButtonController::setCheckTrigger(CheckTrigger trigger)
{
    m_checkTrigger.setFlags(int(trigger));
}

void PushButtonController::setScale(double scale)
{
    if (storeScale(scale))
        update();
}

void PushButtonController::valueChangedRequest()
{
    valueChanged();
    emit valueChanged(value());
}

void PushButtonController::valueChanged()
{
    if (isCheckable()) {
        const bool checked = value() != minimumValue();
        if (checked != isChecked())
            setCheckedQuietly(checked);
    }
    updateAccessibility();
    update();
}

void PushButtonController::notifyModifiersChange(Qt::KeyboardModifiers modifiers)
{
    emit modifiersChange(this, modifiers);
}

void PushButtonController::setCheckedQuietly(bool checked)
{
    const bool wasSelfChange = m_selfChange;
    m_selfChange = true;
    setChecked(checked);
    m_selfChange = wasSelfChange;
}

bool PushButtonController::isOn() const
{
    return isCheckable() ? isChecked() : isDown();
}

void PushButtonController::setOn()
{
    if (!isEnabled() || !isCheckable() || isChecked())
        return;
    setCheckedQuietly(true);
    gestureSetValue(maximumValue(), Qt::NoModifier);
}

void PushButtonController::setOff()
{
    if (!isEnabled() || !isCheckable() || !isChecked())
        return;
    setCheckedQuietly(false);
    gestureSetValue(minimumValue(), Qt::NoModifier);
}

void PushButtonController::buttonPress()
{
    if (!isCheckable())
        gestureSetValue(maximumValue(), m_modifiers);
}

void PushButtonController::buttonRelease()
{
    if (!isCheckable())
        gestureSetValue(minimumValue(), m_modifiers);
}

void PushButtonController::buttonToggle(bool checked)
{
    updateAccessibility();
    if (m_selfChange || m_checkTrigger.togglesOnPress())
        return;
    gestureSetValue(checked ? maximumValue() : minimumValue(), m_modifiers);
}

void PushButtonController::focusChange()
{
    // A momentary button must not stay held when the window loses focus.
    if (focusPolicy() == Qt::NoFocus && isDown()) {
        setDown(false);
        buttonRelease();
    }
}

bool PushButtonController::hitButton(const QPoint &pos) const
{
    return rect().contains(pos);
}

bool PushButtonController::event(QEvent *event)
{
    if (event->type() == QEvent::Show)
        updateAccessibility();
    return QPushButton::event(event);
}

void PushButtonController::mousePressEvent(QMouseEvent *event)
{
    m_modifiers = event->modifiers();
    if (event->buttons() & Qt::RightButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    setInside(rect().contains(event->position().toPoint()));
    // The press may open a modal menu in which the owner deletes us.
    QPointer<PushButtonController> alive(this);
    QPushButton::mousePressEvent(event);
    if (!alive)
        return;
    if (event->button() != Qt::LeftButton || !isEnabled() || !isCheckable()
        || !m_checkTrigger.togglesOnPress())
        return;
    const bool checked = isChecked();
    if (m_checkTrigger.allowsToggleFrom(checked)) {
        setCheckedQuietly(!checked);
        gestureSetValue(!checked ? maximumValue() : minimumValue(), m_modifiers);
    }
}

void PushButtonController::mouseReleaseEvent(QMouseEvent *event)
{
    m_modifiers = event->modifiers();
    if (event->button() == Qt::RightButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    if (event->button() == Qt::LeftButton && isEnabled() && isCheckable()) {
        if (!m_checkTrigger.togglesOnPress() && m_checkTrigger.allowsToggleFrom(isChecked())) {
            QPushButton::mouseReleaseEvent(event);
            return;
        }
        // Press-triggered, or the transition is not allowed: a click
        // without a toggle.
        setDown(false);
        QWidget::mouseReleaseEvent(event);
        emit clicked(isChecked());
        emit released();
        return;
    }
    QPushButton::mouseReleaseEvent(event);
}

void PushButtonController::mouseMoveEvent(QMouseEvent *event)
{
    if (m_hover || m_inside)
        setInside(rect().contains(event->position().toPoint()));
    QPushButton::mouseMoveEvent(event);
}

void PushButtonController::setInside(bool inside)
{
    if (inside == m_inside)
        return;
    m_inside = inside;
    update();
    emit sideChanged();
}

void PushButtonController::enterEvent(QEnterEvent *event)
{
    m_hover = true;
    setInside(true);
    update();
    QPushButton::enterEvent(event);
}

void PushButtonController::leaveEvent(QEvent *event)
{
    m_hover = false;
    setInside(false);
    update();
    QPushButton::leaveEvent(event);
}

void PushButtonController::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        update();
}

QRectF PushButtonController::svgRect(const SvgLayer &layer) const
{
    return ButtonArtwork::place(layer, size(), scale(), m_svgAlignment);
}

void PushButtonController::keyPressEvent(QKeyEvent *event)
{
    m_modifiers = event->modifiers();
    // Return works like Space, as on a dialog's default button: it is the key
    // people try first on the button that opens a list.
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && isEnabled() && event->modifiers() == Qt::NoModifier) {
        event->accept();
        if (!event->isAutoRepeat())
            click();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void PushButtonController::nextCheckState()
{
    if (!m_checkTrigger.allowsToggleFrom(isChecked()))
        return;
    if (m_checkTrigger.togglesOnPress()) {
        // The mouse toggles such a button on the press, outside this path, so
        // the toggled signal is ignored for it: write here.
        setCheckedQuietly(!isChecked());
        gestureSetValue(isChecked() ? maximumValue() : minimumValue(), m_modifiers);
        return;
    }
    QPushButton::nextCheckState();
}

void PushButtonController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintButton(painter);
    paintFocusMark(painter);
}

void PushButtonController::paintFocusMark(QPainter &painter) const
{
    m_pFocusMark->paint(painter, QRectF(rect()), FocusMark::Rounded, scale());
}

void PushButtonController::paintButton(QPainter &painter)
{
    painter.setRenderHints(
        QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.setOpacity(m_opacity);
    const qreal dpr = devicePixelRatioF();
    const bool pushed = isDown() && m_inside;

    // Shadow, blurred once per size, ratio and radius by its layer.
    SvgLayer &shadow = m_artwork.shadow(pushed);
    if (shadow.isValid()) {
        const QRectF target = svgRect(shadow);
        painter.drawPixmap(
            target.topLeft(), shadow.blurred(target.size().toSize(), dpr, m_artwork.shadowBlur() * scale()));
    }

    SvgLayer &body = m_artwork.body(pushed, isCheckable() && isChecked());
    if (body.isValid()) {
        // The cached body drawn at a lower opacity looks exactly as an
        // opacity effect over it would.
        const double bodyOpacity = isEnabled() ? 1.0 : m_artwork.disableOpacity();
        painter.setOpacity(m_opacity * bodyOpacity);
        body.paint(&painter, svgRect(body), dpr);
        painter.setOpacity(m_opacity);
    }

    // Icon and text share one palette colour.
    const QPalette::ColorGroup group
        = !isEnabled() ? QPalette::Disabled : (m_hover ? QPalette::Active : QPalette::Inactive);
    QPalette::ColorRole role = QPalette::ButtonText;
    if (pushed)
        role = m_artwork.isLoaded(ButtonArtwork::OnIcon) ? QPalette::BrightText : QPalette::HighlightedText;
    const QColor color = palette().color(group, role);

    SvgLayer &icon = m_artwork.icon(isOn());
    if (icon.isValid()) {
        const QRectF target = svgRect(icon);
        painter.drawPixmap(target.topLeft(), icon.tinted(target.size().toSize(), dpr, color));
    }

    if (!text().isEmpty()) {
        const QRectF textRect = QRectF(rect()).adjusted(m_textLeftMargin * scale(), m_textTopMargin * scale(),
            -m_textRightMargin * scale(), -m_textBottomMargin * scale());
        painter.setPen(color);
        painter.setFont(font());
        painter.drawText(textRect, int(m_textAlignment), text());
    }
}

void PushButtonController::updateAccessibility()
{
    // A button with text is named by its text; an SVG-only one by its object.
    // A name set by the owner stays; only the one set here follows.
    m_accessibleName.apply(text().isEmpty() ? AccessibleNameFallback::readable(objectName()) : QString());
    const QString description = isCheckable() ? (isChecked() ? tr("on") : tr("off")) : QString();
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

} // namespace CommonController_MemAPI
