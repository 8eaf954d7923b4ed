#pragma once

#include "HostModel.h"

// A model with one selector of four positions and one switch: just enough to
// bind buttons to.
inline HostModel smallModel()
{
    ParameterDefinition selector;
    selector.key = "t_sel";
    selector.maximum = 3;
    selector.defaultValue = 1;
    ParameterDefinition onOff;
    onOff.key = "t_sw";
    onOff.maximum = 1;
    onOff.kind = ValueKind::Switch;
    return HostModel({ { 1, 1 } }, { selector, onOff }, {});
}
