// lxconfig apply: a JSON template set in many files, each written safely, one line per file,
// with a warning for a field applied without the fields the editor's rules tie to it.

#include "expected.h"
#include "shellrun.h"
#include "workspace.h"

#include <QFile>
#include <QTest>
#include <sys/stat.h>

namespace {

const QString kGimbalTies = QStringLiteral(
    "triggerLow, triggerHigh, triggerPinMode, triggerFrameMode, overlayMode, isothermState, "
    "isothermSwitchMode, sbusColormap, sbusColorMapSwitchMode, sbusFfc, sbusIsotherms, "
    "sbusIsoLow, sbusIsoMid, sbusIsoUp, sbusOverlay, sbusTrigger, sbusZoom, sbusZoomMode");

// A replaced file is a new inode; one left alone keeps its own.
quint64 fileInode(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

class TestApply : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void partialTemplate();
    void wholeExportedForm();
    void fieldsPattern_data();
    void fieldsPattern();
    void oneFileFails();
    void badTemplates_data();
    void badTemplates();
    void tiedFields_data();
    void tiedFields();
    void backups();
    void quiet();
    void unchangedFileLeftAlone();
    void exceptKeepsEachCamerasOwn_data();
    void exceptKeepsEachCamerasOwn();
    void badKeptPatterns_data();
    void badKeptPatterns();

private:
    Workspace m_workspace;
};

void TestApply::init()
{
    // Two cards with the editor's defaults, one already set up otherwise.
    m_workspace.write("cam1.bin", m_workspace.read("good.bin"));
    m_workspace.write("cam2.bin", m_workspace.read("good.bin"));
    QCOMPARE(m_workspace.run({"set", "-q", "--raw", "cam2.bin", "serialBaudrate=9600"}).exitCode,
             0);
}

void TestApply::partialTemplate()
{
    m_workspace.write("serial.json", R"({"serialBaudrate": 9600, "serialParity": 2})");
    COMPARE_RUN(m_workspace.run({"apply", "serial.json", "cam1.bin", "cam2.bin"}), 0,
                "cam1.bin: 2 fields applied, 2 changed\n"
                "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n"
                "  serialParity: 0 \"none\" -> 2 \"even\"\n"
                "cam2.bin: 2 fields applied, 1 changed\n"
                "  serialParity: 0 \"none\" -> 2 \"even\"\n",
                "");
    COMPARE_RUN(m_workspace.run({"diff", "cam1.bin"}), 1,
                "serialBaudrate: 9600 \"9600\" -> 38400 \"38400\"\n"
                "serialParity: 2 \"even\" -> 0 \"none\"\n" +
                    crcChange(m_workspace.read("cam1.bin"), kDefaultBytes),
                "");
    QCOMPARE(m_workspace.read("cam2.bin"), m_workspace.read("cam1.bin"));
    COMPARE_RUN(m_workspace.run({"check", "cam1.bin"}), 0, "cam1.bin: valid\n", "");
}

void TestApply::wholeExportedForm()
{
    // A card exported whole is a template for the others: its checksum key is left out.
    QCOMPARE(m_workspace.run({"export", "cam2.bin", "-o", "cam2.json"}).exitCode, 0);
    COMPARE_RUN(m_workspace.run({"apply", "cam2.json", "cam1.bin"}), 0,
                "cam1.bin: 44 fields applied, 1 changed\n"
                "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n",
                "");
    QCOMPARE(m_workspace.read("cam1.bin"), m_workspace.read("cam2.bin"));
}

void TestApply::fieldsPattern_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("out");
    QTest::newRow("one name") << "serialParity"
                              << "cam1.bin: 1 field applied, 1 changed\n"
                                 "  serialParity: 0 \"none\" -> 2 \"even\"\n";
    QTest::newRow("a glob") << "serial*"
                            << "cam1.bin: 2 fields applied, 2 changed\n"
                               "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n"
                               "  serialParity: 0 \"none\" -> 2 \"even\"\n";
    QTest::newRow("a list") << "esoHeating,serialB?udrate"
                            << "cam1.bin: 2 fields applied, 2 changed\n"
                               "  esoHeating: 800 -> 500\n"
                               "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n";
}

void TestApply::fieldsPattern()
{
    QFETCH(QString, pattern);
    QFETCH(QString, out);
    m_workspace.write("t.json",
                      R"({"serialBaudrate": 9600, "serialParity": 2, "esoHeating": 500})");
    COMPARE_RUN(m_workspace.run({"apply", "--raw", "--fields", pattern, "t.json", "cam1.bin"}), 0,
                out, "");
}

