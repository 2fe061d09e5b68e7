#include "editormodel.h"

#include "controltext.h"
#include "conversions.h"
#include "formfields.h"
#include "storednumber.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace lumarex::roundtrip {

namespace {

std::string decimalText(std::uint32_t number)
{
    return std::to_string(number);
}

int spinLimit(double limit)
{
    return static_cast<int>(limit);
}

} // namespace

EditorModel::EditorModel()
    : m_outcomes(static_cast<std::size_t>(restoreStepCount()), StepOutcome::NotRun)
{
    m_controls.reserve(formControlCount());
    for (std::size_t i = 0; i < formControlCount(); ++i) {
        const ControlFacts &facts = formControls()[i];
        ControlValue control;
        control.facts = &facts;
        control.index = facts.startIndex;
        control.checked = facts.startChecked;
        control.value = static_cast<int>(facts.startValue);
        control.real = facts.startValue;
        control.text = std::string(facts.startText);
        m_controls.push_back(std::move(control));
        m_switches[facts.objectName].enabled = facts.ownEnabled;
    }
    // A page or group starts as the form has it: disabled when a control enabled of its own is
    // not enabled at start-up.
    for (const RuleContainer &container : allRuleContainers()) {
        Switch &state = m_switches[container.objectName];
        state.shown = !container.hiddenAtStart;
        for (std::size_t i = 0; i < formControlCount(); ++i) {
            const ControlFacts &facts = formControls()[i];
            if (container.holds(facts) && facts.ownEnabled) {
                state.enabled = facts.enabledAtStart;
                break;
            }
        }
    }
}

std::optional<ControlLock> EditorModel::lockOf(std::string_view objectName) const
{
    const ControlFacts &facts = *control(objectName).facts;
    const Switch &own = m_switches.at(objectName);
    if (!own.enabled)
        return ControlLock{objectName, own.by};
    for (const RuleContainer &container : allRuleContainers()) {
        const Switch &state = m_switches.at(container.objectName);
        if (container.holds(facts) && (!state.enabled || !state.shown))
            return ControlLock{container.objectName, state.by};
    }
    return std::nullopt;
}

void EditorModel::operatorSelect(std::string_view objectName, int index)
{
    selectIndex(at(objectName), index, Origin{Origin::Kind::Operator, 0, nullptr});
}

void EditorModel::operatorCheck(std::string_view objectName, bool checked)
{
    setChecked(at(objectName), checked, Origin{Origin::Kind::Operator, 0, nullptr});
}

void EditorModel::operatorSpin(std::string_view objectName, long long value)
{
    setSpinValue(at(objectName), value, Origin{Origin::Kind::Operator, 0, nullptr});
}

void EditorModel::operatorReal(std::string_view objectName, double value)
{
    setRealValue(at(objectName), value, Origin{Origin::Kind::Operator, 0, nullptr});
}

void EditorModel::operatorText(std::string_view objectName, std::string text)
{
    ControlValue &target = at(objectName);
    target.text = std::move(text);
    target.origin = Origin{Origin::Kind::Operator, 0, nullptr};
}

const ControlValue &EditorModel::control(std::string_view objectName) const
{
    // Every restore step and rule action names its control; a map built once keeps the model
    // from searching the form for each of them.
    static const std::unordered_map<std::string_view, std::size_t> positions = [] {
        std::unordered_map<std::string_view, std::size_t> made;
        for (std::size_t i = 0; i < formControlCount(); ++i)
            made.emplace(formControls()[i].objectName, i);
        return made;
    }();
    const auto found = positions.find(objectName);
    if (found == positions.end())
        throw std::out_of_range("no control " + std::string(objectName) + " in the form");
    return m_controls[found->second];
}

ControlValue &EditorModel::at(std::string_view objectName)
{
    return const_cast<ControlValue &>(std::as_const(*this).control(objectName));
}

double EditorModel::roundToDecimals(double value, int decimals)
{
    // The box keeps what it shows: the value rounded to its decimals as its text has it.
    const std::string text = lumarex::decimalText(value, decimals);
    double rounded = 0;
    return std::from_chars(text.data(), text.data() + text.size(), rounded).ec == std::errc()
               ? rounded
               : value;
}

void EditorModel::selectIndex(ControlValue &control, int index, const Origin &origin)
{
    // An index outside the list leaves the box without a current item.
    const int current = index >= 0 && index < control.facts->itemCount ? index : -1;
    control.origin = origin;
    if (current == control.index)
        return;
    control.index = current;
    emitChange(control, current);
}

bool EditorModel::selectText(ControlValue &control, std::string_view text, const Origin &origin)
{
    // A text no item has leaves the selection as it is.
    const ItemTexts items = control.facts->items();
    const auto found = std::find(items.begin(), items.end(), text);
    if (found == items.end())
        return false;
    selectIndex(control, static_cast<int>(found - items.begin()), origin);
    return true;
}

void EditorModel::setChecked(ControlValue &control, bool checked, const Origin &origin)
{
    control.origin = origin;
    if (checked == control.checked)
        return;
    control.checked = checked;
    emitChange(control, checked ? kChecked : kUnchecked);
}

