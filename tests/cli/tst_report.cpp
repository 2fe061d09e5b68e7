// lxconfig report: the settings sheet parsed as XML and its values checked against written-out
// expectations: pages in tab order, captions and item texts, changed values marked, checksum,
// verdict, findings, escaping, several files, -o and failures.

#include "expected.h"
#include "shellrun.h"
#include "workspace.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QTest>
#include <QXmlStreamReader>

namespace {

struct Row
{
    QString className; // "changed" or "same"
    QStringList cells; // caption, shown, stored, untouched form, field
};

struct Section
{
    QString title; // the h1: the file's name
    QStringList paragraphs;
    QStringList pages;                     // the h2 headings in order
    QMap<QString, Row> rows;               // by field
    QMap<QString, QStringList> pageFields; // the fields of each page, in the page's row order
    QStringList findings;
};

// The sections of the page; an empty list, after a warning, when the page is not well-formed.
QVector<Section> parsedReport(const QString &html)
{
    QVector<Section> sections;
    QXmlStreamReader xml(html);
    QString element;
    Row row;
    QString rowField;
    QString text;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QString name = xml.name().toString();
            const QString cls = xml.attributes().value("class").toString();
            if (name == "section" && cls == "file")
                sections.append(Section());
            if (name == "tr" && xml.attributes().hasAttribute("data-field")) {
                row = Row{cls, {}};
                rowField = xml.attributes().value("data-field").toString();
            }
            if (name != "span") // numbers kept whole, and the grid of an array's numbers
                text.clear();
        } else if (xml.isCharacters()) {
            text += xml.text();
        } else if (xml.isEndElement() && !sections.isEmpty()) {
            const QString name = xml.name().toString();
            Section &section = sections.last();
            if (name == "h1")
                section.title = text;
            else if (name == "h2")
                section.pages << text;
            else if (name == "p")
                section.paragraphs << text;
            else if (name == "td")
                row.cells << text;
            else if (name == "tr" && !rowField.isEmpty()) {
                section.rows[rowField] = row;
                if (!section.pages.isEmpty())
                    section.pageFields[section.pages.last()] << rowField;
                rowField.clear();
            } else if (name == "li")
                section.findings << text;
            if (name != "span")
                text.clear();
        }
    }
    if (xml.hasError()) {
        qWarning("not well-formed: %s at line %lld", qPrintable(xml.errorString()),
                 xml.lineNumber());
        return {};
    }
    return sections;
}

const QStringList kPages{"Page 1: Periphery",  "Page 2: Trigger",
                         "Page 3: GPS/Serial", "Page 4: SBUS/PPM",
                         "Page 5: Extensions", "Page 6: Isotherms",
                         "Page 7: Overlay",    "Page 8: Recording Options",
                         "Not in the window",  "What the editor would change"};

} // namespace

class TestReport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void untouchedFile();
    void changedFile();
    void severalFilesAndFailures();
    void escapedNames();
    void namesThatAreNotUtf8();
    void rowsInFocusOrder();
    void refusedAndOddSizedFiles();
    void intoAFile();
    void backupOfTheSheet();
    void headersOfEverySheet();
    void cameraNames();
    void valueAsStored();
    void pdfOptions();

private:
    Workspace m_workspace;
};

void TestReport::init()
{
    QCOMPARE(m_workspace.run({"defaults", "-o", "cam.bin"}).exitCode, 0);
    QCOMPARE(m_workspace
                 .run({"set", "--raw", "cam.bin", "esoHeating=1500", "sbusZoom=17", "gpsReceiver=1",
                       "gimbalRc=1", "triggerLow[2]=700"})
                 .exitCode,
             0);
}

