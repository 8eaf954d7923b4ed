#include "Common/Widgets/MeterController.h"

#include <QPainter>
#include <algorithm>

#include "Common/Widgets/AccessibleControlFactory.h"
#include "Common/Widgets/MeterConverter.h"

namespace CommonController_MemAPI {

namespace {

constexpr unsigned short TableSegments = 53;
constexpr int FullSegment = 51; // 0 dB; segment 52 is above the top

} // namespace

MeterController::MeterController(QWidget *parent)
    : QWidget(parent)
{
    AccessibleControlFactory::install();

    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(tr("Level meter"));
    setMaximumValue(8191);
    setMinimumValue(SilenceValue);
    setDefaultValue(SilenceValue);
    setValue(SilenceValue);
}

void MeterController::setMeterLeftMargin(int margin)
{
    if (margin == m_leftMargin)
        return;
    m_leftMargin = margin;
    refresh();
}

void MeterController::setMeterRightMargin(int margin)
{
    if (margin == m_rightMargin)
        return;
    m_rightMargin = margin;
    refresh();
}

void MeterController::setMeterTopMargin(int margin)
{
    if (margin == m_topMargin)
        return;
    m_topMargin = margin;
    refresh();
}

void MeterController::setMeterBottomMargin(int margin)
{
    if (margin == m_bottomMargin)
        return;
    m_bottomMargin = margin;
    refresh();
}

void MeterController::setMeterOverMargin(int margin)
{
    if (margin == m_overMargin)
        return;
    m_overMargin = margin;
    refresh();
}

void MeterController::setMeterOverHeight(int height)
{
    if (height == m_overHeight)
        return;
    m_overHeight = height;
    refresh();
}

void MeterController::setMeterType(MeterType type)
{
    if (type == m_meterType)
        return;
    m_meterType = type;
    refresh();
}

void MeterController::setScale(double scale)
{
    if (storeScale(scale))
        refresh();
}

int MeterController::typeOffset() const
{
    // The positions of -60, -48 and -22.5 dB in the 53-segment table.
    switch (m_meterType) {
    case Minus480: return 4;
    case Minus225: return 20;
    case Minus600: break;
    }
    return 0;
}

double MeterController::convertNormalized(int value) const
{
    unsigned short segments = 0;
    if (!MeterConverter::convertDB2SegNum(TableSegments, static_cast<unsigned int>(value), segments))
        return 0.0;
    const int offset = typeOffset();
    return std::clamp(double(segments - offset) / double(FullSegment - offset), 0.0, 1.0);
}

int MeterController::clampedSegments(int value) const
{
    unsigned short segments = 0;
    MeterConverter::convertDB2SegNum(TableSegments, static_cast<unsigned int>(value), segments);
    return std::clamp(int(segments), typeOffset(), FullSegment);
}

double MeterController::normalizedFromSegments(int segments) const
{
    const int offset = typeOffset();
    return std::clamp(double(segments - offset) / double(FullSegment - offset), 0.0, 1.0);
}

QRectF MeterController::scaledOverRect() const
{
    const double s = scale();
    return QRectF(
        m_leftMargin * s, m_topMargin * s, width() - (m_leftMargin + m_rightMargin) * s, m_overHeight * s);
}

QRectF MeterController::scaledMeterRect() const
{
    const double s = scale();
    const int above = m_topMargin + m_overHeight + m_overMargin;
    return QRectF(m_leftMargin * s, above * s, width() - (m_leftMargin + m_rightMargin) * s,
        height() - (above + m_bottomMargin) * s);
}

double MeterController::levelY(double normalized) const
{
    const QRectF bar = scaledMeterRect();
    return bar.top() + bar.height() * (1.0 - normalized);
}

QPalette::ColorGroup MeterController::colorGroup() const
{
    if (!isEnabled())
        return QPalette::Disabled;
    return hasFocus() ? QPalette::Active : QPalette::Inactive;
}

QString MeterController::levelText() const
{
    const int reading = value();
    if (reading <= SilenceValue)
        return tr("-inf dB");
    const QString number = QString::number(reading / 10.0, 'f', 1);
    return reading > 0 ? tr("+%1 dB").arg(number) : tr("%1 dB").arg(number);
}

MeterController::DisplayState MeterController::displayState() const
{
    const int reading = value();
    DisplayState state;
    state.level = clampedSegments(reading);
    state.over = reading > 0;
    return state;
}

QRectF MeterController::changedArea(const DisplayState &from, const DisplayState &to) const
{
    if (from.level < 0)
        return rect();
    QRectF area;
    if (from.level != to.level) {
        const double y1 = levelY(normalizedFromSegments(from.level));
        const double y2 = levelY(normalizedFromSegments(to.level));
        area = QRectF(0, std::min(y1, y2), width(), std::abs(y2 - y1));
    }
    if (from.over != to.over)
        area = area.isValid() ? area.united(scaledOverRect()) : scaledOverRect();
    return area;
}

void MeterController::refresh()
{
    m_drawnState = displayState();
    update();
}

void MeterController::valueChanged()
{
    const DisplayState state = displayState();
    if (state == m_drawnState)
        return;
    const QRectF area = changedArea(m_drawnState, state);
    m_drawnState = state;
    if (area.isValid())
        update(area.toAlignedRect().adjusted(-1, -1, 1, 1));
}

void MeterController::valueChangedRequest()
{
    valueChanged();
    emit valueChanged(value());
}

void MeterController::notifyModifiersChange(Qt::KeyboardModifiers modifiers)
{
    emit modifiersChange(this, modifiers);
}

void MeterController::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    drawBackground(&painter);
    painter.restore();
    if (value() > 0) {
        painter.save();
        drawOver(&painter);
        painter.restore();
    }
    painter.save();
    drawMeter(&painter);
    painter.restore();
}

void MeterController::drawBackground(QPainter *) { }

void MeterController::drawOver(QPainter *painter)
{
    painter->fillRect(scaledOverRect(), palette().brush(colorGroup(), QPalette::Light));
}

void MeterController::drawMeter(QPainter *painter)
{
    const QRectF bar = scaledMeterRect();
    const double split = convertNormalized(SplitValue);
    const double lit = convertNormalized(value());
    if (lit <= 0.0)
        return;
    const double x0 = bar.left();
    const double y0 = bar.top();
    const double w = bar.width();
    const double h = bar.height();
    painter->setClipRect(QRectF(x0 - 1, y0 + h * (1.0 - lit), w + 2, h * lit), Qt::IntersectClip);
    const QPalette::ColorGroup group = colorGroup();
    painter->fillRect(QRectF(x0, y0, w, h * (1.0 - split)), palette().brush(group, QPalette::Mid));
    painter->fillRect(
        QRectF(x0, y0 + h * (1.0 - split), w, h * split), palette().brush(group, QPalette::Dark));
}

} // namespace CommonController_MemAPI
