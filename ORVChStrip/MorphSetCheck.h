#pragma once

#include <QString>
#include <QtGlobal>
#include <array>
#include <functional>
#include <optional>

#include "ORVChStrip/ORVChStripParameters.h"

class ORVD_Data;

// Whether a morph data file can be sent to the host as it is, and if not, why
// in words for the user: a record that does not read (size, magic, version,
// shape), or a value outside the host's range of its column. Such a value is
// refused rather than clamped, because a clamped set is not the set the file
// describes.
class MorphSetCheck
{
public:
    struct Range
    {
        int minimum = 0;
        int maximum = 0;
    };
    // The host's range of a morph column's key; false when it has none.
    using RangeLookup = std::function<bool(const char *key, Range *range)>;

    // Asks the range of every column once. Columns the lookup does not know
    // are not range-checked (a batch cannot name them anyway).
    void setRanges(const RangeLookup &lookup);
    void clearRanges();
    bool hasRanges() const { return m_hasRanges; }

    // Empty when the bytes can be sent.
    QString problem(const unsigned char *data, qsizetype size) const;
    // Empty for a folder, a null entry, and a file that can be sent.
    QString problem(const ORVD_Data *data) const;

private:
    std::array<std::optional<Range>, ORVChStripParameters::OrvaneDataParameterCount> m_ranges;
    bool m_hasRanges = false;
};
