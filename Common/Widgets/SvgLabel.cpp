#include "Common/Widgets/SvgLabel.h"

#include <QPainter>

SvgLabel::SvgLabel(QWidget *parent)
    : QLabel(parent)
{ }

SvgLabel::~SvgLabel() = default;

void SvgLabel::setSvg(const QString &path)
{
    if (path == m_svg)
        return;
    m_svg = path;
    m_svgRenderer.load(path);
    update();
}

void SvgLabel::setDisableSvg(const QString &path)
{
    if (path == m_disableSvg)
        return;
    m_disableSvg = path;
    m_disableSvgRenderer.load(path);
    update();
}

void SvgLabel::setOpacity(double opacity)
{
    if (opacity == m_opacity)
        return;
    m_opacity = opacity;
    update();
}

void SvgLabel::paintEvent(QPaintEvent *event)
{
    // Without its normal artwork the label draws none, not even the
    // disabled one.
    if (m_svgRenderer.isValid() && m_opacity > 0.0) {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.setOpacity(m_opacity);
        CommonController_MemAPI::SvgLayer &layer
            = (!isEnabled() && m_disableSvgRenderer.isValid()) ? m_disableSvgRenderer : m_svgRenderer;
        layer.paint(&painter, QRectF(rect()), devicePixelRatioF());
    }
    // Most labels are artwork alone; the meters' backgrounds repaint under
    // every meter step, so the label's own drawing is skipped when it has
    // nothing to add.
    if (!text().isEmpty() || frameShape() != QFrame::NoFrame || !pixmap().isNull())
        QLabel::paintEvent(event);
}
