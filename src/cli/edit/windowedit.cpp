#include "windowedit.h"

#include "conversions.h"
#include "editormodel.h"
#include "fieldvalue.h"
#include "formfields.h"
#include "settingname.h"
#include "settingvalue.h"
#include "valuetext.h"

#include <map>

namespace lxconfig {

using lumarex::ConfigRecord;
using lumarex::Field;
using lumarex::FormField;
using lumarex::Stored;
using lumarex::roundtrip::ControlLock;
using lumarex::roundtrip::EditorModel;
using lumarex::roundtrip::FormRule;
using lumarex::roundtrip::RuleAct;
using lumarex::roundtrip::RuleCase;
using lumarex::roundtrip::RuleSignal;

namespace {

const FormField *pairingOfControl(std::string_view objectName)
{
    for (std::size_t i = 0; i < lumarex::formFieldCount(); ++i) {
        if (lumarex::formFields()[i].control == objectName)
            return &lumarex::formFields()[i];
    }
    return nullptr;
}

std::string fieldName(Field field)
{
    return std::string(lumarex::fieldInfo(field).name);
}

// The rule case that enables or shows what locks the control.
const RuleCase *freeingCase(const FormRule &rule, std::string_view locker)
{
    for (int c = 0; c < rule.caseCount; ++c) {
        const RuleCase &ruleCase = rule.cases[c];
        for (int a = 0; a < ruleCase.actionCount; ++a) {
            const auto &action = ruleCase.actions[a];
            if (action.target == locker &&
                (action.act == RuleAct::Enable || action.act == RuleAct::Show))
                return &ruleCase;
        }
    }
    return nullptr;
}

// The values of a case in the window's words: item texts, or on/off.
std::string caseValues(const FormRule &rule, const RuleCase &ruleCase)
{
    const FormField *source = pairingOfControl(rule.source);
    if (rule.signal == RuleSignal::StateChanged)
        return ruleCase.valueCount > 0 && ruleCase.values[0] == lumarex::roundtrip::kUnchecked
                   ? "off"
                   : "on";
    std::string words;
    for (int v = 0; v < ruleCase.valueCount; ++v) {
        words += (v == 0 ? "" : " or ") + (source ? shownValue(source->field, ruleCase.values[v])
                                                  : std::to_string(ruleCase.values[v]));
    }
    return words;
}

std::string currentValue(const EditorModel &model, const FormField &pairing)
{
    const ConfigRecord saved = model.save();
    return shownValue(pairing.field, numberOf(saved, lumarex::fieldInfo(pairing.field), 0));
}

std::string lockText(const EditorModel &model, const ControlLock &lock)
{
    std::string what = "the window locks it";
    if (const auto *container = lumarex::roundtrip::ruleContainerNamed(lock.locker))
        what += " (" + std::string(container->description) + ")";
    const FormRule *rule = lock.rule;
    if (!rule) {
        // Locked as the form starts: the rule whose other case would free it.
        for (int r = 0; r < lumarex::roundtrip::formRuleCount() && !rule; ++r) {
            const FormRule &candidate = lumarex::roundtrip::formRules()[r];
            const RuleCase *freeing = freeingCase(candidate, lock.locker);
            const FormField *source = pairingOfControl(candidate.source);
            if (freeing && source &&
                caseValues(candidate, *freeing) != currentValue(model, *source))
                rule = &candidate;
        }
    }
    const RuleCase *freeing = rule ? freeingCase(*rule, lock.locker) : nullptr;
    const FormField *source = rule ? pairingOfControl(rule->source) : nullptr;
    if (!freeing || !source)
        return "the window never enables its control; --raw writes the bytes all the same";
    const std::string name = fieldName(source->field);
    return what + " while " + name + " is " + currentValue(model, *source) + " (the " +
           std::string(rule->name) + "); set " + name + " to " + caseValues(*rule, *freeing) +
           " first";
}

void changeControl(EditorModel &model, const FormField &pairing, std::int64_t stored)
{
    const auto &facts = *lumarex::findControl(pairing.control);
    const std::string_view name = pairing.control;
    switch (pairing.stored) {
    case Stored::ItemIndex:
        model.operatorSelect(name, static_cast<int>(stored));
        return;
    case Stored::Ext0Code:
        model.operatorSelect(name, *lumarex::ext0ModeIndex(static_cast<std::uint8_t>(stored)));
        return;
    case Stored::Ext1Code:
        model.operatorSelect(name, *lumarex::ext1ModeIndex(static_cast<std::uint8_t>(stored)));
        return;
    case Stored::ItemNumber:
        for (int i = 0; i < facts.itemCount; ++i) {
            if (facts.item(i) == std::to_string(stored))
                model.operatorSelect(name, i);
        }
        return;
    case Stored::Checked:
        model.operatorCheck(name, stored != 0);
        return;
    case Stored::Value:
        model.operatorSpin(name, stored);
        return;
    case Stored::Hundredths:
        model.operatorReal(name, static_cast<double>(stored) / 100);
        return;
    case Stored::TextNumber:
        model.operatorText(name, std::to_string(stored));
        return;
    }
}

// Whether the control shows the value already, so that changing it changes nothing.
bool showsAlready(const EditorModel &model, const FormField &pairing, std::int64_t stored)
{
    EditorModel changed = model;
    changeControl(changed, pairing, stored);
    const auto &now = model.control(pairing.control);
    const auto &then = changed.control(pairing.control);
    return now.index == then.index && now.checked == then.checked && now.value == then.value &&
           now.real == then.real && now.text == then.text;
}

// The rule that last set the field's control, for the report.
std::string ruleOf(const EditorModel &model, Field field)
{
    const FormField *pairing = lumarex::formFieldOf(field);
    const auto &origin = model.control(pairing->control).origin;
    return origin.rule ? std::string(origin.rule->name) : std::string("the window's rules");
}

} // namespace

Result<RuleChanges> editAsWindow(ConfigRecord &record, const std::vector<std::string> &assignments,
                                 bool force)
{
    RuleChanges ruleChanged;
    EditorModel model;
    model.restore(record);
    const ConfigRecord loaded = model.save();
    std::map<Field, std::int64_t> written; // the settings given, with the value to store
    std::map<Field, std::int64_t> forced;  // values the window cannot hold, stored as given

    for (const std::string &text : assignments) {
        const std::size_t equals = text.find('=');
        if (equals == std::string::npos || equals == 0 || text.find('\n') != std::string::npos) {
            return Failure{{}, text + ": expected SETTING=VALUE"};
        }
        const std::string key = text.substr(0, equals);
        const std::string valueText = text.substr(equals + 1);
        if (key.back() == ']' && key.find('[') != std::string::npos) {
            return Failure{{},
                           key + ": the window sets every element at once; give " +
                               key.substr(0, key.find('[')) +
                               "=VALUE, or --raw to write one element"};
        }
        const NamedField named = fieldNamed(key);
        if (!named.field) {
            return Failure{{}, key + ": " + named.problem};
        }
        const Field field = *named.field;
        const FormField *pairing = lumarex::formFieldOf(field);
        if (field == Field::crc) {
            return Failure{{}, key + ": the checksum is computed, not set"};
        }
        if (!pairing) {
            return Failure{{},
                           key + ": no control of the window sets " + fieldName(field) +
                               "; --raw writes its bytes"};
        }
        const SettingValue value = settingValue(*pairing, valueText);
        if (!value.stored || (!value.holdable && !force)) {
            return Failure{{},
                           key + ": " + value.problem +
                               (value.stored ? "; --force stores it all the same" : "")};
        }
        const ConfigRecord before = model.save();
        if (value.holdable && showsAlready(model, *pairing, *value.stored) &&
            !forced.count(field)) {
            written[field] = *value.stored;
            ruleChanged.erase(field);
            continue; // the window shows it already: changing nothing is no error
        }
        if (const std::optional<ControlLock> lock = model.lockOf(pairing->control)) {
            return Failure{{}, fieldName(field) + ": " + lockText(model, *lock)};
        }
        forced.erase(field);
        ruleChanged.erase(field);
        if (!value.holdable) {
            forced[field] = *value.stored;
            continue;
        }
        changeControl(model, *pairing, *value.stored);
        written[field] = *value.stored;
        const ConfigRecord after = model.save();
        for (const lumarex::FieldInfo &other : lumarex::fieldTable()) {
            if (other.field == field || !lumarex::formFieldOf(other.field))
                continue;
            const std::int64_t old = numberOf(before, other, 0);
            const std::int64_t now = numberOf(after, other, 0);
            if (old != now)
                ruleChanged[other.field] = ruleOf(model, other.field);
        }
    }

    const ConfigRecord saved = model.save();
    for (const lumarex::FieldInfo &info : lumarex::fieldTable()) {
        if (!lumarex::formFieldOf(info.field))
            continue;
        const bool changed =
            written.count(info.field) > 0 || numberOf(saved, info, 0) != numberOf(loaded, info, 0);
        if (changed)
            setAllElements(record, info, numberOf(saved, info, 0));
    }
    for (const auto &[field, stored] : forced) {
        setAllElements(record, lumarex::fieldInfo(field), stored);
        ruleChanged.erase(field);
    }
    return ruleChanged;
}

} // namespace lxconfig
