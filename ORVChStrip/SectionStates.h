#pragma once

#include <QList>
#include <initializer_list>

#include "ORVChStrip/SectionDimmer.h"

class QWidget;
namespace Ui {
class ORVChStripEditor;
}

// Which controls of the panel take input and which captions dim. A bypassed
// section, a band switched off and everything a panel covers are disabled;
// the captions of a bypassed or covered section dim, a band's stay.
class SectionStates
{
public:
    enum Group {
        CompressorControls, // all but the bypass switch
        SideChainControls,
        EqualizerControls, // the band switches and the graph
        LowBandControls,
        MiddleBandControls,
        HighBandControls,
        UncoveredControls, // live whenever no panel covers the sections
        GroupCount
    };
    enum Section { Compressor, Equalizer, SectionCount };

    // The switches as the host holds them; -1 for one the model lacks, with
    // which a section counts as running and a band as on.
    struct Switches
    {
        int compressorBypass = -1;
        int equalizerBypass = -1;
        int sideChainOn = -1;
        int lowOn = -1;
        int middleOn = -1;
        int highOn = -1;
    };

    SectionStates() = default;
    // The groups and captions of the editor's form.
    explicit SectionStates(const Ui::ORVChStripEditor &form);

    void addControls(Group group, std::initializer_list<QWidget *> widgets);
    // The captions that dim with a section.
    SectionDimmer &dimmer(Section section) { return m_dimmers[section]; }

    void apply(const Switches &switches, bool covered);

private:
    QList<QWidget *> m_groups[GroupCount];
    SectionDimmer m_dimmers[SectionCount];
};
