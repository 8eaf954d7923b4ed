#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cstring>

#include "ORVChStrip/ORVD/ORVD_Data.h"
#include "ORVChStrip/ORVD/ORVD_FolderCollectionImp.h"
#include "TestFiles.h"

namespace {

// Creates "path" (a file of `size` bytes) or "path/" (a folder) under root.
bool createEntry(const QString &root, const QString &entry, int size)
{
    if (entry.endsWith(QLatin1Char('/')))
        return QDir(root).mkpath(entry);
    return writeFile(root + QLatin1Char('/') + entry, QByteArray(size, 'm'));
}

// The tree as text, each level in plain byte order (so names equal apart
// from case come out the same every time): "Drums/{a},Vocal".
QByteArray describe(const std::vector<ORVD_Data *> &list)
{
    QByteArrayList parts;
    for (const ORVD_Data *data : list) {
        QByteArray part = data->GetName();
        if (data->IsFolder())
            part += "/{" + describe(data->GetDataList()) + '}';
        parts << part;
    }
    std::sort(parts.begin(), parts.end());
    return parts.join(',');
}

struct Scan
{
    explicit Scan(const QString &folder) { ORVD_FolderCollectionImp(folder).Collection(list); }
    ~Scan() { qDeleteAll(list); }
    std::vector<ORVD_Data *> list;
};

} // namespace

class TestOrvdScan : public QObject
{
    Q_OBJECT

private slots:
    void rules_data();
    void rules();
    void contents();
    void names_data();
    void names();
    void symbolicLinks();
    void missingFolder();
    void morphFolder();
};

void TestOrvdScan::rules_data()
{
    QTest::addColumn<QStringList>("entries"); // "path:size" or "folder/"
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("extension any case")
        << QStringList { "Vocal.ORD:10", "vocal.ord:5", "Pad.Ord:1" } << QByteArray("Pad,Vocal,vocal");
    QTest::newRow("other extensions")
        << QStringList { "x.ord.bak:4", "y.or:4", "z.orda:4", "ord:4", "wORD:4" } << QByteArray();
    QTest::newRow("last dot only") << QStringList { "a.b.ord:4", "c..ord:2" } << QByteArray("a.b,c.");
    QTest::newRow("empty file") << QStringList { "empty.ord:0", "full.ord:1" } << QByteArray("full");
    QTest::newRow("hidden file") << QStringList { ".ord:4", "._Vocal.ord:4" } << QByteArray();
    QTest::newRow("one level of folders") << QStringList { "Drums/a.ord:3", "Drums/More/b.ord:3",
        "Drums/More/Deep/c.ord:3", "Drums/notes.txt:3" }
                                          << QByteArray("Drums/{a}");
    QTest::newRow("empty folders") << QStringList { "Pads/", "Keys/Sub/" } << QByteArray("Keys/{},Pads/{}");
    QTest::newRow("folder with ord extension")
        << QStringList { "Set.ord/a.ord:1" } << QByteArray("Set.ord/{a}");
}

void TestOrvdScan::rules()
{
    QFETCH(QStringList, entries);
    QFETCH(QByteArray, expected);

    QTemporaryDir dir;
    for (const QString &entry : entries) {
        const qsizetype colon = entry.lastIndexOf(QLatin1Char(':'));
        const int size = colon < 0 ? 0 : entry.mid(colon + 1).toInt();
        QVERIFY2(createEntry(dir.path(), entry.left(colon), size), qPrintable(entry));
    }

    Scan scan(dir.path());
    QCOMPARE(describe(scan.list), expected);
}

void TestOrvdScan::contents()
{
    QTemporaryDir dir;
    QByteArray bytes(70000, '\0');
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char((i * 131) ^ (i >> 8));
    QVERIFY(writeFile(dir.filePath("Lead.ord"), bytes));

    Scan scan(dir.path());
    QCOMPARE(scan.list.size(), size_t(1));
    const ORVD_Data *data = scan.list.front();
    QVERIFY(!data->IsFolder());
    QCOMPARE(data->GetDataSize(), uint(bytes.size()));
    QVERIFY(std::memcmp(data->GetDataBuffer(), bytes.constData(), bytes.size()) == 0);
}

void TestOrvdScan::names_data()
{
    QTest::addColumn<QString>("fileName"); // "name/" for a folder
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<int>("graphemeBytes"); // a cut name is a whole number of these

    QTest::newRow("NFD to NFC") << QStringLiteral("Cafe\u0301.ord") << QByteArray("Caf\xC3\xA9") << 0;
    // U+0958 is excluded from composition: each 3-byte character becomes
    // two, 6 bytes in all, so a name that fits on disk outgrows the field.
    QTest::newRow("grows past the field")
        << QString(83, QChar(0x0958)) + QStringLiteral(".ord")
        << QString(42, QChar(0x0958)).normalized(QString::NormalizationForm_C).toUtf8() << 6;
    // Folders take names of 255 bytes on disk.
    QTest::newRow("folder fits exactly")
        << QString(85, QChar(0x0915)) + QStringLiteral("/") << QString(85, QChar(0x0915)).toUtf8() << 0;
    QTest::newRow("folder grows past the field")
        << QString(85, QChar(0x0958)) + QStringLiteral("/")
        << QString(42, QChar(0x0958)).normalized(QString::NormalizationForm_C).toUtf8() << 6;
}

