#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ProcessRun.h"
#include "SavedState.h"
#include "TestFiles.h"
#include "tools/PrintableName.h"

namespace {

ProcessRun runTool(const QStringList &arguments,
    const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    return runProcess(QStringLiteral(ORV_TOOL_PATH), arguments, environment);
}

// A morph record the morphing list would send, with another magic or cut to
// another size where asked.
QByteArray morphRecord(const char *magic = "ORVD", int size = 512)
{
    OrvdMorphRecord record;
    record.name = QStringLiteral("Set");
    QByteArray bytes = record.write();
    bytes.replace(0, 4, QByteArray(magic, 4));
    bytes.resize(size);
    return bytes;
}

// A factory morph table with its name replaced.
QByteArray morphTable(const QString &name)
{
    QJsonObject table
        = QJsonDocument::fromJson(readFile(QStringLiteral(ORV_MORPH_PRESETS_DIR "/Mix Bus/Glue.json")))
              .object();
    table.insert(QStringLiteral("name"), name);
    return QJsonDocument(table).toJson();
}

// Each entry of the folder with what it is, so that a special file replaced
// by a regular one shows.
QStringList entriesOf(const QString &folder)
{
    QStringList entries;
    for (const QFileInfo &entry :
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name))
        entries << entry.fileName() + (entry.isFile() ? "" : entry.isDir() ? "/" : "|");
    return entries;
}

#ifdef Q_OS_UNIX
// Runs the tool through the shell, so that a test can give it arguments
// whose bytes are not UTF-8 (QProcess passes arguments as UTF-8); `script`
// sees the tool as "$0" and the test folder as "$1".
ProcessRun runToolInShell(const QString &script, const QString &folder)
{
    return runProcess(QStringLiteral("/bin/sh"),
        { QStringLiteral("-c"), QStringLiteral("exec \"$0\" ") + script, QStringLiteral(ORV_TOOL_PATH),
            folder });
}
#endif

// Every key of every object, recursively.
void collectKeys(const QJsonValue &value, QStringList *keys)
{
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            *keys << it.key();
            collectKeys(it.value(), keys);
        }
    } else if (value.isArray()) {
        for (const QJsonValue &item : value.toArray())
            collectKeys(item, keys);
    }
}

} // namespace

class TestToolCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void badInputIsReported_data();
    void badInputIsReported();
    void stateDumpShowsValueTexts();
    void jsonOnRequest_data();
    void jsonOnRequest();
    void namesPrintOnOneLine();
    void morphListMarksAndAligns();
    void missingDefaultMorphFolderIsEmpty();

private:
    QString path(const QString &name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

void TestToolCommandLine::initTestCase()
{
    QVERIFY(m_dir.isValid());
    const QByteArray state = savedChannelStripState();
    QCOMPARE(state.size(), 1664);
    QVERIFY(writeFile(path("good.state"), state));
    QVERIFY(writeFile(path("cut1600.state"), state.left(1600)));
    QVERIFY(writeFile(path("a file"), "text"));
    QVERIFY(writeFile(path("glue.json"), morphTable(QStringLiteral("Glue"))));
    QVERIFY(writeFile(path("two lines.json"), morphTable(QStringLiteral("Two\nLines"))));
    QFile sparse(path("huge.state"));
    QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(3) << 30));
#ifdef Q_OS_UNIX
    QVERIFY(::mkfifo(QFile::encodeName(path("fifo.ord")).constData(), 0644) == 0);
#endif
}

