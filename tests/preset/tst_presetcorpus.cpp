#include <QDir>
#include <QTest>

#include "PresetContainerCheck.h"

// Every seed and every finding of the preset container fuzz target, read by
// both readers in the ordinary build: they must agree, as under the fuzzer.
class TestPresetCorpus : public QObject
{
    Q_OBJECT

private slots:
    void readersAgree_data();
    void readersAgree();
};

void TestPresetCorpus::readersAgree_data()
{
    QTest::addColumn<QString>("path");
    const QDir corpus(QStringLiteral(ORV_TEST_DATA_DIR "/fuzz/fuzz_presetfile"));
    const QStringList files = corpus.entryList(QDir::Files, QDir::Name);
    QVERIFY2(files.size() >= 5, qPrintable(corpus.path()));
    for (const QString &file : files)
        QTest::newRow(qPrintable(file)) << corpus.filePath(file);
}

void TestPresetCorpus::readersAgree()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString problem = PresetContainerCheck::check(file.readAll());
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

QTEST_GUILESS_MAIN(TestPresetCorpus)
#include "tst_presetcorpus.moc"
