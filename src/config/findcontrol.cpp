// The lookup over the generated table of formcontrols.h, which holds data only.

#include "formcontrols.h"

#include <algorithm>

namespace lumarex {

const ControlFacts *findControl(std::string_view objectName)
{
    const ControlFacts *end = formControls() + formControlCount();
    const ControlFacts *found =
        std::find_if(formControls(), end, [objectName](const ControlFacts &control) {
            return control.objectName == objectName;
        });
    return found == end ? nullptr : found;
}

} // namespace lumarex
