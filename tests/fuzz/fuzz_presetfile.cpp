// Feeds arbitrary bytes to the preset container readers: the loader and the
// description must never crash, and must agree on what is a preset.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "PresetContainerCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString problem
        = PresetContainerCheck::check(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "preset readers disagree: %s\n", qPrintable(problem));
        std::abort();
    }
    return 0;
}
