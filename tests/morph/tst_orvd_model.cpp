#include <QTest>
#include <algorithm>
#include <cstring>
#include <memory>

#include "ORVChStrip/ORVD/ORVD_CollectionImp.h"
#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_Manager.h"
#include "ORVChStrip/ORVD/ORVD_Select.h"

namespace {

// Entries are written as "name" for a file and "name/" for a folder; a
// folder's children follow in braces: "F/{y,X}".
ORVD_Data *makeEntry(const QByteArray &entry);

std::vector<ORVD_Data *> makeEntries(const QByteArray &layout)
{
    std::vector<ORVD_Data *> list;
    int depth = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= layout.size(); ++i) {
        const char c = i < layout.size() ? layout.at(i) : ',';
        if (c == '{')
            ++depth;
        else if (c == '}')
            --depth;
        else if (c == ',' && depth == 0) {
            if (i > start)
                list.push_back(makeEntry(layout.mid(start, i - start)));
            start = i + 1;
        }
    }
    return list;
}

ORVD_Data *makeEntry(const QByteArray &entry)
{
    auto *data = new ORVD_Data;
    const qsizetype slash = entry.indexOf("/");
    if (slash < 0) {
        unsigned char *buffer = data->SetFileData(entry.constData(), 4);
        std::memset(buffer, 1, 4);
        return data;
    }
    std::vector<ORVD_Data *> &children = data->SetFolderName(entry.left(slash).constData());
    const QByteArray inner = entry.mid(slash + 1);
    if (inner.startsWith('{'))
        children = makeEntries(inner.mid(1, inner.size() - 2));
    return data;
}

// Hands a fixed set of entries to the manager, as the folder scan would.
class FakeCollectionImp : public ORVD_CollectionImp
{
public:
    explicit FakeCollectionImp(QByteArray layout)
        : m_layout(std::move(layout))
    { }
    void Collection(std::vector<ORVD_Data *> &list) override
    {
        for (ORVD_Data *data : makeEntries(m_layout))
            list.push_back(data);
    }

private:
    QByteArray m_layout;
};

void collect(ORVD_Manager &manager, const QByteArray &layout)
{
    manager.GetCollection().SetCollectionImp(std::make_unique<FakeCollectionImp>(layout));
    manager.Collection();
}

// The rows as "layer:name" joined with spaces; folders end in '/'.
QByteArray rows(const ORVD_Manager &manager)
{
    QByteArrayList parts;
    for (const ORVD_Select *row : manager.GetSelectList()) {
        QByteArray part = QByteArray::number(row->GetLayerNo()) + ':' + row->GetData()->GetName();
        if (row->GetData()->IsFolder())
            part += '/';
        parts << part;
    }
    return parts.join(' ');
}

ORVD_Data *child(ORVD_Data *folder, const char *name)
{
    for (ORVD_Data *data : folder->GetDataList()) {
        if (std::strcmp(data->GetName(), name) == 0)
            return data;
    }
    return nullptr;
}

} // namespace

class TestOrvdModel : public QObject
{
    Q_OBJECT

private slots:
    void displayOrder_data();
    void displayOrder();
    void unorderedPairs();
    void openFolder();
    void rescan();
    void searchData_data();
    void searchData();
    void changeSelectData_data();
    void changeSelectData();
    void longNameIsCut();
};

void TestOrvdModel::displayOrder_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("case folded") << QByteArray("b,A,a2") << QByteArray("0:A 0:a2 0:b");
    QTest::newRow("folders by name") << QByteArray("b,c/,B/,a") << QByteArray("0:B/ 0:c/ 0:a 0:b");
    QTest::newRow("prefix first") << QByteArray("abcd,abc") << QByteArray("0:abc 0:abcd");
    // Folding goes to lower case: '_' (0x5F) lies between 'Z' and 'a'.
    QTest::newRow("lower-case fold") << QByteArray("B,_") << QByteArray("0:_ 0:B");
    QTest::newRow("digits and space")
        << QByteArray("Vocal 2,Vocal10,Vocal 1") << QByteArray("0:Vocal 1 0:Vocal 2 0:Vocal10");
    QTest::newRow("signed bytes") << QByteArray("\xC3\xA9,\xC3\x80,a")
                                  << QByteArray("0:\xC3\x80 0:\xC3\xA9 0:a");
}

void TestOrvdModel::displayOrder()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, expected);

    ORVD_Manager manager;
    collect(manager, entries);
    QCOMPARE(rows(manager), expected);
}

void TestOrvdModel::unorderedPairs()
{
    // Names equal apart from case are neither before nor after each other.
    for (const auto &[a, b] : { std::pair("Vocal", "vocal"), { "Drums/", "DRUMS/" } }) {
        const std::unique_ptr<ORVD_Data> first(makeEntry(a));
        const std::unique_ptr<ORVD_Data> second(makeEntry(b));
        QVERIFY(!ORVD_Data::Small(first.get(), second.get()));
        QVERIFY(!ORVD_Data::Small(second.get(), first.get()));
    }
}

