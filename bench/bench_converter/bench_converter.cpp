// How long the conversion of 1,000 old presets holds up the GUI thread: the
// conversion called on the GUI thread (the baseline), and the converter
// dialog's "Yes", which converts on a worker while the event loop turns.
// The GUI thread's longest stall is the longest gap between the ticks of a
// 1 ms timer; best of a few runs each.

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>
#include <algorithm>
#include <limits>

#include "ORVChStrip/ORVChStripPresetConverter.h"
#include "ORVChStrip/Preset/MyPlxPresetFile.h"
#include "ORVChStrip/Preset/ORVChStripClassIds.h"
#include "ORVChStrip/Preset/ORVChStripPresetConversion.h"

namespace {

constexpr int PresetCount = 1000;
constexpr int FoldersPerSource = 10;
constexpr int StateSize = 4096;
constexpr int Runs = 3;

using Conversion = ORVChStripPresetConversion;

// Half mono, half stereo, spread over sub-folders of both sources.
bool generate()
{
    const QByteArray state = QByteArray(StateSize, char(0x5a));
    for (int i = 0; i < PresetCount; ++i) {
        const bool mono = i % 2 == 0;
        const QString source = mono ? Conversion::monoFolders().source : Conversion::stereoFolders().source;
        const QString path = QStringLiteral("%1/Set %2/Preset %3.plxpreset")
                                 .arg(source)
                                 .arg(i / 2 % FoldersPerSource)
                                 .arg(i, 4, 10, QLatin1Char('0'));
        if (!MyPlxPresetFile::saveState(
                path, mono ? ORVChStripClassIds::Mono : ORVChStripClassIds::Stereo, state))
            return false;
    }
    return true;
}

void removeDestinations()
{
    for (const Conversion::FolderPair &pair : Conversion::folderPairs())
        QDir(pair.destination).removeRecursively();
}

struct Run
{
    double blockedMs = 0; // the GUI thread's longest stall
    double totalMs = 0;   // from the start until the last file is written
    int converted = 0;
};

Run synchronous()
{
    QElapsedTimer timer;
    timer.start();
    const PresetConversionReport report = Conversion::convertAll();
    Run run;
    run.totalMs = run.blockedMs = timer.nsecsElapsed() / 1e6;
    run.converted = report.count(PresetConversionItem::Converted);
    return run;
}

Run throughDialog(ORVChStripPresetConverter &dialog)
{
    Run run;
    QElapsedTimer total;
    QElapsedTimer sinceTick;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        run.blockedMs = std::max(run.blockedMs, sinceTick.nsecsElapsed() / 1e6);
        sinceTick.start();
    });
    QEventLoop loop;
    QObject::connect(&dialog, &ORVChStripPresetConverter::conversionFinished, &loop, &QEventLoop::quit);

    ticker.start(1);
    total.start();
    sinceTick.start();
    dialog.execute();
    loop.exec();
    run.blockedMs = std::max(run.blockedMs, sinceTick.nsecsElapsed() / 1e6);
    run.totalMs = total.nsecsElapsed() / 1e6;
    ticker.stop();
    return run;
}

int countConverted()
{
    int files = 0;
    for (const Conversion::FolderPair &pair : Conversion::folderPairs()) {
        QDirIterator it(
            pair.destination, { QStringLiteral("*.plxpreset") }, QDir::Files, QDirIterator::Subdirectories);
        for (; it.hasNext(); it.next())
            ++files;
    }
    return files;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The presets and the dialog's setting live in a scratch home, never the user's.
    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));

    QApplication app(argc, argv);
    const bool json = app.arguments().contains(QStringLiteral("--json"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (!home.isValid() || !generate()) {
        err << "bench_converter: cannot create the old presets\n";
        return 1;
    }

    ORVChStripPresetConverter dialog;
    Run syncBest { std::numeric_limits<double>::max(), std::numeric_limits<double>::max(), 0 };
    Run dialogBest = syncBest;
    for (int i = 0; i < Runs; ++i) {
        removeDestinations();
        const Run sync = synchronous();
        removeDestinations();
        Run viaDialog = throughDialog(dialog);
        viaDialog.converted = countConverted();
        if (sync.converted != PresetCount || viaDialog.converted != PresetCount) {
            err << "bench_converter: converted " << sync.converted << " and " << viaDialog.converted
                << " files instead of " << PresetCount << '\n';
            return 1;
        }
        syncBest.blockedMs = std::min(syncBest.blockedMs, sync.blockedMs);
        syncBest.totalMs = std::min(syncBest.totalMs, sync.totalMs);
        dialogBest.blockedMs = std::min(dialogBest.blockedMs, viaDialog.blockedMs);
        dialogBest.totalMs = std::min(dialogBest.totalMs, viaDialog.totalMs);
    }

    if (json) {
        const QJsonObject object { { QStringLiteral("presets"), PresetCount },
            { QStringLiteral("sync_blocked_ms"), syncBest.blockedMs },
            { QStringLiteral("sync_total_ms"), syncBest.totalMs },
            { QStringLiteral("dialog_blocked_ms"), dialogBest.blockedMs },
            { QStringLiteral("dialog_total_ms"), dialogBest.totalMs } };
        out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
        return 0;
    }
    out << "bench_converter: " << PresetCount << " old presets of " << StateSize << " state bytes, best of "
        << Runs << " runs\n";
    out << "                                  GUI thread blocked   conversion done after\n";
    out << QStringLiteral("  on the GUI thread (baseline)   %1 ms         %2 ms\n")
               .arg(syncBest.blockedMs, 9, 'f', 1)
               .arg(syncBest.totalMs, 9, 'f', 1);
    out << QStringLiteral("  dialog, worker thread          %1 ms         %2 ms\n")
               .arg(dialogBest.blockedMs, 9, 'f', 1)
               .arg(dialogBest.totalMs, 9, 'f', 1);
    out << "  (the GUI thread must never be blocked for more than 100 ms)\n";
    return 0;
}
