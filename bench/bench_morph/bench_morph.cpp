// Times the morph catalogue scan of 10,000 files in 100 sub-folders against a
// plain directory walk that reads the same files, best of a few runs each.

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <limits>

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"

namespace {

constexpr int FolderCount = 100;
constexpr int FilesPerFolder = 100;
constexpr int FileSize = 512;
constexpr int Runs = 5;

bool generate(const QString &root)
{
    QByteArray contents(FileSize, '\0');
    for (int i = 0; i < FileSize; ++i)
        contents[i] = char(i * 37);
    for (int folder = 0; folder < FolderCount; ++folder) {
        const QString folderPath = QStringLiteral("%1/Set %2").arg(root).arg(folder, 3, 10, QLatin1Char('0'));
        if (!QDir().mkpath(folderPath))
            return false;
        for (int file = 0; file < FilesPerFolder; ++file) {
            QFile out(QStringLiteral("%1/Morph %2.ord").arg(folderPath).arg(file, 3, 10, QLatin1Char('0')));
            if (!out.open(QIODevice::WriteOnly) || out.write(contents) != FileSize)
                return false;
        }
    }
    return true;
}

// Returns the number of files in the catalogue, to check the scan saw all.
qint64 scanOnce(const QString &root, double &ms)
{
    ORVD_Manager manager;
    manager.GetCollection().SetFolder(root);
    QElapsedTimer timer;
    timer.start();
    manager.Collection();
    ms = timer.nsecsElapsed() / 1e6;

    qint64 files = 0;
    for (const ORVD_Data *folder : manager.GetDataList())
        files += qint64(folder->GetDataList().size());
    return files;
}

qint64 walkOnce(const QString &root, double &ms)
{
    QElapsedTimer timer;
    timer.start();
    qint64 files = 0;
    qint64 bytes = 0;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        bytes += file.readAll().size();
        ++files;
    }
    ms = timer.nsecsElapsed() / 1e6;
    return bytes == files * FileSize ? files : -1;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const bool json = app.arguments().contains(QStringLiteral("--json"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QTemporaryDir dir;
    if (!dir.isValid() || !generate(dir.path())) {
        err << "bench_morph: cannot create the test files\n";
        return 1;
    }

    constexpr qint64 expected = qint64(FolderCount) * FilesPerFolder;
    double scanBest = std::numeric_limits<double>::max();
    double walkBest = std::numeric_limits<double>::max();
    // One untimed round first so that both start from a warm cache.
    for (int run = 0; run <= Runs; ++run) {
        double scanMs = 0;
        double walkMs = 0;
        if (scanOnce(dir.path(), scanMs) != expected || walkOnce(dir.path(), walkMs) != expected) {
            err << "bench_morph: the scan or the walk missed files\n";
            return 1;
        }
        if (run > 0) {
            scanBest = std::min(scanBest, scanMs);
            walkBest = std::min(walkBest, walkMs);
        }
    }

    if (json) {
        const QJsonObject object { { QStringLiteral("scan_10k_ms"), scanBest },
            { QStringLiteral("walk_10k_ms"), walkBest } };
        out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
        return 0;
    }
    out << "bench_morph: " << expected << " files of " << FileSize << " bytes in " << FolderCount
        << " folders, best of " << Runs << " runs\n";
    out << QStringLiteral("  catalogue scan  %1 ms\n").arg(scanBest, 8, 'f', 2);
    out << QStringLiteral("  plain walk      %1 ms  (baseline)\n").arg(walkBest, 8, 'f', 2);
    out << QStringLiteral("  scan / walk     %1  (must stay below 2)\n").arg(scanBest / walkBest, 8, 'f', 2);
    return 0;
}
