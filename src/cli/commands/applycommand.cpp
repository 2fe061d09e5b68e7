// lxconfig apply [--fields PATTERN] TEMPLATE.json FILE...: the fields a JSON template holds,
// set in each file as set would set them (as the window does, or with --raw as given): locked,
// read, changed, the checksum mended and the file replaced safely. A line per file and its
// changes, as set prints them (recordchange.h); a file that fails leaves the others to be done.

#include "commandfiles.h"
#include "commands.h"
#include "fieldpatterns.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "jsonform.h"
#include "jsonsyntax.h"
#include "recordchange.h"
#include "recorddifference.h"
#include "recordfile.h"
#include "ruleties.h"
#include "settingname.h"
#include "templatekeep.h"
#include "windowedit.h"

#include <algorithm>
#include <map>

namespace lxconfig {

namespace {

// A JSON form is small; a template larger than this is not one.
constexpr std::size_t kTemplateLimit = 1 << 20;

// The template's form, narrowed to the fields --fields names, without those --except names.
Result<JsonValue> readTemplate(const std::string &path, const std::string &fieldsPattern,
                               const std::string &exceptPattern)
{
    const Result<std::string> text = readTextFile(path, kTemplateLimit);
    if (!text)
        return text.failure();
    Result<JsonValue> parsed = parseJson(*text);
    if (!parsed)
        return parsed.failure().in(path);
    JsonValue &form = *parsed;
    std::optional<std::string> problem;
    if (!form.is_object())
        problem = "not a JSON object";
    // The checksum is mended in every file, so a template exported whole may carry one.
    if (!problem)
        form.erase("crc");
    if (!problem) {
        if (Done kept = leaveKept(form, exceptPattern); !kept)
            problem = kept.failure().reason;
    }
    lumarex::ConfigRecord probe;
    if (!problem) {
        if (Done set = setFieldsFromJson(form, probe); !set)
            problem = set.failure().reason;
    }
    if (!problem && !fieldsPattern.empty()) {
        const std::vector<std::string> patterns = patternsOf(fieldsPattern);
        JsonValue chosen = JsonValue::object();
        for (const auto &member : form.items()) {
            if (matchesAny(patterns, member.key()))
                chosen[member.key()] = member.value();
        }
        for (const std::string &pattern : patterns) {
            const bool matched = std::any_of(
                form.items().begin(), form.items().end(),
                [&pattern](const auto &member) { return patternMatches(pattern, member.key()); });
            if (!matched) {
                problem = "--fields: no field of the template matches \"" + pattern + "\"";
                break;
            }
        }
        form = chosen;
    }
    if (!problem && form.empty())
        problem = "the template sets no field";
    if (problem)
        return Failure{path, *problem};
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

// The template's settings as set takes them, the rules' own settings first (the gimbal, GPS
// receiver, external shutter and trigger pin mode), so that what they lock is set after them;
// a failure (without a file) for a field the window cannot set so.
Result<std::vector<std::string>> assignmentsOf(const JsonValue &form,
                                               const lumarex::ConfigRecord &record)
{
    std::vector<std::string> assignments;
    lumarex::ConfigRecord wanted = record;
    setFieldsFromJson(form, wanted); // checked when the template was read
    std::vector<lumarex::Field> order;
    for (const lumarex::roundtrip::RuleTie &tie : lumarex::roundtrip::ruleTies())
        order.push_back(tie.source);
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (std::find(order.begin(), order.end(), info.field) == order.end())
            order.push_back(info.field);
    }
    for (const lumarex::Field field : order) {
        const lumarex::FieldInfo &info = lumarex::fieldInfo(field);
        if (!form.contains(info.name))
            continue;
        const bool same = sameField(wanted, record, info);
        if (!lumarex::formFieldOf(field)) {
            if (!same)
                return Failure{{},
                               std::string(info.name) +
                                   ": no control of the window sets it; --raw writes its bytes"};
            continue;
        }
        for (int element = 1; element < info.elementCount(); ++element) {
            if (numberOf(wanted, info, element) != numberOf(wanted, info, 0))
                return Failure{{},
                               std::string(info.name) + ": the window sets every element at "
                                                        "once; --raw writes them one by one"};
        }
        assignments.push_back(std::string(info.name) + "=" +
                              std::to_string(numberOf(wanted, info, 0)));
    }
    return assignments;
}

// One file: the line it gets, or false after its error line.
bool applyTo(const std::string &path, const JsonValue &form, const Invocation &invocation,
             Output &output)
{
    FileForChange file;
    Result<lumarex::ConfigRecord> record = file.read(path, output);
    if (!succeeded(record, output))
        return false;
    const lumarex::ConfigRecord before = *record;
    std::map<lumarex::Field, std::string> ruleChanged;
    if (invocation.raw) {
        setFieldsFromJson(form, *record); // checked when the template was read
    } else {
        const Result<std::vector<std::string>> assignments = assignmentsOf(form, *record);
        std::optional<std::string> problem;
        if (!assignments) {
            problem = assignments.failure().reason;
        } else {
            Result<RuleChanges> edit = editAsWindow(*record, *assignments, invocation.force);
            if (edit)
                ruleChanged = std::move(*edit);
            else
                problem = edit.failure().reason;
        }
        if (problem) {
            output.error(path + ": " + *problem);
            return false;
        }
    }
    record->setValue(lumarex::Field::crc, record->computedChecksum());
    if (const std::optional<std::string> problem = recordProblem(*record)) {
        output.error(path + ": the template would make a file the editor refuses: " + *problem);
        return false;
    }
    const std::size_t applied = form.size();
    return succeeded(finishChange(file, before, *record,
                                  std::to_string(applied) +
                                      (applied == 1 ? " field applied" : " fields applied"),
                                  ruleChanged, invocation.backup, invocation.quiet, output),
                     output);
}

} // namespace

int applyCommand(const Invocation &invocation, Output &output)
{
    const std::string &templatePath = invocation.arguments.at(0);
    const Result<JsonValue> form =
        readTemplate(templatePath, invocation.fieldsPattern, invocation.exceptPattern);
    if (!succeeded(form, output))
        return kExitFailure;
    if (invocation.raw)
        warnAboutTies(templatePath, *form, output);
    int status = kExitSuccess;
    for (auto it = invocation.arguments.begin() + 1; it != invocation.arguments.end(); ++it) {
        if (!applyTo(*it, *form, invocation, output))
            status = kExitFailure;
    }
    return status;
}

} // namespace lxconfig
