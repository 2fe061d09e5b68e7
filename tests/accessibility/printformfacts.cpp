// Prints the form's facts (lumarex::formControls(), generated from the Designer form) as JSON,
// for the screen-reader tests written in Python: what each control is called, which page holds
// it and what it shows at start-up. One source for those facts; the tests write none of them.

#include "formcontrols.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

int main()
{
    nlohmann::json controls = nlohmann::json::array();
    const lumarex::ControlFacts *facts = lumarex::formControls();
    for (std::size_t i = 0; i < lumarex::formControlCount(); ++i) {
        const lumarex::ControlFacts &control = facts[i];
        nlohmann::json items = nlohmann::json::array();
        for (std::string_view item : control.items())
            items.push_back(std::string(item));
        controls.push_back({{"objectName", std::string(control.objectName)},
                            {"className", std::string(control.className)},
                            {"page", std::string(control.page)},
                            {"pageIndex", control.pageIndex},
                            {"caption", std::string(control.caption)},
                            {"items", items},
                            {"startIndex", control.startIndex},
                            {"startChecked", control.startChecked},
                            {"startValue", control.startValue},
                            {"startText", std::string(control.startText)},
                            {"decimals", control.decimals}});
    }
    std::cout << controls.dump(1) << '\n';
    return 0;
}
