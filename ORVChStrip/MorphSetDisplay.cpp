#include "ORVChStrip/MorphSetDisplay.h"

#include "Common/Widgets/KnobController.h"
#include "Common/Widgets/PushButtonController.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripParameters.h"

using namespace CommonController_MemAPI;

MorphSetDisplay::MorphSetDisplay(PushButtonController *presetButton, KnobController *knob)
    : m_pPresetButton(presetButton)
    , m_pKnob(knob)
{ }

QByteArray MorphSetDisplay::readName(IMemAPI *memAPI, unsigned short prmId, unsigned short ch)
{
    QByteArray name;
    if (!memAPI)
        return name;
    for (int i = 0; i < ORVChStripParameters::MorphSystemNameLength; ++i) {
        int character = 0;
        if (memAPI->getValue(prmId, ch, &character, i) < 0 || character == 0)
            break;
        name.append(char(character));
    }
    return name;
}

void MorphSetDisplay::showName(const QByteArray &name)
{
    const QString text = QString::fromUtf8(name);
    m_pPresetButton->setText(name.isEmpty() ? tr("Choose a morph set...") : text);
    m_pPresetButton->setToolTip(name.isEmpty() ? tr("Choose a morph set") : text);
}

void MorphSetDisplay::showMatch(bool matches)
{
    m_pKnob->setBackgroundSvg(matches ? QStringLiteral(":/image/orvchstrip/back_morphing.svg")
                                      : QStringLiteral(":/image/orvchstrip/back_morphing_off.svg"));
}
