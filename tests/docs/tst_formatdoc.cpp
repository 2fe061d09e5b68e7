// The generator behind docs/file-format.md: every field described, the documented default file
// equal to the untouched form's file of tests/data, the controls table, and the generated parts
// replaced without touching the hand-written text around them.

#include "controlstable.h"
#include "fielddocs.h"
#include "markdownsections.h"
#include "markerblocks.h"
#include "untouchedform.h"

#include <QtTest>

using formatdoc::Refresh;
using formatdoc::Section;

Q_DECLARE_METATYPE(std::string)
Q_DECLARE_METATYPE(std::vector<std::string>)

namespace {

QStringList toStringList(const std::vector<std::string> &lines)
{
    QStringList list;
    for (const std::string &line : lines)
        list << QString::fromStdString(line);
    return list;
}

} // namespace

class TestFormatDoc : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldIsDescribed();
    void meaningsFitInOneTableCell();
    void defaultFileIsTheUntouchedFormFile();
    void controlsRowShowsPageCaptionAndValues_data();
    void controlsRowShowsPageCaptionAndValues();
    void layoutRowShowsOffsetTypeAndDefault_data();
    void layoutRowShowsOffsetTypeAndDefault();
    void hexDumpShowsSixteenBytesALine();
    void refreshReplacesOnlyTheTextBetweenMarkers_data();
    void refreshReplacesOnlyTheTextBetweenMarkers();
};

void TestFormatDoc::everyFieldIsDescribed()
{
    const QStringList problems = toStringList(formatdoc::fieldDocProblems());
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1String("; "))));
}

void TestFormatDoc::meaningsFitInOneTableCell()
{
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const formatdoc::FieldDoc *doc = formatdoc::findFieldDoc(info.name);
        QVERIFY2(doc, info.name);
        QVERIFY2(doc->meaning.find_first_of("|\n") == std::string_view::npos, info.name);
    }
}

void TestFormatDoc::defaultFileIsTheUntouchedFormFile()
{
    const QByteArray file = untouchedFormFile();
    lumarex::RecordBytes bytes{};
    QCOMPARE(file.size(), lumarex::kRecordSize);
    std::copy(file.begin(), file.end(), bytes.begin());
    for (const Section &section : formatdoc::generatedSections()) {
        if (section.name == "DEFAULT FILE") {
            QCOMPARE(QString::fromStdString(section.text),
                     QString::fromStdString(formatdoc::hexDump(bytes)));
            return;
        }
    }
    QFAIL("no DEFAULT FILE section");
}

void TestFormatDoc::controlsRowShowsPageCaptionAndValues_data()
{
    QTest::addColumn<QString>("row");
    QTest::newRow("stop bits") << QStringLiteral("| `serialStopBits` | GPS/Serial | Stop bit: | "
                                                 "`cbStopBit` (QComboBox) | 1 *1*, 2 *2* | *1* |");
    QTest::newRow("EXT 0") << QStringLiteral(
        "| `ext0Mode` | Extensions | EXT 0 mode | `cBext0mode` (QComboBox) | 0 *None (default)*, "
        "1 *do FFC (automatic FFC is off)*, 5 *External Shutter RX/TX* | *None (default)* |");
    QTest::newRow("offset") << QStringLiteral(
        "| `esoOffset` | Periphery | Offset | `sb_eso_offset` (QDoubleSpinBox) | -10.00 to 10.00 | "
        "0.00 |");
    QTest::newRow("inverted") << QStringLiteral(
        "| `serialInverted` | GPS/Serial | Inverted signal: | `cbInverted` (QCheckBox) | "
        "1 checked, 0 unchecked | checked |");
    QTest::newRow("frames") << QStringLiteral("| `frameSkip` | Recording Options | # Frames: | "
                                              "`leFrameSkip` (QLineEdit) | the text | *0* |");
}

void TestFormatDoc::controlsRowShowsPageCaptionAndValues()
{
    QFETCH(QString, row);
    const QStringList lines = QString::fromStdString(formatdoc::controlsTable()).split('\n');
    QVERIFY2(lines.contains(row), qPrintable(lines.join('\n')));
}

void TestFormatDoc::layoutRowShowsOffsetTypeAndDefault_data()
{
    QTest::addColumn<QString>("rowStart");
    QTest::addColumn<QString>("defaultCell");
    QTest::newRow("magic") << QStringLiteral("| 0 | 00 | 4 | char[4] | `magic` |")
                           << QStringLiteral("\"CONF\"");
    QTest::newRow("triggerLow") << QStringLiteral("| 12 | 0C | 40 | u16[20] | `triggerLow` |")
                                << QStringLiteral("688 in each");
    QTest::newRow("esoOffset") << QStringLiteral("| 122 | 7A | 4 | i32 | `esoOffset` |")
                               << QStringLiteral("0");
    QTest::newRow("fixed134") << QStringLiteral("| 134 | 86 | 8 | u8[8] | `fixed134` |")
                              << QStringLiteral("00 00 00 40 00 00 00 00");
    QTest::newRow("serialBaudrate")
        << QStringLiteral("| 158 | 9E | 4 | u32 | `serialBaudrate` |") << QStringLiteral("38400");
}

