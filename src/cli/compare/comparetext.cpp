// compare's text: files as columns when the table fits the terminal, else a line per setting and
// file. Either way each setting is followed or headed by how the files group, and the files the
// editor does not load are listed at the end with the reason.

#include "comparewriter.h"

#include <algorithm>

namespace lxconfig {

namespace {

constexpr const char *kMark = " *";
constexpr const char *kGap = "  ";

// Characters, not bytes: item texts hold signs such as U+00AE.
std::size_t widthOf(const std::string &text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string padded(const std::string &text, std::size_t width)
{
    const std::size_t shown = widthOf(text);
    return shown < width ? text + std::string(width - shown, ' ') : text;
}

std::string cellText(const SettingTally &setting, std::uint32_t group)
{
    const ValueGroup &value = setting.groups[group];
    return value.minority ? value.text + kMark : value.text;
}

class TextWriter : public CompareWriter
{
public:
    TextWriter(Output &output, int width)
        : m_output(output), m_width(static_cast<std::size_t>(width))
    {}

    void begin(const ComparedFiles &files,
               const std::vector<const SettingTally *> &settings) override
    {
        m_files = &files;
        for (const SettingTally *setting : settings)
            m_nameWidth = std::max(m_nameWidth, widthOf(setting->name()));
        std::size_t labelsWidth = 0;
        for (const std::uint32_t file : files.accepted) {
            m_labelWidth = std::max(m_labelWidth, widthOf(files.labels[file]));
            labelsWidth += widthOf(files.labels[file]) + 2;
        }
        // Columns only where the labels alone leave room, so a fleet is never held.
        m_mayFit = m_width > 0 && m_nameWidth + labelsWidth <= m_width;
    }

    void setting(const SettingTally &setting, const std::vector<std::uint32_t> &groups) override
    {
        m_marked = m_marked || (setting.groups.size() > 1 && setting.groups[1].minority);
        if (m_mayFit)
            m_held.push_back({&setting, groups});
        else
            printLines(setting, groups);
    }

    void end() override
    {
        if (m_mayFit && !printColumns()) {
            for (const Held &held : m_held)
                printLines(*held.setting, held.groups);
        }
        const ComparedFiles &files = *m_files;
        if (!m_any)
            m_output.out("No setting differs across the " + std::to_string(files.accepted.size()) +
                         (files.accepted.size() == 1 ? " file" : " files") +
                         " the editor loads.\n");
        if (m_marked)
            m_output.out("* fewer files hold this value than the most common one\n");
        if (files.accepted.size() == files.paths.size())
            return;
        m_output.out("Not compared:\n");
        for (std::size_t file = 0; file < files.paths.size(); ++file) {
            if (files.verdicts[file] != FileVerdict::Valid)
                m_output.out("  " + files.paths[file] + ": " + files.reasons[file] + '\n');
        }
    }

private:
    struct Held
    {
        const SettingTally *setting;
        std::vector<std::uint32_t> groups;
    };

    void printLines(const SettingTally &setting, const std::vector<std::uint32_t> &groups)
    {
        m_any = true;
        std::string text = setting.name() + ": " + setting.groupText(m_files->labels) + '\n';
        for (std::size_t k = 0; k < groups.size(); ++k)
            text += kGap + padded(m_files->labels[m_files->accepted[k]], m_labelWidth) + kGap +
                    cellText(setting, groups[k]) + '\n';
        m_output.out(text);
    }

    // False, printing nothing, when the table is wider than the terminal.
    bool printColumns()
    {
        const ComparedFiles &files = *m_files;
        std::vector<std::size_t> widths;
        for (const std::uint32_t file : files.accepted)
            widths.push_back(widthOf(files.labels[file]));
        for (const Held &held : m_held) {
            for (std::size_t k = 0; k < held.groups.size(); ++k)
                widths[k] = std::max(widths[k], widthOf(cellText(*held.setting, held.groups[k])));
        }
        std::size_t total = m_nameWidth;
        for (const std::size_t width : widths)
            total += 2 + width;
        if (total > m_width)
            return false;
        if (m_held.empty())
            return true;
        const auto line = [&](const std::string &first, const auto &cell) {
            std::string text = padded(first, m_nameWidth);
            for (std::size_t k = 0; k < widths.size(); ++k)
                text += kGap + (k + 1 == widths.size() ? cell(k) : padded(cell(k), widths[k]));
            return text + '\n';
        };
        std::string text = line("", [&](std::size_t k) { return files.labels[files.accepted[k]]; });
        for (const Held &held : m_held) {
            text += line(held.setting->name(),
                         [&](std::size_t k) { return cellText(*held.setting, held.groups[k]); });
            text +=
                std::string(m_nameWidth, ' ') + kGap + held.setting->groupText(files.labels) + '\n';
        }
        m_any = true;
        m_output.out(text);
        return true;
    }

    Output &m_output;
    std::size_t m_width;
    const ComparedFiles *m_files = nullptr;
    std::size_t m_nameWidth = 0;
    std::size_t m_labelWidth = 0;
    bool m_mayFit = false;
    bool m_any = false;    // a setting was printed
    bool m_marked = false; // a value was marked as the minority's
    std::vector<Held> m_held;
};

} // namespace

std::unique_ptr<CompareWriter> compareTextWriter(Output &output, int width)
{
    return std::make_unique<TextWriter>(output, width);
}

} // namespace lxconfig
