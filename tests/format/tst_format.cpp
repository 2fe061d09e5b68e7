// The LXCONFIG.BIN format library: checksum, field layout, encoding and value conversions.
// Expected bytes and values are written out here, never taken from the code under test.

#include "configrecord.h"
#include "controltext.h"
#include "conversions.h"
#include "crc16.h"
#include "editorverdict.h"
#include "recorddiff.h"
#include "untouchedform.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QTest>
#include <cstdio>
#include <optional>
#include <random>
#include <vector>

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FieldType;

Q_DECLARE_METATYPE(lumarex::Verdict)
Q_DECLARE_METATYPE(lumarex::Field)
Q_DECLARE_METATYPE(lumarex::FieldType)

namespace {

const std::uint8_t *bytesOf(const QByteArray &data)
{
    return reinterpret_cast<const std::uint8_t *>(data.constData());
}

QByteArray toByteArray(const ConfigRecord &record)
{
    return QByteArray(reinterpret_cast<const char *>(record.bytes().data()), lumarex::kRecordSize);
}

// A distinct value in every field and every trigger element; kDistinctBytes is its image.
struct FieldValue
{
    Field field;
    int element;
    std::uint64_t value;
};

std::vector<FieldValue> distinctValues()
{
    std::vector<FieldValue> values = {
        {Field::magic, 0, 0x44434241},
        {Field::payloadLength, 0, 0x11223344},
        {Field::headerVersion, 0, 0x55667788},
        {Field::ext0Mode, 0, 0x05},
        {Field::ext1Mode, 0, 0x06},
        {Field::frameSkip, 0, 0xA1B2C3D4},
        {Field::triggerPinMode, 0, 0x07},
        {Field::triggerFfcMode, 0, 0x08},
        {Field::triggerFrameMode, 0, 0x09},
        {Field::reserved101, 0, 0x0A},
        {Field::overlayMode, 0, 0x0B},
        {Field::isothermState, 0, 0x0C},
        {Field::isothermSwitchMode, 0, 0x0D},
        {Field::isothermLower, 0, 0xE1E2},
        {Field::isothermMiddle, 0, 0xE3E4},
        {Field::isothermUpper, 0, 0xE5E6},
        {Field::gimbalRc, 0, 0x0E},
        {Field::gpsReceiver, 0, 0x0F},
        {Field::externalShutter, 0, 0x10},
        {Field::esoHeating, 0, 0x21222324},
        {Field::esoHeatcycle, 0, 0x25262728},
        {Field::esoOffset, 0, 0x292A2B2C},
        {Field::esoShutterInterval, 0, 0x2D2E2F30},
        {Field::esoOpt5, 0, 0x31323334},
        {Field::fixed134, 0, 0xF8F7F6F5F4F3F2F1},
        {Field::recMaxFramesPerFile, 0, 0x35363738},
        {Field::sbusColormap, 0, 0x41},
        {Field::sbusColorMapSwitchMode, 0, 0x42},
        {Field::sbusFfc, 0, 0x43},
        {Field::sbusIsotherms, 0, 0x44},
        {Field::sbusIsoLow, 0, 0x45},
        {Field::sbusIsoMid, 0, 0x46},
        {Field::sbusIsoUp, 0, 0x47},
        {Field::sbusOverlay, 0, 0x48},
        {Field::sbusTrigger, 0, 0x49},
        {Field::sbusZoom, 0, 0x4A},
        {Field::sbusZoomMode, 0, 0x4B},
        {Field::spare157, 0, 0x4C},
        {Field::serialBaudrate, 0, 0x5A5B5C5D},
        {Field::serialParity, 0, 0x4D},
        {Field::serialStopBits, 0, 0x4E},
        {Field::serialInverted, 0, 0x4F},
        {Field::crc, 0, 0xC1C2},
    };
    for (int k = 0; k < 20; ++k) {
        values.push_back({Field::triggerLow, k, 0x1000U + 0x101U * unsigned(k)});
        values.push_back({Field::triggerHigh, k, 0x9040U + 0x101U * unsigned(k)});
    }
    return values;
}

const QByteArray kDistinctBytes =
    QByteArray::fromHex("41 42 43 44 44 33 22 11 88 77 66 55 00 10 01 11" // 0
                        "02 12 03 13 04 14 05 15 06 16 07 17 08 18 09 19" // 16
                        "0A 1A 0B 1B 0C 1C 0D 1D 0E 1E 0F 1F 10 20 11 21" // 32
                        "12 22 13 23 40 90 41 91 42 92 43 93 44 94 45 95" // 48
                        "46 96 47 97 48 98 49 99 4A 9A 4B 9B 4C 9C 4D 9D" // 64
                        "4E 9E 4F 9F 50 A0 51 A1 52 A2 53 A3 05 06 D4 C3" // 80
                        "B2 A1 07 08 09 0A 0B 0C 0D E2 E1 E4 E3 E6 E5 0E" // 96
                        "0F 10 24 23 22 21 28 27 26 25 2C 2B 2A 29 30 2F" // 112
                        "2E 2D 34 33 32 31 F1 F2 F3 F4 F5 F6 F7 F8 38 37" // 128
                        "36 35 41 42 43 44 45 46 47 48 49 4A 4B 4C 5D 5C" // 144
                        "5B 5A 4D 4E 4F C2 C1");                          // 160

ConfigRecord distinctRecord()
{
    ConfigRecord record;
    for (const FieldValue &v : distinctValues()) {
        if (v.field == Field::fixed134)
            record.setValue64(v.field, v.value);
        else
            record.setValue(v.field, std::uint32_t(v.value), v.element);
    }
    return record;
}

} // namespace