void TestOrvdModel::openFolder()
{
    ORVD_Manager manager;
    collect(manager, "k,F/{y,X},E/{}");
    QCOMPARE(rows(manager), QByteArray("0:E/ 0:F/ 0:k"));

    ORVD_Data *folder = manager.GetSelectList().at(1)->GetData();
    QCOMPARE(folder->GetName(), "F");
    folder->SetFolderOpen(true);
    // Rows change only when rebuilt.
    QCOMPARE(rows(manager), QByteArray("0:E/ 0:F/ 0:k"));

    manager.MakeSelectList();
    QCOMPARE(rows(manager), QByteArray("0:E/ 0:F/ 1:X 1:y 0:k"));
    // Only the rows are sorted; the folder keeps its scan order.
    QCOMPARE(folder->GetDataList().front()->GetName(), "y");

    manager.GetSelectList().front()->GetData()->SetFolderOpen(true);
    manager.MakeSelectList();
    QCOMPARE(rows(manager), QByteArray("0:E/ 0:F/ 1:X 1:y 0:k"));

    folder->SetFolderOpen(false);
    manager.MakeSelectList();
    QCOMPARE(rows(manager), QByteArray("0:E/ 0:F/ 0:k"));
}

void TestOrvdModel::rescan()
{
    ORVD_Manager manager;
    collect(manager, "b,a");
    manager.SetSelectData(manager.SearchData("b"));
    QVERIFY(manager.GetSelectData());

    // Collection appends; the caller clears before a rescan.
    manager.Collection();
    QCOMPARE(manager.GetSelectList().size(), size_t(4));
    manager.ClearDataList();
    QVERIFY(manager.GetSelectList().empty());
    QCOMPARE(manager.GetSelectData(), nullptr);
    manager.Collection();
    QCOMPARE(rows(manager), QByteArray("0:a 0:b"));
}

void TestOrvdModel::searchData_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("foundIn"); // the found entry's parent; "-" at top level, "" for none

    QTest::newRow("top level") << QByteArray("a,b") << QByteArray("b") << QByteArray("-");
    QTest::newRow("inside folder") << QByteArray("a,F/{x,y}") << QByteArray("y") << QByteArray("F");
    QTest::newRow("folder named so") << QByteArray("Kick/{a},b") << QByteArray("Kick") << QByteArray();
    QTest::newRow("folder and its file")
        << QByteArray("Kick/{Kick}") << QByteArray("Kick") << QByteArray("Kick");
    QTest::newRow("case-sensitive") << QByteArray("Vocal") << QByteArray("vocal") << QByteArray();
    QTest::newRow("no prefix match") << QByteArray("Vocal 1") << QByteArray("Vocal") << QByteArray();
    // Folders sort first, so the folder's copy is met first.
    QTest::newRow("depth-first") << QByteArray("A,G/{A}") << QByteArray("A") << QByteArray("G");
}

void TestOrvdModel::searchData()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, foundIn);

    ORVD_Manager manager;
    collect(manager, entries);
    ORVD_Data *found = manager.SearchData(name.constData());
    if (foundIn.isEmpty()) {
        QCOMPARE(found, nullptr);
        return;
    }
    QVERIFY(found);
    QVERIFY(!found->IsFolder());
    QCOMPARE(found->GetName(), name.constData());
    const std::vector<ORVD_Data *> &top = manager.GetDataList();
    const bool topLevel = std::find(top.begin(), top.end(), found) != top.end();
    QCOMPARE(topLevel, foundIn == "-");
    if (!topLevel) {
        const auto folder = std::find_if(top.begin(), top.end(),
            [&](const ORVD_Data *data) { return data->IsFolder() && foundIn == data->GetName(); });
        QVERIFY(folder != top.end());
        QCOMPARE(child(*folder, name.constData()), found);
    }
}

void TestOrvdModel::changeSelectData_data()
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
    QTest::newRow("zero length") << QByteArray("zzz") << 0u << true << QByteArray("Bass 1");
}

void TestOrvdModel::changeSelectData()
{
    QFETCH(QByteArray, name);
    QFETCH(uint, nameLength);
    QFETCH(bool, emptyId);
    QFETCH(QByteArray, expected);

    ORVD_Manager manager;
    collect(manager, "Vocal 1,Bass/{Bass 1,Bass 2},Vocal 2");
    unsigned char id[ORVD_Data::UniqueIDLength] = {};
    if (!emptyId)
        id[ORVD_Data::UniqueIDLength - 1] = 7;
    const ORVD_Data *selected = manager.GetSelectData();

    ORVD_Data *found = manager.ChangeSelectData(name.constData(), nameLength, id, manager.GetDataList());
    QCOMPARE(manager.GetSelectData(), selected);
    if (expected.isEmpty()) {
        QCOMPARE(found, nullptr);
    } else {
        QVERIFY(found);
        QCOMPARE(found->GetName(), expected.constData());
    }
    QCOMPARE(manager.ChangeSelectData(name.constData(), nameLength, id, {}), nullptr);
}

void TestOrvdModel::longNameIsCut()
{
    // An overlong name is cut to fit without splitting a character.
    QByteArray longName;
    for (int i = 0; i < 200; ++i)
        longName += "\xC3\xA9";
    ORVD_Data data;
    data.SetFolderName(longName.constData());
    QCOMPARE(QByteArray(data.GetName()), longName.left(254));
}

QTEST_GUILESS_MAIN(TestOrvdModel)
#include "tst_orvd_model.moc"
