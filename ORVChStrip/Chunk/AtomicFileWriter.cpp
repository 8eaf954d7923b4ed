#include "ORVChStrip/Chunk/AtomicFileWriter.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include "ORVChStrip/Chunk/NativeFileName.h"

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

// What a file that is not a regular one is, for the message.
QString kindOf(const QString &path)
{
    if (QFileInfo(path).isDir())
        return QStringLiteral("a folder");
#ifdef Q_OS_UNIX
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0) {
        if (S_ISCHR(status.st_mode))
            return QStringLiteral("a character device");
        if (S_ISBLK(status.st_mode))
            return QStringLiteral("a block device");
        if (S_ISFIFO(status.st_mode))
            return QStringLiteral("a FIFO");
        if (S_ISSOCK(status.st_mode))
            return QStringLiteral("a socket");
    }
#endif
    return QStringLiteral("a special file");
}

bool ownedByUser(const QFileInfo &file)
{
#ifdef Q_OS_UNIX
    return file.ownerId() == ::geteuid();
#else
    Q_UNUSED(file)
    return true;
#endif
}

// All one case, or a capital and then small letters.
bool readsAsWord(const QString &letters)
{
    const QString tail = letters.mid(1);
    return letters == letters.toLower() || letters == letters.toUpper() || tail == tail.toLower();
}

} // namespace

AtomicFileWriter::AtomicFileWriter(const QString &path, Leftovers leftovers)
    : m_path(path)
    , m_leftovers(leftovers)
{ }

QString AtomicFileWriter::errorMessage() const
{
    return QStringLiteral("cannot write %1: %2").arg(QDir::toNativeSeparators(m_path), m_error);
}

bool AtomicFileWriter::write(
    const QString &path, const QByteArray &bytes, QString *error, Leftovers leftovers)
{
    AtomicFileWriter writer(path, leftovers);
    const bool written = writer.write(bytes);
    if (!written && error)
        *error = writer.errorMessage();
    return written;
}

QString AtomicFileWriter::destinationProblem(const QString &path)
{
    const QFileInfo target(path);
    if (!target.exists() || target.isFile())
        return QString();
    return QStringLiteral("not a regular file (%1); only a regular file is replaced").arg(kindOf(path));
}

bool AtomicFileWriter::write(const QByteArray &bytes)
{
    m_error.clear();
    if (NativeFileName::hasUndecodedBytes(m_path)) {
        m_error = QStringLiteral("the name is not valid UTF-8");
        return false;
    }
    // QSaveFile would rename its temporary file over a device or a FIFO.
    m_error = destinationProblem(m_path);
    if (!m_error.isEmpty())
        return false;

    // QSaveFile alone is not enough: small writes stay in its buffer, and a
    // buffer that fails to reach a full disk at close() does not make
    // commit() fail, so an empty file would replace a good one. Flushing
    // first and checking the device's error state catches that.
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly)) {
        m_error = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.flush() || file.error() != QFileDevice::NoError) {
        m_error = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        m_error = file.errorString();
        return false;
    }
    if (m_leftovers == Leftovers::RemoveStale)
        removeLeftovers();
    return true;
}

void AtomicFileWriter::removeLeftovers() const
{
    // A write killed before QSaveFile's rename leaves "NAME.XXXXXX" (six
    // random letters of either case) beside the target, where a symbolic link
    // leads. Only regular files of that exact pattern that this user owns and
    // that nothing has written to for a moment are taken, so that a save of
    // the same file in another process is not disturbed; six letters that read
    // as a word ("backup", "BACKUP", "Backup") are a user's name, not Qt's.
    constexpr int QuietSeconds = 2;
    const QFileInfo target(QFileInfo(m_path).canonicalFilePath());
    if (target.fileName().isEmpty())
        return;
    const QRegularExpression pattern(
        QStringLiteral("^%1\\.[A-Za-z]{6}$").arg(QRegularExpression::escape(target.fileName())));
    const QDateTime quietSince = QDateTime::currentDateTimeUtc().addSecs(-QuietSeconds);
    // The pattern alone picks them: a wildcard filter would take a '[' in the
    // name for a character class.
    const QDir folder = target.dir();
    for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (!pattern.match(name).hasMatch() || readsAsWord(name.right(6)))
            continue;
        const QFileInfo file(folder.filePath(name));
        if (!file.isSymLink() && file.isFile() && ownedByUser(file)
            && file.lastModified().toUTC() <= quietSince)
            QFile::remove(file.filePath());
    }
}
