// set --from edits as the window does, as set FILE SETTING=VALUE... would with the text's lines:
// rules run and locks hold, so that a text exported from one camera can be given to another.
// A line whose value the file holds already is no change, whatever the window could make of it
// (the constants, a stored value the window cannot hold or would show otherwise), unless a change
// before it moves that value; the checksum is computed. import, unlike set,
// restores every byte as the text gives it.

#include "textset.h"

#include "commandfiles.h"
#include "formfields.h"
#include "recordchange.h"
#include "recorddifference.h"
#include "recordfile.h"
#include "ruleties.h"
#include "textform.h"
#include "windowedit.h"

#include <algorithm>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;

namespace {

// A text form is a few KiB; room for any comments, and a bound for an endless input.
constexpr std::size_t kTextLimit = 1024 * 1024;

bool isRuleSource(Field field)
{
    const auto &ties = lumarex::roundtrip::ruleTies();
    return std::any_of(ties.begin(), ties.end(),
                       [field](const auto &tie) { return tie.source == field; });
}

struct Assignment
{
    std::string text; // NAME=VALUE as set takes it
    int line;
    Field field;
    bool holds = false; // the file holds the value already
};

// The lines as set's assignments, the rules' own settings first, so that what they lock is
// set after them; the checksum and the constants that the file holds already are left out. The
// failure (without a file) names the line that cannot be read.
Result<std::vector<Assignment>> assignmentsOf(const std::vector<TextLine> &lines,
                                              const ConfigRecord &record)
{
    std::vector<Assignment> assignments;
    for (const TextLine &line : lines) {
        ConfigRecord probe = record;
        const LineValue read = readLine(line, probe);
        if (!read.field)
            return Failure{{}, "line " + std::to_string(line.number) + ": " + read.problem};
        const Field field = *read.field;
        const bool same = sameField(probe, record, lumarex::fieldInfo(field));
        const lumarex::FormField *pairing = lumarex::formFieldOf(field);
        if (field == Field::crc || (same && (!pairing || read.element >= 0)))
            continue; // the checksum is computed, and constants the window never changes
        assignments.push_back({line.name + "=" + read.value, line.number, field, same});
    }
    std::stable_partition(assignments.begin(), assignments.end(),
                          [](const Assignment &given) { return isRuleSource(given.field); });
    return assignments;
}

// The assignments to give the window: those that change the file, and those a change before
// them moved away from the value that the file holds and the text gives. A value the file holds
// already is no change, even one the window would show otherwise after its load.
std::vector<std::string> changes(const ConfigRecord &record,
                                 const std::vector<Assignment> &assignments, bool force,
                                 std::vector<Assignment> &given)
{
    std::vector<std::string> texts;
    for (const Assignment &assignment : assignments) {
        if (!assignment.holds)
            texts.push_back(assignment.text);
    }
    ConfigRecord changed = record;
    const bool refused = !editAsWindow(changed, texts, force);
    texts.clear();
    for (const Assignment &assignment : assignments) {
        if (!assignment.holds ||
            (!refused && !sameField(changed, record, lumarex::fieldInfo(assignment.field)))) {
            given.push_back(assignment);
            texts.push_back(assignment.text);
        }
    }
    return texts;
}

// The first assignment the window refuses, found by giving it the assignments one more at a time.
int refusedLine(const ConfigRecord &record, const std::vector<Assignment> &assignments, bool force)
{
    std::vector<std::string> given;
    for (const Assignment &assignment : assignments) {
        given.push_back(assignment.text);
        ConfigRecord copy = record;
        if (!editAsWindow(copy, given, force))
            return assignment.line;
    }
    return 0;
}

} // namespace

int setFromText(const Invocation &invocation, Output &output)
{
    const std::string &path = invocation.arguments.at(0);
    if (invocation.raw || invocation.arguments.size() > 1) {
        output.usageError(invocation.raw ? "--from edits as the window does, --raw takes "
                                           "SETTING=VALUE; import restores every byte of a text"
                                         : "give SETTING=VALUE... or --from TEXT, not both",
                          "set");
        return kExitError;
    }
    const std::string textName =
        invocation.fromPath == "-" ? std::string("standard input") : invocation.fromPath;
    const Result<std::string> text = readTextFile(invocation.fromPath, kTextLimit);
    if (!succeeded(text, output))
        return kExitFailure;
    const Result<std::vector<TextLine>> lines = textLines(*text);
    if (!lines) {
        output.error(textName + ": " + lines.failure().reason);
        return kExitFailure;
    }
    FileForChange file;
    Result<ConfigRecord> record = file.read(path, output);
    if (!succeeded(record, output))
        return kExitFailure;
    const ConfigRecord before = *record;
    const Result<std::vector<Assignment>> assignments = assignmentsOf(*lines, before);
    if (!assignments) {
        output.error(path + ": " + textName + ", " + assignments.failure().reason);
        return kExitFailure;
    }
    std::vector<Assignment> given;
    Result<RuleChanges> edit = editAsWindow(
        *record, changes(before, *assignments, invocation.force, given), invocation.force);
    if (!edit) {
        output.error(path + ": " + textName + ", line " +
                     std::to_string(refusedLine(before, given, invocation.force)) + ": " +
                     edit.failure().reason);
        return kExitFailure;
    }
    record->setValue(Field::crc, record->computedChecksum());
    const std::size_t count = lines->size();
    return succeeded(
               finishChange(file, before, *record,
                            std::to_string(count) + (count == 1 ? " value set" : " values set"),
                            *edit, invocation.backup, invocation.quiet, output),
               output)
               ? kExitSuccess
               : kExitFailure;
}

} // namespace lxconfig
