// The morph catalogue over a real folder: which files the scan takes and
// under what names, the display order of the rows, finding an entry again.

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>

#include "MorphRecords.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"

namespace {

// A folder made of entries (see makeMorphFolder) and its catalogue.
struct Catalogue
{
    explicit Catalogue(const QStringList &entries, bool openFolders = true)
    {
        QVERIFY(makeMorphFolder(dir.path(), entries));
        manager.GetCollection().SetFolder(dir.path());
        manager.Collection();
        for (ORVD_Data *data : manager.GetDataList())
            data->SetFolderOpen(openFolders && data->IsFolder());
        manager.MakeSelectList();
    }
    // The rows as "layer:name" joined with spaces; folders end in '/'.
    QByteArray rows() const
    {
        QByteArrayList parts;
        for (const ORVD_Select *row : manager.GetSelectList()) {
            parts << QByteArray::number(row->GetLayerNo()) + ':' + row->GetData()->GetName()
                    + (row->GetData()->IsFolder() ? "/" : "");
        }
        return parts.join(' ');
    }
    // The row that shows the entry, -1 for none.
    int rowOf(const ORVD_Data *entry) const
    {
        const auto &rows = manager.GetSelectList();
        const auto row = std::find_if(
            rows.begin(), rows.end(), [&](auto *select) { return select->GetData() == entry; });
        return row == rows.end() ? -1 : int(row - rows.begin());
    }
    QTemporaryDir dir;
    ORVD_Manager manager;
};

} // namespace

class TestMorphCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void namesEqualApartFromCaseAreUnordered();
    void rescanDropsTheSelection();
    void wholeFileIsKept();
    void linksAndMissingFoldersGiveNothing();
    void searchData_data();
    void searchData();
    void changeSelectData_data();
    void changeSelectData();
};

void TestMorphCatalogue::rows_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QByteArray>("expected"); // every folder open

    // clang-format off
    QTest::newRow("extension any case") << QStringList { "Vocal.ORD", "pad.Ord", "x.ord" } << QByteArray("0:pad 0:Vocal 0:x");
    QTest::newRow("other extensions") << QStringList { "x.ord.bak", "y.or", "z.orda", "ord", "wORD" } << QByteArray();
    QTest::newRow("last dot only") << QStringList { "a.b.ord", "c..ord" } << QByteArray("0:a.b 0:c.");
    QTest::newRow("empty file") << QStringList { "empty.ord:0", "full.ord:1" } << QByteArray("0:full");
    QTest::newRow("hidden file") << QStringList { ".ord", "._Vocal.ord" } << QByteArray();
    QTest::newRow("one level of folders") << QStringList { "Drums/a.ord", "Drums/More/b.ord", "Drums/More/Deep/c.ord", "Drums/notes.txt" } << QByteArray("0:Drums/ 1:a");
    QTest::newRow("empty folders") << QStringList { "Pads/", "Keys/Sub/" } << QByteArray("0:Keys/ 0:Pads/");
    QTest::newRow("folder with ord extension") << QStringList { "Set.ord/a.ord" } << QByteArray("0:Set.ord/ 1:a");
    QTest::newRow("NFD to NFC") << QStringList { "Cafe\u0301.ord" } << QByteArray("0:Caf\xC3\xA9");
    // U+0958 is excluded from composition: each 3-byte character becomes two,
    // so a name that fits on disk outgrows the field and is cut between them.
    const QString longName = QString(85, QChar(0x0958));
    const QByteArray cut = longName.left(42).normalized(QString::NormalizationForm_C).toUtf8();
    QTest::newRow("file grows past the field") << QStringList { longName.left(83) + ".ord" } << "0:" + cut;
    QTest::newRow("folder grows past the field") << QStringList { longName + "/" } << "0:" + cut + "/";
    QTest::newRow("folder fits exactly") << QStringList { QString(85, QChar(0x0915)) + "/" } << "0:" + QString(85, QChar(0x0915)).toUtf8() + "/";
    // Display order: folders first, then names compared byte by byte after
    // folding to lower case, with bytes taken as signed.
    QTest::newRow("case folded") << QStringList { "b.ord", "A.ord", "a2.ord" } << QByteArray("0:A 0:a2 0:b");
    QTest::newRow("folders by name") << QStringList { "b.ord", "c/", "B/", "a.ord" } << QByteArray("0:B/ 0:c/ 0:a 0:b");
    QTest::newRow("prefix first") << QStringList { "abcd.ord", "abc.ord" } << QByteArray("0:abc 0:abcd");
    QTest::newRow("'_' between 'Z' and 'a'") << QStringList { "B.ord", "_.ord" } << QByteArray("0:_ 0:B");
    QTest::newRow("digits and space") << QStringList { "Vocal 2.ord", "Vocal10.ord", "Vocal 1.ord" } << QByteArray("0:Vocal 1 0:Vocal 2 0:Vocal10");
    QTest::newRow("non-ASCII first") << QStringList { "\u00e9.ord", "\u00c0.ord", "a.ord" } << QByteArray("0:\xC3\x80 0:\xC3\xA9 0:a");
    QTest::newRow("open folder's rows sorted below it") << QStringList { "k.ord", "F/y.ord", "F/X.ord", "E/" } << QByteArray("0:E/ 0:F/ 1:X 1:y 0:k");
    // clang-format on
}

void TestMorphCatalogue::rows()
{
    QFETCH(QStringList, entries);
    QFETCH(QByteArray, expected);
    Catalogue catalogue(entries);
    QCOMPARE(catalogue.rows(), expected);
}

