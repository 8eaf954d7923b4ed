#pragma once

#include <QPalette>

// The editor's colours: a dark panel with light text. Controls take their
// colours from these roles (Mid and Dark for meter zones, Light for the over
// mark, WindowText for knob index lines, ButtonText for button labels).
namespace ORVChStripPalette {
QPalette editorPalette();
}
