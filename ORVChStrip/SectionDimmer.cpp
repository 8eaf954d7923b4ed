#include "ORVChStrip/SectionDimmer.h"

#include <QLabel>

#include "Common/Widgets/SvgLabel.h"

void SectionDimmer::addLabel(QLabel *label, double dimmedOpacity)
{
    if (label)
        m_entries.append({ label, dimmedOpacity, false, {}, false });
}

void SectionDimmer::addArtwork(SvgLabel *artwork, double dimmedOpacity)
{
    if (artwork)
        m_entries.append({ artwork, dimmedOpacity, true, {}, false });
}

void SectionDimmer::addCaptionsOf(const QWidget *area, double dimmedOpacity)
{
    for (QLabel *label : area->findChildren<QLabel *>()) {
        if (auto *artwork = qobject_cast<SvgLabel *>(label))
            addArtwork(artwork, dimmedOpacity);
        else
            addLabel(label, dimmedOpacity);
    }
}

void SectionDimmer::setDimmed(bool dimmed)
{
    if (m_dimmed == dimmed)
        return;
    m_dimmed = dimmed;
    for (Entry &entry : m_entries)
        apply(entry);
}

void SectionDimmer::apply(Entry &entry)
{
    if (!entry.label)
        return;
    const double opacity = m_dimmed ? entry.dimmedOpacity : 1.0;
    if (entry.artwork) {
        static_cast<SvgLabel *>(entry.label.data())->setOpacity(opacity);
        return;
    }
    // The palette is taken here rather than when added, so that it is the one
    // the editor's initialisation gave the label.
    if (!entry.captured) {
        entry.palette = entry.label->palette();
        entry.captured = true;
    }
    QPalette palette = entry.palette;
    for (auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        QColor colour = palette.color(group, QPalette::WindowText);
        colour.setAlphaF(float(colour.alphaF() * opacity));
        palette.setColor(group, QPalette::WindowText, colour);
    }
    entry.label->setPalette(palette);
}
