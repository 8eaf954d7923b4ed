#pragma once

#include <QByteArray>

#include "HostModel.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ParameterMemory.h"

// A state as the component saves it on channel 1, from settings away from
// the defaults: attack 200 ms, release 1234 ms, knee MEDIUM, output -16.3 dB,
// the morph name "Warm", point 3 of the attack column 50 ms and point 0 of
// the knee column HARD. 1664 bytes; the second chunk starts at 928.
inline QByteArray savedChannelStripState()
{
    constexpr int Channel = 1;
    HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    memory.setText("fx_mrp_systmname", "Warm", Channel);
    memory.setValueByKey("fx_mrpcmp_atck", 50, Channel * 9 + 3);
    memory.setValueByKey("fx_mrpcmp_kne", 2, Channel * 9 + 0);
    memory.setValueByKey("fx_cmp_atck", 200, Channel);
    memory.setValueByKey("fx_cmp_rls", 1234, Channel);
    memory.setValueByKey("fx_cmp_kne", 1, Channel);
    memory.setValueByKey("fx_eq_peqgain", 17, Channel);
    auto *component = new ORVChStripComponent;
    component->addRef();
    component->setModelInfo(&model);
    component->setMemAPI(&memory);
    component->setCh(Channel);
    auto *stream = new MemoryBStream;
    const bool saved = component->getState(stream) == kResultOk;
    const QByteArray bytes = stream->data();
    stream->release();
    component->release();
    return saved ? bytes : QByteArray();
}
