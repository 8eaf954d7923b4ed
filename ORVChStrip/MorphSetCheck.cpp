#include "ORVChStrip/MorphSetCheck.h"

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"

using ORVChStripParameters::OrvaneDataParameterList;

void MorphSetCheck::setRanges(const RangeLookup &lookup)
{
    for (size_t column = 0; column < m_ranges.size(); ++column) {
        Range range;
        if (lookup && lookup(OrvaneDataParameterList[column], &range))
            m_ranges[column] = range;
        else
            m_ranges[column].reset();
    }
    m_hasRanges = true;
}

void MorphSetCheck::clearRanges()
{
    m_ranges.fill(std::nullopt);
    m_hasRanges = false;
}

QString MorphSetCheck::problem(const unsigned char *data, qsizetype size) const
{
    OrvdMorphRecord record;
    const OrvdMorphRecord::ReadResult result = OrvdMorphRecord::read(data, size, &record);
    if (result != OrvdMorphRecord::ReadResult::Ok)
        return OrvdMorphRecord::describe(result, size);
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        for (size_t column = 0; column < m_ranges.size(); ++column) {
            const std::optional<Range> &range = m_ranges[column];
            const int value = record.points[point][column];
            if (range && (value < range->minimum || value > range->maximum))
                return QStringLiteral("point %1, %2: %3 is outside the range %4..%5")
                    .arg(point + 1)
                    .arg(QLatin1String(OrvaneDataParameterList[column]))
                    .arg(value)
                    .arg(range->minimum)
                    .arg(range->maximum);
        }
    }
    return QString();
}

QString MorphSetCheck::problem(const ORVD_Data *data) const
{
    if (!data || data->IsFolder())
        return QString();
    return problem(data->GetDataBuffer(), data->GetDataSize());
}
