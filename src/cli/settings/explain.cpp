#include "explain.h"

#include "configrecord.h"
#include "controltext.h"
#include "conversions.h"
#include "editormodel.h"
#include "editorverdict.h"
#include "formcontrols.h"
#include "formfields.h"
#include "formrulemodel.h"
#include "restoreorder.h"
#include "storednumber.h"
#include "valuetext.h"

#include <algorithm>
#include <cctype>

namespace lxconfig {

// The prose speaks of the model's facts throughout.
using namespace lumarex;
using namespace lumarex::roundtrip;

namespace {

using Lines = std::vector<std::string>;

std::string typeText(const FieldInfo &info)
{
    switch (info.type) {
    case FieldType::Ascii4:
        return "4 ASCII bytes";
    case FieldType::U8:
        return "u8";
    case FieldType::U16:
        return "u16";
    case FieldType::U32:
        return "u32";
    case FieldType::I32:
        return "i32";
    case FieldType::U16x20:
        return std::to_string(info.elementCount()) + " x u16";
    case FieldType::Bytes8:
        return "8 bytes";
    }
    return {};
}

std::string placeText(const FieldInfo &info)
{
    return "offset " + std::to_string(info.offset) + ", " + std::to_string(info.width) +
           (info.width == 1 ? " byte" : " bytes") + " (" + typeText(info) + ")";
}

std::string storedAs(Stored stored, const FieldInfo &info)
{
    switch (stored) {
    case Stored::ItemIndex:
        return "the index of the current item; no current item is stored as 255";
    case Stored::Ext0Code:
    case Stored::Ext1Code:
        return "the device mode code of the current item";
    case Stored::ItemNumber:
        return "the current item's text as a number";
    case Stored::Checked:
        return "1 when checked, 0 when not";
    case Stored::Value:
        return info.elementCount() > 1 ? "the value, in every one of the " +
                                             std::to_string(info.elementCount()) + " elements"
                                       : "the value";
    case Stored::Hundredths:
        return "the value in hundredths (times 100, cut toward zero)";
    case Stored::TextNumber:
        return "the text as an unsigned number; 0 when it is not one";
    }
    return {};
}

// What a combo item is stored as: the number the save command stores for it, a device mode
// code named as one.
std::string itemValue(Stored stored, const ControlFacts &facts, int index)
{
    const std::string number = std::to_string(itemStoredNumber(stored, facts, index).value_or(0));
    return stored == Stored::Ext0Code || stored == Stored::Ext1Code ? "code " + number : number;
}

std::string startText(const ControlFacts &facts)
{
    if (facts.className == "QComboBox")
        return facts.startIndex < 0 ? "no item"
                                    : "item " + std::to_string(facts.startIndex) + " " +
                                          quoted(facts.item(facts.startIndex));
    if (facts.className == "QCheckBox")
        return std::string(checkText(facts.startChecked));
    if (facts.className == "QLineEdit")
        return quoted(facts.startText);
    return decimalText(facts.startValue, facts.decimals);
}

std::string controlName(std::string_view objectName)
{
    if (const RuleContainer *container = ruleContainerNamed(objectName))
        return std::string(container->description);
    const ControlFacts *facts = findControl(objectName);
    return facts ? quoted(facts->caption) : std::string(objectName);
}

std::string actionText(const RuleAction &action, bool onThisControl)
{
    const std::string target = onThisControl ? "it" : controlName(action.target);
    switch (action.act) {
    case RuleAct::Enable:
        return "unlocks " + target;
    case RuleAct::Disable:
        return "locks " + target;
    case RuleAct::Show:
        return "shows " + target;
    case RuleAct::Hide:
        return "hides " + target;
    case RuleAct::Select: {
        const ControlFacts *facts = findControl(action.target);
        return "sets " + target + " to item " + std::to_string(action.value) +
               (facts ? " " + quoted(facts->item(action.value)) : std::string());
    }
    case RuleAct::Check:
        return (action.value ? "checks " : "unchecks ") + target;
    }
    return {};
}

// The signal values a case answers: the items of a combo box by index and text, else the words
// of the rule's data ("checked", "any other mode").
std::string caseValues(const FormRule &rule, const RuleCase &ruleCase)
{
    const ControlFacts *source = findControl(rule.source);
    if (rule.signal != RuleSignal::IndexChanged || ruleCase.valueCount == 0 || !source)
        return std::string(ruleCase.when);
    std::string text;
    for (int v = 0; v < ruleCase.valueCount; ++v)
        text += (v ? " or item " : "item ") + std::to_string(ruleCase.values[v]) + " " +
                quoted(source->item(ruleCase.values[v]));
    return text;
}

std::string whenText(const FormRule &rule, const RuleCase &ruleCase)
{
    std::string text =
        "when " + controlName(rule.source) + " becomes " + caseValues(rule, ruleCase);
    if (!ruleCase.unlessChecked.empty())
        text += " (unless " + controlName(ruleCase.unlessChecked) + " is checked)";
    return text;
}

bool inside(const RuleContainer &container, const ControlFacts &facts)
{
    if (!container.page.empty() && container.page == facts.page)
        return true;
    const auto last = container.members + container.memberCount;
    return std::find(container.members, last, facts.objectName) != last;
}

// The rules this control runs, and every rule action that reaches it.
void describeRules(const ControlFacts &facts, Lines &lines)
{
    for (int r = 0; r < formRuleCount(); ++r) {
        const FormRule &rule = formRules()[r];
        if (rule.source != facts.objectName)
            continue;
        lines.push_back(
            "  runs the " + std::string(rule.name) +
            (rule.runsPerChange > 1 ? " (twice per change: it is connected twice)" : "") +
            " on every change:");
        for (int c = 0; c < rule.caseCount; ++c) {
            const RuleCase &ruleCase = rule.cases[c];
            std::string text = "    " + caseValues(rule, ruleCase) + ":";
            if (!ruleCase.unlessChecked.empty())
                text += " unless " + controlName(ruleCase.unlessChecked) + " is checked,";
            for (int a = 0; a < ruleCase.actionCount; ++a)
                text += (a ? ", " : " ") + actionText(ruleCase.actions[a], false);
            lines.push_back(text);
        }
    }
    for (int r = 0; r < formRuleCount(); ++r) {
        const FormRule &rule = formRules()[r];
        for (int c = 0; c < rule.caseCount; ++c) {
            const RuleCase &ruleCase = rule.cases[c];
            std::string effects;
            for (int a = 0; a < ruleCase.actionCount; ++a) {
                const RuleAction &action = ruleCase.actions[a];
                const RuleContainer *container = ruleContainerNamed(action.target);
                const bool here = action.target == facts.objectName;
                if (!here && !(container && inside(*container, facts)))
                    continue;
                effects += (effects.empty() ? "" : ", ") + actionText(action, here);
            }
            if (!effects.empty())
                lines.push_back("  " + std::string(rule.name) + ", " + whenText(rule, ruleCase) +
                                ": " + effects);
        }
    }
}

std::string restoreHow(Restore how)
{
    switch (how) {
    case Restore::Check:
        return "checked when the stored value is not 0";
    case Restore::Index:
        return "by index; an index with no item leaves the box empty, saved back as 255";
    case Restore::Value:
    case Restore::UnsignedValue:
    case Restore::TriggerSlot:
        return "by value, clamped to the range";
    case Restore::Hundredths:
        return "read unsigned and divided by 100, so a negative offset comes back as the "
               "maximum";
    case Restore::NumberText:
        return "the item whose text is the stored number; none such leaves the box as it is";
    case Restore::LineText:
        return "the stored number as text";
    case Restore::Ext0Code:
    case Restore::Ext1Code:
        return "the item of the mode code; an unknown code leaves the box as it is";
    }
    return {};
}

void describeLoad(const FieldInfo &info, const ControlFacts &facts, Lines &lines)
{
    bool restored = false;
    for (int i = 0; i < restoreStepCount(); ++i) {
        const RestoreStep &step = restoreSteps()[i];
        const std::string at = "  Read from file, step " + std::to_string(i + 1) + ": ";
        if (step.field == info.field && step.control == facts.objectName) {
            std::string text = at + restoreHow(step.how);
            if (step.how == Restore::TriggerSlot)
                text += "; the element that sbusTrigger selects (none past element " +
                        std::to_string(kTriggerSlots - 1) + ")";
            lines.push_back(text);
            restored = true;
        } else if (step.field == info.field) {
            lines.push_back(at + "restored into another box, " + controlName(step.control) +
                            ", not into this one");
            restored = true;
        } else if (step.control == facts.objectName) {
            lines.push_back(at + "this box also receives " +
                            std::string(fieldInfo(step.field).name) + ", " + restoreHow(step.how));
        }
    }
    if (!restored)
        lines.push_back("  Read from file: not restored; the box keeps what it shows");
}

// What the editor does with a field no control shows: whether "Read from file" refuses a file
// that changes it (tried on the untouched form's file, so the editor's verdict decides), and
// what "Write to file" puts there.
std::string uncontrolledText(const FieldInfo &info)
{
    const ConfigRecord fresh = EditorModel().save();
    ConfigRecord changed = fresh;
    changed.data()[info.offset] ^= 0xFF;
    if (info.field != Field::crc)
        changed.setValue(Field::crc, changed.computedChecksum());
    const bool checked = editorVerdict(changed) != Verdict::Accepted;
    const std::string saves = info.field == Field::crc ? "the checksum of bytes 0 to " +
                                                             std::to_string(kChecksummedSize - 1)
                                                       : storedText(fresh, info.field);
    return std::string(checked ? "Read from file refuses a file where it differs"
                               : "Read from file ignores it") +
           "; Write to file saves " + saves;
}

void explainField(const FieldInfo &info, Lines &lines)
{
    const FormField *pairing = formFieldOf(info.field);
    const ControlFacts *facts = pairing ? findControl(pairing->control) : nullptr;
    if (!facts) {
        lines.push_back(std::string(info.name) + ": not in the window");
        lines.push_back("  file: " + placeText(info));
        lines.push_back("  " + uncontrolledText(info));
        return;
    }
    lines.push_back(std::string(info.name) + ": " + quoted(facts->caption) + " on page " +
                    quoted(facts->page) + " (tab " + std::to_string(facts->pageIndex + 1) + ")");
    lines.push_back("  control: " + std::string(facts->objectName) + " (" +
                    std::string(facts->className) + ")");
    lines.push_back("  file: " + placeText(info) + ", " + storedAs(pairing->stored, info));
    if (facts->itemCount > 0) {
        lines.push_back("  items (stored value = text):");
        for (int i = 0; i < facts->itemCount; ++i)
            lines.push_back("    " + itemValue(pairing->stored, *facts, i) + " = " +
                            quoted(facts->item(i)));
    }
    lines.push_back("  start: " + startText(*facts));
    if (facts->className == "QSpinBox" || facts->className == "QDoubleSpinBox") {
        std::string range = "  range: " + rangeText(*facts);
        if (facts->decimals > 0)
            range += ", " + std::to_string(facts->decimals) + " decimals";
        if (pairing->stored == Stored::Hundredths)
            range += "; stored in hundredths: " + decimalText(facts->minimum, facts->decimals) +
                     " is " + std::to_string(esoOffsetToField(facts->minimum)) + ", " +
                     decimalText(facts->maximum, facts->decimals) + " is " +
                     std::to_string(esoOffsetToField(facts->maximum));
        lines.push_back(range);
    }
    describeLoad(info, *facts, lines);
    describeRules(*facts, lines);
}

std::string folded(std::string_view text)
{
    std::string out;
    for (char c : text)
        out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    while (!out.empty() && (out.back() == ' ' || out.back() == ':'))
        out.pop_back();
    return out;
}

// Every field the name means: a field or control name, or a caption (which two controls may
// share, as the trigger thresholds share theirs).
std::vector<const FieldInfo *> fieldsNamed(std::string_view name)
{
    const std::string wanted = folded(name);
    std::vector<const FieldInfo *> found;
    for (const FieldInfo &info : fieldTable()) {
        const FormField *pairing = formFieldOf(info.field);
        const ControlFacts *facts = pairing ? findControl(pairing->control) : nullptr;
        if (folded(info.name) == wanted ||
            (facts && (folded(facts->objectName) == wanted || folded(facts->caption) == wanted)))
            found.push_back(&info);
    }
    return found;
}

const ControlFacts *controlOfField(const FieldInfo &info)
{
    const FormField *pairing = formFieldOf(info.field);
    return pairing ? findControl(pairing->control) : nullptr;
}

// Position of a field's control in the form's own order (its keyboard focus order).
std::size_t formPosition(const ControlFacts &facts)
{
    return static_cast<std::size_t>(&facts - formControls());
}

} // namespace

Explanation explain(std::optional<std::string_view> name)
{
    Explanation explanation;
    if (name) {
        for (const FieldInfo *info : fieldsNamed(*name))
            explainField(*info, explanation.lines);
        explanation.found = !explanation.lines.empty();
        return explanation;
    }
    explanation.found = true;
    for (const PageOfFields &page : fieldsByPage()) {
        if (!explanation.lines.empty())
            explanation.lines.emplace_back();
        explanation.lines.push_back(page.index < 0 ? std::string("== Not in the window ==")
                                                   : "== Page " + std::to_string(page.index + 1) +
                                                         ": " + std::string(page.page) + " ==");
        for (const FieldInfo *info : page.fields)
            explainField(*info, explanation.lines);
    }
    return explanation;
}

std::vector<PageOfFields> fieldsByPage()
{
    std::vector<const FieldInfo *> shown;
    PageOfFields hidden;
    for (const FieldInfo &info : fieldTable()) {
        if (controlOfField(info))
            shown.push_back(&info);
        else
            hidden.fields.push_back(&info);
    }
    std::stable_sort(shown.begin(), shown.end(), [](const FieldInfo *a, const FieldInfo *b) {
        const ControlFacts &fa = *controlOfField(*a);
        const ControlFacts &fb = *controlOfField(*b);
        if (fa.pageIndex != fb.pageIndex)
            return fa.pageIndex < fb.pageIndex;
        return formPosition(fa) < formPosition(fb);
    });
    std::vector<PageOfFields> pages;
    for (const FieldInfo *info : shown) {
        const ControlFacts &facts = *controlOfField(*info);
        if (pages.empty() || pages.back().index != facts.pageIndex)
            pages.push_back({facts.pageIndex, facts.page, {}});
        pages.back().fields.push_back(info);
    }
    pages.push_back(hidden);
    return pages;
}

namespace {

// What a control may hold, on one line.
std::string holdsText(const FieldInfo &info, const ControlFacts &facts)
{
    if (facts.className == "QCheckBox")
        return "0 " + std::string(checkText(false)) + ", 1 " + std::string(checkText(true));
    if (facts.itemCount == 0)
        return rangeText(facts);
    const Stored stored = formFieldOf(info.field)->stored;
    std::string text;
    for (int i = 0; i < facts.itemCount; ++i) {
        std::string value = itemValue(stored, facts, i);
        if (value.compare(0, 5, "code ") == 0)
            value.erase(0, 5);
        if (stored == Stored::ItemNumber)
            text += (i == 0 ? "" : ", ") + value;
        else
            text += (i == 0 ? "" : ", ") + value + " " + quoted(facts.item(i));
    }
    return text;
}

// Characters, not bytes: a caption may hold a degree sign.
std::size_t columns(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string padded(std::string text, std::size_t width)
{
    const std::size_t used = columns(text);
    if (used < width)
        text.append(width - used, ' ');
    return text;
}

} // namespace

std::vector<std::string> settingsIndex()
{
    struct Row
    {
        std::string page, caption, name, holds;
    };
    std::vector<Row> rows;
    for (const PageOfFields &page : fieldsByPage()) {
        if (page.index < 0)
            continue;
        for (const FieldInfo *info : page.fields) {
            const ControlFacts &facts = *controlOfField(*info);
            std::string_view caption = facts.caption;
            while (!caption.empty() && (caption.back() == ' ' || caption.back() == ':'))
                caption.remove_suffix(1);
            rows.push_back(
                {std::string(page.page), quoted(caption), info->name, holdsText(*info, facts)});
        }
    }
    std::size_t pageWidth = 4, captionWidth = 7, nameWidth = 4;
    for (const Row &row : rows) {
        pageWidth = std::max(pageWidth, columns(row.page));
        captionWidth = std::max(captionWidth, columns(row.caption));
        nameWidth = std::max(nameWidth, columns(row.name));
    }
    std::vector<std::string> lines;
    const auto line = [&](const Row &row) {
        lines.push_back(padded(row.page, pageWidth + 2) + padded(row.caption, captionWidth + 2) +
                        padded(row.name, nameWidth + 2) + row.holds);
    };
    line({"page", "caption", "name", "may hold (stored value and text)"});
    for (const Row &row : rows)
        line(row);
    return lines;
}

} // namespace lxconfig