void TestReport::untouchedFile()
{
    const RunResult result = m_workspace.run({"report", "good.bin"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 0);
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 1);
    const Section &section = sections.first();
    QCOMPARE(section.title, "good.bin");
    QCOMPARE(section.pages, kPages);
    QVERIFY(section.paragraphs.contains("Verdict: valid: the editor loads it"));
    const quint16 checksum = storedChecksum(kDefaultBytes);
    QVERIFY(section.paragraphs.contains(
        QStringLiteral("Checksum: 0x%1 (%2); computed 0x%1")
            .arg(QString::number(checksum, 16).toUpper().rightJustified(4, '0'))
            .arg(checksum)));
    for (const Row &row : section.rows)
        QCOMPARE(row.className, "same");
    QCOMPARE(section.rows.size(), 45);
    QCOMPARE(section.findings, QStringList());
    // A few rows, cell by cell: caption, shown, stored, untouched form (empty: the same), field.
    QCOMPARE(section.rows["gpsReceiver"].cells,
             QStringList(
                 {"GPS", "Lumarex GPS Receiver - based on u-blox 8 Multi GNSS UBX-M8030-KT chipset",
                  "2", "", "gpsReceiver"}));
    QCOMPARE(section.rows["serialBaudrate"].cells,
             QStringList({"Baudrate:", "38400", "38400", "", "serialBaudrate"}));
    QCOMPARE(section.rows["gimbalRc"].cells,
             QStringList({"Orvid Gimbal RC", "unchecked", "0", "", "gimbalRc"}));
    QCOMPARE(section.rows["esoOffset"].cells,
             QStringList({"Offset", "0.00", "0", "", "esoOffset"}));
    QCOMPARE(section.rows["triggerLow"].cells,
             QStringList({"Low", "688 in all 20", "688 in all 20", "", "triggerLow"}));
    QCOMPARE(section.rows["magic"].cells, QStringList({"magic", "CONF", "\"CONF\"", "", "magic"}));
}

void TestReport::changedFile()
{
    const RunResult result = m_workspace.run({"report", "cam.bin"});
    QCOMPARE(result.exitCode, 0);
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 1);
    const Section &section = sections.first();
    QStringList changed;
    for (auto it = section.rows.begin(); it != section.rows.end(); ++it) {
        if (it->className == "changed")
            changed << it.key();
    }
    changed.sort();
    QCOMPARE(changed, QStringList({"crc", "esoHeating", "gimbalRc", "gpsReceiver", "sbusZoom",
                                   "triggerLow"}));
    QCOMPARE(section.rows["esoHeating"].cells,
             QStringList({"Heating", "1500", "1500", "800", "esoHeating"}));
    QCOMPARE(section.rows["sbusZoom"].cells,
             QStringList({"Zoom inc./dec.", "(no item)", "17", "Channel 3", "sbusZoom"}));
    QCOMPARE(section.rows["gpsReceiver"].cells[1],
             "Lumarex GPS Receiver - based on u-blox 6 SuperSense\u00ae chipset");
    QCOMPARE(section.rows["gimbalRc"].cells[1], "checked");
    QCOMPARE(section.rows["triggerLow"].cells[2],
             "688 688 700 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688 688");
    // The strict findings, as check --strict words them.
    QVERIFY(section.findings.size() >= 2);
    QVERIFY(section.findings.contains(
        "esoHeating (offset 114): stored 1500, shown 1000, saved back 1000; clamped to the "
        "range: the box holds 0 to 1000"));
}

void TestReport::severalFilesAndFailures()
{
    const RunResult result =
        m_workspace.run({"report", "good.bin", "magic.bin", "missing.bin", "cam.bin"});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, "lxconfig: missing.bin: cannot open: No such file or directory\n");
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 4);
    QCOMPARE(sections[1].title, "magic.bin");
    QVERIFY(sections[1].paragraphs.contains(
        "Verdict: the editor refuses it: bad magic \"XONF\" (expected \"CONF\")"));
    QCOMPARE(sections[1].pages, kPages.mid(0, 9)); // no findings for a file never loaded
    QCOMPARE(sections[2].title, "missing.bin");
    QCOMPARE(sections[2].paragraphs,
             QStringList({"Camera: " + QFileInfo(m_workspace.path("good.bin")).dir().dirName(),
                          "cannot open: No such file or directory"}));
    QCOMPARE(sections[2].pages, QStringList());
    QCOMPARE(sections[3].title, "cam.bin");
}

void TestReport::escapedNames()
{
    const QString name = "a<b>&\"c'.bin";
    m_workspace.write(name, m_workspace.read("good.bin"));
    const RunResult result = m_workspace.run({"report", name});
    QCOMPARE(result.exitCode, 0);
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 1);
    QCOMPARE(sections.first().title, name);
}

