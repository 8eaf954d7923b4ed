// Feeds arbitrary bytes to the tool's inspector, as a saved state and as a
// chunk file: it must report, never crash or read outside the data, and a
// refused file must not be presented as data.
#include <QTextStream>
#include <cstdint>
#include <cstdlib>

#include "ChannelStripModel.h"
#include "tools/StateInspector.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QList<ParameterDefinition> parameters = ChannelStripModel::parameters();
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    StateInspector inspector(parameters);
    for (const bool asState : { true, false }) {
        const bool valid = asState ? inspector.inspectState(bytes) : inspector.inspectChunk(bytes);
        if (valid != inspector.error().isEmpty())
            std::abort();
        if (!valid && (inspector.errorOffset() < 0 || !inspector.chunkValues().isEmpty()))
            std::abort();
        for (const StateInspector::Entry &entry : inspector.entries()) {
            if (entry.offset < 0 || entry.offset > qint64(size))
                std::abort();
        }
        QString text;
        QTextStream out(&text);
        inspector.writeText(out);
        if (inspector.toJson().isEmpty())
            std::abort();
    }
    return 0;
}
