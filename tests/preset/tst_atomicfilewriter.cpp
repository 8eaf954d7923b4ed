#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include "FileSizeLimit.h"
#include "ORVChStrip/Chunk/AtomicFileWriter.h"
#include "PresetTestFiles.h"

class TestAtomicFileWriter : public QObject
{
    Q_OBJECT

private slots:
    void fullDiskKeepsOldFile_data();
    void fullDiskKeepsOldFile();
    void unwritableFolderIsReported();
    void leftoversAreRemoved_data();
    void leftoversAreRemoved();
};

void TestAtomicFileWriter::fullDiskKeepsOldFile_data()
{
    QTest::addColumn<int>("size");      // bytes to write
    QTest::addColumn<int>("limit");     // file size limit while writing; 0: none
    QTest::addColumn<bool>("existing"); // whether an old file stands at the target
    QTest::addColumn<bool>("written");

    // Small writes stay in the device's buffer until the flush at the end.
    QTest::newRow("buffered write, new file") << 1000 << 512 << false << false;
    QTest::newRow("large write over a file") << 200000 << 65536 << true << false;
    QTest::newRow("limit one byte short") << 3000 << 2999 << true << false;
    QTest::newRow("exactly at the limit") << 3000 << 3000 << true << true;
    QTest::newRow("no limit") << 200000 << 0 << true << true;
}

void TestAtomicFileWriter::fullDiskKeepsOldFile()
{
#ifndef ORV_HAVE_FILE_SIZE_LIMIT
    QSKIP("needs a file size limit to simulate a full disk");
#endif
    QFETCH(int, size);
    QFETCH(int, limit);
    QFETCH(bool, existing);
    QFETCH(bool, written);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("target.bin"));
    const QByteArray old = PresetTestFiles::stateBytes(700, 'o');
    if (existing)
        QVERIFY(writeFile(path, old));
    const QByteArray bytes = PresetTestFiles::stateBytes(size, 'n');

    bool ok = false;
    QString error;
    {
        FileSizeLimit guard(limit > 0 ? rlim_t(limit) : RLIM_INFINITY);
        QVERIFY(guard.isActive());
        ok = AtomicFileWriter::write(path, bytes, &error);
    }

    QCOMPARE(ok, written);
    if (written) {
        QVERIFY(error.isEmpty());
        QCOMPARE(readFile(path), bytes);
    } else {
        QVERIFY2(error.contains(QDir::toNativeSeparators(path)), qPrintable(error));
        QCOMPARE(QFileInfo::exists(path), existing);
        if (existing)
            QCOMPARE(readFile(path), old);
    }
    // Never a temporary file left beside the target.
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
        existing || written ? QStringList { QStringLiteral("target.bin") } : QStringList());
}

void TestAtomicFileWriter::unwritableFolderIsReported()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("missing/target.bin"));
    QString error;
    QVERIFY(!AtomicFileWriter::write(path, "abc", &error));
    QVERIFY2(error.startsWith(QStringLiteral("cannot write ") + QDir::toNativeSeparators(path)),
        qPrintable(error));
    QVERIFY(!QFileInfo::exists(path));
}

void TestAtomicFileWriter::leftoversAreRemoved_data()
{
    QTest::addColumn<QString>("stray");    // a file beside the target
    QTest::addColumn<int>("age");          // seconds since it was last written
    QTest::addColumn<bool>("throughLink"); // the target is reached through a symbolic link
    QTest::addColumn<bool>("removed");

    // clang-format off
    QTest::newRow("left by a killed save") << "target.bin.AbCdEf" << 60 << false << true;
    QTest::newRow("beside a linked target") << "target.bin.AbCdEf" << 60 << true << true;
    QTest::newRow("a save writing it now") << "target.bin.AbCdEf" << 0 << false << false;
    QTest::newRow("another file's") << "other.bin.AbCdEf" << 60 << false << false;
    QTest::newRow("seven letters") << "target.bin.AbCdEfG" << 60 << false << false;
    QTest::newRow("digits") << "target.bin.abc123" << 60 << false << false;
    QTest::newRow("a user's word") << "target.bin.backup" << 60 << false << false;
    QTest::newRow("a user's capitalised word") << "target.bin.Backup" << 60 << false << false;
    // clang-format on
}

void TestAtomicFileWriter::leftoversAreRemoved()
{
    QFETCH(QString, stray);
    QFETCH(int, age);
    QFETCH(bool, throughLink);
    QFETCH(bool, removed);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString folder = dir.filePath(QStringLiteral("real"));
    const QString target = folder + QStringLiteral("/target.bin");
    QFile strayFile(folder + QLatin1Char('/') + stray);
    QVERIFY(writeFile(target, "old") && writeFile(strayFile.fileName(), "old"));
    QVERIFY(strayFile.open(QIODevice::ReadWrite)
        && strayFile.setFileTime(
            QDateTime::currentDateTime().addSecs(-age), QFileDevice::FileModificationTime));
    strayFile.close();
    const QString link = dir.filePath(QStringLiteral("link.bin"));
    QVERIFY(!throughLink || QFile::link(target, link));

    QString error;
    QVERIFY2(AtomicFileWriter::write(
                 throughLink ? link : target, "new", &error, AtomicFileWriter::Leftovers::RemoveStale),
        qPrintable(error));
    QCOMPARE(readFile(target), QByteArray("new"));
    QCOMPARE(QFileInfo::exists(strayFile.fileName()), !removed);
    QVERIFY(!throughLink || QFileInfo(link).isSymLink());
}

QTEST_GUILESS_MAIN(TestAtomicFileWriter)
#include "tst_atomicfilewriter.moc"