class TestFormat : public QObject
{
    Q_OBJECT

private slots:
    void checksum_data();
    void checksum();
    void checksumOfNothing_data();
    void checksumOfNothing();
    void checksumUpdate_data();
    void checksumUpdate();
    void checksumFoldsUpdate_data();
    void checksumFoldsUpdate();

    void fieldLayout_data();
    void fieldLayout();
    void fieldTableCoversRecord();
    void fieldByNameRoundTrip();
    void fieldByNameUnknown_data();
    void fieldByNameUnknown();

    void newRecordIsZero();
    void headerBytes();
    void zeroPayloadChecksum();
    void sealDefaultRecord();
    void sealKeepsPayload();
    void encodeEveryField();
    void decodeEveryField();
    void outOfRangeElement();
    void truncation_data();
    void truncation();
    void signedValue_data();
    void signedValue();
    void fromBytes_data();
    void fromBytes();
    void editorVerdict_data();
    void editorVerdict();
    void editorReadSize();
    void hasMagic_data();
    void hasMagic();
    void checksumDetectsChange();
    void randomRecordsRoundTrip();

    void esoOffsetToField_data();
    void esoOffsetToField();
    void esoOffsetBytes_data();
    void esoOffsetBytes();
    void esoOffsetFromField_data();
    void esoOffsetFromField();
    void extModeCode_data();
    void extModeCode();
    void extModeIndex_data();
    void extModeIndex();

    void decimalText_data();
    void decimalText();
};

// ---- checksum ----

void TestFormat::checksum_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("expected");

    QTest::newRow("123456789") << QByteArray("123456789") << 1866;
    QTest::newRow("CONF") << QByteArray("CONF") << 61657;
    QTest::newRow("01") << QByteArray::fromHex("01") << 2280;
    QTest::newRow("00") << QByteArray::fromHex("00") << 0;
    QTest::newRow("FF") << QByteArray::fromHex("FF") << 1959;
    QTest::newRow("header and zero payload")
        << QByteArray::fromHex("434F4E46 99000000 79EE3301") + QByteArray(153, '\0') << 39143;
    QTest::newRow("zero bytes only") << QByteArray(165, '\0') << 0;
    QTest::newRow("leading zeros then 01") << QByteArray::fromHex("00000001") << 2280;
    QTest::newRow("leading zeros then 123456789")
        << QByteArray(5, '\0') + QByteArray("123456789") << 1866;
}

void TestFormat::checksum()
{
    QFETCH(QByteArray, data);
    QFETCH(int, expected);
    QCOMPARE(int(lumarex::crc16(bytesOf(data), data.size())), expected);
}

void TestFormat::checksumOfNothing_data()
{
    QTest::addColumn<int>("length");

    QTest::newRow("zero") << 0;
    QTest::newRow("minus one") << -1;
    QTest::newRow("minus 167") << -167;
}

void TestFormat::checksumOfNothing()
{
    QFETCH(int, length);
    // Non-zero bytes behind the pointer, so reading any of them would show.
    const QByteArray data("123456789");
    QCOMPARE(int(lumarex::crc16(bytesOf(data), length)), 0);
}

void TestFormat::checksumUpdate_data()
{
    QTest::addColumn<int>("crc");
    QTest::addColumn<int>("data");
    QTest::addColumn<int>("polynomial");
    QTest::addColumn<int>("expected");

    QTest::newRow("01 from 0") << 0 << 0x01 << 0xC599 << 2280;
    QTest::newRow("FF from 0") << 0 << 0xFF << 0xC599 << 1959;
    QTest::newRow("56 from 1234") << 0x1234 << 0x56 << 0xC599 << 0x20A4;
    QTest::newRow("01 with A001") << 0 << 0x01 << 0xA001 << 0xC0C1;
    QTest::newRow("00 from FFFF with 8408") << 0xFFFF << 0x00 << 0x8408 << 0x0F87;
}

void TestFormat::checksumUpdate()
{
    QFETCH(int, crc);
    QFETCH(int, data);
    QFETCH(int, polynomial);
    QFETCH(int, expected);
    QCOMPARE(int(lumarex::crc16Update(std::uint16_t(crc), std::uint8_t(data),
                                      std::uint16_t(polynomial))),
             expected);
}

