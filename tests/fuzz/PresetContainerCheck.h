#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QString>

#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"

// Reads one preset container with both readers, the loader the converter
// uses and the description `preset info` prints, and checks that they agree:
// the description calls a preset of either class valid exactly when the
// loader restores its state, and the state restored is exactly the 'Comp'
// chunk's size. Returns what went wrong, or an empty string.
namespace PresetContainerCheck {

inline QString check(const QByteArray &bytes)
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

} // namespace PresetContainerCheck
