#include "Common/EffectStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

EffectStyle::EffectStyle()
    : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion")))
{ }

void EffectStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    switch (element) {
    case PE_FrameFocusRect:
    case PE_FrameGroupBox:
    case PE_FrameLineEdit: return; // the artwork shows state; frames would only clutter it
    case PE_PanelLineEdit: painter->fillRect(option->rect, option->palette.brush(QPalette::Base)); return;
    case PE_PanelMenu:
    case PE_FrameMenu: {
        painter->fillRect(option->rect, option->palette.brush(QPalette::Window));
        painter->setPen(option->palette.color(QPalette::Mid));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        return;
    }
    default: break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void EffectStyle::drawControl(
    ControlElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    if (element == CE_ScrollBarSlider) {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(option->palette.color(QPalette::Mid));
        const QRectF r = QRectF(option->rect).adjusted(1, 1, -1, -1);
        const qreal radius = qMin(r.width(), r.height()) / 2;
        painter->drawRoundedRect(r, radius, radius);
        painter->restore();
        return;
    }
    if (element == CE_ScrollBarAddPage || element == CE_ScrollBarSubPage) {
        painter->fillRect(option->rect, option->palette.brush(QPalette::Base));
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void EffectStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter, const QWidget *widget) const
{
    if (control == CC_GroupBox) {
        // Button groups are invisible containers over artwork of their own.
        const auto *group = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
        if (group && group->text.isEmpty())
            return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

int EffectStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent: return 8;
    case PM_ScrollBarSliderMin: return 16;
    case PM_DefaultFrameWidth: return 0;
    default: break;
    }
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int EffectStyle::styleHint(
    StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_ScrollBar_Transient: return 0;
    case SH_ScrollBar_ContextMenu: return 0;
    case SH_Menu_FlashTriggeredItem: return 0;
    default: break;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