void EditorModel::setSpinValue(ControlValue &control, long long value, const Origin &origin)
{
    control.origin = origin;
    control.value = static_cast<int>(std::clamp<long long>(value, spinLimit(control.facts->minimum),
                                                           spinLimit(control.facts->maximum)));
}

void EditorModel::setRealValue(ControlValue &control, double value, const Origin &origin)
{
    // Rounded to the box's decimals first, then bound to its range (itself rounded).
    const int decimals = control.facts->decimals;
    control.origin = origin;
    control.real = std::clamp(roundToDecimals(value, decimals),
                              roundToDecimals(control.facts->minimum, decimals),
                              roundToDecimals(control.facts->maximum, decimals));
}

void EditorModel::emitChange(const ControlValue &control, int signalValue)
{
    const std::string_view source = control.facts->objectName;
    for (int i = 0; i < formRuleCount(); ++i) {
        const FormRule &rule = formRules()[i];
        if (rule.source != source)
            continue;
        for (int run = 0; run < rule.runsPerChange; ++run)
            runRule(rule, signalValue);
    }
}

void EditorModel::runRule(const FormRule &rule, int signalValue)
{
    const RuleCase *ruleCase = rule.caseFor(signalValue);
    if (!ruleCase)
        return;
    if (!ruleCase->unlessChecked.empty() && control(ruleCase->unlessChecked).checked)
        return;
    const Origin origin{Origin::Kind::Rule, 0, &rule};
    for (int i = 0; i < ruleCase->actionCount; ++i) {
        const RuleAction &action = ruleCase->actions[i];
        switch (action.act) {
        case RuleAct::Select:
            selectIndex(at(action.target), action.value, origin);
            break;
        case RuleAct::Check:
            setChecked(at(action.target), action.value != 0, origin);
            break;
        case RuleAct::Enable:
        case RuleAct::Disable:
        case RuleAct::Show:
        case RuleAct::Hide: {
            Switch &state = m_switches[action.target];
            if (action.act == RuleAct::Enable || action.act == RuleAct::Disable)
                state.enabled = action.act == RuleAct::Enable;
            else
                state.shown = action.act == RuleAct::Show;
            state.by = &rule;
            break;
        }
        }
    }
}

StepOutcome EditorModel::runStep(int step, const RestoreStep &restoreStep,
                                 const ConfigRecord &record)
{
    ControlValue &target = at(restoreStep.control);
    const Origin origin{Origin::Kind::Restore, step, nullptr};
    const Field field = restoreStep.field;
    switch (restoreStep.how) {
    case Restore::Check:
        setChecked(target, record.value(field) != 0, origin);
        return StepOutcome::Set;
    case Restore::Index:
        selectIndex(target, static_cast<int>(record.value(field)), origin);
        return StepOutcome::Set;
    case Restore::Value:
        setSpinValue(target, record.signedValue(field), origin);
        return StepOutcome::Set;
    case Restore::UnsignedValue:
        setSpinValue(target, record.value(field), origin);
        return StepOutcome::Set;
    case Restore::Hundredths:
        setRealValue(target, esoOffsetFromField(record.value(field)), origin);
        return StepOutcome::Set;
    case Restore::NumberText:
        return selectText(target, decimalText(record.value(field)), origin) ? StepOutcome::Set
                                                                            : StepOutcome::NoMatch;
    case Restore::LineText:
        target.text = decimalText(record.value(field));
        target.origin = origin;
        return StepOutcome::Set;
    case Restore::Ext0Code:
    case Restore::Ext1Code: {
        const auto code = static_cast<std::uint8_t>(record.value(field));
        const std::optional<int> index =
            restoreStep.how == Restore::Ext0Code ? ext0ModeIndex(code) : ext1ModeIndex(code);
        if (!index)
            return StepOutcome::NoMatch;
        selectIndex(target, *index, origin);
        return StepOutcome::Set;
    }
    case Restore::TriggerSlot: {
        const auto slot = static_cast<int>(record.value(Field::sbusTrigger));
        if (slot >= kTriggerSlots)
            return StepOutcome::Skipped;
        setSpinValue(target, record.value(field, slot), origin);
        return StepOutcome::Set;
    }
    }
    return StepOutcome::NotRun;
}

void EditorModel::restore(const ConfigRecord &record)
{
    for (int i = 0; i < restoreStepCount(); ++i)
        m_outcomes[static_cast<std::size_t>(i)] = runStep(i + 1, restoreSteps()[i], record);
}

ConfigRecord EditorModel::save() const
{
    // The save command starts from a cleared record, so a byte no control feeds (spare157, and
    // a mode byte whose box has no code) is saved as 0.
    ConfigRecord record;
    for (const FieldInfo &info : fieldTable()) {
        const FormField *pairing = formFieldOf(info.field);
        if (!pairing)
            continue;
        const ControlValue &source = control(pairing->control);
        ControlState state;
        state.index = source.index;
        state.itemText = source.facts->item(source.index);
        state.text = source.text;
        state.checked = source.checked;
        state.value = source.value;
        state.real = source.real;
        const std::optional<std::uint32_t> stored = storedNumber(pairing->stored, state);
        for (int element = 0; stored && element < info.elementCount(); ++element)
            record.setValue(info.field, *stored, element);
    }
    record.seal();
    return record;
}

} // namespace lumarex::roundtrip
