#include "Common/Widgets/ButtonArtwork.h"

#include <QWidget>
#include <algorithm>

namespace CommonController_MemAPI {

ButtonArtwork::ButtonArtwork(QWidget *owner)
    : m_pOwner(owner)
{ }

bool ButtonArtwork::load(Layer layer, const QString &path)
{
    if (path == m_layers[layer].path())
        return false;
    m_layers[layer].load(path);
    return true;
}

bool ButtonArtwork::anyLoaded() const
{
    return std::any_of(
        m_layers.begin(), m_layers.end(), [](const SvgLayer &layer) { return layer.isValid(); });
}

bool ButtonArtwork::setShadowBlur(double radius)
{
    radius = std::max(0.0, radius);
    if (radius == m_shadowBlur)
        return false;
    m_shadowBlur = radius;
    return isLoaded(Shadow) || isLoaded(PushShadow);
}

bool ButtonArtwork::setDisableOpacity(double opacity)
{
    opacity = std::clamp(opacity, 0.0, 1.0);
    if (opacity == m_disableOpacity)
        return false;
    m_disableOpacity = opacity;
    const bool bodyLoaded
        = isLoaded(Button) || isLoaded(PushButton) || isLoaded(OnButton) || isLoaded(OnPushButton);
    return bodyLoaded && !m_pOwner->isEnabled();
}

SvgLayer &ButtonArtwork::shadow(bool pushed)
{
    return m_layers[pushed ? PushShadow : Shadow];
}

SvgLayer &ButtonArtwork::body(bool pushed, bool checked)
{
    if (pushed)
        return m_layers[checked && isLoaded(OnPushButton) ? OnPushButton : PushButton];
    return m_layers[checked && isLoaded(OnButton) ? OnButton : Button];
}

SvgLayer &ButtonArtwork::icon(bool on)
{
    return m_layers[on && isLoaded(OnIcon) ? OnIcon : Icon];
}

QRectF ButtonArtwork::place(const SvgLayer &layer, const QSize &size, double scale, Qt::Alignment alignment)
{
    if (alignment & Qt::AlignJustify)
        return QRectF(QPointF(0, 0), QSizeF(size));
    // Whole logical pixels keep the artwork on the device pixel grid.
    const QSize artwork(
        qRound(layer.defaultSize().width() * scale), qRound(layer.defaultSize().height() * scale));
    int x = (size.width() - artwork.width()) / 2;
    if (alignment & Qt::AlignLeft)
        x = 0;
    else if (alignment & Qt::AlignRight)
        x = size.width() - artwork.width();
    int y = (size.height() - artwork.height()) / 2;
    if (alignment & Qt::AlignTop)
        y = 0;
    else if (alignment & Qt::AlignBottom)
        y = size.height() - artwork.height();
    return QRectF(QPointF(x, y), QSizeF(artwork));
}

} // namespace CommonController_MemAPI