void TestFormat::checksumFoldsUpdate_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("expected");

    QTest::newRow("123456789") << QByteArray("123456789") << 1866;
    QTest::newRow("CONF") << QByteArray("CONF") << 61657;
    QTest::newRow("header and zero payload")
        << QByteArray::fromHex("434F4E46 99000000 79EE3301") + QByteArray(153, '\0') << 39143;
    QTest::newRow("sealed distinct record")
        << QByteArray::fromHex(
               "434F4E46 99000000 79EE3301 00100111 02120313 04140515 06160717 08180919"
               "0A1A0B1B 0C1C0D1D 0E1E0F1F 10201121 12221323 40904191 42924393 44944595"
               "46964797 48984999 4A9A4B9B 4C9C4D9D 4E9E4F9F 50A051A1 52A253A3 0506D4C3"
               "B2A10708 09000B0C 0DE2E1E4 E3E6E50E 0F102423 22212827 26252C2B 2A29302F"
               "2E2D3433 32310000 00400000 00003837 36354142 43444546 4748494A 4B4C5D5C"
               "5B5A4D4E 4F")
        << 0x5E72;
}

void TestFormat::checksumFoldsUpdate()
{
    QFETCH(QByteArray, data);
    QFETCH(int, expected);
    std::uint16_t folded = 0;
    for (char byte : data)
        folded = lumarex::crc16Update(folded, std::uint8_t(byte), lumarex::kCrcPolynomial);
    QCOMPARE(int(folded), expected);
    QCOMPARE(lumarex::crc16(bytesOf(data), data.size()), folded);
}

// ---- field table ----

void TestFormat::fieldLayout_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("width");
    QTest::addColumn<FieldType>("type");
    QTest::addColumn<int>("elements");

    // clang-format off
    QTest::newRow("magic") << Field::magic << "magic" << 0 << 4 << FieldType::Ascii4 << 1;
    QTest::newRow("payloadLength") << Field::payloadLength << "payloadLength" << 4 << 4 << FieldType::U32 << 1;
    QTest::newRow("headerVersion") << Field::headerVersion << "headerVersion" << 8 << 4 << FieldType::U32 << 1;
    QTest::newRow("triggerLow") << Field::triggerLow << "triggerLow" << 12 << 40 << FieldType::U16x20 << 20;
    QTest::newRow("triggerHigh") << Field::triggerHigh << "triggerHigh" << 52 << 40 << FieldType::U16x20 << 20;
    QTest::newRow("ext0Mode") << Field::ext0Mode << "ext0Mode" << 92 << 1 << FieldType::U8 << 1;
    QTest::newRow("ext1Mode") << Field::ext1Mode << "ext1Mode" << 93 << 1 << FieldType::U8 << 1;
    QTest::newRow("frameSkip") << Field::frameSkip << "frameSkip" << 94 << 4 << FieldType::U32 << 1;
    QTest::newRow("triggerPinMode") << Field::triggerPinMode << "triggerPinMode" << 98 << 1 << FieldType::U8 << 1;
    QTest::newRow("triggerFfcMode") << Field::triggerFfcMode << "triggerFfcMode" << 99 << 1 << FieldType::U8 << 1;
    QTest::newRow("triggerFrameMode") << Field::triggerFrameMode << "triggerFrameMode" << 100 << 1 << FieldType::U8 << 1;
    QTest::newRow("reserved101") << Field::reserved101 << "reserved101" << 101 << 1 << FieldType::U8 << 1;
    QTest::newRow("overlayMode") << Field::overlayMode << "overlayMode" << 102 << 1 << FieldType::U8 << 1;
    QTest::newRow("isothermState") << Field::isothermState << "isothermState" << 103 << 1 << FieldType::U8 << 1;
    QTest::newRow("isothermSwitchMode") << Field::isothermSwitchMode << "isothermSwitchMode" << 104 << 1 << FieldType::U8 << 1;
    QTest::newRow("isothermLower") << Field::isothermLower << "isothermLower" << 105 << 2 << FieldType::U16 << 1;
    QTest::newRow("isothermMiddle") << Field::isothermMiddle << "isothermMiddle" << 107 << 2 << FieldType::U16 << 1;
    QTest::newRow("isothermUpper") << Field::isothermUpper << "isothermUpper" << 109 << 2 << FieldType::U16 << 1;
    QTest::newRow("gimbalRc") << Field::gimbalRc << "gimbalRc" << 111 << 1 << FieldType::U8 << 1;
    QTest::newRow("gpsReceiver") << Field::gpsReceiver << "gpsReceiver" << 112 << 1 << FieldType::U8 << 1;
    QTest::newRow("externalShutter") << Field::externalShutter << "externalShutter" << 113 << 1 << FieldType::U8 << 1;
    QTest::newRow("esoHeating") << Field::esoHeating << "esoHeating" << 114 << 4 << FieldType::I32 << 1;
    QTest::newRow("esoHeatcycle") << Field::esoHeatcycle << "esoHeatcycle" << 118 << 4 << FieldType::I32 << 1;
    QTest::newRow("esoOffset") << Field::esoOffset << "esoOffset" << 122 << 4 << FieldType::I32 << 1;
    QTest::newRow("esoShutterInterval") << Field::esoShutterInterval << "esoShutterInterval" << 126 << 4 << FieldType::I32 << 1;
    QTest::newRow("esoOpt5") << Field::esoOpt5 << "esoOpt5" << 130 << 4 << FieldType::I32 << 1;
    QTest::newRow("fixed134") << Field::fixed134 << "fixed134" << 134 << 8 << FieldType::Bytes8 << 1;
    QTest::newRow("recMaxFramesPerFile") << Field::recMaxFramesPerFile << "recMaxFramesPerFile" << 142 << 4 << FieldType::I32 << 1;
    QTest::newRow("sbusColormap") << Field::sbusColormap << "sbusColormap" << 146 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusColorMapSwitchMode") << Field::sbusColorMapSwitchMode << "sbusColorMapSwitchMode" << 147 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusFfc") << Field::sbusFfc << "sbusFfc" << 148 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusIsotherms") << Field::sbusIsotherms << "sbusIsotherms" << 149 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusIsoLow") << Field::sbusIsoLow << "sbusIsoLow" << 150 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusIsoMid") << Field::sbusIsoMid << "sbusIsoMid" << 151 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusIsoUp") << Field::sbusIsoUp << "sbusIsoUp" << 152 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusOverlay") << Field::sbusOverlay << "sbusOverlay" << 153 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusTrigger") << Field::sbusTrigger << "sbusTrigger" << 154 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusZoom") << Field::sbusZoom << "sbusZoom" << 155 << 1 << FieldType::U8 << 1;
    QTest::newRow("sbusZoomMode") << Field::sbusZoomMode << "sbusZoomMode" << 156 << 1 << FieldType::U8 << 1;
    QTest::newRow("spare157") << Field::spare157 << "spare157" << 157 << 1 << FieldType::U8 << 1;
    QTest::newRow("serialBaudrate") << Field::serialBaudrate << "serialBaudrate" << 158 << 4 << FieldType::U32 << 1;
    QTest::newRow("serialParity") << Field::serialParity << "serialParity" << 162 << 1 << FieldType::U8 << 1;
    QTest::newRow("serialStopBits") << Field::serialStopBits << "serialStopBits" << 163 << 1 << FieldType::U8 << 1;
    QTest::newRow("serialInverted") << Field::serialInverted << "serialInverted" << 164 << 1 << FieldType::U8 << 1;
    QTest::newRow("crc") << Field::crc << "crc" << 165 << 2 << FieldType::U16 << 1;
    // clang-format on
}

