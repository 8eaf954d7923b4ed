#include "Common/Widgets/KnobArtworkController.h"

namespace CommonController_MemAPI {

KnobArtworkController::KnobArtworkController(QWidget *parent)
    : ValueController(parent)
    , m_artwork(this)
{ }

void KnobArtworkController::setShadowBlur(double radius)
{
    if (m_artwork.setShadowBlur(radius))
        update();
}

void KnobArtworkController::setKnobDisableOpacity(double opacity)
{
    if (m_artwork.setDisableOpacity(opacity))
        update();
}

void KnobArtworkController::setKnobSvg(const QString &path)
{
    if (!m_artwork.setKnobSvg(path))
        return;
    updateGeometry(); // a knob's face can set its size
    update();
}

void KnobArtworkController::setShadowSvg(const QString &path)
{
    if (m_artwork.setShadowSvg(path))
        update();
}

void KnobArtworkController::setBackgroundSvg(const QString &path)
{
    if (!m_artwork.setBackgroundSvg(path))
        return;
    updateGeometry();
    update();
}

} // namespace CommonController_MemAPI
