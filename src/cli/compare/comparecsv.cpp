// compare's CSV (RFC 4180: fields with a comma, a quote or a line break quoted, quotes doubled,
// lines ended by CRLF): a header of the files' labels, a row of the editor's verdicts, then a
// row per setting with every file's value and how the files group. A file the editor does not
// load has its reason in the verdict row and empty values.

#include "comparewriter.h"

namespace lxconfig {

namespace {

std::string csvField(const std::string &text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

class CsvWriter : public CompareWriter
{
public:
    explicit CsvWriter(Output &output) : m_output(output) {}

    void begin(const ComparedFiles &files, const std::vector<const SettingTally *> &) override
    {
        m_files = &files;
        std::string header = "setting";
        std::string verdicts = "verdict";
        for (std::size_t file = 0; file < files.paths.size(); ++file) {
            header += ',' + csvField(files.labels[file]);
            verdicts +=
                ',' + csvField(files.verdicts[file] == FileVerdict::Valid ? std::string("valid")
                                                                          : files.reasons[file]);
        }
        m_output.out(header + ",groups\r\n" + verdicts + ",\r\n");
    }

    void setting(const SettingTally &setting, const std::vector<std::uint32_t> &groups) override
    {
        std::string row = csvField(setting.name());
        std::size_t k = 0;
        for (std::size_t file = 0; file < m_files->paths.size(); ++file) {
            row += ',';
            if (k < groups.size() && m_files->accepted[k] == file)
                row += csvField(setting.groups[groups[k++]].text);
        }
        m_output.out(row + ',' + csvField(setting.groupText(m_files->labels)) + "\r\n");
    }

    void end() override {}

private:
    Output &m_output;
    const ComparedFiles *m_files = nullptr;
};

} // namespace

std::unique_ptr<CompareWriter> compareCsvWriter(Output &output)
{
    return std::make_unique<CsvWriter>(output);
}

} // namespace lxconfig
