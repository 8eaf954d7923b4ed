#pragma once

#include <QPalette>

// The editor's colours: a dark panel with light text. Controls take their
// colours from these roles (Mid and Dark for meter zones, Light for the over
// mark, WindowText for knob index lines, ButtonText for button labels).
class QWidget;

namespace ORVChStripPalette {
QPalette editorPalette();
// Gives a panel the editor's colours, its tool tips included (ToolTipBase
// and ToolTipText, rather than the application's light tips).
void applyTo(QWidget *panel);
} // namespace ORVChStripPalette
