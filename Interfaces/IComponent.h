#pragma once

#include "FUnknown.h"

class IBStream;

class IPluginBase : public FUnknown
{
public:
    virtual int32_t initialize(FUnknown *context) = 0;
    virtual int32_t terminate() = 0;

protected:
    ~IPluginBase() = default;
};

struct BusInfo
{
    int32_t mediaType = 0;
    int32_t direction = 0;
    int32_t channelCount = 0;
    char16_t name[128] = {};
    int32_t busType = 0;
    uint32_t flags = 0;
};

struct RoutingInfo
{
    int32_t mediaType = 0;
    int32_t busIndex = 0;
    int32_t channel = 0;
};

// The component of an effect: the host saves and restores its state as bytes.
class IComponent : public IPluginBase
{
public:
    virtual int32_t getControllerClassId(char *classId) = 0;
    virtual int32_t setIoMode(int32_t mode) = 0;
    virtual int32_t getBusCount(int32_t type, int32_t direction) = 0;
    virtual int32_t getBusInfo(int32_t type, int32_t direction, int32_t index, BusInfo &bus) = 0;
    virtual int32_t getRoutingInfo(RoutingInfo &inInfo, RoutingInfo &outInfo) = 0;
    virtual int32_t activateBus(int32_t type, int32_t direction, int32_t index, unsigned char state) = 0;
    virtual int32_t setActive(unsigned char state) = 0;
    virtual int32_t setState(IBStream *state) = 0;
    virtual int32_t getState(IBStream *state) = 0;

protected:
    ~IComponent() = default;
};
