#pragma once

#include <QAbstractButton>
#include <QList>

#include "Common/Widgets/ButtonGroupController.h"

class SvgLabel;

// The knee selector's look: under each of the group's buttons lies a lit and
// a pressed picture. The selected knee shows lit; while a button is held down
// its pressed picture shows instead, so the press is visible before the host
// confirms the new knee.
class KneeSelector
{
public:
    explicit KneeSelector(CommonController_MemAPI::ButtonGroupController *group)
        : m_pGroup(group)
    { }

    // Positions in the group's value order: soft, medium, hard.
    void addPosition(QAbstractButton *button, SvgLabel *lit, SvgLabel *pushed);

    // Shows the group's value, or no knee at all when `showValue` is false
    // (no memory to take it from).
    void refresh(bool showValue = true) const;

    // Calls `slot` of `receiver` whenever a button goes down or up or the
    // group's value changes: the moments the look may change.
    template<typename Receiver, typename Slot> void connectChanges(const Receiver *receiver, Slot slot) const
    {
        for (const Position &position : m_positions) {
            QObject::connect(position.button, &QAbstractButton::pressed, receiver, slot);
            QObject::connect(position.button, &QAbstractButton::released, receiver, slot);
        }
        QObject::connect(m_pGroup,
            qOverload<int>(&CommonController_MemAPI::ButtonGroupController::valueChanged), receiver, slot);
    }

private:
    struct Position
    {
        QAbstractButton *button;
        SvgLabel *lit;
        SvgLabel *pushed;
    };

    CommonController_MemAPI::ButtonGroupController *m_pGroup;
    QList<Position> m_positions;
};