// Bytes a file name may hold that XML does not allow: each becomes U+FFFD and the rest stays.
void TestReport::namesThatAreNotUtf8()
{
    // \377: never in UTF-8; \300\274: "<" in an overlong form; \355\240\200: a surrogate;
    // \357\277\276: U+FFFE; \364\220\200\200: past U+10FFFF; \001: a control character;
    // \342\202 cut off by "."; \303\251: a well-formed "e" with an acute accent, kept.
    const char *name = "a\\377b\\300\\274c\\355\\240\\200d\\357\\277\\276e\\364\\220\\200\\200f"
                       "\\001g\\342\\202.\\303\\251.bin";
    const ShellResult result =
        runShell(m_workspace, QString("name=$(printf '%1') && cp good.bin \"$name\" && "
                                      "\"$LX\" report good.bin \"$name\"")
                                  .arg(name));
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.exitCode, 0);
    const QVector<Section> sections = parsedReport(QString::fromUtf8(result.out));
    QCOMPARE(sections.size(), 2);
    const QString r(QChar(0xFFFD));
    QCOMPARE(sections[1].title, "a" + r + "b" + r + r + "c" + r + r + r + "d" + r + "e" + r + r +
                                    r + r + "f" + r + "g" + r + r + ".\u00e9.bin");
    QCOMPARE(sections[1].pages, kPages);
    // The bytes themselves, as a lenient UTF-8 decoder would hide a sequence passed through.
    const QByteArray r8("\xEF\xBF\xBD");
    QVERIFY(result.out.contains("-name\">a" + r8 + "b" + r8 + r8 + "c" + r8 + r8 + r8 + "d" + r8 +
                                "e" + r8 + r8 + r8 + r8 + "f" + r8 + "g" + r8 + r8 +
                                ".\xC3\xA9.bin</h1>"));
}

// Within a page the rows follow the window's focus order, which is the form's own order.
void TestReport::rowsInFocusOrder()
{
    const RunResult result = m_workspace.run({"report", "good.bin"});
    QCOMPARE(result.exitCode, 0);
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 1);
    QCOMPARE(sections[0].pageFields["Page 3: GPS/Serial"],
             QStringList({"serialParity", "serialStopBits", "serialInverted", "serialBaudrate"}));
    QCOMPARE(sections[0].rows["serialParity"].cells.mid(0, 3),
             QStringList({"Parity bit:", "none", "0"}));
    QCOMPARE(sections[0].pageFields["Not in the window"],
             QStringList({"magic", "payloadLength", "headerVersion", "reserved101", "fixed134",
                          "spare157", "crc"})); // in file order
}

void TestReport::refusedAndOddSizedFiles()
{
    const RunResult result =
        m_workspace.run({"report", "checksum.bin", "version.bin", "short.bin", "long.bin"});
    QCOMPARE(result.err, QString());
    QCOMPARE(result.exitCode, 1);
    const QVector<Section> sections = parsedReport(result.out);
    QCOMPARE(sections.size(), 4);
    // The verdicts in check's words.
    QVERIFY(sections[0].paragraphs.contains("Verdict: the editor refuses it: " +
                                            sampleMismatch("checksum.bin")));
    QVERIFY(sections[1].paragraphs.contains(
        "Verdict: the editor refuses it: format version 20180602 (expected 20180601)"));
    QVERIFY(sections[2].paragraphs.contains("Verdict: the editor refuses it: " +
                                            sampleMismatch("short.bin")));
    QVERIFY(sections[3].paragraphs.contains("Verdict: valid: the editor loads it"));
    // The editor loads a file of another size all the same; the sheet says what it read.
    QVERIFY(sections[2].paragraphs.contains("166 bytes (a record is 167)"));
    QVERIFY(sections[3].paragraphs.contains("200 bytes (a record is 167)"));
}

void TestReport::intoAFile()
{
    COMPARE_RUN(m_workspace.run({"report", "good.bin", "-o", "sheet.html"}), 0, "", "");
    const QVector<Section> sections =
        parsedReport(QString::fromUtf8(m_workspace.read("sheet.html")));
    QCOMPARE(sections.size(), 1);
    // Self-contained: nothing to fetch, nothing to run.
    const QByteArray html = m_workspace.read("sheet.html");
    QVERIFY(!html.contains("<script"));
    QVERIFY(!html.contains("src="));
    QVERIFY(!html.contains("href="));
    QVERIFY(!html.contains("url("));
    // A sheet is never written over one of the files it reports, under any name.
    const QByteArray camera = m_workspace.read("cam.bin");
    COMPARE_RUN(m_workspace.run({"report", "good.bin", "cam.bin", "-o", "cam.bin"}), 1, "",
                "lxconfig: cam.bin: is also the file cam.bin to report; nothing is written\n");
    QCOMPARE(m_workspace.read("cam.bin"), camera);
    const ShellResult linked =
        runShell(m_workspace, "ln cam.bin other.bin && ln -s cam.bin link && "
                              "\"$LX\" report cam.bin -o link");
    QCOMPARE(linked.err, QByteArray("lxconfig: link: is also the file cam.bin to report; "
                                    "nothing is written\n"));
    QCOMPARE(linked.exitCode, 1);
    QCOMPARE(m_workspace.read("cam.bin"), camera);
    QCOMPARE(m_workspace.run({"report", "cam.bin", "-o", "other.bin"}).exitCode, 1);
    QCOMPARE(m_workspace.read("other.bin"), camera);
    // A report of a file that cannot be read is still written, and the status says so.
    const RunResult failed = m_workspace.run({"report", "missing.bin", "-o", "sheet.html"});
    QCOMPARE(failed.exitCode, 1);
    QCOMPARE(parsedReport(QString::fromUtf8(m_workspace.read("sheet.html"))).size(), 1);
}