void TestFormat::fieldLayout()
{
    QFETCH(Field, field);
    QFETCH(QString, name);
    QFETCH(int, offset);
    QFETCH(int, width);
    QFETCH(FieldType, type);
    QFETCH(int, elements);

    const lumarex::FieldInfo &info = lumarex::fieldInfo(field);
    QCOMPARE(info.field, field);
    QCOMPARE(QString::fromLatin1(info.name), name);
    QCOMPARE(info.offset, offset);
    QCOMPARE(info.width, width);
    QCOMPARE(info.type, type);
    QCOMPARE(info.elementCount(), elements);
    QCOMPARE(info.elementWidth(), width / elements);
}

void TestFormat::fieldTableCoversRecord()
{
    const auto &table = lumarex::fieldTable();
    QCOMPARE(int(table.size()), 45);
    int nextOffset = 0;
    QSet<QString> names;
    for (int i = 0; i < int(table.size()); ++i) {
        const lumarex::FieldInfo &info = table[std::size_t(i)];
        QCOMPARE(int(info.field), i);
        QCOMPARE(&lumarex::fieldInfo(Field(i)), &info);
        QCOMPARE(info.offset, nextOffset);
        QVERIFY(info.width > 0);
        nextOffset = info.offset + info.width;
        QVERIFY2(!names.contains(QString::fromLatin1(info.name)), info.name);
        names.insert(QString::fromLatin1(info.name));
    }
    QCOMPARE(nextOffset, 167);
}

void TestFormat::fieldByNameRoundTrip()
{
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const std::optional<Field> found = lumarex::fieldByName(info.name);
        QVERIFY2(found.has_value(), info.name);
        QCOMPARE(*found, info.field);
    }
}

void TestFormat::fieldByNameUnknown_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty") << "";
    QTest::newRow("other case") << "triggerlow";
    QTest::newRow("upper case") << "CRC";
    QTest::newRow("trailing space") << "magic ";
    QTest::newRow("prefix") << "sbusIso";
    QTest::newRow("control name") << "cbSbusFFC";
}

void TestFormat::fieldByNameUnknown()
{
    QFETCH(QString, name);
    const QByteArray latin1 = name.toLatin1();
    QVERIFY(!lumarex::fieldByName(std::string_view(latin1.constData(), latin1.size())));
}

// ---- record ----

void TestFormat::newRecordIsZero()
{
    COMPARE_BYTES(toByteArray(ConfigRecord()), QByteArray(167, '\0'));
}

void TestFormat::headerBytes()
{
    ConfigRecord record;
    record.writeHeader();
    COMPARE_BYTES(toByteArray(record),
                  QByteArray::fromHex("434F4E46 99000000 79EE3301") + QByteArray(155, '\0'));
    QCOMPARE(record.value(Field::payloadLength), 153U);
    QCOMPARE(record.value(Field::headerVersion), 20180601U);
}

