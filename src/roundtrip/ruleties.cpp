#include "ruleties.h"

#include "formfields.h"
#include "formrulemodel.h"

#include <algorithm>
#include <optional>

namespace lumarex::roundtrip {

namespace {

std::optional<Field> fieldOfControl(std::string_view objectName)
{
    for (std::size_t i = 0; i < formFieldCount(); ++i) {
        if (formFields()[i].control == objectName)
            return formFields()[i].field;
    }
    return std::nullopt;
}

bool inside(const RuleContainer &container, const FormField &field)
{
    const ControlFacts *control = controlOf(field.field);
    if (!container.page.empty())
        return control && control->page == container.page;
    return std::find(container.members, container.members + container.memberCount, field.control) !=
           container.members + container.memberCount;
}

// The fields one action of a rule reaches: a box it presets, or every box of what it locks.
void addReached(const RuleAction &action, std::vector<Field> &reached)
{
    if (const RuleContainer *container = ruleContainerNamed(action.target)) {
        for (std::size_t i = 0; i < formFieldCount(); ++i) {
            if (inside(*container, formFields()[i]))
                reached.push_back(formFields()[i].field);
        }
    } else if (const std::optional<Field> field = fieldOfControl(action.target)) {
        reached.push_back(*field);
    }
}

std::vector<RuleTie> tiesOfTheRules()
{
    std::vector<RuleTie> ties;
    for (int r = 0; r < formRuleCount(); ++r) {
        const FormRule &rule = formRules()[r];
        const std::optional<Field> source = fieldOfControl(rule.source);
        if (!source)
            continue;
        std::vector<Field> tied;
        for (int c = 0; c < rule.caseCount; ++c) {
            for (int a = 0; a < rule.cases[c].actionCount; ++a)
                addReached(rule.cases[c].actions[a], tied);
        }
        std::sort(tied.begin(), tied.end());
        tied.erase(std::unique(tied.begin(), tied.end()), tied.end());
        tied.erase(std::remove(tied.begin(), tied.end(), *source), tied.end());
        ties.push_back({rule.name, *source, tied});
    }
    return ties;
}

} // namespace

const std::vector<RuleTie> &ruleTies()
{
    static const std::vector<RuleTie> ties = tiesOfTheRules();
    return ties;
}

} // namespace lumarex::roundtrip
