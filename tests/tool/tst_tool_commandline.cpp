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

#include "GoldenFile.h"
#include "MorphRecords.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ProcessRun.h"
#include "tools/PrintableName.h"

namespace {

// Runs the tool with "@" in its arguments standing for the test folder, and
// with a default morph folder that does not exist.
ProcessRun runTool(QStringList arguments, const QString &folder)
{
    for (QString &argument : arguments)
        argument.replace(QLatin1Char('@'), folder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("ORVCHSTRIP_MORPH_FOLDER"));
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), folder + QStringLiteral("/nowhere"));
    return runProcess(QStringLiteral(ORV_TOOL_PATH), arguments, environment);
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

// The value at a path such as "chunks.0.size", as compact JSON text.
QString jsonAt(QJsonValue value, const QString &path)
{
    for (const QString &step : path.split(QLatin1Char('.'))) {
        bool isIndex = false;
        const int index = step.toInt(&isIndex);
        value = isIndex ? value.toArray().at(index) : value.toObject().value(step);
    }
    const QByteArray text = QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact);
    return value.isUndefined() ? QStringLiteral("(none)") : QString::fromUtf8(text.mid(1, text.size() - 2));
}

// A data row whose arguments are separated by '|'.
void addRow(const char *tag, const char *arguments, int exitCode, const QVariant &expected)
{
    QTest::newRow(tag) << QString::fromUtf8(arguments).split(QLatin1Char('|'), Qt::SkipEmptyParts) << exitCode
                       << expected.toStringList();
}

} // namespace

class TestToolCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void badInputIsReported_data();
    void badInputIsReported();
    void output_data();
    void output();
    void fileNamesThatAreNotUtf8();
    void morphListMarksAndAligns();

private:
    QString path(const QString &name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

void TestToolCommandLine::initTestCase()
{
    QVERIFY(m_dir.isValid());
    const QByteArray state = goldenFile(QStringLiteral("state/saved.state"));
    const QByteArray preset = goldenFile(QStringLiteral("preset/stereo.plxpreset"));
    const QByteArray mono = QByteArray(preset).replace(8, 32, "504C586373744D757220636820737472");
    const QByteArray third = QByteArray(preset).replace(8, 32, "112233445566778899AABBCCDDEEFF00");
    const QByteArray glue
        = readFile(QStringLiteral(ORV_MORPH_PRESETS_DIR "/Mix Bus/Glue.json")); // a factory table
    OrvdMorphRecord record;
    record.name = QStringLiteral("Two\nLines\x1b[2J");
    const QMap<QString, QByteArray> files { { "good.state", state }, { "a file", "text" },
        { "glue.json", glue },
        { "glue.ord", readFile(QStringLiteral(ORV_MORPH_PRESETS_DIR "/Mix Bus/Glue.ord")) },
        { "two lines.json", QByteArray(glue).replace("\"Glue\"", "\"Two\\nLines\"") },
        { "two lines.ord", record.write() }, { "mono [s].plxpreset", mono }, { "stereo.plxpreset", preset },
        { "third.plxpreset", third },
        { "empty.plxpreset", QByteArray(preset).replace(1712 + 20, 8, QByteArray(8, '\0')) },
        { "src/A.plxpreset", mono }, { "src/Vocals/Warm/B.plxpreset", preset }, { "src/C.plxpreset", third },
        { "src/.D.plxpreset", preset }, { "src/notes.txt", "x" } };
    for (auto it = files.begin(); it != files.end(); ++it)
        QVERIFY(writeFile(path(it.key()), it.value()));
    QVERIFY(makeMorphFolder(path("morph"),
        { "Good.ord", "Short.ord:14", "\u6f22\u5b57.ord", "new\nline.ord", "Caf\u00e9.ord",
            "Cafe\u0301.ord" }));
    QVERIFY(writeFile(path("morph/Magic.ord"), knownMorphRecord().write().replace(0, 4, "XXXX")));
    QFile sparse(path("huge.state"));
    QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(3) << 30));
#ifdef Q_OS_UNIX
    QVERIFY(::mkfifo(QFile::encodeName(path("fifo.ord")).constData(), 0644) == 0);
    const QByteArray raw = QFile::encodeName(path("morph")) + "/bad\xff\xfe.ord";
    const int descriptor = ::open(raw.constData(), O_CREAT | O_WRONLY, 0644);
    QVERIFY(descriptor >= 0 && ::close(descriptor) == 0);
#endif
}

void TestToolCommandLine::cleanupTestCase()
{
#ifdef Q_OS_UNIX
    ::unlink(QFile::encodeName(path("morph")) + "/bad\xff\xfe.ord"); // a name QDir cannot remove
#endif
}

