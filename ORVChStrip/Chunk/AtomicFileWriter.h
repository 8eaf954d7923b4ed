#pragma once

#include <QByteArray>
#include <QString>

// Replaces a file with new bytes, all or nothing: the bytes go to a temporary
// file beside the target (QSaveFile's "NAME.XXXXXX"), which is renamed into
// place only once every byte has reached the file system. On any failure the
// target keeps its old contents, the temporary file is removed and the
// reason names the file.
//
// Only a regular file is ever replaced: a device, a FIFO or a socket at the
// target is refused (a symbolic link to a regular file is followed).
class AtomicFileWriter
{
public:
    // What a successful write does with temporary files of the target's own
    // pattern that an interrupted write left behind: keep them (for callers
    // with a rule of their own) or remove those that are stale.
    enum class Leftovers { Keep, RemoveStale };

    explicit AtomicFileWriter(const QString &path, Leftovers leftovers = Leftovers::Keep);

    bool write(const QByteArray &bytes);
    // Why the last write failed, without the file's name.
    QString errorString() const { return m_error; }
    // "cannot write FILE: reason".
    QString errorMessage() const;

    // One call for callers that only need the message.
    static bool write(const QString &path, const QByteArray &bytes, QString *error = nullptr,
        Leftovers leftovers = Leftovers::Keep);

    // Why `path` must not be written to, or empty: it exists and is not a
    // regular file (after following symbolic links).
    static QString destinationProblem(const QString &path);

private:
    void removeLeftovers() const;

    QString m_path;
    Leftovers m_leftovers;
    QString m_error;
};
