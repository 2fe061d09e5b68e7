// The generator behind docs/file-format.md: every field described, the documented defaults equal
// to what a freshly opened editor saves, and the generated parts replaced without touching the
// hand-written text around them.

#include "consolecapture.h"
#include "fielddocs.h"
#include "mainwindow.h"
#include "markdownsections.h"
#include "markerblocks.h"

#include <QtTest>

using formatdoc::Refresh;
using formatdoc::Section;

Q_DECLARE_METATYPE(std::string)
Q_DECLARE_METATYPE(std::vector<std::string>)

namespace {

// The field and offset of the first byte that differs, which a plain comparison would not name.
QString firstDifference(const lumarex::RecordBytes &actual, const lumarex::RecordBytes &expected)
{
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        for (int offset = info.offset; offset < info.offset + info.width; ++offset) {
            const auto i = static_cast<std::size_t>(offset);
            if (actual[i] != expected[i]) {
                return QStringLiteral("%1 at offset %2: documented %3, editor saves %4")
                    .arg(QLatin1String(info.name))
                    .arg(offset)
                    .arg(actual[i], 2, 16, QLatin1Char('0'))
                    .arg(expected[i], 2, 16, QLatin1Char('0'));
            }
        }
    }
    return {};
}

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
    void documentedDefaultsAreWhatTheEditorSaves();
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

void TestFormatDoc::documentedDefaultsAreWhatTheEditorSaves()
{
    MainWindow window;
    lumarex::ConfigRecord saved;
    {
        const ConsoleCapture quiet;
        saved = window.recordFromForm();
    }
    const QString difference = firstDifference(formatdoc::defaultRecord().bytes(), saved.bytes());
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
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
