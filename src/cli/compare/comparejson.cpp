// compare's JSON: {"files": [...], "settings": [...]}, printed an entry at a time so that a
// fleet's document is never held whole.

#include "comparewriter.h"

namespace lxconfig {

namespace {

const char *verdictName(FileVerdict verdict)
{
    switch (verdict) {
    case FileVerdict::Refused:
        return "refused";
    case FileVerdict::Unreadable:
        return "unreadable";
    case FileVerdict::Valid:
        break;
    }
    return "valid";
}

// The entry as an element of a top-level array: indented by four spaces.
std::string entryText(const OrderedJson &entry, bool first)
{
    std::string text = jsonText(entry);
    text.pop_back();
    std::string indented = first ? "\n    " : ",\n    ";
    for (const char c : text)
        indented += c == '\n' ? std::string("\n    ") : std::string(1, c);
    return indented;
}

class JsonWriter : public CompareWriter
{
public:
    explicit JsonWriter(Output &output) : m_output(output) {}

    void begin(const ComparedFiles &files, const std::vector<const SettingTally *> &) override
    {
        m_files = &files;
        m_output.out("{\n  \"files\": [");
        for (std::size_t file = 0; file < files.paths.size(); ++file) {
            const bool valid = files.verdicts[file] == FileVerdict::Valid;
            OrderedJson entry =
                checkEntry(files.paths[file], verdictName(files.verdicts[file]),
                           valid ? std::nullopt : std::optional<std::string>(files.reasons[file]),
                           std::nullopt);
            entry.erase("warning");
            entry["label"] = files.labels[file];
            m_output.out(entryText(entry, file == 0));
        }
        m_output.out(std::string(files.paths.empty() ? "" : "\n  ") + "],\n  \"settings\": [");
    }

    void setting(const SettingTally &setting, const std::vector<std::uint32_t> &groups) override
    {
        // The files of each group in the order given: a counting sort of the groups.
        std::vector<std::size_t> starts(setting.groups.size() + 1, 0);
        for (const std::uint32_t group : groups)
            ++starts[group + 1];
        for (std::size_t g = 1; g < starts.size(); ++g)
            starts[g] += starts[g - 1];
        std::vector<std::uint32_t> byGroup(groups.size());
        for (std::size_t k = 0; k < groups.size(); ++k)
            byGroup[starts[groups[k]]++] = m_files->accepted[k];

        OrderedJson entry;
        entry["setting"] = setting.name();
        entry["field"] = setting.info->name;
        entry["element"] =
            setting.info->elementCount() == 1 ? OrderedJson(nullptr) : OrderedJson(setting.element);
        entry["groups"] = OrderedJson::array();
        std::size_t next = 0;
        for (const ValueGroup &group : setting.groups) {
            OrderedJson files = OrderedJson::array();
            for (std::uint32_t n = 0; n < group.count; ++n)
                files.push_back(m_files->labels[byGroup[next++]]);
            entry["groups"].push_back({{"value", group.value},
                                       {"text", group.text},
                                       {"count", group.count},
                                       {"minority", group.minority},
                                       {"files", files}});
        }
        m_output.out(entryText(entry, m_first));
        m_first = false;
    }

    void end() override { m_output.out(std::string(m_first ? "" : "\n  ") + "]\n}\n"); }

private:
    Output &m_output;
    const ComparedFiles *m_files = nullptr;
    bool m_first = true;
};

} // namespace

std::unique_ptr<CompareWriter> compareJsonWriter(Output &output)
{
    return std::make_unique<JsonWriter>(output);
}

} // namespace lxconfig
