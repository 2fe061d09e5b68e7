#include "settingname.h"

#include "formfields.h"

#include <algorithm>
#include <cctype>

namespace lxconfig {

namespace {

// Lower case, runs of blanks as one, without the blanks and colon that end some captions.
std::string folded(std::string_view text)
{
    std::string out;
    for (char c : text) {
        const bool blank = c == ' ' || c == '\t';
        if (blank && (out.empty() || out.back() == ' '))
            continue;
        out += blank ? ' ' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    while (!out.empty() && (out.back() == ' ' || out.back() == ':'))
        out.pop_back();
    return out;
}

std::string trimmedCaption(std::string_view caption)
{
    std::string text(caption);
    while (!text.empty() && (text.back() == ' ' || text.back() == ':'))
        text.pop_back();
    return text;
}

bool captionRepeats(const lumarex::ControlFacts &control)
{
    int count = 0;
    for (std::size_t i = 0; i < lumarex::formFieldCount(); ++i) {
        const lumarex::ControlFacts *other = lumarex::controlOf(lumarex::formFields()[i].field);
        if (other && folded(other->caption) == folded(control.caption))
            ++count;
    }
    return count > 1;
}

std::string qualifiedCaption(const lumarex::ControlFacts &control)
{
    return std::string(control.page) + ":" + trimmedCaption(control.caption);
}

std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] != b[j - 1])});
            diagonal = above;
        }
    }
    return row[b.size()];
}

} // namespace

std::vector<std::string> settingNames()
{
    std::vector<std::string> names;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable())
        names.emplace_back(info.name);
    for (std::size_t i = 0; i < lumarex::formFieldCount(); ++i) {
        const lumarex::ControlFacts *control = lumarex::controlOf(lumarex::formFields()[i].field);
        if (control && !control->caption.empty())
            names.push_back(captionRepeats(*control) ? qualifiedCaption(*control)
                                                     : trimmedCaption(control->caption));
    }
    return names;
}

NamedField fieldNamed(std::string_view name)
{
    const std::string wanted = folded(name);
    if (const std::optional<lumarex::Field> exact = lumarex::fieldByName(name))
        return {exact, {}};
    std::vector<lumarex::Field> found;
    std::vector<std::string> qualified;
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        const lumarex::ControlFacts *control = lumarex::controlOf(info.field);
        const bool byName = folded(info.name) == wanted;
        const bool byControl = control && folded(control->objectName) == wanted;
        const bool byCaption = control && folded(control->caption) == wanted;
        const bool byPage = control && folded(qualifiedCaption(*control)) == wanted;
        if (byName || byControl || byCaption || byPage) {
            found.push_back(info.field);
            qualified.push_back(control ? qualifiedCaption(*control) : std::string(info.name));
        }
    }
    if (found.size() == 1)
        return {found.front(), {}};
    const std::string look = "; lxconfig explain lists every setting";
    if (found.size() > 1) {
        std::string problem = "the window shows that caption on more than one control: ";
        for (std::size_t i = 0; i < qualified.size(); ++i)
            problem += (i > 0 ? ", " : "") + qualified[i];
        return {std::nullopt, problem};
    }
    return {std::nullopt, "no such setting" + didYouMean(name, settingNames()) + look};
}

std::string didYouMean(std::string_view given, const std::vector<std::string> &candidates)
{
    const std::string wanted = folded(given);
    const std::size_t limit = wanted.size() / 3 + 1;
    std::size_t best = limit;
    std::vector<std::string> closest;
    for (const std::string &candidate : candidates) {
        const std::string name = folded(candidate);
        std::size_t distance = editDistance(wanted, name);
        // A prefix of a long name is as close as a slip of one letter.
        if (wanted.size() >= 3 && name.compare(0, wanted.size(), wanted) == 0)
            distance = std::min<std::size_t>(distance, 1);
        if (distance < best) {
            best = distance;
            closest.clear();
        }
        if (distance == best && distance < limit &&
            std::find(closest.begin(), closest.end(), candidate) == closest.end())
            closest.push_back(candidate);
    }
    if (closest.empty() || closest.size() > 4)
        return {};
    std::string text = " (did you mean ";
    for (std::size_t i = 0; i < closest.size(); ++i)
        text += (i == 0 ? "" : i + 1 == closest.size() ? " or " : ", ") + closest[i];
    return text + "?)";
}

} // namespace lxconfig