void TestToolCommandLine::badInputIsReported_data()
{
    QTest::addColumn<QStringList>("arguments"); // "@" stands for the test folder
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QStringList>("message"); // a pattern for the first error line after "orvchstrip-tool: "

    // clang-format off
    addRow("a state is no chunk file", "chunk|dump|@/good.state", 1, "chunk dump: .*: offset 0: not a valid chunk file: expected \"CHST\"");
    addRow("missing state", "state|dump|@/none.state", 1, "state dump: .*/none.state: cannot read: ");
    addRow("dump without file", "state|dump", 2, "state dump: usage: orvchstrip-tool state dump FILE");
    addRow("morph folder is a file", "morph|list|--folder|@/a file", 1, "morph list: .*/a file: not a folder$");
    addRow("convert from missing", "preset|convert|--from|@/none|--to|@/out", 1, "preset convert: .*/none: --from: no such folder$");
    addRow("convert from a file", "preset|convert|--dry-run|--from|@/a file|--to|@/out", 1, "preset convert: .*/a file: --from: not a folder$");
    addRow("state from /dev/zero", "state|dump|/dev/zero", 1, "state dump: /dev/zero: more than 65536 bytes, larger than a state can be");
    addRow("state of 3 GB", "state|dump|@/huge.state", 1, "state dump: .*/huge.state: 3221225472 bytes, larger than a state can be \\(at most 65536 bytes\\)$");
    addRow("record onto a FIFO", "morph|make|--from|@/glue.json|--out|@/fifo.ord", 1, "morph make: .*/fifo.ord: cannot write: not a regular file \\(a FIFO\\)");
    addRow("record name of two lines", "morph|make|--from|@/two lines.json|--out|@/made.ord", 1, "morph make: .*: \"name\" holds a control character \\(\\\\n at character 4\\)$");
    addRow("unknown option of a command", "state|dump|--verbose|@/good.state", 2, "state dump: unknown option '--verbose'; usage: orvchstrip-tool state dump FILE");
    // The converter's rule: a component state of no bytes is no preset.
    addRow("preset with an empty state", "preset|info|@/empty.plxpreset", 1, "preset info: .*: 'Comp' chunk at offset 48 is empty");
    addRow("no command", "", 2, "no command given$");
    addRow("unknown option first", "--verbose", 2, "unknown option '--verbose'$");
    addRow("newline in a command", "sta\nte", 2, "sta\\\\nte: unknown command$");
    // clang-format on
}

void TestToolCommandLine::badInputIsReported()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, message);
    const QStringList before = entriesOf(m_dir.path());
    const ProcessRun run = runTool(arguments, m_dir.path());
    QTEST(run.exitCode, "exitCode");
    const QString firstLine = QString::fromUtf8(run.err).section(QLatin1Char('\n'), 0, 0);
    QVERIFY2(QRegularExpression("^orvchstrip-tool: " + message.value(0)).match(firstLine).hasMatch(),
        qPrintable(QString::fromUtf8(run.err)));
    // Nothing is written or replaced, and a failed file is never presented as a success.
    QCOMPARE(entriesOf(m_dir.path()), before);
    QVERIFY(!run.out.contains("morph data file") && !run.out.contains("Wrote"));
}

void TestToolCommandLine::output_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    // Parts of the text, "@" for the test folder; of JSON, "path=value" with
    // the value as JSON, or "path" alone for a value that is there.
    QTest::addColumn<QStringList>("expected");

    // clang-format off
    addRow("preset info", "preset|info|@/mono [s].plxpreset", 0, QStringList { "'PLX3'", "version      1", "504C586373744D757220636820737472 (mono)", "chunk list   offset 1712, 1 entry declared", "chunk 'Comp'  offset 48  size 1664" });
    addRow("preset of another class", "preset|info|@/third.plxpreset", 0, "(other)");
    addRow("convert dry run counts what it leaves out", "preset|convert|--dry-run|--from|@/src|--to|@/dst", 0, QStringList { "ignored:       @/src/notes.txt (not a .plxpreset file)\n", "Dry run: 2 presets would be converted, 1 skipped, 2 other files left alone; nothing written\n" });
    // A record's name with a line break (written by another program) shows escaped on its one line.
    addRow("name of two lines", "morph|show|@/two lines.ord", 0, "\nName:   Two\\nLines\\x1b[2J\n");
    addRow("morph show as JSON", "morph|show|@/glue.ord|--json", 0, QStringList { "name=\"Glue\"", "id=\"ORV-MIX-01\"", "points.0.0=30", "texts.0.0=\"30 ms\"", "texts.0.3=\"SOFT\"" });
    addRow("version", "--version|--json", 0, "product_version");
    addRow("help", "--json|--help", 0, "usage");
    addRow("state dump, --json before the command", "--json|state|dump|@/good.state", 0, QStringList { "chunk_values.1.value=1", "chunk_values.2.key=\"fx_cmp_rls\"", "morph_table.3.0=50" });
    addRow("preset info as JSON", "preset|info|@/stereo.plxpreset|--json", 0, QStringList { "class=\"stereo\"", "list_offset=1712", "chunks.0.size=1664", "chunks.1=(none)" });
    addRow("missing preset", "preset|info|@/none|--json", 1, "valid=false");
    addRow("convert dry run", "preset|convert|--dry-run|--json|--from|@/src|--to|@/dst", 0, QStringList { "dry_run=true", "totals.ignored=2", "summary=\"2 presets would be converted, 1 skipped, 2 other files left alone\"" });
    addRow("missing default morph folder is empty", "morph|list|--json", 0, QStringList { "folder_exists=false", "rows=[]" });
