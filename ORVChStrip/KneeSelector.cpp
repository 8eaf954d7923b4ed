#include "ORVChStrip/KneeSelector.h"

#include "Common/Widgets/SvgLabel.h"

void KneeSelector::addPosition(QAbstractButton *button, SvgLabel *lit, SvgLabel *pushed)
{
    m_positions.append({ button, lit, pushed });
}

void KneeSelector::refresh(bool showValue) const
{
    const int selected = showValue ? m_pGroup->value() - m_pGroup->minimumValue() : -1;
    int held = -1;
    for (int i = 0; i < m_positions.size(); ++i) {
        if (m_positions.at(i).button->isDown())
            held = i;
    }
    for (int i = 0; i < m_positions.size(); ++i) {
        m_positions.at(i).pushed->setVisible(i == held);
        m_positions.at(i).lit->setVisible(held < 0 && i == selected);
    }
}