void TestFormat::zeroPayloadChecksum()
{
    ConfigRecord record;
    record.writeHeader();
    QCOMPARE(int(record.computedChecksum()), 39143);
    record.setValue(Field::crc, record.computedChecksum());
    QCOMPARE(int(record.bytes()[165]), 0xE7);
    QCOMPARE(int(record.bytes()[166]), 0x98);
    QCOMPARE(int(record.storedChecksum()), 39143);
}

void TestFormat::sealDefaultRecord()
{
    // fixed134 is part of every sealed record, so its payload is never all zero.
    ConfigRecord record;
    record.seal();
    const QByteArray expected = QByteArray::fromHex("434F4E46 99000000 79EE3301") +
                                QByteArray(122, '\0') + QByteArray::fromHex("00000040 00000000") +
                                QByteArray(23, '\0') + QByteArray::fromHex("92C2");
    COMPARE_BYTES(toByteArray(record), expected);
    QCOMPARE(record.value64(Field::fixed134), Q_UINT64_C(0x40000000));
}

void TestFormat::sealKeepsPayload()
{
    // Header, reserved101, fixed134 and crc are replaced; every other byte stays.
    ConfigRecord record = distinctRecord();
    record.seal();
    const QByteArray expected = QByteArray::fromHex(
        "434F4E46 99000000 79EE3301 00100111 02120313 04140515 06160717 08180919"
        "0A1A0B1B 0C1C0D1D 0E1E0F1F 10201121 12221323 40904191 42924393 44944595"
        "46964797 48984999 4A9A4B9B 4C9C4D9D 4E9E4F9F 50A051A1 52A253A3 0506D4C3"
        "B2A10708 09000B0C 0DE2E1E4 E3E6E50E 0F102423 22212827 26252C2B 2A29302F"
        "2E2D3433 32310000 00400000 00003837 36354142 43444546 4748494A 4B4C5D5C"
        "5B5A4D4E 4F725E");
    COMPARE_BYTES(toByteArray(record), expected);
    QVERIFY(record.hasMagic());
    QCOMPARE(record.storedChecksum(), record.computedChecksum());
}

void TestFormat::encodeEveryField()
{
    COMPARE_BYTES(toByteArray(distinctRecord()), kDistinctBytes);
}

void TestFormat::decodeEveryField()
{
    const ConfigRecord encoded = distinctRecord();
    const ConfigRecord decoded = ConfigRecord::fromBytes(bytesOf(kDistinctBytes), 167);
    QVERIFY(decoded == encoded);
    for (const FieldValue &v : distinctValues()) {
        const QByteArray where = QByteArray(lumarex::fieldInfo(v.field).name) + '[' +
                                 QByteArray::number(v.element) + ']';
        if (v.field == Field::fixed134) {
            QVERIFY2(decoded.value64(v.field) == v.value, where.constData());
            QCOMPARE(decoded.value(v.field), 0xF4F3F2F1U);
        } else {
            QVERIFY2(decoded.value(v.field, v.element) == v.value, where.constData());
        }
    }
}

void TestFormat::outOfRangeElement()
{
    ConfigRecord record;
    record.setValue(Field::triggerLow, 0xBEEF, 20);
    record.setValue(Field::triggerHigh, 0xBEEF, -1);
    record.setValue(Field::crc, 0xBEEF, 1);
    COMPARE_BYTES(toByteArray(record), QByteArray(167, '\0'));

    const ConfigRecord filled = ConfigRecord::fromBytes(bytesOf(kDistinctBytes), 167);
    QCOMPARE(filled.value(Field::triggerLow, 20), 0U);
    QCOMPARE(filled.value(Field::triggerHigh, -1), 0U);
    QCOMPARE(filled.value(Field::ext0Mode, 1), 0U);
}

void TestFormat::truncation_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<int>("element");
    QTest::addColumn<uint>("value");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<uint>("readBack");

    QTest::newRow("isothermLower 70000")
        << Field::isothermLower << 0 << 70000U << 105 << QByteArray::fromHex("7011") << 0x1170U;
    QTest::newRow("isothermMiddle 65535")
        << Field::isothermMiddle << 0 << 65535U << 107 << QByteArray::fromHex("FFFF") << 0xFFFFU;
    QTest::newRow("isothermUpper 65536")
        << Field::isothermUpper << 0 << 65536U << 109 << QByteArray::fromHex("0000") << 0U;
    QTest::newRow("isothermUpper -1")
        << Field::isothermUpper << 0 << uint(-1) << 109 << QByteArray::fromHex("FFFF") << 0xFFFFU;
    QTest::newRow("triggerLow[0] 70000")
        << Field::triggerLow << 0 << 70000U << 12 << QByteArray::fromHex("7011") << 0x1170U;
    QTest::newRow("triggerLow[19] 70000")
        << Field::triggerLow << 19 << 70000U << 50 << QByteArray::fromHex("7011") << 0x1170U;
    QTest::newRow("triggerHigh[4] 131071")
        << Field::triggerHigh << 4 << 131071U << 60 << QByteArray::fromHex("FFFF") << 0xFFFFU;
    QTest::newRow("u8 index -1") << Field::serialParity << 0 << uint(-1) << 162
                                 << QByteArray::fromHex("FF") << 0xFFU;
    QTest::newRow("u8 256") << Field::sbusTrigger << 0 << 256U << 154 << QByteArray::fromHex("00")
                            << 0U;
    QTest::newRow("u8 0x1FF") << Field::ext1Mode << 0 << 0x1FFU << 93 << QByteArray::fromHex("FF")
                              << 0xFFU;
    QTest::newRow("i32 -1") << Field::esoOpt5 << 0 << uint(-1) << 130
                            << QByteArray::fromHex("FFFFFFFF") << 0xFFFFFFFFU;
    QTest::newRow("u32 4000000000") << Field::frameSkip << 0 << 4000000000U << 94
                                    << QByteArray::fromHex("0028 6BEE") << 4000000000U;
    QTest::newRow("crc 0x198E7") << Field::crc << 0 << 0x198E7U << 165
                                 << QByteArray::fromHex("E798") << 0x98E7U;
}

