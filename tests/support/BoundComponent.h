#pragma once

#include <QByteArray>

#include "HostModel.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ParameterMemory.h"

// A simulated host with one state component bound to its parameter memory on
// one channel, saving and restoring through memory streams as a host does.
struct BoundComponent
{
    explicit BoundComponent(int ch = 1)
        : model(HostModel::channelStrip())
        , memory(&model)
        , channel(ch)
    {
        component->addRef();
        component->setModelInfo(&model);
        component->setMemAPI(&memory);
        component->setCh(ch);
    }
    ~BoundComponent() { component->release(); }
    BoundComponent(const BoundComponent &) = delete;
    BoundComponent &operator=(const BoundComponent &) = delete;

    // The state getState writes, or nothing when it fails.
    QByteArray save()
    {
        auto *stream = new MemoryBStream;
        const bool saved = component->getState(stream) == kResultOk;
        const QByteArray bytes = stream->data();
        stream->release();
        return saved ? bytes : QByteArray();
    }
    int32_t restore(const QByteArray &bytes)
    {
        auto *stream = new MemoryBStream(bytes);
        const int32_t result = component->setState(stream);
        stream->release();
        return result;
    }

    HostModel model;
    ParameterMemory memory;
    int channel;
    ORVChStripComponent *component = new ORVChStripComponent;
};
