// Feeds arbitrary bytes to the chunk reader: it must report, never crash,
// overrun the caller's buffers or loop without end.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ORVChStrip/Chunk/AnalyzerError.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/YChannelStripChunk.h"
#include "ORVChStrip/Chunk/YPlx3Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    auto *memory = new MemoryBStream(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    YPlx3Stream stream(memory);
    memory->release();

    // Exactly the documented buffer sizes, so the sanitizer sees any overrun.
    auto *params = new float[YChannelStripChunk::ParameterCapacity];
    auto *name = new char[YChannelStripChunk::SystemNameLength];
    auto *table = new short[YChannelStripChunk::TableRows][YChannelStripChunk::TableColumns];
    std::memset(params, 0, sizeof(float) * YChannelStripChunk::ParameterCapacity);
    std::memset(name, 0, YChannelStripChunk::SystemNameLength);

    YChannelStripChunk chunk;
    AnalyzerError error;
    const bool loaded = chunk.LoadBinALL(stream, error, params, name, table);
    if (loaded == error.isError() || std::strlen(error.message()) >= AnalyzerError::MessageCapacity)
        std::abort();

    delete[] params;
    delete[] name;
    delete[] table;
    return 0;
}