void TestFormat::truncation()
{
    QFETCH(Field, field);
    QFETCH(int, element);
    QFETCH(uint, value);
    QFETCH(int, offset);
    QFETCH(QByteArray, stored);
    QFETCH(uint, readBack);

    ConfigRecord record;
    record.setValue(field, value, element);
    QByteArray expected(167, '\0');
    expected.replace(offset, stored.size(), stored);
    COMPARE_BYTES(toByteArray(record), expected);
    QCOMPARE(record.value(field, element), readBack);
}

void TestFormat::signedValue_data()
{
    QTest::addColumn<Field>("field");
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<int>("expected");

    QTest::newRow("i32 -125") << Field::esoOffset << QByteArray::fromHex("83FFFFFF") << -125;
    QTest::newRow("i32 250") << Field::esoOffset << QByteArray::fromHex("FA000000") << 250;
    QTest::newRow("i32 min") << Field::esoHeating << QByteArray::fromHex("00000080")
                             << int(0x80000000U);
    QTest::newRow("u16 FFFE") << Field::isothermLower << QByteArray::fromHex("FEFF") << -2;
    QTest::newRow("u16 7FFF") << Field::isothermLower << QByteArray::fromHex("FF7F") << 32767;
    QTest::newRow("u8 FF") << Field::gpsReceiver << QByteArray::fromHex("FF") << -1;
    QTest::newRow("u8 80") << Field::gpsReceiver << QByteArray::fromHex("80") << -128;
    QTest::newRow("u8 7F") << Field::gpsReceiver << QByteArray::fromHex("7F") << 127;
}

void TestFormat::signedValue()
{
    QFETCH(Field, field);
    QFETCH(QByteArray, stored);
    QFETCH(int, expected);

    QByteArray image(167, '\0');
    image.replace(lumarex::fieldInfo(field).offset, stored.size(), stored);
    const ConfigRecord record = ConfigRecord::fromBytes(bytesOf(image), 167);
    QCOMPARE(record.signedValue(field), expected);
}

void TestFormat::fromBytes_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("empty") << QByteArray() << QByteArray(167, '\0');
    QTest::newRow("magic only") << QByteArray("CONF") << QByteArray("CONF") + QByteArray(163, '\0');
    QTest::newRow("166 bytes") << QByteArray(166, '\x5A') << QByteArray(166, '\x5A') + '\0';
    QTest::newRow("167 bytes") << kDistinctBytes << kDistinctBytes;
    QTest::newRow("200 bytes") << kDistinctBytes + QByteArray(33, '\x77') << kDistinctBytes;
}

void TestFormat::fromBytes()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, expected);
    const ConfigRecord record = ConfigRecord::fromBytes(bytesOf(input), std::size_t(input.size()));
    COMPARE_BYTES(toByteArray(record), expected);
}

void TestFormat::editorVerdict_data()
{
    // Bytes patched into the untouched form's file; the checks run in the editor's order, so a
    // file that fails two of them gets the verdict of the first.
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("patch");
    QTest::addColumn<lumarex::Verdict>("verdict");
    using lumarex::Verdict;
    QTest::newRow("untouched") << 0 << QByteArray("C") << Verdict::Accepted;
    QTest::newRow("magic") << 0 << QByteArray("c") << Verdict::BadMagic;
    QTest::newRow("magic and version")
        << 0 << QByteArray::fromHex("636F6E66 99000000 00000000") << Verdict::BadMagic;
    QTest::newRow("version") << 8 << QByteArray::fromHex("7AEE3301") << Verdict::OtherVersion;
    QTest::newRow("version and checksum")
        << 8 << QByteArray::fromHex("7AEE3301 FF") << Verdict::OtherVersion;
    QTest::newRow("payload byte") << 100 << QByteArray::fromHex("01") << Verdict::ChecksumMismatch;
    QTest::newRow("checksum") << 165 << QByteArray::fromHex("735A") << Verdict::ChecksumMismatch;
}

void TestFormat::editorVerdict()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, patch);
    QFETCH(lumarex::Verdict, verdict);
    QByteArray file = untouchedFormFile();
    file.replace(offset, patch.size(), patch);
    const ConfigRecord record =
        ConfigRecord::fromBytes(reinterpret_cast<const std::uint8_t *>(file.constData()),
                                static_cast<std::size_t>(file.size()));
    QCOMPARE(lumarex::editorVerdict(record), verdict);
}

