#pragma once

// What the round-trip model needs to know about the editor's form: each input control's class,
// page, caption, items, start state and range (generated from src/form/mainwindow.ui); which
// control feeds which field and how; and which files the editor refuses. The model reads these
// facts only through this header, from the format library's one source of each.

#include "configrecord.h"
#include "editorverdict.h"
#include "formcontrols.h"
#include "formfields.h"

namespace lumarex::roundtrip {

using lumarex::ControlFacts;
using lumarex::editorVerdict;
using lumarex::findControl;
using lumarex::formControlCount;
using lumarex::formControls;
using lumarex::FormField;
using lumarex::formFieldOf;
using lumarex::ItemTexts;
using lumarex::Stored;
using lumarex::Verdict;

} // namespace lumarex::roundtrip
