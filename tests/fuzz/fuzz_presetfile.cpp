// Feeds arbitrary bytes to the preset container readers, the loader the
// converter uses and the description `preset info` prints: neither may
// crash, and they must agree. The description calls a preset of either class
// valid exactly when the loader restores its state, and the state restored is
// exactly the 'Comp' chunk's size.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <QBuffer>
#include <QByteArray>

#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"

namespace {

// What went wrong, or an empty string.
QString check(const QByteArray &bytes)
{
    QByteArray copy = bytes;
    QBuffer device(&copy);
    device.open(QIODevice::ReadOnly);
    const PresetFileInfo info = PresetFileInfo::read(device, QStringLiteral("input"));
    const bool convertible = info.isValid()
        && (info.classID == ORVChStripClassIds::Mono || info.classID == ORVChStripClassIds::Stereo);

    auto *stream = new MemoryBStream(bytes);
    auto *component = new ORVChStripPresetConverterComponent;
    const bool loaded
        = PresetFile::loadPreset(stream, ORVChStripClassIds::Mono, component, { ORVChStripClassIds::Stereo });
    stream->release();

    QString problem;
    if (loaded != convertible) {
        problem = QStringLiteral("the loader %1 it but the description says %2")
                      .arg(loaded ? QStringLiteral("restores") : QStringLiteral("refuses"),
                          info.isValid() ? QStringLiteral("valid") : info.error);
    } else if (loaded && qint64(component->state().size()) != info.componentState()->size) {
        problem = QStringLiteral("restored %1 bytes of a %2-byte 'Comp' chunk")
                      .arg(component->state().size())
                      .arg(info.componentState()->size);
    }
    component->release();
    return problem;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString problem = check(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "preset readers disagree: %s\n", qPrintable(problem));
        std::abort();
    }
    return 0;
}