// A sheet written over an earlier one keeps that as a backup, as every command that replaces a
// file does.
void TestReport::backupOfTheSheet()
{
    QCOMPARE(m_workspace.run({"report", "cam.bin", "-o", "sheet.html"}).exitCode, 0);
    const QByteArray first = m_workspace.read("sheet.html");
    COMPARE_RUN(m_workspace.run({"report", "good.bin", "-o", "sheet.html", "--backup"}), 0, "", "");
    QCOMPARE(m_workspace.read("sheet.html~"), first);
    QCOMPARE(parsedReport(QString::fromUtf8(m_workspace.read("sheet.html"))).first().title,
             "good.bin");
    COMPARE_RUN(m_workspace.run({"report", "cam.bin", "-o", "sheet.html", "--backup=numbered"}), 0,
                "", "");
    QCOMPARE(parsedReport(QString::fromUtf8(m_workspace.read("sheet.html.~1~"))).first().title,
             "good.bin");
    QCOMPARE(m_workspace.read("sheet.html~"), first);
}

// The page is HTML5 that is also XML, without an XML declaration (which HTML does not allow),
// with its content in a main landmark. The style sheet gives every sheet the footer's date and
// page number and, through a named page per file, a header with the camera and file.
void TestReport::headersOfEverySheet()
{
    const QString folder = QFileInfo(m_workspace.path("good.bin")).dir().dirName();
    const RunResult result =
        m_workspace.run({"report", "good.bin", "cam.bin"}, {"SOURCE_DATE_EPOCH=1795392000"});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.startsWith("<!DOCTYPE html>\n<html "));
    QVERIFY(!result.out.contains("<?xml"));
    QVERIFY(result.out.contains("<body>\n<main>\n<section class=\"file\" id=\"f1\""));
    QVERIFY(result.out.endsWith("</main>\n</body>\n</html>\n"));
    QVERIFY(result.out.contains("<title>Settings sheet: 2 files</title>"));
    QVERIFY(result.out.contains("@bottom-right { content: \"page \" counter(page) \" of \" "
                                "counter(pages);"));
    QVERIFY(result.out.contains("@page { size: auto; @bottom-left { content: \"made "
                                "2026-11-23\";"));
    for (const QString &file : {QString("f1"), QString("f2")}) {
        QVERIFY(result.out.contains("#" + file + " { page: " + file + "; }"));
        QVERIFY(result.out.contains("@page " + file + " { @top-left { content: \"Camera " + folder +
                                    "  \u00b7  " + (file == "f1" ? "good.bin" : "cam.bin") +
                                    "\";"));
    }
    // The sign-off block opens each file's first sheet.
    QCOMPARE(result.out.count("<dl class=\"signoff\"><dt>Checked by</dt><dd></dd><dt>Date</dt>"
                              "<dd></dd></dl>"),
             2);
    // A name in the style sheet has every sign of CSS, HTML or XML escaped.
    m_workspace.write("a\"b<c>&d.bin", m_workspace.read("good.bin"));
    const RunResult odd = m_workspace.run({"report", "a\"b<c>&d.bin", "--paper", "letter"});
    QCOMPARE(odd.exitCode, 0);
    QVERIFY(odd.out.contains("@page { size: letter;"));
    QVERIFY(odd.out.contains("  a\\000022b\\00003Cc\\00003E\\000026d.bin\";"));
    QCOMPARE(parsedReport(odd.out).size(), 1);
}