void TestOrvdScan::names()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, expected);
    QFETCH(int, graphemeBytes);

    QTemporaryDir dir;
    QVERIFY(createEntry(dir.path(), fileName, 8));

    Scan scan(dir.path());
    QCOMPARE(scan.list.size(), size_t(1));
    const QByteArray name = scan.list.front()->GetName();
    QVERIFY(name.size() <= 255);
    QCOMPARE(name, expected);
    QCOMPARE(QString::fromUtf8(name).toUtf8(), name);
    if (graphemeBytes > 0)
        QCOMPARE(name.size() % graphemeBytes, 0);
}

void TestOrvdScan::symbolicLinks()
{
    QTemporaryDir outside;
    QTemporaryDir dir;
    QVERIFY(outside.isValid() && dir.isValid());
    QVERIFY(createEntry(outside.path(), "Far/far.ord", 4));
    QVERIFY(createEntry(dir.path(), "Near.ord", 4));
    if (!QFile::link(dir.filePath("Near.ord"), dir.filePath("Alias.ord"))
        || !QFile::link(outside.filePath("Far"), dir.filePath("Far")))
        QFAIL("symbolic links cannot be made here");

    Scan scan(dir.path());
    QCOMPARE(describe(scan.list), QByteArray("Near"));
}

void TestOrvdScan::missingFolder()
{
    QTemporaryDir dir;
    QVERIFY(createEntry(dir.path(), "file.ord", 4));

    for (const QString &folder : { dir.filePath("absent"), dir.filePath("file.ord") }) {
        Scan scan(folder);
        QVERIFY(scan.list.empty());
    }
}

void TestOrvdScan::morphFolder()
{
    const QByteArray savedOverride = qgetenv("ORVCHSTRIP_MORPH_FOLDER");
    const QByteArray savedDataDirs = qgetenv("XDG_DATA_DIRS");

    qputenv("ORVCHSTRIP_MORPH_FOLDER", "/srv/morph/");
    QCOMPARE(ORVD_FolderCollectionImp().Folder(), QStringLiteral("/srv/morph"));
    QCOMPARE(ORVD_FolderCollectionImp("/elsewhere").Folder(), QStringLiteral("/elsewhere"));

    qunsetenv("ORVCHSTRIP_MORPH_FOLDER");
#if defined(Q_OS_MACOS)
    QCOMPARE(ORVD_FolderCollectionImp::DefaultFolder(),
        QStringLiteral("/Library/Application Support/Halvorn/ORVD"));
#elif defined(Q_OS_UNIX)
    // The first data directory that holds the maker's folder, else the first.
    QTemporaryDir dataDirs;
    QVERIFY(dataDirs.isValid());
    const QString first = dataDirs.filePath("first"), second = dataDirs.filePath("second");
    const QByteArray searched = "relative/share::" + first.toUtf8() + ':' + second.toUtf8();
    qputenv("XDG_DATA_DIRS", searched);
    QCOMPARE(ORVD_FolderCollectionImp::DefaultFolder(), first + "/Halvorn/ORVD");
    QVERIFY(QDir().mkpath(second + "/Halvorn/ORVD"));
    QCOMPARE(ORVD_FolderCollectionImp::DefaultFolder(), second + "/Halvorn/ORVD");
    QVERIFY(QDir().mkpath(first + "/Halvorn/ORVD"));
    QCOMPARE(ORVD_FolderCollectionImp::DefaultFolder(), first + "/Halvorn/ORVD");

    // Unset, the XDG default: /usr/local/share, then /usr/share (where the
    // package puts the factory sets).
    qunsetenv("XDG_DATA_DIRS");
    const bool onlyPackaged
        = !QFileInfo::exists("/usr/local/share/Halvorn/ORVD") && QFileInfo::exists("/usr/share/Halvorn/ORVD");
    QCOMPARE(ORVD_FolderCollectionImp::DefaultFolder(),
        onlyPackaged ? QStringLiteral("/usr/share/Halvorn/ORVD")
                     : QStringLiteral("/usr/local/share/Halvorn/ORVD"));
#endif

    savedOverride.isNull() ? qunsetenv("ORVCHSTRIP_MORPH_FOLDER")
                           : qputenv("ORVCHSTRIP_MORPH_FOLDER", savedOverride);
    savedDataDirs.isNull() ? qunsetenv("XDG_DATA_DIRS") : qputenv("XDG_DATA_DIRS", savedDataDirs);
}

QTEST_GUILESS_MAIN(TestOrvdScan)
#include "tst_orvd_scan.moc"
