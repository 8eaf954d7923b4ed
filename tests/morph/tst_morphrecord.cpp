#include <QTest>
#include <QtEndian>

#include "Interfaces/ChannelStripKeys.h"
#include "ORVChStrip/ORVChStripParameters.h"
#include "ORVChStrip/ORVD/OrvdMorphRecord.h"
#include "ORVChStrip/OrvdMorphBatch.h"

using ReadResult = OrvdMorphRecord::ReadResult;
Q_DECLARE_METATYPE(ReadResult)

namespace {

OrvdMorphRecord sampleRecord()
{
    OrvdMorphRecord record;
    record.name = QStringLiteral("Vocal Levelling");
    record.systemId = "ORV-TEST-7";
    for (int point = 0; point < OrvdMorphRecord::PointCount; ++point) {
        for (int column = 0; column < OrvdMorphRecord::ColumnCount; ++column)
            record.points[point][column] = int16_t(point * 100 + column * 3 - 20);
    }
    return record;
}

// A lookup that knows every key except `missing`.
OrvdMorphBatch::ParameterLookup lookupWithout(const QByteArray &missing)
{
    return [missing](const char *key, unsigned short *prmId) {
        if (missing == key)
            return false;
        *prmId = static_cast<unsigned short>(qHash(QByteArray(key)) % 60000 + 1);
        return true;
    };
}

} // namespace

class TestMorphRecord : public QObject
{
    Q_OBJECT

private slots:
    void fixedLayout();
    void rejects_data();
    void rejects();
    void longNameIsCutAtCharacterBoundary();
    void batchAbandonedWhenKeyMissing_data();
    void batchAbandonedWhenKeyMissing();
};

void TestMorphRecord::fixedLayout()
{
    // The layout is a file format: other writers place fields by these offsets.
    OrvdMorphRecord record;
    record.name = QStringLiteral("AB");
    record.systemId = "X";
    record.points[2][5] = -3;
    record.points[8][16] = 0x1234;
    const QByteArray bytes = record.write();
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData());
    QCOMPARE(bytes.left(4), QByteArray("ORVD"));
    QCOMPARE(qFromLittleEndian<quint16>(data + 4), quint16(1));
    QCOMPARE(qFromLittleEndian<quint16>(data + 6), quint16(9));
    QCOMPARE(qFromLittleEndian<quint16>(data + 8), quint16(17));
    QCOMPARE(bytes.mid(12, 3), QByteArray("AB\0", 3));
    QCOMPARE(bytes.mid(172, 2), QByteArray("X\0", 2));
    QCOMPARE(qFromLittleEndian<qint16>(data + 204 + (2 * 17 + 5) * 2), qint16(-3));
    QCOMPARE(qFromLittleEndian<qint16>(data + 204 + (8 * 17 + 16) * 2), qint16(0x1234));
    QCOMPARE(bytes.right(2), QByteArray(2, '\0'));

    OrvdMorphRecord read;
    QCOMPARE(OrvdMorphRecord::read(bytes, &read), ReadResult::Ok);
    QCOMPARE(read.name, record.name);
    QCOMPARE(read.systemId, record.systemId);
    QVERIFY(read.points == record.points);
}

void TestMorphRecord::rejects_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ReadResult>("expected");
    const QByteArray good = sampleRecord().write();
    QTest::newRow("511 bytes") << good.left(511) << ReadResult::WrongSize;
    QTest::newRow("513 bytes") << good + '\0' << ReadResult::WrongSize;
    QTest::newRow("other magic") << QByteArray(good).replace(0, 4, "ORVX") << ReadResult::WrongMagic;
    QTest::newRow("version 2") << QByteArray(good).replace(4, 2, QByteArray("\x02\x00", 2))
                               << ReadResult::UnsupportedVersion;
    QTest::newRow("8 points") << QByteArray(good).replace(6, 2, QByteArray("\x08\x00", 2))
                              << ReadResult::WrongShape;
    QTest::newRow("16 columns") << QByteArray(good).replace(8, 2, QByteArray("\x10\x00", 2))
                                << ReadResult::WrongShape;
}

void TestMorphRecord::rejects()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ReadResult, expected);
    OrvdMorphRecord untouched = sampleRecord();
    untouched.name = QStringLiteral("keep");
    QCOMPARE(OrvdMorphRecord::read(bytes, &untouched), expected);
    QCOMPARE(untouched.name, QStringLiteral("keep"));
    QVERIFY(!OrvdMorphRecord::describe(expected, bytes.size()).isEmpty());
}

void TestMorphRecord::longNameIsCutAtCharacterBoundary()
{
    OrvdMorphRecord record;
    // 158 ASCII bytes and then a two-byte character: 160 bytes, one too many.
    record.name = QString(158, QLatin1Char('a')) + QChar(0xE9);
    QVERIFY(!record.fitProblem().isEmpty());
    OrvdMorphRecord read;
    QCOMPARE(OrvdMorphRecord::read(record.write(), &read), ReadResult::Ok);
    QCOMPARE(read.name, QString(158, QLatin1Char('a')));

    record.name.chop(1);
    QVERIFY(record.fitProblem().isEmpty());
}

void TestMorphRecord::batchAbandonedWhenKeyMissing_data()
{
    QTest::addColumn<QByteArray>("missing");
    QTest::newRow("name") << QByteArray(ChannelStripKeys::MorphSystemName);
    QTest::newRow("id") << QByteArray(ChannelStripKeys::MorphSystemId);
    QTest::newRow("last column") << QByteArray(ORVChStripParameters::OrvaneDataParameterList[16]);
}

void TestMorphRecord::batchAbandonedWhenKeyMissing()
{
    QFETCH(QByteArray, missing);
    OrvdMorphBatch batch(lookupWithout(missing));
    QVERIFY(!batch.appendMorphSet("x", sampleRecord(), 0));
    QVERIFY(!batch.isTerminated());
}

QTEST_APPLESS_MAIN(TestMorphRecord)
#include "tst_morphrecord.moc"
