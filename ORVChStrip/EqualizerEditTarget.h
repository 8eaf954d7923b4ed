#pragma once

// Which equalizer band the user is working on, from the gestures on the seven
// band controls. Text edits win over knob drags, knob drags over text drags,
// and any of them over the pointer merely hovering a control.
class EqualizerEditTarget
{
public:
    enum Control {
        LowFrequency,
        LowGain,
        MiddleQuality,
        MiddleFrequency,
        MiddleGain,
        HighFrequency,
        HighGain,
        ControlCount
    };
    // In order of precedence.
    enum Gesture { TextEdit, KnobDrag, TextDrag, Hover, GestureCount };
    // The graph's band numbers.
    enum Band { None = 0, Low = 1, Middle = 2, High = 3 };

    void set(Gesture gesture, Control control, bool active);
    bool isSet(Gesture gesture, Control control) const { return m_flags[gesture][control]; }
    Band band() const;

private:
    static Band bandOf(Control control);

    bool m_flags[GestureCount][ControlCount] = {};
};
