#include "ORVChStrip/EqualizerEditTarget.h"

void EqualizerEditTarget::set(Gesture gesture, Control control, bool active)
{
    m_flags[gesture][control] = active;
}

EqualizerEditTarget::Band EqualizerEditTarget::band() const
{
    for (const auto &flags : m_flags) {
        for (int control = 0; control < ControlCount; ++control) {
            if (flags[control])
                return bandOf(Control(control));
        }
    }
    return None;
}

EqualizerEditTarget::Band EqualizerEditTarget::bandOf(Control control)
{
    switch (control) {
    case LowFrequency:
    case LowGain: return Low;
    case MiddleQuality:
    case MiddleFrequency:
    case MiddleGain: return Middle;
    case HighFrequency:
    case HighGain:
    case ControlCount: break;
    }
    return High;
}