void TestToolCommandLine::badInputIsReported_data()
{
    QTest::addColumn<QStringList>("arguments"); // "@" stands for the test folder
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message"); // a pattern for the first line of the error stream

    QTest::newRow("state cut at 1600")
        << QStringList { "state", "dump", "@/cut1600.state" } << 1
        << "^orvchstrip-tool: state dump: .*/cut1600.state: offset 1600: not a "
           "valid state: the data end 64 bytes before .* \\(offset 1664\\)";
    QTest::newRow("a state is no chunk file")
        << QStringList { "chunk", "dump", "@/good.state" } << 1
        << "^orvchstrip-tool: chunk dump: .*: offset 0: not a valid chunk file: expected \"CHST\"";
    QTest::newRow("missing state") << QStringList { "state", "dump", "@/none.state" } << 1
                                   << "^orvchstrip-tool: state dump: .*/none.state: cannot read: ";
    QTest::newRow("folder as state") << QStringList { "state", "dump", "@" } << 1
                                     << "^orvchstrip-tool: state dump: .*: cannot read: ";
    QTest::newRow("dump without file") << QStringList { "state",
        "dump" } << 2 << "^orvchstrip-tool: state dump: usage: orvchstrip-tool state dump FILE";
    QTest::newRow("morph folder is a file") << QStringList { "morph", "list", "--folder", "@/a file" } << 1
                                            << "^orvchstrip-tool: morph list: .*/a file: not a folder$";
    QTest::newRow("morph folder missing") << QStringList { "morph", "list", "--folder", "@/none" } << 1
                                          << "^orvchstrip-tool: morph list: .*/none: no such folder$";
    QTest::newRow("morph bad option") << QStringList { "morph", "list", "--sort" } << 2
                                      << "^orvchstrip-tool: morph list: unknown option '--sort'";
    QTest::newRow("convert from missing") << QStringList { "preset", "convert", "--from", "@/none", "--to",
        "@/out" } << 1 << "^orvchstrip-tool: preset convert: .*/none: --from: no such folder$";
    QTest::newRow("convert from a file")
        << QStringList { "preset", "convert", "--dry-run", "--from", "@/a file", "--to", "@/out" } << 1
        << "^orvchstrip-tool: preset convert: .*/a file: --from: not a folder$";
    QTest::newRow("state from /dev/zero")
        << QStringList { "state", "dump", "/dev/zero" } << 1
        << "^orvchstrip-tool: state dump: /dev/zero: more than 65536 bytes, larger than a state can be";
    QTest::newRow("chunk file from /dev/zero")
        << QStringList { "chunk", "dump", "/dev/zero" } << 1
        << "^orvchstrip-tool: chunk dump: /dev/zero: more than 65536 bytes, larger than a chunk file";
    QTest::newRow("state of 3 GB") << QStringList { "state", "dump", "@/huge.state" } << 1
                                   << "^orvchstrip-tool: state dump: .*/huge.state: 3221225472 bytes, larger "
                                      "than a state can be \\(at most 65536 bytes\\)$";
    QTest::newRow("record from /dev/zero") << QStringList { "morph", "show", "/dev/zero" } << 1
                                           << "^orvchstrip-tool: morph show: /dev/zero: more than 512 bytes";
    QTest::newRow("table from /dev/zero")
        << QStringList { "morph", "make", "--from", "/dev/zero", "--out", "@/made.ord" } << 1
        << "^orvchstrip-tool: morph make: /dev/zero: more than 1048576 bytes, larger than a morph table";
    QTest::newRow("table from /dev/urandom") << QStringList { "morph", "make", "--from", "/dev/urandom",
        "--out", "@/made.ord" } << 1 << "^orvchstrip-tool: morph make: /dev/urandom: more than 1048576 bytes";
    QTest::newRow("record onto a device")
        << QStringList { "morph", "make", "--from", "@/glue.json", "--out", "/dev/null" } << 1
        << "^orvchstrip-tool: morph make: /dev/null: cannot write: not a regular file \\(a character "
           "device\\)";
#ifdef Q_OS_UNIX
    QTest::newRow("record onto a FIFO")
        << QStringList { "morph", "make", "--from", "@/glue.json", "--out", "@/fifo.ord" } << 1
        << "^orvchstrip-tool: morph make: .*/fifo.ord: cannot write: not a regular file \\(a FIFO\\)";
#endif
    QTest::newRow("record name of two lines")
        << QStringList { "morph", "make", "--from", "@/two lines.json", "--out", "@/made.ord" } << 1
        << "^orvchstrip-tool: morph make: .*: \"name\" holds a control character \\(\\\\n at character 4\\)$";
    QTest::newRow("unknown option of a command")
        << QStringList { "state", "dump", "--verbose", "@/good.state" } << 2
        << "^orvchstrip-tool: state dump: unknown option '--verbose'; usage: orvchstrip-tool state dump FILE";
    QTest::newRow("unknown option of morph show") << QStringList { "morph", "show", "-x",
        "@/made.ord" } << 2 << "^orvchstrip-tool: morph show: unknown option '-x'; usage: ";
    QTest::newRow("unknown option of morph make") << QStringList { "morph", "make", "--form", "@/glue.json",
        "--out", "@/made.ord" } << 2 << "^orvchstrip-tool: morph make: unknown option '--form'; usage: ";
    QTest::newRow("no command") << QStringList() << 2 << "^orvchstrip-tool: no command given$";
    QTest::newRow("unknown option first")
        << QStringList { "--verbose" } << 2 << "^orvchstrip-tool: unknown option '--verbose'$";
    QTest::newRow("newline in a command")
        << QStringList { "sta\nte" } << 2 << "^orvchstrip-tool: sta\\\\nte: unknown command$";
}

