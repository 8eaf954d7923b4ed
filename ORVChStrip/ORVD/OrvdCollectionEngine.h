#pragma once

#include <QDirIterator>
#include <vector>

class ORVD_Data;
class QFileInfo;

// Walks one folder of the morph data tree and turns what it finds into
// catalogue entries, in the order the file system lists them:
// - a file whose extension (after the last '.') is "ord" in any case becomes
//   an entry named without the extension, holding the file's whole contents;
//   empty or unreadable files, and short reads, are left out;
// - a folder becomes a folder entry, appended before its contents are read,
//   while `depth` is above 0; at depth 0 folders are ignored with their
//   contents.
// Symbolic links (and on Windows, junctions and shortcuts) are skipped, so a
// scan never leaves the folder it was given. Hidden entries are skipped too:
// they are tool droppings such as "._x.ord" companions, not morph data.
class OrvdCollectionEngine
{
public:
    explicit OrvdCollectionEngine(const QString &folder);

    OrvdCollectionEngine(const OrvdCollectionEngine &) = delete;
    OrvdCollectionEngine &operator=(const OrvdCollectionEngine &) = delete;

    // The machine-wide morph folder: "Halvorn/ORVD" inside the local
    // application-support area ("/Library/Application Support" on macOS,
    // %ProgramData% on Windows; elsewhere the first $XDG_DATA_DIRS entry that
    // holds one, or the first entry when none does).
    // ORVCHSTRIP_MORPH_FOLDER names another folder in its place.
    static QString GetOrvdFolder();

    // Appends the entries of the folder to `list`; see the class comment.
    void Collection(std::vector<ORVD_Data *> &list, int depth);

    // Files larger than this are not morph data; they are skipped rather
    // than read into memory.
    static constexpr qint64 MaxDataSize = 16 * 1024 * 1024;

private:
    void AnalzeFolder(std::vector<ORVD_Data *> &list, const QFileInfo &info, int depth);
    void AnalyzeFile(std::vector<ORVD_Data *> &list, const QFileInfo &info);

    QDirIterator m_iterator;
};
