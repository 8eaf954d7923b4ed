#pragma once

#include <cstdint>

#include "FUID.h"
#include "FUnknown.h"

// The host's receiver of morph data: a batch of records written at once.
// Obtained from IMemAPI::queryInterface with ORVDMorphHandlerIID.
class IORVDMorphHandler : public FUnknown
{
public:
#pragma pack(push, 4)
    struct OMD_PRMINFO
    {
        uint16_t prmId;
        uint16_t index;
        int32_t value;
        uint32_t channel;
    };
#pragma pack(pop)
    static constexpr uint16_t kEndOfBatch = 0xFFFF;

    virtual int32_t getMorphPointCount() = 0;
    virtual int32_t getMorphColumnCount() = 0;
    // Takes a batch that ends with a record whose id is kEndOfBatch.
    virtual int32_t setMorphData(const OMD_PRMINFO *first) = 0;

protected:
    ~IORVDMorphHandler() = default;
};
static_assert(sizeof(IORVDMorphHandler::OMD_PRMINFO) == 12, "morph records are 12 bytes");

// 23EC2601-7D4B-4129-B468-1935156142D4
inline constexpr FUID ORVDMorphHandlerIID(0x23EC2601, 0x7D4B4129, 0xB4681935, 0x156142D4);
