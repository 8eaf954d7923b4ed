#pragma once

#include <QProxyStyle>

// The editors' widget style: the standard widgets (labels, line edits, menus,
// scroll bars, group boxes) drawn flat on the dark editor palette, without
// frames or focus rectangles that would fight the SVG artwork.
class EffectStyle : public QProxyStyle
{
    Q_OBJECT

public:
    EffectStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr, const QWidget *widget = nullptr,
        QStyleHintReturn *returnData = nullptr) const override;
};
