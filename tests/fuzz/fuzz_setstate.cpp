// Restores arbitrary bytes through the state component into the simulated
// parameter memory: a stream that is refused must change nothing.
#include <cstdint>
#include <cstdlib>

#include "BoundComponent.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    BoundComponent host;
    const int32_t result = host.restore(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (result != kResultOk && (!host.memory.writes().isEmpty() || host.memory.morphBatchCount() != 0))
        std::abort();
    // Whatever was restored saves again.
    if (host.save().isEmpty())
        std::abort();
    return 0;
}
