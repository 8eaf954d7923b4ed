#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// How a parameter's integer value reads as text.
enum class ValueKind {
    Frequency, // step of the frequency table, in Hz ("1.2k")
    Gain,      // step of the gain table, in dB
    Quality,   // step of the Q table
    Ratio,     // step of the ratio table ("4.0:1", "INF:1")
    Knee,      // SOFT, MEDIUM, HARD
    Switch,    // OFF, ON
    Linear,    // value * step + offset, with a unit
    Text,      // a string parameter read one character per index
};

// One parameter of the simulated model: key, integer range, default, and how
// its value reads. Linear values show (value * step + offset) with `decimals`.
struct ParameterDefinition
{
    QByteArray key;
    int minimum = 0;
    int maximum = 0;
    int defaultValue = 0;
    ValueKind kind = ValueKind::Linear;
    QString unit;
    double step = 1.0;
    double offset = 0.0;
    int decimals = 0;
    // The key of the morph-table column that drives this parameter, if any.
    QByteArray morphColumnKey;
    // For a morph-table column: the parameter it stores values of.
    QByteArray morphTargetKey;
    bool signedOutput = false; // "+3.0 dB"

    bool isText() const { return kind == ValueKind::Text; }
};

struct MeterDefinition
{
    QByteArray key;
    unsigned short channels = 2;
    QString description;
};

struct FxEntry
{
    unsigned short kind = 0;
    unsigned short id = 0;
};