void TestFormat::editorReadSize()
{
    // The editor reads one block of 1024 bytes; a file longer than that is cut there.
    QCOMPARE(lumarex::kEditorReadSize, std::size_t(1024));
}

void TestFormat::hasMagic_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::addColumn<bool>("expected");

    QTest::newRow("CONF") << QByteArray("CONF") << true;
    QTest::newRow("conf") << QByteArray("conf") << false;
    QTest::newRow("CONG") << QByteArray("CONG") << false;
    QTest::newRow("DONF") << QByteArray("DONF") << false;
    QTest::newRow("CON") << QByteArray("CON") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestFormat::hasMagic()
{
    QFETCH(QByteArray, start);
    QFETCH(bool, expected);
    const ConfigRecord record = ConfigRecord::fromBytes(bytesOf(start), std::size_t(start.size()));
    QCOMPARE(record.hasMagic(), expected);
}

void TestFormat::checksumDetectsChange()
{
    ConfigRecord record = distinctRecord();
    record.seal();
    QCOMPARE(int(record.storedChecksum()), 0x5E72);
    record.setValue(Field::spare157, 0x4D);
    QCOMPARE(int(record.storedChecksum()), 0x5E72);
    QVERIFY(record.computedChecksum() != record.storedChecksum());
}

void TestFormat::randomRecordsRoundTrip()
{
    std::mt19937 generator(20180601);
    std::uniform_int_distribution<std::uint32_t> word;
    const auto &table = lumarex::fieldTable();

    for (int round = 0; round < 2000; ++round) {
        // Random 32-bit inputs, so the width truncation is exercised too.
        std::vector<std::vector<std::uint64_t>> expected(table.size());
        ConfigRecord record;
        for (const lumarex::FieldInfo &info : table) {
            auto &elements = expected[std::size_t(info.field)];
            for (int k = 0; k < info.elementCount(); ++k) {
                if (info.type == FieldType::Bytes8) {
                    const std::uint64_t high = word(generator);
                    const std::uint64_t value = (high << 32) | word(generator);
                    record.setValue64(info.field, value);
                    elements.push_back(value);
                } else {
                    const std::uint32_t value = word(generator);
                    record.setValue(info.field, value, k);
                    const int bits = info.elementWidth() * 8;
                    elements.push_back(bits >= 32 ? value : value & ((1U << bits) - 1));
                }
            }
        }

        const ConfigRecord decoded = ConfigRecord::fromBytes(record.bytes().data(), 167);
        for (const lumarex::FieldInfo &info : table) {
            for (int k = 0; k < info.elementCount(); ++k) {
                const std::uint64_t want = expected[std::size_t(info.field)][std::size_t(k)];
                const std::uint64_t got = info.type == FieldType::Bytes8
                                              ? decoded.value64(info.field)
                                              : decoded.value(info.field, k);
                if (got != want) {
                    QFAIL(qPrintable(QStringLiteral("round %1, %2[%3]: %4, expected %5")
                                         .arg(round)
                                         .arg(QString::fromLatin1(info.name))
                                         .arg(k)
                                         .arg(got, 0, 16)
                                         .arg(want, 0, 16)));
                }
            }
        }

        record.seal();
        const std::uint16_t crc = lumarex::crc16(record.bytes().data(), 165);
        QCOMPARE(record.storedChecksum(), crc);
        QCOMPARE(int(record.bytes()[165]), crc & 0xFF);
        QCOMPARE(int(record.bytes()[166]), crc >> 8);
        QCOMPARE(record.value(Field::serialBaudrate),
                 std::uint32_t(expected[std::size_t(Field::serialBaudrate)][0]));
        QCOMPARE(record.value(Field::triggerHigh, 19),
                 std::uint32_t(expected[std::size_t(Field::triggerHigh)][19]));
    }
}

// ---- conversions ----

void TestFormat::esoOffsetToField_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<int>("expected");

    QTest::newRow("2.5") << 2.5 << 250;
    QTest::newRow("-1.25") << -1.25 << -125;
    QTest::newRow("1.25") << 1.25 << 125;
    QTest::newRow("-0.5") << -0.5 << -50;
    QTest::newRow("0.29 truncates") << 0.29 << 28;
    QTest::newRow("-0.29 truncates toward zero") << -0.29 << -28;
    QTest::newRow("0") << 0.0 << 0;
    QTest::newRow("10") << 10.0 << 1000;
    QTest::newRow("-10") << -10.0 << -1000;
    QTest::newRow("0.999 truncates") << 0.999 << 99;
}

void TestFormat::esoOffsetToField()
{
    QFETCH(double, degrees);
    QFETCH(int, expected);
    QCOMPARE(lumarex::esoOffsetToField(degrees), expected);
}

void TestFormat::esoOffsetBytes_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QByteArray>("stored");

    QTest::newRow("2.5") << 2.5 << QByteArray::fromHex("FA000000");
    QTest::newRow("-1.25") << -1.25 << QByteArray::fromHex("83FFFFFF");
    QTest::newRow("0.29") << 0.29 << QByteArray::fromHex("1C000000");
}

