// lxconfig explain, resave and check --strict as a user runs them: what the editor would make of
// a file that lxconfig itself wrote with values the window cannot hold.

#include "expected.h"
#include "workspace.h"

#include <QTest>
#include <QtEndian>

namespace {

// Three values a script may set that the window cannot hold: a heating past its box's range, a
// zoom channel with no item, a baud rate with no item.
const QStringList kHazards{"esoHeating=1500", "sbusZoom=17", "serialBaudrate=100000"};

const QString kHazardFindings = QStringLiteral(
    "  esoHeating (offset 114): stored 1500, shown 1000, saved back 1000; clamped to the range: "
    "the box holds 0 to 1000\n"
    "  sbusZoom (offset 155): stored 17, shown no item, saved back 255; no item: the list has "
    "items 0 to 16; the box shows none and saves 255\n"
    "  serialBaudrate (offset 158): stored 100000, shown \"38400\", saved back 38400; no item: no "
    "item reads 100000; the box keeps its start value\n");

quint32 u32At(const QByteArray &bytes, int offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

} // namespace

class TestEditorPrediction : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void strictFindsEachHazard();
    void strictQuietOnAnEditorFile();
    void strictOnFilesTheEditorRefuses_data();
    void strictOnFilesTheEditorRefuses();
    void resaveWritesWhatTheEditorSaves();
    void resaveOverAnExistingFile();
    void resaveRefusedFileWritesNothing_data();
    void resaveRefusedFileWritesNothing();
    void hazardsFixedWithSet();
    void explainByCaption();
    void explainEveryPageInTabOrder();
    void explainUnknownName();
    void explainList();

private:
    Workspace m_workspace;
};

void TestEditorPrediction::init()
{
    QCOMPARE(m_workspace.run({"defaults", "-o", "hazards.bin"}).exitCode, 0);
    QCOMPARE(m_workspace.run(QStringList{"set", "-q", "--raw", "hazards.bin"} + kHazards).exitCode,
             0);
}

void TestEditorPrediction::strictFindsEachHazard()
{
    // Plain check says what it always said: the editor loads the file.
    COMPARE_RUN(m_workspace.run({"check", "hazards.bin"}), 0, "hazards.bin: valid\n", "");
    COMPARE_RUN(m_workspace.run({"check", "--strict", "hazards.bin"}), 1,
                "hazards.bin: valid\n" + kHazardFindings, "");
    // Each file is followed by its own findings.
    COMPARE_RUN(m_workspace.run({"check", "good.bin", "hazards.bin", "--strict", "long.bin"}), 1,
                "good.bin: valid\nhazards.bin: valid\n" + kHazardFindings + "long.bin: valid\n",
                "lxconfig: warning: long.bin: 200 bytes (a record is 167)\n");
}

void TestEditorPrediction::strictQuietOnAnEditorFile()
{
    // What the editor saves from its untouched form survives it.
    COMPARE_RUN(m_workspace.run({"check", "--strict", "good.bin"}), 0, "good.bin: valid\n", "");
}

void TestEditorPrediction::strictOnFilesTheEditorRefuses_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("out");
    QTest::addColumn<QString>("err");
    QTest::newRow("bad magic") << "magic.bin"
                               << "magic.bin: bad magic \"XONF\" (expected \"CONF\")\n"
                               << "";
    QTest::newRow("other version") << "version.bin"
                                   << "version.bin: format version 20180602 (expected 20180601)\n"
                                   << "";
    QTest::newRow("missing") << "missing.bin"
                             << "missing.bin: cannot open: No such file or directory\n"
                             << "";
}

void TestEditorPrediction::strictOnFilesTheEditorRefuses()
{
    QFETCH(QString, file);
    QFETCH(QString, out);
    QFETCH(QString, err);
    // The editor never loads them, so there is nothing to predict: only the verdict.
    COMPARE_RUN(m_workspace.run({"check", "--strict", file}), 1, out, err);
}