void TestApply::oneFileFails()
{
    m_workspace.write("t.json", R"({"esoHeating": 500})");
    const QByteArray magic = m_workspace.read("magic.bin");
    COMPARE_RUN(m_workspace.run({"apply", "--raw", "t.json", "cam1.bin", "magic.bin", "missing.bin",
                                 "cam2.bin"}),
                1,
                "cam1.bin: 1 field applied, 1 changed\n"
                "  esoHeating: 800 -> 500\n"
                "cam2.bin: 1 field applied, 1 changed\n"
                "  esoHeating: 800 -> 500\n",
                "lxconfig: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n"
                "lxconfig: missing.bin: cannot open: No such file or directory\n");
    QCOMPARE(m_workspace.read("magic.bin"), magic);
    QVERIFY(!m_workspace.exists("missing.bin"));
}

void TestApply::badTemplates_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("err");
    QTest::newRow("unknown key") << QByteArray(R"({"brightness": 3})") << QStringList{}
                                 << "lxconfig: t.json: brightness: no such field\n";
    QTest::newRow("out of range")
        << QByteArray(R"({"gpsReceiver": 256})") << QStringList{}
        << "lxconfig: t.json: gpsReceiver: expected a whole number from 0 to 255\n";
    QTest::newRow("repeated key") << QByteArray(R"({"gpsReceiver": 1, "gpsReceiver": 2})")
                                  << QStringList{}
                                  << "lxconfig: t.json: gpsReceiver: duplicate key\n";
    QTest::newRow("not an object")
        << QByteArray("[1]") << QStringList{} << "lxconfig: t.json: not a JSON object\n";
    QTest::newRow("empty") << QByteArray("{}") << QStringList{}
                           << "lxconfig: t.json: the template sets no field\n";
    QTest::newRow("only the checksum") << QByteArray(R"({"crc": 5})") << QStringList{}
                                       << "lxconfig: t.json: the template sets no field\n";
    QTest::newRow("pattern matching nothing")
        << QByteArray(R"({"gpsReceiver": 1})") << QStringList{"--fields", "serial*"}
        << "lxconfig: t.json: --fields: no field of the template matches \"serial*\"\n";
    QTest::newRow("a header the editor refuses")
        << QByteArray(R"({"magic": "XONF"})") << QStringList{}
        << "lxconfig: cam1.bin: the template would make a file the editor refuses: bad magic "
           "\"XONF\" (expected \"CONF\")\n";
}

void TestApply::badTemplates()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, options);
    QFETCH(QString, err);
    m_workspace.write("t.json", json);
    const QByteArray before = m_workspace.read("cam1.bin");
    const RunResult result = m_workspace.run(QStringList{"apply", "--raw"} + options +
                                             QStringList{"t.json", "cam1.bin"});
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.endsWith(err), qPrintable(result.err));
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(m_workspace.read("cam1.bin"), before);
    QCOMPARE(folderEntries(m_workspace).filter(".lxconfig"), QStringList());
}

void TestApply::tiedFields_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("err");
    QTest::newRow("GPS receiver without serial settings")
        << QByteArray(R"({"gpsReceiver": 0, "serialBaudrate": 9600})")
        << "lxconfig: warning: t.json: gpsReceiver is applied without what the editor's GPS "
           "receiver rule ties to it: serialParity, serialStopBits, serialInverted\n";
    QTest::newRow("GPS receiver with them")
        << QByteArray(R"({"gpsReceiver": 0, "serialBaudrate": 9600, "serialParity": 0,
                          "serialStopBits": 0, "serialInverted": 0})")
        << "";
    QTest::newRow("gimbal without its channels")
        << QByteArray(R"({"gimbalRc": 1})")
        << "lxconfig: warning: t.json: gimbalRc is applied without what the editor's gimbal "
           "remote-control rule ties to it: " +
               kGimbalTies + "\n";
    QTest::newRow("a tied field alone") << QByteArray(R"({"serialParity": 1})") << "";
}

void TestApply::tiedFields()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, err);
    m_workspace.write("t.json", json);
    const RunResult result = m_workspace.run({"apply", "--raw", "t.json", "cam1.bin", "cam2.bin"});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, err);               // once, however many files
    QCOMPARE(result.out.count(".bin: "), 2); // a line per file, its changes below it
}

void TestApply::backups()
{
    m_workspace.write("t.json", R"({"esoHeating": 500})");
    const QByteArray before = m_workspace.read("cam2.bin");
    COMPARE_RUN(
        m_workspace.run({"apply", "--raw", "--backup=numbered", "t.json", "cam1.bin", "cam2.bin"}),
        0,
        "cam1.bin: 1 field applied, 1 changed\n"
        "  esoHeating: 800 -> 500\n"
        "cam2.bin: 1 field applied, 1 changed\n"
        "  esoHeating: 800 -> 500\n",
        "");
    QCOMPARE(m_workspace.read("cam2.bin.~1~"), before);
    QCOMPARE(m_workspace.read("cam1.bin.~1~"), m_workspace.read("good.bin"));
}

