#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QString>

#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"
#include "ORVChStrip/Preset/PresetFileInfo.h"

// Reads one preset container with both readers, the loader the converter
// uses and the description `preset info` prints, and checks that they agree:
// the description calls a preset of either class valid exactly when the
// loader restores its state, and the state restored is exactly the 'Comp'
// chunk's size. A restored state written back must read the same again.
// Returns what went wrong, or an empty string.
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
    } else if (loaded) {
        auto *output = new MemoryBStream;
        const bool saved = PresetFile::savePreset(output, ORVChStripClassIds::Stereo, component);
        QByteArray written = output->data();
        output->release();
        QBuffer again(&written);
        again.open(QIODevice::ReadOnly);
        const PresetFileInfo reread = PresetFileInfo::read(again, QStringLiteral("written"));
        if (!saved || !reread.isValid() || reread.componentState()->size != info.componentState()->size)
            problem = QStringLiteral("the state written back does not read again");
    }
    component->release();
    return problem;
}

} // namespace PresetContainerCheck
