#pragma once

#include <QByteArray>
#include <QCoreApplication>

class IMemAPI;
namespace CommonController_MemAPI {
class KnobController;
class PushButtonController;
} // namespace CommonController_MemAPI

// What the morphing section shows of the chosen morph set: its name on the
// preset button, and on the knob's background whether the strip still holds
// the values of the morph position.
class MorphSetDisplay
{
    Q_DECLARE_TR_FUNCTIONS(MorphSetDisplay)

public:
    MorphSetDisplay(CommonController_MemAPI::PushButtonController *presetButton,
        CommonController_MemAPI::KnobController *knob);

    // The set's name, read one character at a time up to the first zero or
    // failed read.
    static QByteArray readName(IMemAPI *memAPI, unsigned short prmId, unsigned short ch);
    // Without a name the button says what it is for.
    void showName(const QByteArray &name);
    void showMatch(bool matches);

private:
    CommonController_MemAPI::PushButtonController *m_pPresetButton;
    CommonController_MemAPI::KnobController *m_pKnob;
};
