// lxconfig set and apply in the operator's words: settings changed as the window changes them,
// with its rules; names and values as the window shows them; each mistake an operator makes
// answered with what the window offers. The byte-level set (--raw) is tst_cli's.

#include "workspace.h"

#include <QRegularExpression>
#include <QTest>

class TestWindowSet : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void gpsReceiverPresetsTheSerialPage();
    void lockedSettingNamesWhatFreesIt();
    void unlockedFirstIsTaken();
    void lockedValueAsItIsIsNoError();
    void neverEnabledControl();
    void valuesTheWindowCannotHold_data();
    void valuesTheWindowCannotHold();
    void forceStoresThemAllTheSame();
    void valuesInTheWindowsWords();
    void ambiguousItem();
    void namesInTheWindowsWords();
    void unknownNamesGetCandidates_data();
    void unknownNamesGetCandidates();
    void explainTakesTheSameNames();
    void wholeExportedFormApplies();
    void applySetsTheRuleSettingsFirst();

private:
    Workspace m_workspace;
};

void TestWindowSet::init()
{
    m_workspace.write("cam.bin", m_workspace.read("good.bin"));
}

void TestWindowSet::gpsReceiverPresetsTheSerialPage()
{
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "gpsReceiver=3"}), 0,
                "cam.bin: 1 value set, 2 changed\n"
                "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" -> 3 \"Lumarex GPS Receiver - 10Hz, based on u-blox 8 "
                "Multi GNSS UBX-M8030-KT chipset\"\n"
                "  serialBaudrate: 38400 \"38400\" -> 115200 \"115200\" (GPS receiver rule)\n",
                "");
    const RunResult show = m_workspace.run({"show", "cam.bin"});
    QVERIFY2(show.out.contains(QRegularExpression("serialBaudrate +\\d+ +115200 ")),
             qPrintable(show.out));
}

void TestWindowSet::lockedSettingNamesWhatFreesIt()
{
    QCOMPARE(m_workspace.run({"set", "cam.bin", "gpsReceiver=3"}).exitCode, 0);
    const QByteArray before = m_workspace.read("cam.bin");
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "serialBaudrate=9600", "gpsReceiver=0"}), 1, "",
                "lxconfig: cam.bin: serialBaudrate: the window locks it (page GPS/Serial) while "
                "gpsReceiver is \"Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" (the GPS receiver rule); set gpsReceiver to \"Custom "
                "settings\" first\n");
    QCOMPARE(m_workspace.read("cam.bin"), before);
    QCOMPARE(m_workspace.run({"set", "cam.bin", "gimbalRc=on"}).exitCode, 0);
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "sbusZoom=3"}), 1, "",
                "lxconfig: cam.bin: sbusZoom: the window locks it (page SBUS/PPM) while gimbalRc "
                "is on (the gimbal remote-control rule); set gimbalRc to off first\n");
}

void TestWindowSet::unlockedFirstIsTaken()
{
    QCOMPARE(m_workspace.run({"set", "cam.bin", "gpsReceiver=3"}).exitCode, 0);
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "gpsReceiver=0", "serialBaudrate=9600"}), 0,
                "cam.bin: 2 values set, 2 changed\n"
                "  gpsReceiver: 3 \"Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                "  serialBaudrate: 115200 \"115200\" -> 9600 \"9600\"\n",
                "");
    const RunResult show = m_workspace.run({"show", "cam.bin"});
    QVERIFY2(show.out.contains(QRegularExpression("serialBaudrate +\\d+ +9600 ")),
             qPrintable(show.out));
}

void TestWindowSet::lockedValueAsItIsIsNoError()
{
    QCOMPARE(m_workspace.run({"set", "cam.bin", "gpsReceiver=3"}).exitCode, 0);
    const QByteArray before = m_workspace.read("cam.bin");
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "serialBaudrate=115200"}), 0,
                "cam.bin: 1 value set, 0 changed; the file is left as it was\n", "");
    QCOMPARE(m_workspace.read("cam.bin"), before);
}

void TestWindowSet::neverEnabledControl()
{
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "esoHeating=500"}), 1, "",
                "lxconfig: cam.bin: esoHeating: the window never enables its control; --raw "
                "writes the bytes all the same\n");
}