void TestToolCommandLine::badInputIsReported()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, message);

    for (QString &argument : arguments)
        argument.replace(QLatin1Char('@'), m_dir.path());
    const QStringList before = entriesOf(m_dir.path());

    const ProcessRun run = runTool(arguments);
    QCOMPARE(run.exitCode, exitCode);
    const QString firstLine = QString::fromUtf8(run.err).section(QLatin1Char('\n'), 0, 0);
    QVERIFY2(QRegularExpression(message).match(firstLine).hasMatch(), qPrintable(QString::fromUtf8(run.err)));
    // Nothing is written or replaced, and a failed file is never presented
    // as a success.
    QCOMPARE(entriesOf(m_dir.path()), before);
    QVERIFY(!run.out.contains("morph data file"));
    QVERIFY(!run.out.contains("Wrote"));
}

void TestToolCommandLine::stateDumpShowsValueTexts()
{
    const ProcessRun json = runTool({ "state", "dump", "--json", path("good.state") });
    QCOMPARE(json.exitCode, 0);
    QVERIFY(json.err.isEmpty());
    const QJsonObject object = QJsonDocument::fromJson(json.out).object();
    QStringList keys;
    collectKeys(object, &keys);
    QVERIFY(!keys.isEmpty());
    for (const QString &key : std::as_const(keys))
        QVERIFY2(
            QRegularExpression(QStringLiteral("^[a-z]+(_[a-z]+)*$")).match(key).hasMatch(), qPrintable(key));

    const QJsonObject release = object.value("chunk_values").toArray().at(2).toObject();
    QCOMPARE(release.value("key").toString(), QStringLiteral("fx_cmp_rls"));
    QCOMPARE(release.value("text").toString(), QStringLiteral("1234 ms"));
    QCOMPARE(release.value("value").toDouble(), double((1234.0f - 10.0f) / 1990.0f));
    const QJsonArray firstPoint = object.value("morph_table_texts").toArray().at(3).toArray();
    QCOMPARE(firstPoint.at(0).toString(), QStringLiteral("50 ms"));
    QCOMPARE(object.value("morph_table").toArray().at(3).toArray().at(0).toInt(), 50);
}

void TestToolCommandLine::jsonOnRequest_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("key"); // a key the object holds

    QTest::newRow("version") << QStringList { "--version", "--json" } << "product_version";
    QTest::newRow("help") << QStringList { "--json", "--help" } << "usage";
    QTest::newRow("--json before the command")
        << QStringList { "--json", "state", "dump", "@/good.state" } << "chunk_values";
    QTest::newRow("morph make") << QStringList { "morph", "make", "--json", "--from", "@/glue.json", "--out",
        "@/made.ord" } << "name";
}

void TestToolCommandLine::jsonOnRequest()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, key);
    for (QString &argument : arguments)
        argument.replace(QLatin1Char('@'), m_dir.path());

    const ProcessRun run = runTool(arguments);
    QCOMPARE(run.exitCode, 0);
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(run.out, &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, run.out.constData());
    QVERIFY2(object.contains(key), run.out.constData());
}

void TestToolCommandLine::namesPrintOnOneLine()
{
    // A record's name with a line break (written by another program) shows
    // escaped on its one line.
    OrvdMorphRecord record;
    record.name = QStringLiteral("Two\nLines\x1b[2J");
    QVERIFY(writeFile(path("two lines.ord"), record.write()));
    const ProcessRun show = runTool({ "morph", "show", path("two lines.ord") });
    QCOMPARE(show.exitCode, 0);
    QVERIFY2(show.out.contains("\nName:   Two\\nLines\\x1b[2J\n"), show.out.constData());

#ifdef Q_OS_UNIX
    // A file name whose bytes are not UTF-8 opens, and prints as \xNN.
    const QByteArray raw = QFile::encodeName(m_dir.path()) + "/bad\xff.state";
    QFile file;
    QVERIFY(file.open(::open(raw.constData(), O_CREAT | O_WRONLY, 0644), QIODevice::WriteOnly,
        QFileDevice::AutoCloseHandle));
    QVERIFY(file.write(savedChannelStripState()) == 1664);
    file.close();
    const ProcessRun dump
        = runToolInShell(QStringLiteral("state dump \"$1/bad$(printf '\\377').state\""), m_dir.path());
    QVERIFY2(dump.exitCode == 0, dump.err.constData());
    QVERIFY2(
        dump.out.startsWith(QFile::encodeName(m_dir.path()) + "/bad\\xff.state:\n"), dump.out.constData());
    const ProcessRun missing
        = runToolInShell(QStringLiteral("morph show \"$1/gone$(printf '\\376').ord\""), m_dir.path());
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.err.endsWith("/gone\\xfe.ord: cannot read: No such file or directory\n"),
        missing.err.constData());
    QVERIFY(::unlink(raw.constData()) == 0);