void TestFormat::esoOffsetBytes()
{
    QFETCH(double, degrees);
    QFETCH(QByteArray, stored);
    ConfigRecord record;
    record.setValue(Field::esoOffset, std::uint32_t(lumarex::esoOffsetToField(degrees)));
    QCOMPARE(toByteArray(record).mid(122, 4).toHex(), stored.toHex());
}

void TestFormat::esoOffsetFromField_data()
{
    QTest::addColumn<uint>("stored");
    QTest::addColumn<double>("expected");

    QTest::newRow("250") << 250U << 2.5;
    QTest::newRow("28") << 28U << 0.28;
    QTest::newRow("0") << 0U << 0.0;
    QTest::newRow("1000") << 1000U << 10.0;
    // A saved -1.25 is read back unsigned.
    QTest::newRow("FFFFFF83") << 0xFFFFFF83U << 42949671.71;
}

void TestFormat::esoOffsetFromField()
{
    QFETCH(uint, stored);
    QFETCH(double, expected);
    QCOMPARE(lumarex::esoOffsetFromField(stored), expected);
}

void TestFormat::extModeCode_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected"); // -1: no code

    QTest::newRow("port 0 index 0") << 0 << 0 << 0;
    QTest::newRow("port 0 index 1") << 0 << 1 << 1;
    QTest::newRow("port 0 index 2") << 0 << 2 << 5;
    QTest::newRow("port 0 index -1") << 0 << -1 << -1;
    QTest::newRow("port 0 index 3") << 0 << 3 << -1;
    QTest::newRow("port 1 index 0") << 1 << 0 << 0;
    QTest::newRow("port 1 index 1") << 1 << 1 << 2;
    QTest::newRow("port 1 index 2") << 1 << 2 << 6;
    QTest::newRow("port 1 index -1") << 1 << -1 << -1;
    QTest::newRow("port 1 index 3") << 1 << 3 << -1;
}

void TestFormat::extModeCode()
{
    QFETCH(int, port);
    QFETCH(int, index);
    QFETCH(int, expected);
    const std::optional<std::uint8_t> code =
        port == 0 ? lumarex::ext0ModeCode(index) : lumarex::ext1ModeCode(index);
    QCOMPARE(code.has_value() ? int(*code) : -1, expected);
}

void TestFormat::extModeIndex_data()
{
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("expected"); // -1: unknown code

    QTest::newRow("port 0 code 0") << 0 << 0 << 0;
    QTest::newRow("port 0 code 1") << 0 << 1 << 1;
    QTest::newRow("port 0 code 5") << 0 << 5 << 2;
    QTest::newRow("port 0 code 2") << 0 << 2 << -1;
    QTest::newRow("port 0 code 6") << 0 << 6 << -1;
    QTest::newRow("port 0 code 3") << 0 << 3 << -1;
    QTest::newRow("port 0 code 255") << 0 << 255 << -1;
    QTest::newRow("port 1 code 6") << 1 << 6 << 2;
    QTest::newRow("port 1 code 2") << 1 << 2 << 1;
    QTest::newRow("port 1 code 0") << 1 << 0 << 0;
    QTest::newRow("port 1 code 1") << 1 << 1 << -1;
    QTest::newRow("port 1 code 5") << 1 << 5 << -1;
    QTest::newRow("port 1 code 3") << 1 << 3 << -1;
    QTest::newRow("port 1 code 255") << 1 << 255 << -1;
}

void TestFormat::extModeIndex()
{
    QFETCH(int, port);
    QFETCH(int, code);
    QFETCH(int, expected);
    const std::optional<int> index = port == 0 ? lumarex::ext0ModeIndex(std::uint8_t(code))
                                               : lumarex::ext1ModeIndex(std::uint8_t(code));
    QCOMPARE(index.value_or(-1), expected);
}

// ---- a box's number as text ----

void TestFormat::decimalText_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("expected");

    QTest::newRow("whole") << 120.0 << 0 << "120";
    QTest::newRow("two decimals") << 10.0 << 2 << "10.00";
    QTest::newRow("negative") << -1.25 << 2 << "-1.25";
    QTest::newRow("rounded half to even of the stored double") << 0.125 << 2 << "0.12";
    QTest::newRow("not exact in binary") << 0.29 << 2 << "0.29";
    QTest::newRow("read back unsigned") << 4294967171 / 100.0 << 2 << "42949671.71";
    QTest::newRow("negative zero") << -0.0 << 2 << "-0.00";
    QTest::newRow("largest double, as printf has it") << 1.7976931348623157e308 << 2 << QString();
}

// The text a box shows: its value rounded to its decimals, the same as printf's "%.*f" in the C
// locale.
void TestFormat::decimalText()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, expected);
    if (!expected.isNull())
        QCOMPARE(QString::fromStdString(lumarex::decimalText(value, decimals)), expected);
    char printed[400];
    std::snprintf(printed, sizeof printed, "%.*f", decimals, value);
    QCOMPARE(QString::fromStdString(lumarex::decimalText(value, decimals)), QString(printed));
}

QTEST_APPLESS_MAIN(TestFormat)

#include "tst_format.moc"
