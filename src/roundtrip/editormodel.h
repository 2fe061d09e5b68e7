#pragma once

// A GUI-free model of the editor's form: every input control's value, set the way the toolkit
// sets it (a combo box index past its list leaves no current item, a spin box clamps to its
// range, a double spin box also rounds to its decimals, a signal fires only when the value
// really changes) and with the form rules run, nested, on every change. It starts as a freshly
// started window, can replay "Read from file" and gives the record "Write to file" would save.
// Enabled and shown states never reach the file; the model keeps them to say which controls an
// operator can change at the moment.

#include "configrecord.h"
#include "formcontrols.h"
#include "formrulemodel.h"
#include "restoreorder.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lumarex::roundtrip {

// Who gave a control its current value.
struct Origin
{
    enum class Kind
    {
        Start,    // the freshly started window
        Restore,  // a step of "Read from file"
        Rule,     // a form rule
        Operator, // the operator's own change
    };
    Kind kind = Kind::Start;
    int step = 0; // the restore step, from 1
    const FormRule *rule = nullptr;
};

// What a restore step did with its control.
enum class StepOutcome
{
    NotRun,
    Set,     // the control was set (its value may still be clamped or have no item)
    NoMatch, // no item has the stored text or mode code: the box was left as it was
    Skipped, // the stored trigger channel is past the stored slots: the box was left
};

struct ControlValue
{
    const ControlFacts *facts = nullptr;
    int index = -1; // combo box
    bool checked = false;
    int value = 0;    // spin box
    double real = 0;  // double spin box
    std::string text; // line edit
    Origin origin;
};

// Why the operator cannot change a control now: the control, page or group the window has
// disabled or hidden, and the rule that did so last (none: the form starts so).
struct ControlLock
{
    std::string_view locker;
    const FormRule *rule = nullptr;
};

class EditorModel
{
public:
    EditorModel(); // a freshly started window

    // "Read from file" of a record the editor accepts (the checks are the caller's).
    void restore(const ConfigRecord &record);
    // What "Write to file" saves from the form as it stands.
    ConfigRecord save() const;

    const ControlValue &control(std::string_view objectName) const;
    StepOutcome outcome(int step) const { return m_outcomes[static_cast<std::size_t>(step - 1)]; }

    // The toolkit's rounding of a double spin box: to the given decimals through decimal text.
    static double roundToDecimals(double value, int decimals);

    // Nothing when the operator can change the control: it and every page and group around it
    // enabled and shown.
    std::optional<ControlLock> lockOf(std::string_view objectName) const;
    // The operator's changes of a control, as the toolkit makes them; the rules run as in the
    // window. The value must be one the control holds.
    void operatorSelect(std::string_view objectName, int index);
    void operatorCheck(std::string_view objectName, bool checked);
    void operatorSpin(std::string_view objectName, long long value);
    void operatorReal(std::string_view objectName, double value);
    void operatorText(std::string_view objectName, std::string text);

private:
    struct Switch
    {
        bool enabled = true;
        bool shown = true;
        const FormRule *by = nullptr;
    };

    ControlValue &at(std::string_view objectName);
    void selectIndex(ControlValue &control, int index, const Origin &origin);
    void setChecked(ControlValue &control, bool checked, const Origin &origin);
    void setSpinValue(ControlValue &control, long long value, const Origin &origin);
    void setRealValue(ControlValue &control, double value, const Origin &origin);
    bool selectText(ControlValue &control, std::string_view text, const Origin &origin);
    void emitChange(const ControlValue &control, int signalValue);
    void runRule(const FormRule &rule, int signalValue);
    StepOutcome runStep(int step, const RestoreStep &restoreStep, const ConfigRecord &record);

    std::vector<ControlValue> m_controls;
    std::vector<StepOutcome> m_outcomes;
    std::unordered_map<std::string_view, Switch> m_switches; // controls, pages and groups
};

} // namespace lumarex::roundtrip
