#include "htmlreport.h"

#include "defaults.h"
#include "explain.h"
#include "fieldtext.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "itemtexts.h"
#include "roundtrip.h"
#include "xmltext.h"

#include <cstdio>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::FieldInfo;

namespace {

// Sized for A4 and Letter alike: the narrower width and the shorter height of the two, less
// the margins. Rows never split across sheets; each file starts a new one.
constexpr const char *kStyle = R"(
@page { size: auto; margin: 15mm 14mm; }
body { font-family: "DejaVu Sans", "Liberation Sans", Arial, sans-serif; font-size: 9.5pt;
       color: #000; margin: 0; }
section.file { page-break-after: always; break-after: page; }
section.file:last-of-type { page-break-after: auto; break-after: auto; }
h1 { font-size: 15pt; margin: 0 0 2mm 0; word-break: break-all; }
h2 { font-size: 11pt; margin: 4mm 0 1mm 0; page-break-after: avoid; break-after: avoid; }
table { border-collapse: collapse; width: 100%; table-layout: fixed; }
col.caption { width: 21%; } col.shown { width: 27%; } col.stored { width: 13%; }
col.start { width: 15%; } col.field { width: 24%; }
td.field { font-size: 8pt; }
th, td { border: 0.3mm solid #888; padding: 0.6mm 1.5mm; text-align: left; vertical-align: top;
         overflow-wrap: break-word; word-wrap: break-word; }
th { background: #e8e8e8; }
tr { page-break-inside: avoid; break-inside: avoid; }
td.stored { font-family: "DejaVu Sans Mono", monospace; }
tr.changed td { font-weight: bold; background: #fff1c2; }
tr.changed td.caption::before { content: "\25B6\00A0"; }
p.verdict.valid { color: #005a00; }
p.verdict.refused, p.verdict.unreadable { color: #a00000; font-weight: bold; }
ul.findings li { margin-bottom: 1mm; }
.legend { font-size: 8pt; color: #333; }
)";

bool sameField(const ConfigRecord &a, const ConfigRecord &b, const FieldInfo &info)
{
    for (int k = 0; k < info.width; ++k) {
        if (a.bytes()[static_cast<std::size_t>(info.offset + k)] !=
            b.bytes()[static_cast<std::size_t>(info.offset + k)])
            return false;
    }
    return true;
}

// The number; an array whose elements are all the same as one number for all of them.
std::string storedValue(const ConfigRecord &record, const FieldInfo &info)
{
    if (info.type == lumarex::FieldType::Ascii4)
        return quotedMagic(record);
    bool allSame = true;
    for (int element = 1; element < info.elementCount(); ++element)
        allSame = allSame && numberText(record, info, element) == numberText(record, info, 0);
    if (info.elementCount() > 1 && allSame)
        return numberText(record, info, 0) + " in all " + std::to_string(info.elementCount());
    std::string text;
    for (int element = 0; element < info.elementCount(); ++element)
        text += (element == 0 ? "" : " ") + numberText(record, info, element);
    return text;
}

// What the window shows for the field: the item text, the offset in degrees, a check box's
// state, or the number.
std::string shownValue(const ConfigRecord &record, const FieldInfo &info)
{
    const lumarex::ControlFacts *control = lumarex::controlOf(info.field);
    if (control && control->className == "QCheckBox")
        return record.value(info.field) != 0 ? "checked" : "unchecked";
    if (info.field == lumarex::Field::esoOffset)
        return esoOffsetShown(record.value(info.field));
    if (const ItemList *list = itemListOf(info.field)) {
        const std::optional<std::string> item = itemText(*list, record.value(info.field));
        return item ? *item : std::string("(no item)");
    }
    if (info.type == lumarex::FieldType::Ascii4)
        return magicText(record);
    return storedValue(record, info);
}

std::string row(const ConfigRecord &record, const ConfigRecord &untouched, const FieldInfo &info,
                const std::string &caption)
{
    const bool changed = !sameField(record, untouched, info);
    return std::string("<tr class=\"") + (changed ? "changed" : "same") + "\" data-field=\"" +
           info.name + "\"><td class=\"caption\">" + xmlEscaped(caption) +
           "</td><td class=\"shown\">" + xmlEscaped(shownValue(record, info)) +
           "</td><td class=\"stored\">" + xmlEscaped(storedValue(record, info)) +
           "</td><td class=\"start\">" + (changed ? xmlEscaped(shownValue(untouched, info)) : "") +
           "</td><td class=\"field\">" + info.name + "</td></tr>\n";
}

std::string checksumText(const ConfigRecord &record)
{
    char text[96];
    std::snprintf(text, sizeof text, "0x%04X (%u); computed 0x%04X", record.storedChecksum(),
                  record.storedChecksum(), record.computedChecksum());
    return text;
}

std::string fileSection(const ReportedFile &file, const ConfigRecord &untouched)
{
    std::string html = "<section class=\"file\">\n<h1>" + xmlEscaped(file.path) + "</h1>\n";
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
    // The values are the file's, in the window's words; what the window would make of them
    // (a clamped number, a box left without an item) is in the findings at the end.
    html += "<p class=\"legend\">Values as stored in the file, in the window's words. Marked "
            "rows (&#9654;, bold) differ from the editor's untouched form, whose value is in the "
            "last-but-one column.</p>\n";

    for (const lumarex::roundtrip::PageOfFields &page : lumarex::roundtrip::fieldsByPage()) {
        const std::string title = page.index < 0 ? std::string("Not in the window")
                                                 : "Page " + std::to_string(page.index + 1) + ": " +
                                                       std::string(page.page);
        html += "<section class=\"page\">\n<h2>" + xmlEscaped(title) +
                "</h2>\n<table>\n<colgroup><col class=\"caption\"/><col class=\"shown\"/>"
                "<col class=\"stored\"/><col class=\"start\"/><col class=\"field\"/></colgroup>\n"
                "<thead><tr><th>Caption</th><th>Value</th><th>Stored</th>"
                "<th>Untouched form</th><th>Field</th></tr></thead>\n<tbody>\n";
        for (const FieldInfo *info : page.fields) {
            const lumarex::ControlFacts *control = lumarex::controlOf(info->field);
            html += row(file.record, untouched, *info,
                        control ? std::string(control->caption) : std::string(info->name));
        }
        html += "</tbody>\n</table>\n</section>\n";
    }

    if (!file.refusal) {
        const auto findings = lumarex::roundtrip::strictFindings(file.record.bytes());
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

} // namespace

std::string htmlReport(const std::vector<ReportedFile> &files)
{
    const ConfigRecord untouched = defaultRecord();
    std::string html = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<!DOCTYPE html>\n"
                       "<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n"
                       "<meta charset=\"UTF-8\"/>\n<title>LXCONFIG.BIN settings</title>\n"
                       "<style>";
    html += kStyle;
    html += "</style>\n</head>\n<body>\n";
    for (const ReportedFile &file : files)
        html += fileSection(file, untouched);
    return html + "</body>\n</html>\n";
}

} // namespace lxconfig
