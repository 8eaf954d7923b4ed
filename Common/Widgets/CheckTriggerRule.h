#pragma once

namespace CommonController_MemAPI {

// When a checkable button changes state: at the press or at the release of
// the mouse, and in which directions (on, off or both) a click may take it.
// The rule normalises every new set of flags against the one before, so that
// exactly one edge and at least one direction are always set.
class CheckTriggerRule
{
public:
    enum Flag {
        Press = 1,
        Release = 2,
        On = 16,
        Off = 32,
    };

    int flags() const { return m_flags; }
    // A newly added edge wins over the other one; clearing both edges (or
    // both directions) flips to the one that was not set before. Bits other
    // than the four flags are dropped.
    void setFlags(int requested);

    bool togglesOnPress() const { return m_flags & Press; }
    // Whether a click may take a button that is `checked` to the other state.
    bool allowsToggleFrom(bool checked) const { return m_flags & (checked ? Off : On); }

private:
    int m_flags = Release | On | Off;
};

} // namespace CommonController_MemAPI
