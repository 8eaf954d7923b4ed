#include "PluginHost.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "ChannelStripModel.h"
#include "Interfaces/IQXEffect.h"
#include "Interfaces/IQXEffectEditor.h"

PluginHost::PluginHost()
    : m_model(HostModel::channelStrip())
    , m_memory(&m_model)
{ }

PluginHost::~PluginHost() = default;

QString PluginHost::defaultPluginPath()
{
    // Installed, the plug-in has a folder of its own under the library
    // directory, found from the host's own folder so that the installation
    // can be moved as a whole; in the build tree it lies in plugins/.
    const QDir hostFolder(QCoreApplication::applicationDirPath());
    const QString installedFolder = hostFolder.filePath(QStringLiteral(ORV_INSTALLED_PLUGIN_DIR));
    if (QFileInfo(installedFolder).isDir())
        return QDir::cleanPath(installedFolder + QStringLiteral("/orvchstrip"));
    return QDir::cleanPath(hostFolder.filePath(QStringLiteral("../plugins/orvchstrip")));
}

namespace {

// Why an existing file cannot be a plug-in, or empty: QPluginLoader says only
// "not found" of a text file or a device.
QString notALibrary(const QFileInfo &file)
{
    if (file.isDir())
        return QStringLiteral("the path is a folder");
    QFile library(file.filePath());
    if (!file.isFile() || !library.open(QIODevice::ReadOnly))
        return QStringLiteral("the file is not a shared library");
    // ELF, Mach-O (thin or universal) and PE start with these.
    const QByteArray magic = library.read(4);
    for (const char *start : { "\x7f"
                               "ELF",
             "\xfe\xed\xfa", "\xce\xfa\xed\xfe", "\xcf\xfa\xed\xfe", "\xca\xfe\xba\xbe", "MZ" }) {
        if (magic.startsWith(start))
            return QString();
    }
    return QStringLiteral("the file is not a shared library");
}

} // namespace

bool PluginHost::load(const QString &path, QString *error)
{
    // A path without the suffix is QPluginLoader's to complete.
    const QFileInfo file(path);
    if (file.exists()) {
        if (const QString problem = notALibrary(file); !problem.isEmpty()) {
            *error = QStringLiteral("cannot load the plug-in %1: %2").arg(path, problem);
            return false;
        }
    }
    m_loader.setFileName(file.exists() ? file.absoluteFilePath() : path);
    m_pInstance = m_loader.instance();
    if (!m_pInstance) {
        *error = QStringLiteral("cannot load the plug-in %1: %2").arg(path, m_loader.errorString());
        return false;
    }
    return true;
}

IQXEffectEditor *PluginHost::createEditor(QWidget *parent, const Options &options, QString *error)
{
    auto *effect = qobject_cast<IQXEffect *>(m_pInstance);
    auto *channelEffect = qobject_cast<IQXEffectChFx *>(m_pInstance);
    if (!effect || !channelEffect) {
        *error
            = QStringLiteral("%1 does not offer the interfaces %2 and %3")
                  .arg(m_loader.fileName(), QStringLiteral(IQXEffect_iid), QStringLiteral(IQXEffectChFx_iid));
        return nullptr;
    }
    if (channelEffect->fxType() != ChannelStripModel::ChannelStripFxKind) {
        *error = QStringLiteral("%1 edits effect type %2, not the channel strip")
                     .arg(m_loader.fileName())
                     .arg(channelEffect->fxType());
        return nullptr;
    }
    IQXEffectEditor *editor = effect->create(parent, ChannelStripModel::ChannelStripFxId, &m_model);
    if (!editor) {
        *error = QStringLiteral("the plug-in made no editor for this model");
        return nullptr;
    }
    editor->setMemAPI(&m_memory);
    editor->setCh(options.channel, options.stereo ? options.channel + 1 : -1);
    editor->setStereo(options.stereo);
    editor->setFs(options.fs);
    editor->setOn(true);
    editor->setScale(options.scale);
    editor->setDialEditMode(options.dialEditMode);
    editor->setSliderEditMode(options.sliderEditMode);
    editor->setEditorSettings(options.editorSettings);
    return editor;
}
