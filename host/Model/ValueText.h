#pragma once

#include <QString>

#include "ParameterDefinition.h"

// Value texts of the simulated host: what getValueString shows and what
// setValueString accepts ("1.2k" or "1200 Hz" for a frequency, "-3" or
// "-3.0 dB" for a gain, "4:1" for a ratio, "soft" for a knee).
namespace ValueText {

QString format(const ParameterDefinition &parameter, int value);
// The nearest valid value for a text; false when the text does not parse.
bool parse(const ParameterDefinition &parameter, const QString &text, int *value);
// The number in a text, with an optional k/M/G multiplier suffix.
bool parseNumber(QString text, double *number);

} // namespace ValueText
