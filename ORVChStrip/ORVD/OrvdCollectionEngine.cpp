#include "ORVChStrip/ORVD/OrvdCollectionEngine.h"

#include <QDir>
#include <QFileInfo>
#include <memory>

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/OrvdEntryName.h"
#include "ORVChStrip/ORVD/OrvdFileReader.h"

namespace {

// The extension compared as the C library would after lower-casing it.
bool isMorphDataExtension(QStringView extension)
{
    return extension.size() == 3 && extension.compare(QLatin1String("ord"), Qt::CaseInsensitive) == 0
        && extension[0].unicode() < 0x80 && extension[1].unicode() < 0x80 && extension[2].unicode() < 0x80;
}

// The machine-wide data folders that may hold the maker's folder, in order of
// preference.
QStringList applicationSupportFolders()
{
#if defined(Q_OS_MACOS)
    return { QStringLiteral("/Library/Application Support") };
#elif defined(Q_OS_WIN)
    const QString programData = qEnvironmentVariable("ProgramData");
    return { programData.isEmpty() ? QStringLiteral("C:/ProgramData")
                                   : QDir::fromNativeSeparators(programData) };
#else
    // The XDG data directories; relative entries are invalid, and an empty
    // list means the XDG default.
    QStringList folders;
    for (const QString &dir :
        qEnvironmentVariable("XDG_DATA_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        if (QDir::isAbsolutePath(dir))
            folders << dir;
    }
    if (folders.isEmpty())
        folders = { QStringLiteral("/usr/local/share"), QStringLiteral("/usr/share") };
    return folders;
#endif
}

} // namespace

OrvdCollectionEngine::OrvdCollectionEngine(const QString &folder)
    : m_iterator(folder, QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot | QDir::NoSymLinks)
{ }

QString OrvdCollectionEngine::GetOrvdFolder()
{
    const QString override = qEnvironmentVariable("ORVCHSTRIP_MORPH_FOLDER");
    if (!override.isEmpty())
        return QDir::cleanPath(QDir::fromNativeSeparators(override));
    // The first folder that holds the maker's folder, so that sets installed
    // with the package under /usr/share are found unless /usr/local/share has
    // its own; without any, the first (an empty catalogue).
    const QStringList folders = applicationSupportFolders();
    for (const QString &folder : folders) {
        const QString candidate = QDir::cleanPath(folder + QStringLiteral("/Halvorn/ORVD"));
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return QDir::cleanPath(folders.first() + QStringLiteral("/Halvorn/ORVD"));
}

void OrvdCollectionEngine::Collection(std::vector<ORVD_Data *> &list, int depth)
{
    while (m_iterator.hasNext()) {
        m_iterator.next();
        const QFileInfo info = m_iterator.fileInfo();
        if (info.isDir())
            AnalzeFolder(list, info, depth);
        else
            AnalyzeFile(list, info);
    }
}

void OrvdCollectionEngine::AnalzeFolder(std::vector<ORVD_Data *> &list, const QFileInfo &info, int depth)
{
    if (depth <= 0)
        return;
#ifdef Q_OS_WIN
    if (info.isJunction())
        return;
#endif
    auto *folder = new ORVD_Data;
    std::vector<ORVD_Data *> &children
        = folder->SetFolderName(ORVD::ToEntryName(info.fileName()).constData());
    list.push_back(folder);
    OrvdCollectionEngine(info.filePath()).Collection(children, depth - 1);
}

void OrvdCollectionEngine::AnalyzeFile(std::vector<ORVD_Data *> &list, const QFileInfo &info)
{
    const QString fileName = info.fileName();
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot < 0 || !isMorphDataExtension(QStringView(fileName).sliced(dot + 1)))
        return;
    const QByteArray name = ORVD::ToEntryName(fileName.left(dot));
    if (name.isEmpty())
        return;

    OrvdFileReader reader(info.filePath());
    const qint64 size = reader.GetSize();
    if (size <= 0 || size > MaxDataSize)
        return;
    auto entry = std::make_unique<ORVD_Data>();
    unsigned char *buffer = entry->SetFileData(name.constData(), static_cast<unsigned int>(size));
    if (!buffer || reader.Read(buffer, size) != size)
        return;
    list.push_back(entry.release());
}