void TestFormatDoc::layoutRowShowsOffsetTypeAndDefault()
{
    QFETCH(QString, rowStart);
    QFETCH(QString, defaultCell);
    const QStringList lines = QString::fromStdString(formatdoc::layoutTable()).split('\n');
    QCOMPARE(lines.size(), 2 + lumarex::kFieldCount + 1); // heading, rule, rows, final newline
    const auto row = std::find_if(lines.begin(), lines.end(), [&rowStart](const QString &line) {
        return line.startsWith(rowStart);
    });
    QVERIFY2(row != lines.end(), qPrintable(rowStart));
    QVERIFY2(row->endsWith(QStringLiteral(" | ") + defaultCell + QStringLiteral(" |")),
             qPrintable(*row));
}

void TestFormatDoc::hexDumpShowsSixteenBytesALine()
{
    lumarex::ConfigRecord record;
    record.writeHeader();
    record.setValue(lumarex::Field::crc, 0x98E7);
    const QStringList lines =
        QString::fromStdString(formatdoc::hexDump(record.bytes())).split('\n');

    // Fences around 11 lines: 10 full ones and 7 bytes on the last.
    QCOMPARE(lines.size(), 14);
    QCOMPARE(lines.at(0), QStringLiteral("```text"));
    QCOMPARE(lines.at(1),
             QStringLiteral("00000000  43 4F 4E 46 99 00 00 00  79 EE 33 01 00 00 00 00"
                            "  |CONF....y.3.....|"));
    QCOMPARE(lines.at(11), QStringLiteral("000000A0  00 00 00 00 00 E7 98                         "
                                          "     |.......|"));
    QCOMPARE(lines.at(12), QStringLiteral("```"));
    QCOMPARE(lines.at(13), QString());
}

void TestFormatDoc::refreshReplacesOnlyTheTextBetweenMarkers_data()
{
    QTest::addColumn<std::string>("document");
    QTest::addColumn<std::string>("expectedDocument");
    QTest::addColumn<std::vector<std::string>>("expectedChanged");
    QTest::addColumn<std::vector<std::string>>("expectedMissing");

    const std::string current = "Intro\n<!-- BEGIN GENERATED A -->\nnew 1\nnew 2\n"
                                "<!-- END GENERATED A -->\nOutro\n";
    QTest::newRow("up to date") << current << current << std::vector<std::string>{}
                                << std::vector<std::string>{};
    QTest::newRow("stale") << std::string("Intro\n<!-- BEGIN GENERATED A -->\nold\n"
                                          "<!-- END GENERATED A -->\nOutro\n")
                           << current << std::vector<std::string>{"A"}
                           << std::vector<std::string>{};
    QTest::newRow("empty") << std::string("Intro\n<!-- BEGIN GENERATED A -->\n"
                                          "<!-- END GENERATED A -->\nOutro\n")
                           << current << std::vector<std::string>{"A"}
                           << std::vector<std::string>{};
    const std::string noEnd = "Intro\n<!-- BEGIN GENERATED A -->\nold\nOutro\n";
    QTest::newRow("no end marker")
        << noEnd << noEnd << std::vector<std::string>{} << std::vector<std::string>{"A"};
    const std::string otherName = "<!-- BEGIN GENERATED B -->\nold\n<!-- END GENERATED B -->\n";
    QTest::newRow("other section")
        << otherName << otherName << std::vector<std::string>{} << std::vector<std::string>{"A"};
    const std::string endInLine = "<!-- BEGIN GENERATED A -->\nold <!-- END GENERATED A -->\n";
    QTest::newRow("end marker inside a line")
        << endInLine << endInLine << std::vector<std::string>{} << std::vector<std::string>{"A"};
}

void TestFormatDoc::refreshReplacesOnlyTheTextBetweenMarkers()
{
    QFETCH(std::string, document);
    QFETCH(std::string, expectedDocument);
    QFETCH(std::vector<std::string>, expectedChanged);
    QFETCH(std::vector<std::string>, expectedMissing);

    const Refresh refresh = formatdoc::refreshSections(document, {Section{"A", "new 1\nnew 2\n"}});
    QCOMPARE(QString::fromStdString(refresh.document), QString::fromStdString(expectedDocument));
    QCOMPARE(toStringList(refresh.changed), toStringList(expectedChanged));
    QCOMPARE(toStringList(refresh.missing), toStringList(expectedMissing));
}

QTEST_MAIN(TestFormatDoc)
#include "tst_formatdoc.moc"