void TestEditorPrediction::resaveWritesWhatTheEditorSaves()
{
    COMPARE_RUN(m_workspace.run({"resave", "hazards.bin", "-o", "resaved.bin"}), 0, "", "");
    COMPARE_RUN(m_workspace.run({"diff", "hazards.bin", "resaved.bin"}), 1,
                "esoHeating: 1500 -> 1000\n"
                "sbusZoom: 17 (no item) -> 255 (no item)\n"
                "serialBaudrate: 100000 (no item) -> 38400 \"38400\"\n" +
                    crcChange(m_workspace.read("hazards.bin"), m_workspace.read("resaved.bin")),
                "");
    QByteArray original = m_workspace.read("hazards.bin");
    QByteArray resaved = m_workspace.read("resaved.bin");
    QCOMPARE(resaved.size(), 167);
    QCOMPARE(storedChecksum(resaved), referenceChecksum(resaved));
    QCOMPARE(u32At(original, 114), 1500u);
    QCOMPARE(u32At(resaved, 114), 1000u);           // clamped
    QCOMPARE(quint8(resaved.at(155)), quint8(255)); // no item: the empty box saves 255
    QCOMPARE(u32At(resaved, 158), 38400u);          // no item: the box kept its start value
    // Everything else is as it was but the checksum, mended by the editor's save.
    for (int offset : {114, 115, 116, 117, 155, 158, 159, 160, 161, 165, 166})
        original[offset] = resaved[offset] = 0;
    QCOMPARE(resaved, original);
    // The editor's file survives the editor: a second round trip changes nothing.
    COMPARE_RUN(m_workspace.run({"check", "--strict", "resaved.bin"}), 0, "resaved.bin: valid\n",
                "");
    COMPARE_RUN(m_workspace.run({"resave", "resaved.bin", "-o", "again.bin"}), 0, "", "");
    QCOMPARE(m_workspace.read("again.bin"), m_workspace.read("resaved.bin"));
}

void TestEditorPrediction::resaveOverAnExistingFile()
{
    m_workspace.write("out.bin", "old");
    COMPARE_RUN(m_workspace.run({"resave", "good.bin", "--output=out.bin"}), 0, "", "");
    QCOMPARE(m_workspace.read("out.bin"), m_workspace.read("good.bin"));
    // Into itself: the file becomes what the editor would save.
    COMPARE_RUN(m_workspace.run({"resave", "hazards.bin", "-o", "hazards.bin"}), 0, "", "");
    COMPARE_RUN(m_workspace.run({"check", "--strict", "hazards.bin"}), 0, "hazards.bin: valid\n",
                "");
}

void TestEditorPrediction::resaveRefusedFileWritesNothing_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("err");
    QTest::newRow("bad magic") << "magic.bin"
                               << "lxconfig: magic.bin: bad magic \"XONF\" (expected \"CONF\")\n";
    QTest::newRow("bad checksum") << "checksum.bin"
                                  << "lxconfig: checksum.bin: " + sampleMismatch("checksum.bin") +
                                         "\n";
    QTest::newRow("missing") << "missing.bin"
                             << "lxconfig: missing.bin: cannot open: No such file or directory\n";
    QTest::newRow("folder") << "folder"
                            << "lxconfig: folder: cannot read: Is a directory\n";
}

void TestEditorPrediction::resaveRefusedFileWritesNothing()
{
    QFETCH(QString, file);
    QFETCH(QString, err);
    COMPARE_RUN(m_workspace.run({"resave", file, "-o", "new.bin"}), 1, "", err);
    QVERIFY(!m_workspace.exists("new.bin"));
    m_workspace.write("old.bin", "kept");
    COMPARE_RUN(m_workspace.run({"resave", file, "-o", "old.bin"}), 1, "", err);
    QCOMPARE(m_workspace.read("old.bin"), QByteArray("kept"));
}

void TestEditorPrediction::hazardsFixedWithSet()
{
    // The example session of the documentation: the three values set to ones the window holds.
    COMPARE_RUN(m_workspace.run({"set", "--raw", "hazards.bin", "serialBaudrate=115200",
                                 "esoHeating=1000", "sbusZoom=16"}),
                0,
                "hazards.bin: 3 values set, 3 changed\n"
                "  esoHeating: 1500 -> 1000\n"
                "  sbusZoom: 17 (no item) -> 16 \"Deactivated\"\n"
                "  serialBaudrate: 100000 (no item) -> 115200 \"115200\"\n",
                "");
    COMPARE_RUN(m_workspace.run({"check", "--strict", "hazards.bin"}), 0, "hazards.bin: valid\n",
                "");
    COMPARE_RUN(m_workspace.run({"resave", "hazards.bin", "-o", "resaved.bin"}), 0, "", "");
    QCOMPARE(m_workspace.read("resaved.bin"), m_workspace.read("hazards.bin"));
}