void TestApply::quiet()
{
    m_workspace.write("t.json", R"({"esoHeating": 500})");
    COMPARE_RUN(m_workspace.run({"apply", "-q", "--raw", "t.json", "cam1.bin", "magic.bin"}), 1, "",
                "lxconfig: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n");
    const RunResult diff = m_workspace.run({"diff", "cam1.bin"});
    QVERIFY2(diff.out.startsWith("esoHeating: 500 -> 800\n"), qPrintable(diff.out));
}

void TestApply::unchangedFileLeftAlone()
{
    // cam2 holds the template's values already: neither rewritten nor backed up.
    m_workspace.write("t.json", R"({"serialBaudrate": 9600})");
    const quint64 inode = fileInode(m_workspace.path("cam2.bin"));
    COMPARE_RUN(m_workspace.run({"apply", "--backup=simple", "t.json", "cam2.bin", "cam1.bin"}), 0,
                "cam2.bin: 1 field applied, 0 changed; the file is left as it was\n"
                "cam1.bin: 1 field applied, 1 changed\n"
                "  serialBaudrate: 38400 \"38400\" -> 9600 \"9600\"\n",
                "");
    QCOMPARE(fileInode(m_workspace.path("cam2.bin")), inode);
    QVERIFY(!m_workspace.exists("cam2.bin~"));
    QVERIFY(m_workspace.exists("cam1.bin~"));
}

void TestApply::exceptKeepsEachCamerasOwn_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("keep"); // the template's "keep" list, or nothing
    QTest::newRow("--except") << QStringList{"--except", "serial*"} << QString();
    QTest::newRow("--except, a caption") << QStringList{"--except", "Baudrate"} << QString();
    QTest::newRow("keep list") << QStringList() << R"(["Serial*"])";
}

// Copy cam1 to the fleet, keep each camera's own: cam2's baud rate stays its own.
void TestApply::exceptKeepsEachCamerasOwn()
{
    QFETCH(QStringList, options);
    QFETCH(QString, keep);
    m_workspace.write("master.bin", m_workspace.read("good.bin"));
    QCOMPARE(m_workspace
                 .run({"set", "-q", "master.bin", "gpsReceiver=Custom", "serialBaudrate=115200",
                       "triggerFrameMode=Single"})
                 .exitCode,
             0);
    QCOMPARE(m_workspace.run({"export", "master.bin", "-o", "fleet.json"}).exitCode, 0);
    if (!keep.isEmpty()) {
        m_workspace.write(
            "fleet.json",
            m_workspace.read("fleet.json").replace("{\n", "{\n\"keep\": " + keep.toUtf8() + ",\n"));
    }
    const QString applied =
        options.contains("Baudrate") ? "43 fields applied" : "40 fields applied";
    const QString changes =
        " 2 changed\n"
        "  " +
        frameModeChange(0, 1) +
        "\n"
        "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
        "UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n";
    COMPARE_RUN(m_workspace.run(QStringList{"apply"} + options +
                                QStringList{"fleet.json", "cam1.bin", "cam2.bin"}),
                0, "cam1.bin: " + applied + "," + changes + "cam2.bin: " + applied + "," + changes,
                "");
    QVERIFY(m_workspace.run({"export", "--format", "text", "cam2.bin"})
                .out.contains("\nserialBaudrate = \"9600\"\n"));
}

void TestApply::badKeptPatterns_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("err");
    QTest::newRow("--except, no such field")
        << QByteArray(R"({"esoHeating": 3})") << QStringList{"--except", "serialBaudrat"}
        << "lxconfig: t.json: --except: no field matches \"serialBaudrat\" (did you mean "
           "serialBaudrate?)\n";
    QTest::newRow("keep, not a list")
        << QByteArray(R"({"keep": "serial*", "esoHeating": 3})") << QStringList()
        << "lxconfig: t.json: keep: expected a list of field patterns, as --fields takes\n";
    QTest::newRow("keep, no such field")
        << QByteArray(R"({"keep": ["nothing*"], "esoHeating": 3})") << QStringList()
        << "lxconfig: t.json: keep: no field matches \"nothing*\"\n";
    QTest::newRow("all kept") << QByteArray(R"({"keep": ["eso*"], "esoHeating": 3})")
                              << QStringList() << "lxconfig: t.json: the template sets no field\n";
}

void TestApply::badKeptPatterns()
{
    QFETCH(QByteArray, json);
    QFETCH(QStringList, options);
    QFETCH(QString, err);
    m_workspace.write("t.json", json);
    const QByteArray before = m_workspace.read("cam1.bin");
    COMPARE_RUN(m_workspace.run(QStringList{"apply"} + options + QStringList{"t.json", "cam1.bin"}),
                1, "", err);
    QCOMPARE(m_workspace.read("cam1.bin"), before);
}

QTEST_GUILESS_MAIN(TestApply)
#include "tst_apply.moc"
