// Restores arbitrary bytes through the state component into the simulated
// parameter memory: a stream that is refused must change nothing.
#include <cstdint>
#include <cstdlib>

#include "HostModel.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/ORVChStripComponent.h"
#include "ParameterMemory.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static HostModel model = HostModel::channelStrip();
    ParameterMemory memory(&model);
    auto *component = new ORVChStripComponent;
    component->addRef();
    component->setModelInfo(&model);
    component->setMemAPI(&memory);
    component->setCh(1);

    auto *stream = new MemoryBStream(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const int32_t result = component->setState(stream);
    stream->release();
    if (result != kResultOk && (!memory.writes().isEmpty() || memory.morphBatchCount() != 0))
        std::abort();

    // Whatever was restored saves again.
    auto *out = new MemoryBStream;
    if (component->getState(out) != kResultOk)
        std::abort();
    out->release();
    component->release();
    return 0;
}
