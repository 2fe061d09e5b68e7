// lxconfig import: the record a JSON form describes, and export and import as a round trip.

#include "expected.h"
#include "tst_cli.h"
#include "workspace.h"

#include <QTest>
#include <random>

namespace {

// The JSON lines without the member of that key.
QStringList without(const QStringList &lines, const QString &key)
{
    QStringList kept;
    for (const QString &line : lines) {
        if (!line.startsWith(QStringLiteral("    \"%1\":").arg(key)))
            kept << line;
    }
    return kept;
}

QString expectedNumber(const char *key, const char *range)
{
    return QStringLiteral("lxconfig: in.json: %1: expected a whole number from %2\n")
        .arg(key, range);
}

// Random bytes in every field, fixed134 within what a JSON number holds, the checksum mended.
QByteArray randomRecord(std::mt19937 &random)
{
    std::uniform_int_distribution<int> byte(0, 255);
    QByteArray bytes(167, '\0');
    for (char &b : bytes)
        b = char(byte(random));
    bytes[140] = char(bytes[140] & 0x1F);
    bytes[141] = 0;
    return withMendedChecksum(bytes);
}

} // namespace

void TestCli::importDefaults()
{
    const Workspace workspace;
    workspace.write("in.json", withLines(kDefaultJson).toUtf8());
    COMPARE_RUN(workspace.run({"import", "in.json", "-o", "out.bin"}), 0, "", "");
    QCOMPARE(workspace.read("out.bin"), kDefaultBytes);

    workspace.write("zero.json", withLines(kZeroJson).toUtf8());
    COMPARE_RUN(workspace.run({"import", "zero.json", "-o", "zero.bin"}), 0, "", "");
    QCOMPARE(workspace.read("zero.bin"), QByteArray(167, '\0'));

    // The order of the keys and the spacing do not matter.
    workspace.write("moved.json", withLines(without(kDefaultJson, "magic"),
                                            {QStringLiteral(R"-(    "crc": %1,"magic":"CONF")-")
                                                 .arg(storedChecksum(kDefaultBytes))})
                                      .toUtf8());
    COMPARE_RUN(workspace.run({"import", "moved.json", "-o", "moved.bin"}), 0, "", "");
    QCOMPARE(workspace.read("moved.bin"), kDefaultBytes);
}

