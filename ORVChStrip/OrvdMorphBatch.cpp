#include "ORVChStrip/OrvdMorphBatch.h"

#include <utility>

#include "Interfaces/ChannelStripKeys.h"
#include "Interfaces/IMemAPI.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"

using namespace ORVChStripParameters;

static_assert(
    OrvdMorphRecord::ColumnCount == OrvaneDataParameterCount, "a record row holds every morph column");
static_assert(OrvdMorphRecord::PointCount == MorphPointCount, "a record holds every morph point");

OrvdMorphBatch::OrvdMorphBatch(ParameterLookup lookup)
    : m_lookup(std::move(lookup))
{ }

bool OrvdMorphBatch::appendPrmInfoChars(const char *key, const QByteArray &text, int length, uint32_t channel)
{
    unsigned short id = 0;
    if (!m_lookup || !m_lookup(key, &id))
        return false;
    for (int i = 0; i < length; ++i) {
        const auto character = static_cast<signed char>(i < text.size() ? text.at(i) : '\0');
        m_records.push_back({ id, static_cast<uint16_t>(i), character, channel });
    }
    return true;
}

bool OrvdMorphBatch::appendPrmInfoUInt32(const char *key, int32_t value, uint32_t channel)
{
    unsigned short id = 0;
    if (!m_lookup || !m_lookup(key, &id))
        return false;
    m_records.push_back({ id, 0, value, channel });
    return true;
}

void OrvdMorphBatch::appendPrmInfoTerminator()
{
    m_records.push_back({ IORVDMorphHandler::kEndOfBatch, 0, 0, 0 });
}

bool OrvdMorphBatch::appendMorphSet(const QByteArray &name, const OrvdMorphRecord &record, int ch)
{
    if (ch < 0)
        return false;
    const auto channel = static_cast<uint32_t>(ch);
    if (!appendPrmInfoChars(ChannelStripKeys::MorphSystemName, name.left(MorphSystemNameLength),
            MorphSystemNameLength, channel)
        || !appendPrmInfoChars(
            ChannelStripKeys::MorphSystemId, record.systemId, OrvdMorphRecord::SystemIdCapacity, channel))
        return false;
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        const uint32_t pointChannel = channel * MorphPointCount + uint32_t(point);
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column) {
            if (!appendPrmInfoUInt32(
                    OrvaneDataParameterList[column], record.points[point][column], pointChannel))
                return false;
        }
    }
    appendPrmInfoTerminator();
    return true;
}

bool OrvdMorphBatch::isTerminated() const
{
    return !m_records.empty() && m_records.back().prmId == IORVDMorphHandler::kEndOfBatch;
}

int OrvdMorphBatch::send(IMemAPI *memAPI) const
{
    if (!memAPI || !isTerminated())
        return kResultFalse;
    char iid[16];
    ORVDMorphHandlerIID.toBytes(iid);
    void *handler = nullptr;
    if (memAPI->queryInterface(iid, &handler) != kResultOk || !handler)
        return kResultFalse;
    return static_cast<IORVDMorphHandler *>(handler)->setMorphData(m_records.data());
}
