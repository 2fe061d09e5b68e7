// compare's HTML: one page in the style of report's sheet, a table with a column per file (its
// label, the whole path as the title), a row of the editor's verdicts, then a row per setting,
// the minority's values marked, and how the files group in the last column. Rows are printed as
// they come.

#include "comparewriter.h"
#include "htmlreport.h"
#include "xmltext.h"

namespace lxconfig {

namespace {

constexpr const char *kCompareStyle = R"(
table.compare { table-layout: auto; width: auto; }
table.compare td { white-space: nowrap; }
table.compare td.groups { white-space: normal; min-width: 40mm; }
td.minority { font-weight: bold; background: #fff1c2; }
td.refused { color: #a00000; font-weight: bold; white-space: normal; }
)";

class HtmlWriter : public CompareWriter
{
public:
    explicit HtmlWriter(Output &output) : m_output(output) {}

    void begin(const ComparedFiles &files,
               const std::vector<const SettingTally *> &settings) override
    {
        m_files = &files;
        const std::string title = "Compared settings: " + std::to_string(files.paths.size()) +
                                  (files.paths.size() == 1 ? " file" : " files");
        std::string html = htmlPageHead(title, kCompareStyle) + "<h1>" + xmlEscaped(title) +
                           "</h1>\n<p class=\"legend\">" +
                           (settings.empty() ? std::string("No setting differs across the files "
                                                           "the editor loads. ")
                                             : std::string()) +
                           "Values in the window's words, as set takes them. Marked cells (bold, "
                           "*) hold a value that fewer files hold than the most common one.</p>\n"
                           "<table class=\"compare\">\n<thead>\n<tr><th scope=\"col\">Setting</th>";
        for (std::size_t file = 0; file < files.paths.size(); ++file)
            html += "<th scope=\"col\" title=\"" + xmlEscaped(files.paths[file]) + "\">" +
                    xmlEscaped(files.labels[file]) + "</th>";
        html += "<th scope=\"col\">How the files group</th></tr>\n</thead>\n<tbody>\n"
                "<tr><th scope=\"row\">Verdict</th>";
        for (std::size_t file = 0; file < files.paths.size(); ++file) {
            const bool valid = files.verdicts[file] == FileVerdict::Valid;
            html += valid ? std::string("<td>valid</td>")
                          : "<td class=\"refused\">" + xmlEscaped(files.reasons[file]) + "</td>";
        }
        m_output.out(html + "<td class=\"groups\"></td></tr>\n");
    }

    void setting(const SettingTally &setting, const std::vector<std::uint32_t> &groups) override
    {
        std::string html = "<tr><th scope=\"row\">" + xmlEscaped(setting.name()) + "</th>";
        std::size_t k = 0;
        for (std::size_t file = 0; file < m_files->paths.size(); ++file) {
            if (k >= groups.size() || m_files->accepted[k] != file) {
                html += "<td></td>";
                continue;
            }
            const ValueGroup &group = setting.groups[groups[k++]];
            html += group.minority ? "<td class=\"minority\">" + xmlEscaped(group.text) + " *</td>"
                                   : "<td>" + xmlEscaped(group.text) + "</td>";
        }
        m_output.out(html + "<td class=\"groups\">" +
                     xmlEscaped(setting.groupText(m_files->labels)) + "</td></tr>\n");
    }

    void end() override { m_output.out("</tbody>\n</table>\n" + reportTail()); }

private:
    Output &m_output;
    const ComparedFiles *m_files = nullptr;
};

} // namespace

std::unique_ptr<CompareWriter> compareHtmlWriter(Output &output)
{
    return std::make_unique<HtmlWriter>(output);
}

} // namespace lxconfig
