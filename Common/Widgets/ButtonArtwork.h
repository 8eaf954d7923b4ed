#pragma once

#include <QRectF>
#include <array>

#include "Common/Widgets/SvgLayer.h"

class QWidget;

namespace CommonController_MemAPI {

// The artwork of a push button: its body in four looks (up, pressed, on, on
// and pressed), its shadow up and pressed, and its icon off and on, with the
// shadow's blur radius and the body's opacity while disabled. It picks the
// layer for a button's state and places a layer in the button. Setters return
// whether the button must repaint.
class ButtonArtwork
{
public:
    enum Layer { Button, PushButton, Shadow, PushShadow, Icon, OnIcon, OnButton, OnPushButton, LayerCount };

    explicit ButtonArtwork(QWidget *owner);

    QString path(Layer layer) const { return m_layers[layer].path(); }
    bool load(Layer layer, const QString &path);
    bool isLoaded(Layer layer) const { return m_layers[layer].isValid(); }
    bool anyLoaded() const;

    double shadowBlur() const { return m_shadowBlur; }
    bool setShadowBlur(double radius);
    double disableOpacity() const { return m_disableOpacity; }
    bool setDisableOpacity(double opacity);

    // The shadow while the button is pushed (held down with the pointer on it) or not.
    SvgLayer &shadow(bool pushed);
    // The body for the state; it may be an empty layer, which draws nothing.
    SvgLayer &body(bool pushed, bool checked);
    // The on icon when the button is on and has one, else the plain icon.
    SvgLayer &icon(bool on);

    // Where a layer goes in a button of `size`: its own size times the scale,
    // aligned, or the whole button with Qt::AlignJustify.
    static QRectF place(const SvgLayer &layer, const QSize &size, double scale, Qt::Alignment alignment);

private:
    QWidget *m_pOwner;
    std::array<SvgLayer, LayerCount> m_layers;
    double m_shadowBlur = 2.0;
    double m_disableOpacity = 1.0;
};

} // namespace CommonController_MemAPI