void TestCli::importRejects_data()
{
    QTest::addColumn<QString>("json");
    QTest::addColumn<QString>("err");

    const auto row = [](const char *name, const QString &json, const QString &err) {
        QTest::newRow(name) << json << err;
    };
    const auto changed = [](const QString &line) { return withLines(kDefaultJson, {line}); };
    row("unterminated", "{",
        "lxconfig: in.json: malformed JSON: unterminated object at offset 1\n");
    row("empty", "", "lxconfig: in.json: malformed JSON: illegal value at offset 0\n");
    row("trailing comma",
        changed(QStringLiteral(R"-(    "crc": %1,)-").arg(storedChecksum(kDefaultBytes))),
        "lxconfig: in.json: malformed JSON: object is missing after a comma at offset 1283\n");
    row("not an object", "[1, 2]", "lxconfig: in.json: not a JSON object\n");
    row("a string", "\"CONF\"", "lxconfig: in.json: not a JSON object\n");
    row("a number", "167", "lxconfig: in.json: not a JSON object\n");
    row("duplicate key", changed(R"-(    "gpsReceiver": 2, "gpsReceiver": 3,)-"),
        "lxconfig: in.json: gpsReceiver: duplicate key\n");
    row("duplicate key, same value", changed(R"-(    "gpsReceiver": 2, "gpsReceiver": 2,)-"),
        "lxconfig: in.json: gpsReceiver: duplicate key\n");
    row("garbage after the object", withLines(kDefaultJson) + "x",
        "lxconfig: in.json: malformed JSON: garbage at the end of the document at offset 1284\n");
    row("unknown key", changed(R"-(    "gpsReceiver": 2, "colour": 1,)-"),
        "lxconfig: in.json: colour: no such field\n");
    row("missing key", withLines(without(kDefaultJson, "gpsReceiver")),
        "lxconfig: in.json: gpsReceiver: missing\n");
    row("above u8", changed(R"-(    "gpsReceiver": 256,)-"),
        expectedNumber("gpsReceiver", "0 to 255"));
    row("below u8", changed(R"-(    "gpsReceiver": -1,)-"),
        expectedNumber("gpsReceiver", "0 to 255"));
    row("fraction", changed(R"-(    "gpsReceiver": 2.5,)-"),
        expectedNumber("gpsReceiver", "0 to 255"));
    row("string", changed(R"-(    "gpsReceiver": "2",)-"),
        expectedNumber("gpsReceiver", "0 to 255"));
    row("boolean", changed(R"-(    "gimbalRc": true,)-"), expectedNumber("gimbalRc", "0 to 255"));
    row("null", changed(R"-(    "sbusZoom": null,)-"), expectedNumber("sbusZoom", "0 to 255"));
    row("array for a number", changed(R"-(    "sbusZoom": [2],)-"),
        expectedNumber("sbusZoom", "0 to 255"));
    row("above u16", changed(R"-(    "isothermLower": 65536,)-"),
        expectedNumber("isothermLower", "0 to 65535"));
    row("above u32", changed(R"-(    "frameSkip": 4294967296,)-"),
        expectedNumber("frameSkip", "0 to 4294967295"));
    row("above i32", changed(R"-(    "esoOffset": 2147483648,)-"),
        expectedNumber("esoOffset", "-2147483648 to 2147483647"));
    row("below i32", changed(R"-(    "esoOffset": -2147483649,)-"),
        expectedNumber("esoOffset", "-2147483648 to 2147483647"));
    row("above fixed134", changed(R"-(    "fixed134": 9007199254740992,)-"),
        expectedNumber("fixed134", "0 to 9007199254740991"));
    row("above crc", changed(R"-(    "crc": 65536)-"), expectedNumber("crc", "0 to 65535"));
    row("19 trigger slots",
        changed(
            R"-(    "triggerLow": [688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688],)-"),
        "lxconfig: in.json: triggerLow: expected an array of 20 numbers, each a whole number "
        "from 0 to 65535\n");
    row("21 trigger slots",
        changed(
            R"-(    "triggerHigh": [1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1],)-"),
        "lxconfig: in.json: triggerHigh: expected an array of 20 numbers, each a whole number "
        "from 0 to 65535\n");
    row("number for an array", changed(R"-(    "triggerLow": 688,)-"),
        "lxconfig: in.json: triggerLow: expected an array of 20 numbers, each a whole number "
        "from 0 to 65535\n");
    row("trigger slot above u16",
        changed(
            R"-(    "triggerLow": [688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 688, 65536],)-"),
        expectedNumber("triggerLow[19]", "0 to 65535"));
    row("trigger slot a string",
        changed(
            R"-(    "triggerHigh": ["1", 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1],)-"),
        expectedNumber("triggerHigh[0]", "0 to 65535"));
    const QString magic = "lxconfig: in.json: magic: expected 4 characters from U+0000 to U+00FF\n";
    row("magic too long", changed(R"-(    "magic": "CONFX",)-"), magic);
    row("magic too short", changed(R"-(    "magic": "CON",)-"), magic);
    row("magic a number", changed(R"-(    "magic": 1313754947,)-"), magic);
    row("magic beyond a byte", changed(R"-(    "magic": "CON\u0100",)-"), magic);
}

void TestCli::importRejects()
{
    QFETCH(QString, json);
    QFETCH(QString, err);

    const Workspace workspace;
    workspace.write("in.json", json.toUtf8());
    COMPARE_RUN(workspace.run({"import", "in.json", "-o", "out.bin"}), 1, "", err);
    QVERIFY(!workspace.exists("out.bin"));
}

void TestCli::importReplacesChecksum()
{
    const Workspace workspace;
    workspace.write("in.json", withLines(kDefaultJson, {R"-(    "crc": 0)-"}).toUtf8());
    COMPARE_RUN(
        workspace.run({"import", "in.json", "-o", "out.bin"}), 0, "",
        QStringLiteral("lxconfig: warning: in.json: crc 0 replaced by the computed checksum %1\n")
            .arg(storedChecksum(kDefaultBytes)));
    QCOMPARE(workspace.read("out.bin"), kDefaultBytes);

    COMPARE_RUN(workspace.run({"import", "missing.json", "-o", "out.bin"}), 1, "",
                "lxconfig: missing.json: cannot open: No such file or directory\n");
    COMPARE_RUN(workspace.run({"import", "folder", "-o", "out.bin"}), 1, "",
                "lxconfig: folder: cannot read: Is a directory\n");
}

void TestCli::roundTrip_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 10; ++seed)
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void TestCli::roundTrip()
{
    QFETCH(unsigned, seed);

    std::mt19937 random(seed);
    const Workspace workspace;
    for (int i = 0; i < 5; ++i) {
        const QByteArray record = randomRecord(random);
        workspace.write("record.bin", record);
        const RunResult exported = workspace.run({"export", "record.bin", "-o", "record.json"});
        QCOMPARE(exported.exitCode, 0);
        QCOMPARE(exported.out, QString());
        // Standard output carries the same text as the file.
        QCOMPARE(workspace.run({"export", "record.bin"}).out.toUtf8(),
                 workspace.read("record.json"));
        COMPARE_RUN(workspace.run({"import", "record.json", "-o", "back.bin"}), 0, "", "");
        QCOMPARE(workspace.read("back.bin").toHex(' '), record.toHex(' '));
    }
}
