#pragma once

#include "Common/Widgets/KnobArtwork.h"
#include "Common/Widgets/ValueController.h"

namespace CommonController_MemAPI {

// A value control drawn from a knob's artwork (the knob or thumb, its
// shadow, the scale or track behind it): the properties that set the artwork,
// each repainting, and resizing where the artwork sets the size.
class KnobArtworkController : public ValueController
{
    Q_OBJECT
    Q_PROPERTY(double shadowBlur READ shadowBlur WRITE setShadowBlur)
    Q_PROPERTY(double knobDisableOpacity READ knobDisableOpacity WRITE setKnobDisableOpacity)
    Q_PROPERTY(QString knobSvg READ knobSvg WRITE setKnobSvg)
    Q_PROPERTY(QString shadowSvg READ shadowSvg WRITE setShadowSvg)
    Q_PROPERTY(QString backgroundSvg READ backgroundSvg WRITE setBackgroundSvg)

public:
    explicit KnobArtworkController(QWidget *parent = nullptr);

    double shadowBlur() const { return m_artwork.shadowBlur(); }
    void setShadowBlur(double radius);
    double knobDisableOpacity() const { return m_artwork.disableOpacity(); }
    void setKnobDisableOpacity(double opacity);
    QString knobSvg() const { return m_artwork.knob().path(); }
    void setKnobSvg(const QString &path);
    QString shadowSvg() const { return m_artwork.shadow().path(); }
    void setShadowSvg(const QString &path);
    QString backgroundSvg() const { return m_artwork.background().path(); }
    void setBackgroundSvg(const QString &path);

protected:
    KnobArtwork m_artwork;
};

} // namespace CommonController_MemAPI
