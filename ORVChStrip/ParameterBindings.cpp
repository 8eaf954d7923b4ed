#include "ORVChStrip/ParameterBindings.h"

#include "Common/ParameterLookup.h"
#include "Common/Widgets/TextEditController.h"
#include "Common/Widgets/ValueController.h"
#include "Interfaces/ChannelStripKeys.h"
#include "ui_ORVChStripEditor.h"

using namespace CommonController_MemAPI;
namespace Keys = ChannelStripKeys;

ParameterBindings::ParameterBindings(const Ui::ORVChStripEditor &ui)
{
    add(Keys::CompressorBypass, ui.m_pCompressorButton);
    add(Keys::CompressorAttack, ui.m_pCompressorAttackKnob, ui.m_pCompressorAttackTextEdit);
    add(Keys::CompressorRelease, ui.m_pCompressorReleaseKnob, ui.m_pCompressorReleaseTextEdit);
    add(Keys::CompressorRatio, ui.m_pCompressorRatioKnob, ui.m_pCompressorRatioTextEdit);
    add(Keys::CompressorKnee, ui.m_pCompressorKneeButtonGroup);
    add(Keys::SideChainQuality, ui.m_pSideChainQualityKnob, ui.m_pSideChainQualityTextEdit);
    add(Keys::SideChainFrequency, ui.m_pSideChainFrequencyKnob, ui.m_pSideChainFrequencyTextEdit);
    add(Keys::SideChainGain, ui.m_pSideChainGainKnob, ui.m_pSideChainGainTextEdit);
    add(Keys::SideChainOn, ui.m_pSideChainButton);
    add(Keys::CompressorDrive, ui.m_pCompressorDriveKnob, ui.m_pCompressorDriveTextEdit);
    add(Keys::EqualizerBypass, ui.m_pEqualizerButton);
    add(Keys::EqualizerLowFrequency, ui.m_pEqualizerLowFrequencyKnob, ui.m_pEqualizerLowFrequencyTextEdit);
    add(Keys::EqualizerLowGain, ui.m_pEqualizerLowGainKnob, ui.m_pEqualizerLowGainTextEdit);
    add(Keys::EqualizerLowOn, ui.m_pEqualizerLowButton);
    add(Keys::EqualizerMiddleQuality, ui.m_pEqualizerMiddleQualityKnob, ui.m_pEqualizerMiddleQualityTextEdit);
    add(Keys::EqualizerMiddleFrequency, ui.m_pEqualizerMiddleFrequencyKnob,
        ui.m_pEqualizerMiddleFrequencyTextEdit);
    add(Keys::EqualizerMiddleGain, ui.m_pEqualizerMiddleGainKnob, ui.m_pEqualizerMiddleGainTextEdit);
    add(Keys::EqualizerMiddleOn, ui.m_pEqualizerMiddleButton);
    add(Keys::EqualizerHighFrequency, ui.m_pEqualizerHighFrequencyKnob, ui.m_pEqualizerHighFrequencyTextEdit);
    add(Keys::EqualizerHighGain, ui.m_pEqualizerHighGainKnob, ui.m_pEqualizerHighGainTextEdit);
    add(Keys::EqualizerHighOn, ui.m_pEqualizerHighButton);
    add(Keys::MorphValue, ui.m_pMorphingKnob, ui.m_pMorphingTextEdit);
    add(Keys::OutputLevel, ui.m_pOutputKnob, ui.m_pOutputTextEdit);
}

void ParameterBindings::add(const char *key, AbstractController *control, AbstractController *field)
{
    m_bindings.append({ key, { control, field } });
    auto *knob = dynamic_cast<ValueController *>(control);
    auto *text = dynamic_cast<TextEditController *>(field);
    if (knob && text)
        knob->setValueSuffix(text->postfix());
}

void ParameterBindings::bind(const ParameterLookup &lookup, IMemAPI *memAPI, unsigned short ch) const
{
    for (const Binding &binding : m_bindings) {
        unsigned short prmId = 0;
        const bool found = memAPI && lookup.parameter(binding.key, &prmId);
        for (AbstractController *control : binding.controls) {
            if (control)
                control->setMemAPIValue(found ? memAPI : nullptr, found ? prmId : 0, found ? ch : 0);
        }
    }
}
