#pragma once

#include <QList>
#include <QString>

#include "ParameterDefinition.h"

// The host's value texts ("10 ms", "1.2 kHz", "HARD") for values as a saved
// state stores them, from the host's parameter table. Keys the table does
// not know, and text parameters, have no value text.
class StoredValueText
{
public:
    explicit StoredValueText(QList<ParameterDefinition> parameters = {});

    // An integer value, clamped to the parameter's range.
    QString integer(const char *key, int value) const;
    // A value normalised to the parameter's range.
    QString normalized(const char *key, float value) const;

private:
    const ParameterDefinition *parameter(const char *key) const;

    QList<ParameterDefinition> m_parameters;
};