void TestWindowSet::valuesTheWindowCannotHold_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("err");
    QTest::newRow("no such item") << "gpsReceiver=7"
                                  << "lxconfig: cam.bin: gpsReceiver=7: no item has the stored "
                                     "value 7; the window offers 0 \"Custom settings\", 1 "
                                     "\"Lumarex GPS Receiver - based on u-blox 6 SuperSense® "
                                     "chipset\", 2 \"Lumarex GPS Receiver - based on u-blox 8 "
                                     "Multi GNSS UBX-M8030-KT chipset\", 3 \"Lumarex GPS Receiver "
                                     "- 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT "
                                     "chipset\"; --force stores it all the same\n";
    QTest::newRow("outside the range")
        << "esoShutterInterval=5000"
        << "lxconfig: cam.bin: esoShutterInterval: the window holds 0 to 3600; --force stores it "
           "all the same\n";
    QTest::newRow("no such baud rate")
        << "serialBaudrate=9601"
        << "lxconfig: cam.bin: serialBaudrate: no item has the stored value 9601; the window "
           "offers 1200 \"1200\", 2400 \"2400\", 4800 \"4800\", 9600 \"9600\", 19200 \"19200\", "
           "38400 \"38400\", 57600 \"57600\", 115200 \"115200\", 230400 \"230400\", 460800 "
           "\"460800\", 921600 \"921600\"; --force stores it all the same\n";
    QTest::newRow("no such item text")
        << "serialParity=purple"
        << "lxconfig: cam.bin: serialParity: no item \"purple\"; the window offers 0 \"none\", 1 "
           "\"odd\", 2 \"even\"\n";
    QTest::newRow("not on or off") << "externalShutter=maybe"
                                   << "lxconfig: cam.bin: externalShutter: expected on or off "
                                      "(the window's check box holds on (1) or off (0))\n";
}

void TestWindowSet::valuesTheWindowCannotHold()
{
    QFETCH(QString, change);
    QFETCH(QString, err);
    const QByteArray before = m_workspace.read("cam.bin");
    const RunResult result = m_workspace.run({"set", "cam.bin", change});
    QCOMPARE(result.exitCode, 1);
    // The key is named as given.
    QCOMPARE(result.err, QString(err).replace("gpsReceiver=7:", "gpsReceiver:"));
    QCOMPARE(m_workspace.read("cam.bin"), before);
}

void TestWindowSet::forceStoresThemAllTheSame()
{
    COMPARE_RUN(m_workspace.run({"set", "--force", "cam.bin", "gpsReceiver=7"}), 0,
                "cam.bin: 1 value set, 1 changed\n"
                "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" -> 7 (no item)\n",
                "");
    const RunResult show = m_workspace.run({"show", "cam.bin"});
    QVERIFY2(show.out.contains(QRegularExpression("gpsReceiver +\\d+ +7")), qPrintable(show.out));
}

void TestWindowSet::valuesInTheWindowsWords()
{
    COMPARE_RUN(m_workspace.run({"set", "cam.bin", "gpsReceiver=Lumarex GPS Receiver - 10Hz",
                                 "gpsReceiver=custom", "serialParity=EVEN", "externalShutter=on",
                                 "esoOffset=2.5"}),
                0,
                "cam.bin: 5 values set, 7 changed\n"
                "  ext0Mode: 0 \"None (default)\" -> 5 \"External Shutter RX/TX\" "
                "(external-shutter rule)\n"
                "  ext1Mode: 0 \"None (default)\" -> 6 \"External Shutter RX/TX\" "
                "(external-shutter rule)\n"
                "  gpsReceiver: 2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                "  externalShutter: 0 -> 1\n"
                "  esoOffset: 0 (shown as 0.00) -> 250 (shown as 2.50)\n"
                "  serialBaudrate: 38400 \"38400\" -> 115200 \"115200\" (GPS receiver rule)\n"
                "  serialParity: 0 \"none\" -> 2 \"even\"\n",
                "");
    const RunResult show = m_workspace.run({"show", "cam.bin"});
    QVERIFY2(show.out.contains(QRegularExpression("esoOffset +\\d+ +250 ")), qPrintable(show.out));
    QVERIFY2(show.out.contains(QRegularExpression("serialParity +\\d+ +2 ")), qPrintable(show.out));
    QVERIFY2(show.out.contains(QRegularExpression("externalShutter +\\d+ +1\n")),
             qPrintable(show.out));
}

void TestWindowSet::ambiguousItem()
{
    const RunResult result = m_workspace.run({"set", "cam.bin", "GPS=Lumarex"});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, QString("lxconfig: cam.bin: GPS: \"Lumarex\" begins more than one item: "
                                 "\"Lumarex GPS Receiver - based on u-blox 6 SuperSense® "
                                 "chipset\", \"Lumarex GPS Receiver - based on u-blox 8 Multi "
                                 "GNSS UBX-M8030-KT chipset\", \"Lumarex GPS Receiver - 10Hz, "
                                 "based on u-blox 8 Multi GNSS UBX-M8030-KT chipset\"\n"));
}

