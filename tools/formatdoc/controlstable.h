#pragma once

// CONTROLS: the editor's side of every field the form feeds, rendered from the table generated
// from the Designer form, so that a changed item text or start value reaches the reference.

#include <string>

namespace formatdoc {

// One row per field with a control: page, caption, control, the values it saves, start state.
std::string controlsTable();

} // namespace formatdoc
