#include "StateFile.h"

#include <QMap>
#include <algorithm>
#include <limits>

#include "ChannelStripModel.h"
#include "Interfaces/IComponent.h"
#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "ORVChStrip/Chunk/BoundedFileReader.h"
#include "ORVChStrip/Chunk/MemoryBStream.h"
#include "ORVChStrip/Chunk/SavedStateLayout.h"
#include "ORVChStrip/Chunk/SavedStateReader.h"
#include "ParameterMemory.h"

namespace {

// Far more than any saved state holds (1,664 bytes), so that a wrong file,
// a huge one or a device is refused before it fills the memory.
constexpr qint64 StateReadLimit = 64 * 1024;

// Every strip's own channels and its nine morph points per channel.
constexpr int SnapshotChannels = ChannelStripModel::ChannelCount * 9;

// Puts back what `before` held wherever the memory now differs.
void restoreSnapshot(ParameterMemory &memory, const QMap<QString, QString> &before)
{
    // The morph position first: writing it moves the parameters it drives.
    const QString morphPosition = QStringLiteral("fx_mrp_vl@");
    QList<QString> keys = before.keys();
    std::stable_partition(
        keys.begin(), keys.end(), [&](const QString &k) { return k.startsWith(morphPosition); });
    const QMap<QString, QString> now = memory.snapshot(SnapshotChannels);
    for (const QString &name : std::as_const(keys)) {
        const QString value = before.value(name);
        if (now.value(name) == value)
            continue;
        const int at = int(name.lastIndexOf(QLatin1Char('@')));
        const QByteArray key = name.left(at).toLatin1();
        const int ch = name.mid(at + 1).toInt();
        const ParameterDefinition *parameter
            = memory.model()->parameter(memory.model()->parameterId(key.constData()));
        if (parameter && parameter->isText())
            memory.setText(key.constData(), QByteArray::fromHex(value.toLatin1()), ch);
        else
            memory.setValueByKey(key.constData(), value.toInt(), ch);
    }
}

} // namespace

bool StateFile::save(IComponent *component, const QString &path, QString *error)
{
    if (!component) {
        *error = QStringLiteral("the editor has no state component");
        return false;
    }
    auto *stream = new MemoryBStream;
    const int32_t result = component->getState(stream);
    const QByteArray bytes = stream->data();
    stream->release();
    if (result != kResultOk) {
        *error = QStringLiteral("the plug-in could not write its state (result %1)").arg(result);
        return false;
    }
    return AtomicFileWriter::write(path, bytes, error, AtomicFileWriter::Leftovers::RemoveStale);
}

bool StateFile::load(
    IComponent *component, ParameterMemory &memory, const QString &path, QString *error, QString *warning)
{
    if (warning)
        warning->clear();
    if (!component) {
        *error = QStringLiteral("the editor has no state component");
        return false;
    }
    BoundedFileReader reader(StateReadLimit, QStringLiteral("a saved state"));
    if (!reader.read(path)) {
        *error = QStringLiteral("%1: %2").arg(path, reader.errorString());
        return false;
    }
    const QByteArray &bytes = reader.bytes();
    auto *stream = new MemoryBStream(bytes);
    const QMap<QString, QString> before = memory.snapshot(SnapshotChannels);
    const int32_t result = component->setState(stream);
    stream->release();
    if (result == kResultOk) {
        SavedStateReader layout(bytes);
        YChannelStripChunk::Contents contents;
        if (warning && layout.readState(contents) && !layout.hasMorphData())
            *warning = QStringLiteral("%1 holds no morph data (no \"ORD \" chunk in the channel-strip chunk "
                                      "at offset %2); the current morph set was kept")
                           .arg(path)
                           .arg(layout.chunkOffset());
        return true;
    }

    // The component changes nothing when it refuses a stream; make sure.
    for (int pass = 0; pass < 3 && memory.snapshot(SnapshotChannels) != before; ++pass)
        restoreSnapshot(memory, before);
    const QString problem = diagnose(bytes);
    *error = QStringLiteral("the plug-in refused %1%2 (result %3); nothing was changed")
                 .arg(path, problem.isEmpty() ? QString() : QStringLiteral(": ") + problem)
                 .arg(result);
    return false;
}

QString StateFile::diagnose(const QByteArray &bytes)
{
    using namespace SavedStateLayout;
    if (bytes.isEmpty())
        return QStringLiteral("the file is empty");
    if (bytes.size() < FirstChunkOffset + FormHeaderSize)
        return QStringLiteral("the file is too short (%1 bytes)").arg(bytes.size());
    SavedStateReader reader(bytes);
    YChannelStripChunk::Contents contents;
    reader.readState(contents);
    const SavedStateReader::Failure &failure = reader.failure();
    // A size beyond any file is damage rather than truncation.
    if (failure.part == SavedStateReader::Part::Chunk && failure.problem == SavedStateReader::Problem::FormCut
        && failure.value <= std::numeric_limits<qint64>::max() / 2) {
        const qint64 statedEnd = failure.offset + failure.headerSize + failure.value;
        return QStringLiteral("the file is truncated: it ends %1 bytes before the end that the channel-strip "
                              "chunk at offset %2 states (%3 bytes)")
            .arg(statedEnd - bytes.size())
            .arg(failure.offset)
            .arg(statedEnd);
    }
    const QByteArray chunk = bytes.mid(FirstChunkOffset, FormHeaderSize);
    if (!chunk.startsWith(FormMagic) && chunk.mid(MarkerSize) != FormMagic)
        return QStringLiteral("no channel-strip chunk at offset %1").arg(FirstChunkOffset);
    if (reader.isNewerLayout() && (!bytes.contains(ParameterMarker) || !bytes.contains(ChunkMarker)))
        return QStringLiteral("the \"prms\" or \"chnk\" marker is missing");
    return QStringLiteral("the channel-strip chunk is damaged");
}
