#include "ORVChStrip/ORVChStripPalette.h"

#include <QWidget>

#include "ORVChStrip/PanelToolTips.h"

namespace ORVChStripPalette {

QPalette editorPalette()
{
    const QColor window(0x16, 0x19, 0x1e);
    const QColor text(0xd9, 0xdc, 0xe1);
    QPalette palette;
    for (auto group : { QPalette::Active, QPalette::Inactive }) {
        palette.setColor(group, QPalette::Window, window);
        palette.setColor(group, QPalette::WindowText, text);
        palette.setColor(group, QPalette::Base, QColor(0x0e, 0x10, 0x14));
        palette.setColor(group, QPalette::AlternateBase, QColor(0x1f, 0x23, 0x2a));
        palette.setColor(group, QPalette::Text, text);
        palette.setColor(group, QPalette::Button, QColor(0x24, 0x28, 0x2f));
        palette.setColor(group, QPalette::ButtonText, text);
        palette.setColor(group, QPalette::BrightText, QColor(0xff, 0xff, 0xff));
        palette.setColor(group, QPalette::Highlight, QColor(0x00, 0x99, 0x66));
        palette.setColor(group, QPalette::HighlightedText, QColor(0xff, 0xb3, 0x47));
        palette.setColor(group, QPalette::Light, QColor(0xff, 0x3b, 0x30));
        palette.setColor(group, QPalette::Midlight, QColor(0x5a, 0x5e, 0x66));
        palette.setColor(group, QPalette::Mid, QColor(0x4a, 0x4c, 0x52));
        palette.setColor(group, QPalette::Dark, QColor(0x2b, 0xc4, 0x7e));
        palette.setColor(group, QPalette::Shadow, QColor(0, 0, 0));
        palette.setColor(group, QPalette::ToolTipBase, QColor(0x24, 0x28, 0x2f));
        palette.setColor(group, QPalette::ToolTipText, text);
        palette.setColor(group, QPalette::PlaceholderText, QColor(0x80, 0x84, 0x8a));
    }
    palette.setColor(QPalette::Active, QPalette::WindowText, QColor(0xf2, 0xf3, 0xf5));
    palette.setColor(QPalette::Active, QPalette::ButtonText, QColor(0xf2, 0xf3, 0xf5));
    palette.setColor(QPalette::Inactive, QPalette::Mid, QColor(0xe8, 0xc5, 0x47));
    palette.setColor(QPalette::Active, QPalette::Mid, QColor(0xf0, 0xd0, 0x50));

    const QColor disabledText(0x6a, 0x6e, 0x75);
    palette.setColor(QPalette::Disabled, QPalette::Window, window);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Text, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(0x0e, 0x10, 0x14));
    palette.setColor(QPalette::Disabled, QPalette::Button, QColor(0x1c, 0x1f, 0x24));
    palette.setColor(QPalette::Disabled, QPalette::Mid, QColor(0x50, 0x50, 0x50));
    palette.setColor(QPalette::Disabled, QPalette::Dark, QColor(0x3c, 0x3c, 0x3c));
    palette.setColor(QPalette::Disabled, QPalette::Light, QColor(0x60, 0x40, 0x40));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x30, 0x40, 0x3a));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabledText);
    palette.setColor(QPalette::Disabled, QPalette::BrightText, disabledText);
    return palette;
}

void applyTo(QWidget *panel)
{
    panel->setPalette(editorPalette());
    new PanelToolTips(panel);
}

} // namespace ORVChStripPalette