#ifdef Q_OS_UNIX
    addRow("morph list names a file it leaves out", "morph|list|--json|--folder|@/morph", 0, "left_out.0.name_hex=\"626164fffe2e6f7264\"");
#endif
    // clang-format on
}

void TestToolCommandLine::output()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, expected);
    const QStringList before = entriesOf(m_dir.path());
    const ProcessRun run = runTool(arguments, m_dir.path());
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.exitCode != 0 || run.err.isEmpty(), run.err.constData());
    QCOMPARE(entriesOf(m_dir.path()), before);
    if (!arguments.contains(QLatin1String("--json"))) {
        for (QString part : expected)
            QVERIFY2(QString::fromUtf8(run.out).contains(part.replace(QLatin1Char('@'), m_dir.path())),
                run.out.constData());
        return;
    }
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(run.out, &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, run.out.constData());
    for (const QString &check : expected) {
        const QString path = check.section(QLatin1Char('='), 0, 0),
                      value = check.section(QLatin1Char('='), 1);
        const QString found = jsonAt(object, path);
        QVERIFY2(value.isEmpty() ? found != QLatin1String("(none)") : found == value,
            qPrintable(path + ": " + found));
    }
    QStringList keys;
    collectKeys(object, &keys);
    for (const QString &key : std::as_const(keys))
        QVERIFY2(
            QRegularExpression(QStringLiteral("^[a-z]+(_[a-z]+)*$")).match(key).hasMatch(), qPrintable(key));
}

void TestToolCommandLine::fileNamesThatAreNotUtf8()
{
#ifdef Q_OS_UNIX
    // A file name whose bytes are not UTF-8 opens, and prints as \xNN.
    const QByteArray raw = QFile::encodeName(m_dir.path()) + "/bad\xff.state";
    QFile file;
    QVERIFY(file.open(::open(raw.constData(), O_CREAT | O_WRONLY, 0644), QIODevice::WriteOnly,
        QFileDevice::AutoCloseHandle));
    QVERIFY(file.write(goldenFile(QStringLiteral("state/saved.state"))) > 0);
    file.close();
    const ProcessRun dump
        = runToolInShell(QStringLiteral("state dump \"$1/bad$(printf '\\377').state\""), m_dir.path());
    QVERIFY2(dump.exitCode == 0, dump.err.constData());
    QVERIFY2(
        dump.out.startsWith(QFile::encodeName(m_dir.path()) + "/bad\\xff.state:\n"), dump.out.constData());
    QVERIFY(::unlink(raw.constData()) == 0);
#endif
}

void TestToolCommandLine::morphListMarksAndAligns()
{
    const ProcessRun run = runTool({ "morph", "list", "--folder", path("morph") }, m_dir.path());
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = QString::fromUtf8(run.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList fileLines = lines.filter(QStringLiteral(" bytes"));
    QCOMPARE(fileLines.size(), 7);
    // The size column ends in the same terminal column on every line.
    QSet<int> ends;
    for (const QString &line : fileLines)
        ends << PrintableName::displayWidth(line.left(line.indexOf(QLatin1String(" bytes"))));
    QCOMPARE(ends.size(), 1);

    const auto lineOf = [&](const QString &name) {
        return fileLines.filter(QRegularExpression("^  " + QRegularExpression::escape(name) + " "))
            .join('\n');
    };
    QVERIFY2(!lineOf("Good").isEmpty() && !lineOf("Good").contains(QLatin1Char('[')), qPrintable(run.out));
    QVERIFY2(lineOf("Short").endsWith("[not sent: the record is 14 bytes, not 512]"), qPrintable(run.out));
    QVERIFY2(
        lineOf("Magic").endsWith("[not sent: the record does not begin with \"ORVD\"]"), qPrintable(run.out));
    QVERIFY2(!lineOf("new\\nline").isEmpty() && !lineOf("new\\nline").contains('['), qPrintable(run.out));
    QCOMPARE(fileLines.filter(QStringLiteral("NFC/NFD")).size(), 1);
    QVERIFY(lines.last().startsWith(QLatin1String("  bad\\xff\\xfe.ord")));
    QVERIFY(lines.contains(QStringLiteral("7 morph data files, 2 of them not sent by the editor")));
}

QTEST_GUILESS_MAIN(TestToolCommandLine)
#include "tst_tool_commandline.moc"
