#pragma once

#include <QString>

#include "ParameterDefinition.h"

// Whether a value text from the command line lies inside a parameter's
// range. The simulated memory takes the nearest valid value for any number,
// which is right for a knob but would hide a typing error on the command
// line ("--set fx_cmp_atck=2000" meaning 200).
class ValueRangeCheck
{
public:
    // False only for a number outside the range by more than half a step;
    // texts that do not parse are left to the value-text parser.
    static bool contains(const ParameterDefinition &parameter, const QString &text);
    // "1 ms to 200 ms", "SOFT, MEDIUM or HARD".
    static QString describe(const ParameterDefinition &parameter);

private:
    static double physical(const ParameterDefinition &parameter, int value);
};
