#include "Common/Widgets/KnobArtwork.h"

#include <QWidget>
#include <algorithm>

namespace CommonController_MemAPI {

KnobArtwork::KnobArtwork(QWidget *owner)
    : m_pOwner(owner)
{ }

bool KnobArtwork::setShadowBlur(double radius)
{
    radius = std::max(0.0, radius);
    if (radius == m_shadowBlur)
        return false;
    m_shadowBlur = radius;
    return m_shadow.isValid();
}

bool KnobArtwork::setDisableOpacity(double opacity)
{
    opacity = std::clamp(opacity, 0.0, 1.0);
    if (opacity == m_disableOpacity)
        return false;
    m_disableOpacity = opacity;
    return m_knob.isValid() && !m_pOwner->isEnabled();
}

bool KnobArtwork::load(SvgLayer &layer, const QString &path)
{
    if (path == layer.path())
        return false;
    layer.load(path);
    return true;
}

} // namespace CommonController_MemAPI