void TestWindowSet::namesInTheWindowsWords()
{
    COMPARE_RUN(m_workspace.run({"set", "-q", "cam.bin", "Trigger Mode=SBUS"}), 0, "", "");
    COMPARE_RUN(m_workspace.run({"set", "-q", "cam.bin", "gpsreceiver=0", "Baudrate=9600",
                                 "GPS/Serial:Parity bit=odd"}),
                0, "", "");
    const RunResult show = m_workspace.run({"show", "cam.bin"});
    QVERIFY2(show.out.contains(QRegularExpression("triggerPinMode +\\d+ +1 ")),
             qPrintable(show.out));
    QVERIFY2(show.out.contains(QRegularExpression("serialBaudrate +\\d+ +9600 ")),
             qPrintable(show.out));
    QVERIFY2(show.out.contains(QRegularExpression("serialParity +\\d+ +1 ")), qPrintable(show.out));
}

void TestWindowSet::unknownNamesGetCandidates_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("err");
    QTest::newRow("a misspelt field")
        << QStringList{"set", "cam.bin", "gpsReciever=1"}
        << "lxconfig: cam.bin: gpsReciever: no such setting (did you mean gpsReceiver?); "
           "lxconfig explain lists every setting\n";
    QTest::newRow("a misspelt command") << QStringList{"chek", "cam.bin"}
                                        << "lxconfig: unknown command \"chek\" (did you mean "
                                           "check?)\nTry 'lxconfig --help'.\n";
    QTest::newRow("a misspelt option") << QStringList{"check", "--stric", "cam.bin"}
                                       << "lxconfig: Unknown option 'stric'. (did you mean "
                                          "--strict?)\nTry 'lxconfig help check'.\n";
}

void TestWindowSet::unknownNamesGetCandidates()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, err);
    const RunResult result = m_workspace.run(arguments);
    QVERIFY(result.exitCode != 0);
    QCOMPARE(result.err, err);
}

void TestWindowSet::explainTakesTheSameNames()
{
    const RunResult qualified = m_workspace.run({"explain", "GPS/Serial:Parity bit"});
    QCOMPARE(qualified.exitCode, 0);
    QVERIFY2(qualified.out.startsWith("serialParity: \"Parity bit:\""), qPrintable(qualified.out));
    COMPARE_RUN(m_workspace.run({"explain", "gpsReciever"}), 1, "",
                "lxconfig: no field, control or caption is named \"gpsReciever\" (did you mean "
                "gpsReceiver?)\n");
    m_workspace.write("t.json", R"({"serialBaudrate": 9600, "serialParity": 2})");
    COMPARE_RUN(m_workspace.run({"apply", "--fields", "Parity bit", "t.json", "cam.bin"}), 0,
                "cam.bin: 1 field applied, 1 changed\n"
                "  serialParity: 0 \"none\" -> 2 \"even\"\n",
                "");
}

void TestWindowSet::wholeExportedFormApplies()
{
    // A card with the gimbal on exported whole applies to another: what the gimbal locks holds
    // the values it already has there.
    m_workspace.write("cam2.bin", m_workspace.read("good.bin"));
    QCOMPARE(m_workspace.run({"set", "cam2.bin", "gimbalRc=on", "gpsReceiver=1"}).exitCode, 0);
    QCOMPARE(m_workspace.run({"export", "cam2.bin", "-o", "cam2.json"}).exitCode, 0);
    const RunResult result = m_workspace.run({"apply", "cam2.json", "cam.bin"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(m_workspace.read("cam.bin"), m_workspace.read("cam2.bin"));
}

void TestWindowSet::applySetsTheRuleSettingsFirst()
{
    // The template sets a serial setting the file's GPS receiver locks, and the receiver that
    // frees it: the receiver goes first.
    QCOMPARE(m_workspace.run({"set", "cam.bin", "gpsReceiver=3"}).exitCode, 0);
    m_workspace.write("t.json", R"({"serialBaudrate": 9600, "gpsReceiver": 0})");
    COMPARE_RUN(m_workspace.run({"apply", "t.json", "cam.bin"}), 0,
                "cam.bin: 2 fields applied, 2 changed\n"
                "  gpsReceiver: 3 \"Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS "
                "UBX-M8030-KT chipset\" -> 0 \"Custom settings\"\n"
                "  serialBaudrate: 115200 \"115200\" -> 9600 \"9600\"\n",
                "");
}

QTEST_MAIN(TestWindowSet)
#include "tst_windowset.moc"
