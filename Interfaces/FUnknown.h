#pragma once

#include <cstdint>

// Result codes of the plug-in standard. A negative result is a failure.
enum PlxResult : int32_t {
    kResultOk = 0,
    kResultFalse = 1,
    kNotImplemented = 3,
    kNoInterface = -1,
};

// Interface ids are passed as 16 raw bytes (see FUID::toBytes).
class FUnknown
{
public:
    virtual int32_t queryInterface(const char *iid, void **obj) = 0;
    virtual uint32_t addRef() = 0;
    virtual uint32_t release() = 0;

protected:
    ~FUnknown() = default;
};
