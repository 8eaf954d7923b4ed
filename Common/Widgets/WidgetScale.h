#pragma once

class QWidget;

// A pop-up that belongs to a control names that control in this dynamic
// property, so that getWidgetScale() walks from the pop-up to its owner.
inline constexpr char OwnerWidgetProperty[] = "effectEditorOwnerWidget";

// The scale of the editor that `widget` belongs to (1.0 outside any editor):
// the first IQXEffectEditor among its ancestors, following pop-ups to their
// owners.
double getWidgetScale(const QWidget *widget);
