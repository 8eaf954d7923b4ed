#pragma once

#include <functional>

class ORVChStripPresetConverter;

// Offers the user's old presets for conversion once per editor, when it first
// shows, and only when the converter's rule says there is something to offer
// (by default: old presets exist and the user has not declined).
class PresetConverterOffer
{
public:
    using Rule = std::function<bool()>;

    explicit PresetConverterOffer(ORVChStripPresetConverter *converter, Rule shouldOffer = defaultRule());

    // Opens the converter if the rule says so; only the first call asks.
    void offerOnce();

private:
    static Rule defaultRule();

    ORVChStripPresetConverter *m_pConverter;
    Rule m_shouldOffer;
    bool m_offered = false;
};
