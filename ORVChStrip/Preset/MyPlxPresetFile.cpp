#include "ORVChStrip/Preset/MyPlxPresetFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "ORVChStrip/Chunk/FileBStream.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Preset/ORVChStripPresetConverterComponent.h"
#include "ORVChStrip/Preset/PresetFile.h"

namespace {

QString decodePath(const char *path)
{
    return path ? QFile::decodeName(path) : QString();
}

} // namespace

MyPlxPresetFile::MyPlxPresetFile(IComponent *component)
    : m_component(component)
{ }

bool MyPlxPresetFile::load(const char *path, const FUID &classID)
{
    return load(decodePath(path), classID);
}

bool MyPlxPresetFile::load(const QString &path, const FUID &classID)
{
    try {
        FileBStream *stream = FileBStream::openFile(path, QIODevice::ReadOnly);
        if (!stream)
            return false;
        const bool ok = PresetFile::loadPreset(stream, classID, m_component);
        stream->release();
        return ok;
    } catch (...) {
        return false;
    }
}

bool MyPlxPresetFile::save(const char *path, const FUID &classID)
{
    return save(decodePath(path), classID);
}

bool MyPlxPresetFile::save(const QString &path, const FUID &classID, QString *error)
{
    if (path.isEmpty())
        return false;
    try {
        auto *buffer = new MemoryBStream;
        const bool built = PresetFile::savePreset(buffer, classID, m_component);
        const QByteArray bytes = buffer->data();
        buffer->release();
        if (!built) {
            if (error)
                *error = QStringLiteral("the component state could not be stored");
            return false;
        }
        return AtomicFileWriter::write(path, bytes, error);
    } catch (...) {
        return false;
    }
}

int MyPlxPresetFile::checkID(const char *path, const FUID &classID)
{
    return checkID(decodePath(path), classID);
}

int MyPlxPresetFile::checkID(const QString &path, const FUID &classID)
{
    try {
        FileBStream *stream = FileBStream::openFile(path, QIODevice::ReadOnly);
        if (!stream)
            return -1;
        PresetFile file(stream);
        stream->release();
        if (!file.readChunkList())
            return -1;
        return file.getClassID() == classID ? 1 : 0;
    } catch (...) {
        return -1;
    }
}

bool MyPlxPresetFile::saveState(const QString &path, const FUID &classID, const QByteArray &state)
{
    QDir().mkpath(QFileInfo(path).path());
    auto *component = new ORVChStripPresetConverterComponent;
    auto *input = new MemoryBStream(state);
    const bool loaded = component->setState(input) == kResultOk;
    input->release();
    const bool saved = loaded && MyPlxPresetFile(component).save(path, classID);
    component->release();
    return saved;
}
