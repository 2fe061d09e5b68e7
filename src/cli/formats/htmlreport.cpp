#include "htmlreport.h"

#include "controltext.h"
#include "explain.h"
#include "fieldtext.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "recorddifference.h"
#include "roundtrip.h"
#include "xmltext.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;

namespace {

// Sized for A4 and Letter alike: the narrower width and the shorter height of the two, less
// the margins, so that one camera takes two sheets of either. The sheets' running header (camera
// and file) and footer (date, page N of M) are the margin boxes of the page rules; the head adds
// a named page per file for its header. Rows never split across sheets, a heading never ends a
// sheet, a table never leaves one row alone, numbers never break; each file starts a new sheet.
constexpr const char *kStyle = R"(
@page { margin: 17mm 14mm 15mm 14mm;
        @bottom-right { content: "page " counter(page) " of " counter(pages); font-size: 8pt; } }
body { font-family: "DejaVu Sans", "Liberation Sans", Arial, sans-serif; font-size: 8.5pt;
       color: #000; margin: 0; line-height: 1.2; }
section.file { break-after: page; }
section.file:last-of-type { break-after: auto; }
h1 { font-size: 14pt; margin: 0 0 1mm 0; overflow-wrap: anywhere; }
h2 { font-size: 10pt; margin: 2mm 0 0.8mm 0; break-after: avoid; }
p { margin: 0.8mm 0; }
section.page.short { break-inside: avoid-page; }
tbody tr:first-child { break-after: avoid; }
tbody tr:last-child { break-before: avoid; }
table { border-collapse: collapse; width: 99.5%; table-layout: fixed; }
col.caption { width: 19%; } col.shown { width: 29%; } col.stored { width: 19%; }
col.start { width: 14%; } col.field { width: 19%; }
th, td { border: 0.3mm solid #888; padding: 0.3mm 1.2mm; text-align: left; vertical-align: top;
         overflow-wrap: break-word; }
th { background: #e8e8e8; }
tr { break-inside: avoid; }
td.field { font-size: 7pt; overflow-wrap: anywhere; }
td.stored { font-family: "DejaVu Sans Mono", monospace; font-size: 8pt; white-space: nowrap; }
.n { white-space: nowrap; }
.grid { display: grid; grid-template-columns: repeat(5, auto); column-gap: 1.5mm;
        justify-content: start; }
tr.changed td { font-weight: bold; background: #fff1c2; }
tr.changed td.caption::before { content: "\25B6\00A0"; }
td.finding::after { content: "\00A0\2020"; }
p.verdict.valid { color: #005a00; }
p.verdict.refused, p.verdict.unreadable { color: #a00000; font-weight: bold; }
ul.findings { margin: 0; padding-left: 4mm; font-size: 7.5pt; columns: 2; column-gap: 6mm; }
ul.findings li { margin-bottom: 0.6mm; break-inside: avoid; }
.legend { font-size: 7.5pt; color: #333; }
dl.signoff { display: grid; grid-template-columns: auto 1fr auto 1fr; column-gap: 2mm;
             align-items: end; margin: 1.5mm 0 2mm 0; width: 99.5%; }
dl.signoff dt { font-weight: bold; }
dl.signoff dd { margin: 0; border-bottom: 0.3mm solid #000; height: 7mm; }
)";

// The rule of the Value column, in the legend and in docs/lxconfig.md.
constexpr const char *kLegend =
    "Value: what the file holds, in the window's words (item text, check box, degrees); a value "
    "out of the window's range is listed as stored, never as the window would clamp it, and "
    "marked &#8224;: what the editor would make of it is under \u201cWhat the editor would "
    "change\u201d. Stored: the number in the file. Marked rows (&#9654;, bold) differ from the "
    "editor's untouched form, whose value is in the next column.";

// Each number of the text kept whole on the paper: "688 688" as "<span class="n">688</span> ...",
// an array of more than one number as a grid of five columns.
std::string numbersHtml(const std::vector<std::string> &numbers)
{
    std::string html = numbers.size() > 1 ? "<span class=\"grid\">" : "";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        html += (i == 0 ? "" : " ") + std::string("<span class=\"n\">") + xmlEscaped(numbers[i]) +
                "</span>";
    return html + (numbers.size() > 1 ? "</span>" : "");
}

// The number; an array whose elements are all the same as one number for all of them.
std::string storedHtml(const ConfigRecord &record, const FieldInfo &info)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return xmlEscaped(quotedMagic(record));
    bool allSame = true;
    for (int element = 1; element < info.elementCount(); ++element)
        allSame = allSame && numberText(record, info, element) == numberText(record, info, 0);
    if (info.elementCount() > 1 && allSame)
        return numbersHtml({numberText(record, info, 0)}) + " in all " +
               std::to_string(info.elementCount());
    std::vector<std::string> numbers;
    for (int element = 0; element < info.elementCount(); ++element)
        numbers.push_back(numberText(record, info, element));
    return numbersHtml(numbers);
}

// The Value column: what the file holds in the window's words, never clamped: the item text,
// a check box's state, the offset in degrees, or the number.
std::string shownHtml(const ConfigRecord &record, const FieldInfo &info)
{
    const lumarex::ControlFacts *control = lumarex::controlOf(info.field);
    if (control && control->className == "QCheckBox")
        return std::string(lumarex::checkText(record.value(info.field) != 0));
    if (info.field == lumarex::Field::esoOffset)
        return numbersHtml({esoOffsetStored(record.value(info.field))});
    const Shown shown = shownOf(record, info, 0);
    if (shown.kind == Shown::Kind::Item)
        return xmlEscaped(shown.text);
    if (shown.kind == Shown::Kind::NoItem)
        return "(no item)";
    if (info.type == lumarex::FieldType::Ascii4)
        return xmlEscaped(magicText(record));
    return storedHtml(record, info);
}

std::string row(const ConfigRecord &record, const ConfigRecord &untouched, const FieldInfo &info,
                const std::string &caption, bool finding)
{
    const bool changed = !sameField(record, untouched, info);
    return std::string("<tr class=\"") + (changed ? "changed" : "same") + "\" data-field=\"" +
           info.name + "\"><td class=\"caption\">" + xmlEscaped(caption) + "</td><td class=\"" +
           (finding ? "shown finding" : "shown") + "\">" + shownHtml(record, info) +
           "</td><td class=\"stored\">" + storedHtml(record, info) + "</td><td class=\"start\">" +
           (changed ? shownHtml(untouched, info) : "") + "</td><td class=\"field\">" + info.name +
           "</td></tr>\n";
}

std::string checksumText(const ConfigRecord &record)
{
    char text[96];
    std::snprintf(text, sizeof text, "0x%04X (%u); computed 0x%04X", record.storedChecksum(),
                  record.storedChecksum(), record.computedChecksum());
    return text;
}

std::string sectionId(std::size_t index)
{
    return "f" + std::to_string(index + 1);
}

// The first sheet's lines to sign when the sheet has been checked against the camera.
constexpr const char *kSignOff =
    "<dl class=\"signoff\"><dt>Checked by</dt><dd></dd><dt>Date</dt><dd></dd></dl>\n";

std::string sectionStart(const ReportedFile &file, std::size_t index, const SheetOptions &options)
{
    const std::string id = sectionId(index);
    return "<section class=\"file\" id=\"" + id + "\" aria-labelledby=\"" + id +
           "-name\">\n<h1 id=\"" + id + "-name\">" + xmlEscaped(file.path) +
           "</h1>\n<p class=\"camera\">Camera: " + xmlEscaped(cameraOf(file.path, options)) +
           "</p>\n" + kSignOff;
}

// A table of this many rows or fewer is kept whole on one sheet; a longer one may break, but
// never before its second row or after its last but one.
constexpr std::size_t kShortTable = 8;

std::string pageTable(const PageOfFields &page, const ReportedFile &file,
                      const ConfigRecord &untouched, const std::vector<lumarex::Field> &findings)
{
    const std::string title =
        page.index < 0 ? std::string("Not in the window")
                       : "Page " + std::to_string(page.index + 1) + ": " + std::string(page.page);
    std::string html =
        std::string(page.fields.size() <= kShortTable ? "<section class=\"page short\">\n<h2>"
                                                      : "<section class=\"page\">\n<h2>") +
        xmlEscaped(title) +
        "</h2>\n<table>\n<colgroup><col class=\"caption\"/><col class=\"shown\"/>"
        "<col class=\"stored\"/><col class=\"start\"/><col class=\"field\"/></colgroup>\n"
        "<thead><tr><th scope=\"col\">Caption</th><th scope=\"col\">Value</th>"
        "<th scope=\"col\">Stored</th><th scope=\"col\">Untouched form</th>"
        "<th scope=\"col\">Field</th></tr></thead>\n<tbody>\n";
    for (const FieldInfo *info : page.fields) {
        const lumarex::ControlFacts *control = lumarex::controlOf(info->field);
        const bool finding =
            std::find(findings.begin(), findings.end(), info->field) != findings.end();
        html += row(file.record, untouched, *info,
                    control ? std::string(control->caption) : std::string(info->name), finding);
    }
    return html + "</tbody>\n</table>\n</section>\n";
}

} // namespace

std::string cameraOf(const std::string &path, const SheetOptions &options)
{
    if (!options.title.empty())
        return options.title;
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error)
        absolute = path;
    const std::string folder = absolute.lexically_normal().parent_path().filename().string();
    return folder.empty() ? std::string("/") : folder;
}

std::string reportHead(const std::vector<std::string> &paths, const SheetOptions &options)
{
    std::string title = "Settings sheet";
    if (paths.size() == 1)
        title += ": " + cameraOf(paths.front(), options) + ", " + paths.front();
    else
        title += ": " + std::to_string(paths.size()) + " files";
    std::string html;
    const char *size = options.paper == Paper::A4       ? "A4"
                       : options.paper == Paper::Letter ? "letter"
                                                        : "auto";
    html += std::string("@page { size: ") + size +
            "; @bottom-left { content: " + cssString(options.dateLine) + "; font-size: 8pt; } }\n";
    // A named page per file, whose header names its camera and file on every sheet.
    for (std::size_t index = 0; index < paths.size(); ++index) {
        const std::string id = sectionId(index);
        html +=
            "#" + id + " { page: " + id + "; }\n@page " + id + " { @top-left { content: " +
            cssString("Camera " + cameraOf(paths[index], options) + "  \u00B7  " + paths[index]) +
            "; font-size: 8pt; } }\n";
    }
    return htmlPageHead(title, html);
}

std::string htmlPageHead(const std::string &title, const std::string &style)
{
    return "<!DOCTYPE html>\n"
           "<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n"
           "<meta charset=\"UTF-8\"/>\n<title>" +
           xmlEscaped(title) + "</title>\n<style>" + kStyle + style +
           "</style>\n</head>\n<body>\n<main>\n";
}

std::string reportSection(const ReportedFile &file, std::size_t index, const SheetOptions &options)
{
    const ConfigRecord untouched = lumarex::untouchedFormRecord();
    std::string html = sectionStart(file, index, options);
    if (file.unreadable) {
        return html + "<p class=\"verdict unreadable\">" + xmlEscaped(*file.unreadable) +
               "</p>\n</section>\n";
    }
    const char *verdictClass = file.refusal ? "refused" : "valid";
    html += std::string("<p class=\"verdict ") + verdictClass + "\">Verdict: " +
            xmlEscaped(file.refusal ? "the editor refuses it: " + *file.refusal
                                    : std::string("valid: the editor loads it")) +
            "</p>\n";
    html += "<p class=\"checksum\">Checksum: " + checksumText(file.record) + "</p>\n";
    if (file.sizeNote)
        html += "<p class=\"size\">" + xmlEscaped(*file.sizeNote) + "</p>\n";
    html += std::string("<p class=\"legend\">") + kLegend + "</p>\n";

    std::vector<lumarex::roundtrip::Finding> findings;
    if (!file.refusal)
        findings = lumarex::roundtrip::strictFindings(file.record.bytes());
    std::vector<lumarex::Field> findingFields;
    for (const auto &finding : findings)
        findingFields.push_back(finding.field);
    for (const PageOfFields &page : fieldsByPage())
        html += pageTable(page, file, untouched, findingFields);

    if (!file.refusal) {
        html += "<section class=\"findings\">\n<h2>What the editor would change</h2>\n";
        if (findings.empty()) {
            html += "<p class=\"nofindings\">Nothing: the editor loads and saves every value as "
                    "it is.</p>\n";
        } else {
            html += "<ul class=\"findings\">\n";
            for (const auto &finding : findings)
                html += "<li data-field=\"" + std::string(lumarex::fieldInfo(finding.field).name) +
                        "\">" + xmlEscaped(finding.text()) + "</li>\n";
            html += "</ul>\n";
        }
        html += "</section>\n";
    }
    return html + "</section>\n";
}

std::string reportTail()
{
    return "</main>\n</body>\n</html>\n";
}

} // namespace lxconfig
