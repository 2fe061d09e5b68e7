// The window's own checksum members: calc_crc reports every computation on the console (on
// saving and loading alike), crc_update is the silent one-byte step.

#include "consolecapture.h"
#include "mainwindow.h"

#include <QtTest>

class TestChecksumMembers : public QObject
{
    Q_OBJECT

private slots:
    void calcCrc_data();
    void calcCrc();
    void foldingCrcUpdateGivesCalcCrc_data();
    void foldingCrcUpdateGivesCalcCrc();
    void crcUpdateIsSilent();
};

void TestChecksumMembers::calcCrc_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("checksum");
    QTest::addColumn<QString>("line");
    QTest::newRow("123456789") << QByteArray("123456789") << 9 << 1866 << "CRC read: 1866";
    QTest::newRow("CONF") << QByteArray("CONF") << 4 << 61657 << "CRC read: 61657";
    QTest::newRow("01") << QByteArray::fromHex("01") << 1 << 2280 << "CRC read: 2280";
    QTest::newRow("00") << QByteArray::fromHex("00") << 1 << 0 << "CRC read: 0";
    QTest::newRow("FF") << QByteArray::fromHex("ff") << 1 << 1959 << "CRC read: 1959";
    QTest::newRow("length 0") << QByteArray("CONF") << 0 << 0 << "CRC read: 0";
    QTest::newRow("negative length") << QByteArray("CONF") << -5 << 0 << "CRC read: 0";
    QTest::newRow("first two bytes only")
        << QByteArray("123456789") << 2 << 32478 << "CRC read: 32478";
}

void TestChecksumMembers::calcCrc()
{
    QFETCH(QByteArray, data);
    QFETCH(int, length);
    QFETCH(int, checksum);
    QFETCH(QString, line);
    MainWindow window;
    unsigned short result = 0xABCD;
    ConsoleCapture console;
    window.calc_crc(reinterpret_cast<unsigned char *>(data.data()), length, &result);
    QCOMPARE(int(result), checksum);
    QCOMPARE(console.out(), QStringList{line});
    QCOMPARE(console.err(), QStringList());
    QCOMPARE(console.unterminated(), QString());
}

void TestChecksumMembers::foldingCrcUpdateGivesCalcCrc_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("checksum");
    QTest::newRow("123456789") << QByteArray("123456789") << 1866;
    QTest::newRow("CONF") << QByteArray("CONF") << 61657;
    QTest::newRow("leading zeros") << QByteArray::fromHex("00000001") << 2280;
}

void TestChecksumMembers::foldingCrcUpdateGivesCalcCrc()
{
    QFETCH(QByteArray, data);
    QFETCH(int, checksum);
    MainWindow window;
    unsigned short folded = 0;
    for (const char byte : data)
        folded = window.crc_update(folded, static_cast<unsigned char>(byte), 0xC599);
    QCOMPARE(int(folded), checksum);
}

void TestChecksumMembers::crcUpdateIsSilent()
{
    MainWindow window;
    ConsoleCapture console;
    // Another polynomial gives another register: the argument is used, not the file's constant.
    QCOMPARE(int(window.crc_update(0, 0x01, 0xC599)), 2280);
    QCOMPARE(int(window.crc_update(0, 0x01, 0xA001)), 0xC0C1);
    QCOMPARE(console.all(), QStringList());
    QCOMPARE(console.unterminated(), QString());
}

QTEST_MAIN(TestChecksumMembers)
#include "tst_checksummembers.moc"
