#include "ORVChStrip/PresetConverterOffer.h"

#include "ORVChStrip/ORVChStripPresetConverter.h"

PresetConverterOffer::PresetConverterOffer(ORVChStripPresetConverter *converter, Rule shouldOffer)
    : m_pConverter(converter)
    , m_shouldOffer(std::move(shouldOffer))
{ }

PresetConverterOffer::Rule PresetConverterOffer::defaultRule()
{
    return &ORVChStripPresetConversion::shouldOfferConversion;
}

void PresetConverterOffer::offerOnce()
{
    if (m_offered)
        return;
    m_offered = true;
    if (m_shouldOffer())
        m_pConverter->open();
}
