#pragma once

#include <QByteArray>
#include <QDir>
#include <QSaveFile>
#include <QString>

// Replaces a file with new bytes, all or nothing: the bytes go to a temporary
// file beside the target, which is renamed into place only once every byte
// has reached the file system. On any failure the target keeps its old
// contents, the temporary file is removed and the reason names the file.
//
// QSaveFile alone is not enough: small writes stay in its buffer, and a
// buffer that fails to reach a full disk at close() does not make commit()
// fail, so an empty file would replace a good one. Flushing first and
// checking the device's error state catches that.
class AtomicFileWriter
{
public:
    static bool write(const QString &path, const QByteArray &bytes, QString *error = nullptr)
    {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return fail(file, path, error);
        if (file.write(bytes) != bytes.size() || !file.flush() || file.error() != QFileDevice::NoError) {
            fail(file, path, error);
            file.cancelWriting();
            return false;
        }
        if (!file.commit())
            return fail(file, path, error);
        return true;
    }

private:
    static bool fail(const QSaveFile &file, const QString &path, QString *error)
    {
        if (error)
            *error = QStringLiteral("cannot write %1: %2")
                         .arg(QDir::toNativeSeparators(path), file.errorString());
        return false;
    }
};