// The camera is the name of the file's folder, or the one --title gives every file.
void TestReport::cameraNames()
{
    QVERIFY(QDir(m_workspace.path(".")).mkpath("north mast"));
    m_workspace.write("north mast/LXCONFIG.BIN", m_workspace.read("good.bin"));
    const RunResult result = m_workspace.run({"report", "north mast/LXCONFIG.BIN"});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(parsedReport(result.out).first().paragraphs.contains("Camera: north mast"));
    QVERIFY(result.out.contains("<title>Settings sheet: north mast, north mast/LXCONFIG.BIN"
                                "</title>"));
    const RunResult titled =
        m_workspace.run({"report", "good.bin", "cam.bin", "--title", "Mast 7 <west>"});
    QCOMPARE(titled.exitCode, 0);
    const QVector<Section> sections = parsedReport(titled.out);
    QCOMPARE(sections.size(), 2);
    for (const Section &section : sections)
        QVERIFY(section.paragraphs.contains("Camera: Mast 7 <west>"));
}

// The Value column's one rule: what the file holds in the window's words, never clamped, with
// a dagger (class "finding") where the window would not keep it.
void TestReport::valueAsStored()
{
    QCOMPARE(m_workspace.run({"set", "--raw", "cam.bin", "esoOffset=-125"}).exitCode, 0);
    const RunResult result = m_workspace.run({"report", "cam.bin"});
    QCOMPARE(result.exitCode, 0);
    const Section section = parsedReport(result.out).first();
    QCOMPARE(section.rows["esoOffset"].cells,
             QStringList({"Offset", "-1.25", "-125", "0.00", "esoOffset"}));
    QVERIFY(result.out.contains("<td class=\"shown finding\"><span class=\"n\">-1.25</span>"));
    QVERIFY(result.out.contains("<td class=\"shown finding\"><span class=\"n\">1500</span>"));
    QVERIFY(result.out.contains("<td class=\"shown finding\">(no item)</td><td class=\"stored\">"
                                "<span class=\"n\">17</span>"));
    QVERIFY(result.out.contains("<td class=\"shown\">checked</td>")); // gimbalRc: kept as it is
    QVERIFY(section.paragraphs.contains(
        "Value: what the file holds, in the window's words (item text, check box, degrees); a "
        "value out of the window's range is listed as stored, never as the window would clamp "
        "it, and marked \u2020: what the editor would make of it is under \u201cWhat the editor "
        "would change\u201d. Stored: the number in the file. Marked rows (\u25b6, bold) differ "
        "from the editor's untouched form, whose value is in the next column."));
    // The 20 trigger values as a grid, each number whole.
    QVERIFY(result.out.contains("<td class=\"stored\"><span class=\"grid\"><span class=\"n\">688"
                                "</span> <span class=\"n\">688</span> <span class=\"n\">700"
                                "</span>"));
}

// --pdf, --title and --paper belong to report; --pdf writes no page beside the PDF, is never
// written over a file to report, and says what to do when no browser is installed.
void TestReport::pdfOptions()
{
    const QString usage = "lxconfig: usage: lxconfig report FILE... [-o OUT]\n"
                          "Try 'lxconfig help report'.\n";
    COMPARE_RUN(m_workspace.run({"check", "good.bin", "--title", "x"}), 2, "",
                "lxconfig: usage: lxconfig check FILE...\nTry 'lxconfig help check'.\n");
    COMPARE_RUN(m_workspace.run({"report", "good.bin", "--paper", "a5"}), 2, "",
                "lxconfig: Unknown paper 'a5' (a4 or letter).\nTry 'lxconfig help report'.\n");
    COMPARE_RUN(m_workspace.run({"report", "good.bin", "--pdf", "x.pdf", "-o", "x.html"}), 2, "",
                "lxconfig: report writes a page (-o) or a PDF (--pdf), not both\n"
                "Try 'lxconfig help report'.\n");
    const QByteArray camera = m_workspace.read("cam.bin");
    COMPARE_RUN(m_workspace.run({"report", "cam.bin", "--pdf", "cam.bin"}), 1, "",
                "lxconfig: cam.bin: is also the file cam.bin to report; nothing is written\n");
    QCOMPARE(m_workspace.read("cam.bin"), camera);
    const ShellResult none =
        runShell(m_workspace, "PATH=/nonexistent \"$LX\" report good.bin --pdf sheet.pdf");
    QCOMPARE(none.exitCode, 1);
    QCOMPARE(none.out, QByteArray());
    QCOMPARE(none.err, QByteArray("lxconfig: sheet.pdf: cannot print: no headless browser on PATH "
                                  "(chromium, chromium-browser, google-chrome, "
                                  "google-chrome-stable, chrome); install chromium, or write the "
                                  "page with -o and print it from a browser\n"));
    QVERIFY(!m_workspace.exists("sheet.pdf"));
}

QTEST_GUILESS_MAIN(TestReport)
#include "tst_report.moc"
