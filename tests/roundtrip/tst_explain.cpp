// `lxconfig explain`: every field is found by its name, its control and its caption, the full
// listing covers each field once, page by page in tab order, and the lines that say where a
// value lives and what the editor does with it read as written out here.

#include "configrecord.h"
#include "explain.h"

#include <QTest>

namespace {

QStringList explained(std::optional<std::string_view> name)
{
    QStringList lines;
    for (const std::string &line : lxconfig::explain(name).lines)
        lines << QString::fromStdString(line);
    return lines;
}

// The first line of each field's explanation: "name: ..." at the start of the line.
QStringList fieldHeadings(const QStringList &lines)
{
    QStringList headings;
    for (const QString &line : lines) {
        if (!line.startsWith(' ') && !line.startsWith("==") && !line.isEmpty())
            headings << line.section(':', 0, 0);
    }
    return headings;
}

} // namespace

class TestExplain : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldByName();
    void byCaptionOrControl_data();
    void byCaptionOrControl();
    void unknownName();
    void everyFieldGroupedByPage();
    void writtenOutLines_data();
    void writtenOutLines();
};

void TestExplain::everyFieldByName()
{
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const auto explanation = lxconfig::explain(std::string_view(info.name));
        QVERIFY2(explanation.found, info.name);
        QCOMPARE(fieldHeadings(explained(std::string_view(info.name))),
                 QStringList{QString::fromLatin1(info.name)});
    }
}

void TestExplain::byCaptionOrControl_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("caption") << "GPS" << QStringList{"gpsReceiver"};
    QTest::newRow("caption without its colon, other case")
        << "baudrate" << QStringList{"serialBaudrate"};
    QTest::newRow("caption with two blanks")
        << "Isotherms switch  mode" << QStringList{"isothermSwitchMode"};
    QTest::newRow("control") << "cb_externalshutter" << QStringList{"externalShutter"};
    QTest::newRow("column header as a caption") << "Low" << QStringList{"triggerLow"};
    QTest::newRow("caption of the trigger selection")
        << "Trigger ON/OFF" << QStringList{"sbusTrigger"};
}

void TestExplain::byCaptionOrControl()
{
    QFETCH(QString, name);
    QFETCH(QStringList, fields);
    const std::string text = name.toStdString();
    QCOMPARE(fieldHeadings(explained(std::string_view(text))), fields);
}

void TestExplain::unknownName()
{
    const auto explanation = lxconfig::explain(std::string_view("frame skip rate"));
    QVERIFY(!explanation.found);
    QVERIFY(explanation.lines.empty());
}

void TestExplain::everyFieldGroupedByPage()
{
    const QStringList lines = explained(std::nullopt);
    QStringList pages;
    for (const QString &line : lines) {
        if (line.startsWith("=="))
            pages << line;
    }
    QCOMPARE(pages, QStringList({"== Page 1: Periphery ==", "== Page 2: Trigger ==",
                                 "== Page 3: GPS/Serial ==", "== Page 4: SBUS/PPM ==",
                                 "== Page 5: Extensions ==", "== Page 6: Isotherms ==",
                                 "== Page 7: Overlay ==", "== Page 8: Recording Options ==",
                                 "== Not in the window =="}));
    QStringList headings = fieldHeadings(lines);
    QCOMPARE(headings.size(), lumarex::kFieldCount);
    // Within a page in the form's own order, which is also its keyboard focus order.
    QCOMPARE(headings.mid(0, 11),
             QStringList({"gimbalRc", "gpsReceiver", "externalShutter", "esoHeating",
                          "esoHeatcycle", "esoShutterInterval", "esoOpt5", "esoOffset",
                          "triggerFrameMode", "triggerPinMode", "triggerFfcMode"}));
    headings.sort();
    QCOMPARE(headings.removeDuplicates(), 0);
}

void TestExplain::writtenOutLines_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("offset in hundredths")
        << "esoOffset"
        << QStringList{
               "esoOffset: \"Offset\" on page \"Periphery\" (tab 1)",
               "  control: sb_eso_offset (QDoubleSpinBox)",
               "  file: offset 122, 4 bytes (i32), the value in hundredths (times 100, cut "
               "toward zero)",
               "  start: 0.00",
               "  range: -10.00 to 10.00, 2 decimals; stored in hundredths: -10.00 is "
               "-1000, 10.00 is 1000",
               "  Read from file, step 6: read unsigned and divided by 100, so a negative "
               "offset comes back as the maximum",
               "  external-shutter rule, when \"External Shutter\" becomes unchecked: locks "
               "group External Shutter Options, hides group External Shutter Options",
               "  external-shutter rule, when \"External Shutter\" becomes checked: unlocks "
               "group External Shutter Options, shows group External Shutter Options"};
    QTest::newRow("mode codes, restored into another box")
        << "EXT 1 mode"
        << QStringList{
               "ext1Mode: \"EXT 1 mode\" on page \"Extensions\" (tab 5)",
               "  control: cBext1mode (QComboBox)",
               "  file: offset 93, 1 byte (u8), the device mode code of the current item",
               "  items (stored value = text):",
               "    code 0 = \"None (default)\"",
               "    code 2 = \"External Sync\"",
               "    code 6 = \"External Shutter RX/TX\"",
               "  start: item 0 \"None (default)\"",
               "  Read from file, step 20: the item of the mode code; an unknown code leaves the "
               "box as it is",
               "  external-shutter rule, when \"External Shutter\" becomes unchecked: sets it to "
               "item 0 \"None (default)\", unlocks it",
               "  external-shutter rule, when \"External Shutter\" becomes checked: sets it to "
               "item 2 \"External Shutter RX/TX\", locks it"};
    QTest::newRow("not in the window")
        << "spare157"
        << QStringList{"spare157: not in the window", "  file: offset 157, 1 byte (u8)",
                       "  Read from file ignores it; Write to file saves 0"};
    QTest::newRow("checked by the load")
        << "headerVersion"
        << QStringList{"headerVersion: not in the window", "  file: offset 8, 4 bytes (u32)",
                       "  Read from file refuses a file where it differs; Write to file saves "
                       "20180601"};
}

void TestExplain::writtenOutLines()
{
    QFETCH(QString, name);
    QFETCH(QStringList, lines);
    const std::string text = name.toStdString();
    QCOMPARE(explained(std::string_view(text)), lines);
}

QTEST_APPLESS_MAIN(TestExplain)
#include "tst_explain.moc"