void TestEditorPrediction::explainByCaption()
{
    // By the caption as the window shows it, any case, with or without its colon.
    for (const char *name : {"Heating", "heating:", "esoHeating", "sb_eso_heating"}) {
        const RunResult result = m_workspace.run({"explain", name});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.err, QString());
        const QStringList lines = result.out.split('\n');
        QVERIFY2(lines.size() > 5, qPrintable(result.out));
        QCOMPARE(lines.at(0), "esoHeating: \"Heating\" on page \"Periphery\" (tab 1)");
        QCOMPARE(lines.at(1), "  control: sb_eso_heating (QSpinBox)");
        QCOMPARE(lines.at(2), "  file: offset 114, 4 bytes (i32), the value");
        QCOMPARE(lines.at(3), "  start: 800");
        QCOMPARE(lines.at(4), "  range: 0 to 1000");
    }
}

void TestEditorPrediction::explainEveryPageInTabOrder()
{
    const RunResult result = m_workspace.run({"explain"});
    QCOMPARE(result.exitCode, 0);
    QStringList pages;
    for (const QString &line : result.out.split('\n')) {
        if (line.startsWith("== "))
            pages << line;
    }
    const QStringList expected{
        "== Page 1: Periphery ==", "== Page 2: Trigger ==",           "== Page 3: GPS/Serial ==",
        "== Page 4: SBUS/PPM ==",  "== Page 5: Extensions ==",        "== Page 6: Isotherms ==",
        "== Page 7: Overlay ==",   "== Page 8: Recording Options ==", "== Not in the window =="};
    QCOMPARE(pages, expected);
    // A few fields of different pages, each with its own heading line.
    for (const char *heading : {"\ngpsReceiver: \"GPS\" on page \"Periphery\" (tab 1)\n",
                                "\nserialBaudrate: \"Baudrate:\" on page \"GPS/Serial\" (tab 3)\n",
                                "\nspare157: not in the window\n"})
        QVERIFY2(result.out.contains(heading), heading);
}

void TestEditorPrediction::explainUnknownName()
{
    COMPARE_RUN(m_workspace.run({"explain", "Brightness"}), 1, "",
                "lxconfig: no field, control or caption is named \"Brightness\"\n");
}

void TestEditorPrediction::explainList()
{
    const RunResult result = m_workspace.run({"explain", "--list"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = result.out.split('\n', Qt::SkipEmptyParts);
    // Written out: the heading, the first page's first rows, a list stored by its item texts,
    // one stored by mode codes, a caption with a degree sign, all in aligned columns.
    const QStringList expected{
        "page               caption                      name                    may hold (stored "
        "value and text)",
        "Periphery          \"Orvid Gimbal RC\"            gimbalRc                0 unchecked, 1 "
        "checked",
        QString::fromUtf8(
            "Periphery          \"GPS\"                        gpsReceiver             0 \"Custom "
            "settings\", 1 \"Lumarex GPS Receiver - based on u-blox 6 SuperSense\xc2\xae "
            "chipset\", "
            "2 \"Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset\", 3 "
            "\"Lumarex GPS Receiver - 10Hz, based on u-blox 8 Multi GNSS UBX-M8030-KT chipset\""),
        "Periphery          \"Offset\"                     esoOffset               -10.00 to 10.00",
        "GPS/Serial         \"Baudrate\"                   serialBaudrate          1200, 2400, "
        "4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600",
        "Extensions         \"EXT 0 mode\"                 ext0Mode                0 \"None "
        "(default)\", 1 \"do FFC (automatic FFC is off)\", 5 \"External Shutter RX/TX\"",
        QString::fromUtf8("Isotherms          \"Lower threshold (\xc2\xb0"
                          "C)\"       isothermLower           0 to 1000"),
    };
    for (const QString &line : expected)
        QVERIFY2(lines.contains(line), qPrintable("missing: " + line));
    QCOMPARE(lines.at(1), expected.at(1));
    // One row per setting the window shows, in the order explain takes them page by page.
    QStringList explained;
    for (const QString &line : m_workspace.run({"explain"}).out.split('\n')) {
        if (line.contains(QStringLiteral("\" on page \"")))
            explained.append(line.section(':', 0, 0));
    }
    QStringList listed;
    for (const QString &line : lines.mid(1))
        listed.append(line.mid(48).section(' ', 0, 0));
    QCOMPARE(listed, explained);
}

QTEST_GUILESS_MAIN(TestEditorPrediction)
#include "tst_editorprediction.moc"