void TestMorphCatalogue::namesEqualApartFromCaseAreUnordered()
{
    // A sort needs a strict order: neither comes before the other.
    ORVD_Data first, second;
    first.SetFolderName("Drums");
    second.SetFolderName("DRUMS");
    QVERIFY(!ORVD_Data::Small(&first, &second));
    QVERIFY(!ORVD_Data::Small(&second, &first));
}

void TestMorphCatalogue::rescanDropsTheSelection()
{
    Catalogue catalogue({ "a.ord", "b.ord" });
    catalogue.manager.SetSelectData(catalogue.manager.SearchData("b"));
    QVERIFY(catalogue.manager.GetSelectData());
    catalogue.manager.ClearDataList();
    QCOMPARE(catalogue.manager.GetSelectData(), nullptr);
}

void TestMorphCatalogue::wholeFileIsKept()
{
    Catalogue catalogue({ "Lead.ord:70000" });
    QCOMPARE(catalogue.manager.GetDataList().size(), size_t(1));
    const ORVD_Data *data = catalogue.manager.GetDataList().front();
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(data->GetDataBuffer()), int(data->GetDataSize())),
        QByteArray(70000, 'm'));
}

void TestMorphCatalogue::linksAndMissingFoldersGiveNothing()
{
    QTemporaryDir outside;
    Catalogue catalogue({ "Near.ord" });
    QVERIFY(makeMorphFolder(outside.path(), { "Far/far.ord" }));
    QVERIFY(QFile::link(catalogue.dir.filePath("Near.ord"), catalogue.dir.filePath("Alias.ord")));
    QVERIFY(QFile::link(outside.filePath("Far"), catalogue.dir.filePath("Far")));
    catalogue.manager.ClearDataList();
    catalogue.manager.Collection();
    QCOMPARE(catalogue.rows(), QByteArray("0:Near"));

    // A folder that is missing, or a file: an empty catalogue, silently.
    for (const QString &folder : { catalogue.dir.filePath("absent"), catalogue.dir.filePath("Near.ord") }) {
        std::vector<ORVD_Data *> list;
        ORVD_FolderCollectionImp(folder).Collection(list);
        QVERIFY(list.empty());
    }
}

void TestMorphCatalogue::searchData_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("row"); // of the entry found, every folder open; -1 for none

    QTest::newRow("top level") << QStringList { "a.ord", "b.ord" } << QByteArray("b") << 1;
    QTest::newRow("inside folder") << QStringList { "a.ord", "F/x.ord", "F/y.ord" } << QByteArray("y") << 2;
    QTest::newRow("never a folder") << QStringList { "Kick/a.ord", "b.ord" } << QByteArray("Kick") << -1;
    QTest::newRow("folder and its file") << QStringList { "Kick/Kick.ord" } << QByteArray("Kick") << 1;
    QTest::newRow("case-sensitive") << QStringList { "Vocal.ord" } << QByteArray("vocal") << -1;
    QTest::newRow("no prefix match") << QStringList { "Vocal 1.ord" } << QByteArray("Vocal") << -1;
    // Folders sort first, so the folder's copy is met first.
    QTest::newRow("depth-first") << QStringList { "A.ord", "G/A.ord" } << QByteArray("A") << 1;
}

void TestMorphCatalogue::searchData()
{
    QFETCH(QStringList, entries);
    QFETCH(QByteArray, name);
    QFETCH(int, row);
    Catalogue catalogue(entries);
    QCOMPARE(catalogue.rowOf(catalogue.manager.SearchData(name.constData())), row);
}

void TestMorphCatalogue::changeSelectData_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<uint>("nameLength");
    QTest::addColumn<bool>("emptyId");
    QTest::addColumn<QByteArray>("expected"); // "" for no match

    QTest::newRow("prefix, empty id") << QByteArray("Voc") << 3u << true << QByteArray("Vocal 1");
    QTest::newRow("prefix, other id") << QByteArray("Voc") << 3u << false << QByteArray();
    QTest::newRow("exact in folder") << QByteArray("Bass 2") << 6u << true << QByteArray("Bass 2");
    QTest::newRow("length past name") << QByteArray("Vocal") << 100u << true << QByteArray();
    QTest::newRow("case-sensitive") << QByteArray("voc") << 3u << true << QByteArray();
    QTest::newRow("zero length, depth-first") << QByteArray("zzz") << 0u << true << QByteArray("Bass 2");
}

void TestMorphCatalogue::changeSelectData()
{
    QFETCH(QByteArray, name);
    QFETCH(uint, nameLength);
    QFETCH(bool, emptyId);
    QFETCH(QByteArray, expected);
    Catalogue catalogue({ "Vocal 1.ord", "Bass/Bass 2.ord", "Vocal 2.ord" }, false);
    ORVD_Manager &manager = catalogue.manager;
    unsigned char id[ORVD_Data::UniqueIDLength] = {};
    id[ORVD_Data::UniqueIDLength - 1] = emptyId ? 0 : 7;

    const ORVD_Data *found
        = manager.ChangeSelectData(name.constData(), nameLength, id, manager.GetDataList());
    QCOMPARE(found ? QByteArray(found->GetName()) : QByteArray(), expected);
    QCOMPARE(manager.GetSelectData(), nullptr); // finding is not selecting
    QCOMPARE(manager.ChangeSelectData(name.constData(), nameLength, id, {}), nullptr);
}

QTEST_GUILESS_MAIN(TestMorphCatalogue)
#include "tst_morphcatalogue.moc"
