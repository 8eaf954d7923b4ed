#pragma once

#include "Common/Widgets/SvgLayer.h"

class QWidget;

namespace CommonController_MemAPI {

// The artwork of a knob or a fader: the knob (or thumb), its shadow, and the
// scale or track behind it, with the shadow's blur radius and the knob's
// opacity while disabled. Setters return whether the control must repaint.
class KnobArtwork
{
public:
    explicit KnobArtwork(QWidget *owner);

    double shadowBlur() const { return m_shadowBlur; }
    bool setShadowBlur(double radius);
    double disableOpacity() const { return m_disableOpacity; }
    bool setDisableOpacity(double opacity);
    bool setKnobSvg(const QString &path) { return load(m_knob, path); }
    bool setShadowSvg(const QString &path) { return load(m_shadow, path); }
    bool setBackgroundSvg(const QString &path) { return load(m_background, path); }

    SvgLayer &knob() { return m_knob; }
    const SvgLayer &knob() const { return m_knob; }
    SvgLayer &shadow() { return m_shadow; }
    const SvgLayer &shadow() const { return m_shadow; }
    SvgLayer &background() { return m_background; }
    const SvgLayer &background() const { return m_background; }

    // The opacity to draw the knob with.
    double knobOpacity(bool enabled) const { return enabled ? 1.0 : m_disableOpacity; }

private:
    static bool load(SvgLayer &layer, const QString &path);

    QWidget *m_pOwner;
    double m_shadowBlur = 2.0;
    double m_disableOpacity = 1.0;
    SvgLayer m_knob;
    SvgLayer m_shadow;
    SvgLayer m_background;
};

} // namespace CommonController_MemAPI
