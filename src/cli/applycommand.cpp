// lxconfig apply [--fields PATTERN] TEMPLATE.json FILE...: the fields a JSON template holds,
// set in each file as set would set them: locked, read, changed, the checksum mended and the
// file replaced safely. One line per file; a file that fails leaves the others to be done.

#include "commandfiles.h"
#include "commands.h"
#include "jsonform.h"
#include "jsonsyntax.h"
#include "recordchange.h"
#include "recordfile.h"
#include "ruleties.h"

#include <algorithm>
#include <fnmatch.h>

namespace lxconfig {

namespace {

// A JSON form is small; a template larger than this is not one.
constexpr std::size_t kTemplateLimit = 1 << 20;

std::vector<std::string> patternsOf(const std::string &list)
{
    std::vector<std::string> patterns;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = list.find(',', start);
        patterns.push_back(list.substr(start, comma - start));
        if (comma == std::string::npos)
            return patterns;
        start = comma + 1;
    }
}

bool matchesAny(const std::vector<std::string> &patterns, const std::string &name)
{
    return std::any_of(patterns.begin(), patterns.end(), [&name](const std::string &pattern) {
        return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
    });
}

// The template's form, narrowed to the fields --fields names; nothing after an error line.
std::optional<JsonValue> readTemplate(const std::string &path, const std::string &fieldsPattern,
                                      Output &output)
{
    InputBytes bytes;
    if (!report(readInput(path, kTemplateLimit, Overflow::Refuse, bytes), output))
        return std::nullopt;
    JsonValue form;
    std::optional<std::string> problem = parseJson(bytes.data, form);
    if (!problem && !form.is_object())
        problem = "not a JSON object";
    // The checksum is mended in every file, so a template exported whole may carry one.
    if (!problem)
        form.erase("crc");
    lumarex::ConfigRecord probe;
    if (!problem)
        problem = setFieldsFromJson(form, probe);
    if (!problem && !fieldsPattern.empty()) {
        const std::vector<std::string> patterns = patternsOf(fieldsPattern);
        JsonValue chosen = JsonValue::object();
        for (const auto &member : form.items()) {
            if (matchesAny(patterns, member.key()))
                chosen[member.key()] = member.value();
        }
        for (const std::string &pattern : patterns) {
            const bool matched = std::any_of(
                form.items().begin(), form.items().end(), [&pattern](const auto &member) {
                    return ::fnmatch(pattern.c_str(), member.key().c_str(), 0) == 0;
                });
            if (!matched) {
                problem = "--fields: no field of the template matches \"" + pattern + "\"";
                break;
            }
        }
        form = chosen;
    }
    if (!problem && form.empty())
        problem = "the template sets no field";
    if (problem) {
        output.error(path + ": " + *problem);
        return std::nullopt;
    }
    return form;
}

// Once per run: a rule's field applied without the fields the rule ties to it.
void warnAboutTies(const std::string &path, const JsonValue &form, Output &output)
{
    for (const lumarex::roundtrip::RuleTie &tie : lumarex::roundtrip::ruleTies()) {
        if (!form.contains(lumarex::fieldInfo(tie.source).name))
            continue;
        std::string missing;
        for (const lumarex::Field field : tie.tied) {
            const char *name = lumarex::fieldInfo(field).name;
            if (!form.contains(name))
                missing += (missing.empty() ? "" : ", ") + std::string(name);
        }
        if (!missing.empty()) {
            output.warning(path + ": " + lumarex::fieldInfo(tie.source).name +
                           " is applied without what the editor's " + std::string(tie.rule) +
                           " ties to it: " + missing);
        }
    }
}

// One file: the line it gets, or false after its error line.
bool applyTo(const std::string &path, const JsonValue &form, const Invocation &invocation,
             Output &output)
{
    OutputFile file;
    InputBytes read;
    std::optional<lumarex::ConfigRecord> record = readForChange(path, file, output, &read);
    if (!record)
        return false;
    const lumarex::ConfigRecord before = *record;
    setFieldsFromJson(form, *record); // checked when the template was read
    record->setValue(lumarex::Field::crc, record->computedChecksum());
    if (const std::optional<std::string> problem = recordProblem(*record)) {
        output.error(path + ": the template would make a file the editor refuses: " + *problem);
        return false;
    }
    const std::size_t applied = form.size();
    return finishChange(path, file, read, before, *record,
                        std::to_string(applied) +
                            (applied == 1 ? " field applied" : " fields applied"),
                        invocation, output);
}

} // namespace

int applyCommand(const Invocation &invocation, Output &output)
{
    const std::string &templatePath = invocation.arguments.at(0);
    const std::optional<JsonValue> form =
        readTemplate(templatePath, invocation.fieldsPattern, output);
    if (!form)
        return kExitFailure;
    warnAboutTies(templatePath, *form, output);
    int status = kExitSuccess;
    for (auto it = invocation.arguments.begin() + 1; it != invocation.arguments.end(); ++it) {
        if (!applyTo(*it, *form, invocation, output))
            status = kExitFailure;
    }
    return status;
}

} // namespace lxconfig
