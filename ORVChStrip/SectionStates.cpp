#include "ORVChStrip/SectionStates.h"

#include <QWidget>

#include "ui_ORVChStripEditor.h"

namespace {

// How much of a section's captions still shows while it is dimmed.
constexpr double CompressorDimmedOpacity = 0.3;
constexpr double CompressorTitleDimmedOpacity = 0.5;
constexpr double EqualizerDimmedOpacity = 0.5;

} // namespace

SectionStates::SectionStates(const Ui::ORVChStripEditor &ui)
{
    addControls(CompressorControls,
        { ui.m_pCompressorAttackArea, ui.m_pCompressorReleaseArea, ui.m_pCompressorRatioArea,
            ui.m_pCompressorKneeArea, ui.m_pCompressorDriveKnob, ui.m_pCompressorDriveTextEdit,
            ui.m_pSideChainButton });
    addControls(SideChainControls,
        { ui.m_pSideChainQualityArea, ui.m_pSideChainFrequencyArea, ui.m_pSideChainGainArea });
    addControls(EqualizerControls,
        { ui.m_pEqualizerLowButton, ui.m_pEqualizerMiddleButton, ui.m_pEqualizerHighButton,
            ui.m_pEqualizerGraph });
    addControls(LowBandControls, { ui.m_pEqualizerLowFrequencyArea, ui.m_pEqualizerLowGainArea });
    addControls(MiddleBandControls,
        { ui.m_pEqualizerMiddleQualityArea, ui.m_pEqualizerMiddleFrequencyArea,
            ui.m_pEqualizerMiddleGainArea });
    addControls(HighBandControls, { ui.m_pEqualizerHighFrequencyArea, ui.m_pEqualizerHighGainArea });
    addControls(UncoveredControls,
        { ui.m_pCompressorButton, ui.m_pEqualizerButton, ui.m_pMorphingKnob, ui.m_pMorphingTextEdit,
            ui.m_pMorphingPresetButton });

    // Every caption of a section dims with it; the compressor's title a little less.
    dimmer(Compressor).addCaptionsOf(ui.m_pCompressorArea, CompressorDimmedOpacity);
    dimmer(Compressor).addLabel(ui.m_pCompressorLabel, CompressorTitleDimmedOpacity);
    dimmer(Equalizer).addCaptionsOf(ui.m_pEqualizerArea, EqualizerDimmedOpacity);
    dimmer(Equalizer).addLabel(ui.m_pEqualizerLabel, EqualizerDimmedOpacity);
}

void SectionStates::addControls(Group group, std::initializer_list<QWidget *> widgets)
{
    m_groups[group].append(QList<QWidget *>(widgets));
}

void SectionStates::apply(const Switches &switches, bool covered)
{
    const bool compressorLive = switches.compressorBypass <= 0 && !covered;
    const bool equalizerLive = switches.equalizerBypass <= 0 && !covered;
    bool live[GroupCount] = {};
    live[CompressorControls] = compressorLive;
    live[SideChainControls] = compressorLive && switches.sideChainOn != 0;
    live[EqualizerControls] = equalizerLive;
    live[LowBandControls] = equalizerLive && switches.lowOn != 0;
    live[MiddleBandControls] = equalizerLive && switches.middleOn != 0;
    live[HighBandControls] = equalizerLive && switches.highOn != 0;
    live[UncoveredControls] = !covered;
    for (int group = 0; group < GroupCount; ++group) {
        for (QWidget *widget : std::as_const(m_groups[group]))
            widget->setEnabled(live[group]);
    }
    m_dimmers[Compressor].setDimmed(!compressorLive);
    m_dimmers[Equalizer].setDimmed(!equalizerLive);
}
