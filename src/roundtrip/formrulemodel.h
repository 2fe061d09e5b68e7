#pragma once

// The editor's form rules as data: which control's signal runs each rule, how often, and what it
// does for each value of that signal, step by step. The round-trip model runs these steps and
// `lxconfig explain` describes them, so the rules are written down once, here. They mirror the
// rule slots of the window (src/form/formrules.cpp), which cannot run from this table without
// changing the window's code path (its slots are connected by name, some twice on purpose); the
// differential test holds the two equal. The values the rules preset are shared with the
// window (rulepresets.h).

#include "formcontrols.h"

#include <string_view>

namespace lumarex::roundtrip {

enum class RuleAct
{
    Enable,
    Disable,
    Show,
    Hide,
    Select, // setCurrentIndex(value)
    Check,  // setChecked(value != 0)
};

struct RuleAction
{
    RuleAct act;
    std::string_view target; // object name of a control, a page or a group box
    int value;
};

// Check states as the stateChanged signal carries them.
inline constexpr int kUnchecked = 0;
inline constexpr int kChecked = 2;

struct RuleCase
{
    int values[2];         // the signal values this case answers
    int valueCount;        // 0: every value no earlier case answers
    std::string_view when; // those values in words, e.g. "checked"
    // When this check box is checked the case stops before its actions.
    std::string_view unlessChecked;
    const RuleAction *actions;
    int actionCount;
};

enum class RuleSignal
{
    IndexChanged, // a combo box's currentIndexChanged(int), new index or -1
    StateChanged, // a check box's stateChanged(int), 0 or 2
};

struct FormRule
{
    std::string_view name;   // e.g. "gimbal remote-control rule"
    std::string_view source; // the control whose signal runs the rule
    RuleSignal signal;
    int runsPerChange; // the gimbal slot is connected twice and runs twice
    const RuleCase *cases;
    int caseCount;

    // The case for a signal value, or nullptr when no case answers it (nothing happens).
    const RuleCase *caseFor(int value) const;
};

const FormRule *formRules();
int formRuleCount();

// Form containers the rules lock or show, and the page or group they are.
struct RuleContainer
{
    std::string_view objectName;
    std::string_view description; // e.g. "page SBUS/PPM"
    // A control is inside when it is on this page, or named here for a group box.
    std::string_view page;
    const std::string_view *members;
    int memberCount;
    bool hiddenAtStart; // the window hides it when it is built

    bool holds(const ControlFacts &control) const;
};

// Every container, in the form's order, for a range-for.
struct RuleContainerList
{
    const RuleContainer *first;
    const RuleContainer *last;
    const RuleContainer *begin() const { return first; }
    const RuleContainer *end() const { return last; }
};

RuleContainerList allRuleContainers();
const RuleContainer *ruleContainerNamed(std::string_view objectName);

} // namespace lumarex::roundtrip
