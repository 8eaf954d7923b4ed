#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "Interfaces/FUID.h"

// One file met by a conversion and what became of it.
struct PresetConversionItem
{
    enum Outcome {
        Converted,    // written to the destination
        WouldConvert, // a dry run found it convertible
        Skipped,      // not a preset of either class, damaged, a symbolic link, unreadable, ...
        Failed,       // a preset that could not be written
        Ignored,      // not a preset by its name: another extension, or hidden
        Removed,      // a temporary file an interrupted conversion left in the destination
    };

    QString source;
    QString destination;
    Outcome outcome = Skipped;
    QString reason; // why it was skipped or failed; for a conversion, the class met
};

// What a conversion did, file by file.
struct PresetConversionReport
{
    QList<PresetConversionItem> items;
    QStringList errors; // problems with the folders themselves

    int count(PresetConversionItem::Outcome outcome) const;
    void append(const PresetConversionReport &other);
    // The counts in words, those of zero left out: "3 presets converted,
    // 1 skipped, 2 other files left alone", "no preset converted, 1 failed";
    // "no old presets found" when the folders held nothing.
    QString summary() const;
};

struct PresetConversionOptions
{
    bool dryRun = false; // report what would be done, write nothing
    // Leave out, unreported, presets whose converted copy is at least as new
    // as they are: what an earlier conversion already did.
    bool pendingOnly = false;
    // Called with the path of each source preset once it has been read and
    // before it is checked for changes during the read; for observers and
    // for tests that change a file at exactly that moment.
    std::function<void(const QString &source)> sourceRead;
};

// Copies preset files of the old mono and stereo plug-in classes into the
// folders the current version loads from, re-written under the stereo class
// id with the component state carried across unchanged. Source folders are
// only ever read. A destination file is only ever replaced by a complete one.
// A source is skipped with the reason when its component state reads shorter
// than its chunk list states or when it changes while it is read. A temporary
// file that an interrupted conversion left beside a preset is removed once
// the preset is converted again, if it holds nothing but a part of it.
class ORVChStripPresetConversion
{
public:
    struct FolderPair
    {
        QString source;
        QString destination;
    };

    using Options = PresetConversionOptions;

    // The folder that holds the user's presets (macOS: ~/Library/Audio/Presets;
    // Linux: $XDG_DATA_HOME/Audio/Presets; Windows: Documents/Audio/Presets).
    static QString presetBase();
    static FolderPair monoFolders();
    static FolderPair stereoFolders();
    static QList<FolderPair> folderPairs();

    // "mono", "stereo" or "other".
    static QString className(const FUID &classID);

    // Converts source into destination, sub-folders included.
    static PresetConversionReport convert(const QString &source, const QString &destination, Options options);
    static PresetConversionReport convert(const QString &source, const QString &destination)
    {
        return convert(source, destination, Options());
    }
    // Converts both folder pairs.
    static PresetConversionReport convertAll(Options options = Options());

    // Whether converting both folder pairs now would write at least one
    // preset: one of the old classes that reads whole, whose converted copy
    // is missing or older than it, and whose destination can be written. A
    // damaged preset, or one converted already, does not count, so the offer
    // ends once "Yes" has done what it can.
    static bool hasPendingConversion();
    // The user still wants to be asked and there is something to convert.
    static bool shouldOfferConversion() { return askAgain() && hasPendingConversion(); }

    // Creates dir with all its missing parents; true when it exists afterwards.
    static bool createDirectory(const QString &dir);

    // The user setting "PresetConverterAgain": whether the converter is to ask
    // again. An absent key counts as asking again.
    static bool askAgain();
    static void setAskAgain(bool again);

private:
    static void convertFolder(const QString &source, const QString &destination, const Options &options,
        PresetConversionReport &report);
    static void convertFile(const QString &source, const QString &destination, const Options &options,
        PresetConversionReport &report);
    static void removeLeftovers(const QString &target, PresetConversionReport &report);
};
