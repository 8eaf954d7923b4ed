#pragma once

#include <QList>
#include <QPalette>
#include <QPointer>

class QLabel;
class QWidget;
class SvgLabel;

// Dims the captions and artwork of one section of the panel, as when the
// section is bypassed or covered by a panel. Labels fade their text colour
// (cheap: no graphics effect, no offscreen pass); artwork fades through its
// own opacity.
class SectionDimmer
{
public:
    // `dimmedOpacity` is how much of the label still shows while dimmed.
    void addLabel(QLabel *label, double dimmedOpacity);
    void addArtwork(SvgLabel *artwork, double dimmedOpacity);
    // Every label and piece of artwork inside `area`.
    void addCaptionsOf(const QWidget *area, double dimmedOpacity);

    bool isDimmed() const { return m_dimmed; }
    void setDimmed(bool dimmed);

private:
    struct Entry
    {
        QPointer<QLabel> label;
        double dimmedOpacity;
        bool artwork;
        QPalette palette; // the label's own palette, taken when first dimmed
        bool captured;
    };
    void apply(Entry &entry);

    QList<Entry> m_entries;
    bool m_dimmed = false;
};
