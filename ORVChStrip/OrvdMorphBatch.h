#pragma once

#include <QByteArray>
#include <functional>
#include <vector>

#include "Interfaces/IORVDMorphHandler.h"

class IMemAPI;
class OrvdMorphRecord;

// One batch of records for the host's morph handler. Every append looks its
// key up first and appends nothing when the model lacks it, so that a caller
// can abandon a batch that would only half describe a morph set.
class OrvdMorphBatch
{
public:
    using Record = IORVDMorphHandler::OMD_PRMINFO;
    // Answers the host parameter id of a key, false when the model lacks it.
    using ParameterLookup = std::function<bool(const char *key, unsigned short *prmId)>;

    explicit OrvdMorphBatch(ParameterLookup lookup);

    // `length` records, one character each (index 0 to length - 1), the
    // characters of `text` and then zeros, so a shorter text clears the end
    // of a longer one.
    bool appendPrmInfoChars(const char *key, const QByteArray &text, int length, uint32_t channel);
    bool appendPrmInfoUInt32(const char *key, int32_t value, uint32_t channel);
    void appendPrmInfoTerminator();

    // The whole morph set of `record` for channel `ch` under the name
    // `name`: name, system id, then every point's seventeen values on the
    // point's channel (ch * 9 + point), then the end record.
    bool appendMorphSet(const QByteArray &name, const OrvdMorphRecord &record, int ch);

    // Hands a terminated batch to the morph handler that `memAPI` offers;
    // the handler's result, or false when there is no batch or no handler.
    int send(IMemAPI *memAPI) const;

    const std::vector<Record> &records() const { return m_records; }
    bool isTerminated() const;

private:
    ParameterLookup m_lookup;
    std::vector<Record> m_records;
};