#endif
}

void TestToolCommandLine::morphListMarksAndAligns()
{
    const QString folder = path("morph");
    QVERIFY(writeFile(folder + "/Good.ord", morphRecord()));
    QVERIFY(writeFile(folder + "/Short.ord", morphRecord("ORVD", 14)));
    QVERIFY(writeFile(folder + "/Magic.ord", morphRecord("XXXX")));
    QVERIFY(writeFile(folder + QString::fromUtf8("/\xe6\xbc\xa2\xe5\xad\x97.ord"), morphRecord()));
    QVERIFY(writeFile(folder + "/new\nline.ord", morphRecord()));
    QVERIFY(writeFile(folder + QStringLiteral("/Caf\u00e9.ord"), morphRecord()));
    QVERIFY(writeFile(folder + QStringLiteral("/Cafe\u0301.ord"), morphRecord()));
#ifdef Q_OS_UNIX
    const QByteArray raw = QFile::encodeName(folder) + "/bad\xff\xfe.ord";
    const int descriptor = ::open(raw.constData(), O_CREAT | O_WRONLY, 0644);
    QVERIFY(descriptor >= 0);
    ::close(descriptor);
#endif

    const ProcessRun run = runTool({ "morph", "list", "--folder", folder });
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = QString::fromUtf8(run.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QStringList fileLines = lines.filter(QStringLiteral(" bytes"));
    QCOMPARE(fileLines.size(), 7);
    // The size column ends in the same terminal column on every line.
    QSet<int> ends;
    for (const QString &line : std::as_const(fileLines))
        ends << PrintableName::displayWidth(line.left(line.indexOf(QLatin1String(" bytes"))));
    QCOMPARE(ends.size(), 1);

    const auto lineOf = [&](const QString &name) {
        const QStringList found
            = fileLines.filter(QRegularExpression("^  " + QRegularExpression::escape(name) + " "));
        return found.size() == 1 ? found.first()
                                 : QStringLiteral("%1 lines for %2").arg(found.size()).arg(name);
    };
    QVERIFY(!lineOf("Good").contains(QLatin1Char('[')));
    QVERIFY2(
        lineOf("Short").endsWith("[not sent: the record is 14 bytes, not 512]"), qPrintable(lineOf("Short")));
    QVERIFY2(lineOf("Magic").endsWith("[not sent: the record does not begin with \"ORVD\"]"),
        qPrintable(lineOf("Magic")));
    QVERIFY(!lineOf("new\\nline").contains(QLatin1Char('[')));
    QCOMPARE(fileLines.filter(QStringLiteral("NFC/NFD")).size(), 1);
    QVERIFY(lines.last().startsWith(QLatin1String("  bad\\xff\\xfe.ord")));
    QVERIFY(lines.contains(QStringLiteral("7 morph data files, 2 of them not sent by the editor")));

    const ProcessRun json = runTool({ "morph", "list", "--json", "--folder", folder });
    QCOMPARE(json.exitCode, 0);
    const QJsonObject object = QJsonDocument::fromJson(json.out).object();
    QStringList refused;
    for (const QJsonValue &row : object.value("rows").toArray()) {
        if (!row.toObject().value("sendable").toBool(true))
            refused << row.toObject().value("name").toString();
    }
    QCOMPARE(refused, QStringList({ "Magic", "Short" }));
#ifdef Q_OS_UNIX
    QCOMPARE(object.value("left_out").toArray().at(0).toObject().value("name_hex").toString(),
        QStringLiteral("626164fffe2e6f7264"));
#endif
}

void TestToolCommandLine::missingDefaultMorphFolderIsEmpty()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"));
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), path("nowhere"));
    const ProcessRun run = runTool({ "morph", "list", "--json" }, environment);
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.err.isEmpty());
    const QJsonObject object = QJsonDocument::fromJson(run.out).object();
    QCOMPARE(object.value("folder_exists").toBool(true), false);
    QCOMPARE(object.value("rows").toArray().size(), 0);
}

QTEST_GUILESS_MAIN(TestToolCommandLine)
#include "tst_tool_commandline.moc"
