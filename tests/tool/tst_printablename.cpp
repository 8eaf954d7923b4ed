#include <QTest>

#include "ORVChStrip/Chunk/NativeFileName.h"
#include "tools/PrintableName.h"

class TestPrintableName : public QObject
{
    Q_OBJECT

private slots:
    void oneLineAndItsWidth_data();
    void oneLineAndItsWidth();
};

void TestPrintableName::oneLineAndItsWidth_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("width"); // of the name as shown

    QTest::newRow("plain") << "Vocal Air" << QStringLiteral("Vocal Air") << 9;
    QTest::newRow("newline") << "new\nline" << QStringLiteral("new\\nline") << 9;
    QTest::newRow("terminal escape") << "\x1b[31mred" << QStringLiteral("\\x1b[31mred") << 11;
    QTest::newRow("backslash stays readable") << "a\\n" << QStringLiteral("a\\\\n") << 4;
    QTest::newRow("line separator") << QStringLiteral("a\u2028b") << "a\\u2028b" << 8;
    QTest::newRow("undecodable byte") << QStringLiteral("bad\ufffd") << "bad\\ufffd" << 9;
    // clang-format off
    QTest::newRow("bytes that are not UTF-8") << NativeFileName::fromBytes("bad\xff\xfe.ord") << QStringLiteral("bad\\xff\\xfe.ord") << 15;
    QTest::newRow("character whose low half looks like a byte") << QStringLiteral("\U00010080") << QStringLiteral("\U00010080") << 1;
    QTest::newRow("wide characters") << QString::fromUtf8("\xe6\xbc\xa2\xe5\xad\x97") << QString::fromUtf8("\xe6\xbc\xa2\xe5\xad\x97") << 4;
    QTest::newRow("combining accent") << QStringLiteral("Cafe\u0301") << QStringLiteral("Cafe\u0301") << 4;
    QTest::newRow("precomposed accent") << QStringLiteral("Caf\u00e9") << QStringLiteral("Caf\u00e9") << 4;
    QTest::newRow("emoji outside the BMP") << QStringLiteral("\U0001F3B9") << QStringLiteral("\U0001F3B9") << 2;
    // clang-format on
}

void TestPrintableName::oneLineAndItsWidth()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    QFETCH(int, width);

    QCOMPARE(PrintableName::escaped(name), shown);
    QCOMPARE(PrintableName::displayWidth(shown), width);
    const QString padded = PrintableName::padded(shown, 12);
    QCOMPARE(PrintableName::displayWidth(padded), std::max(12, width));
    QVERIFY(padded.startsWith(shown));
}

QTEST_GUILESS_MAIN(TestPrintableName)
#include "tst_printablename.moc"
