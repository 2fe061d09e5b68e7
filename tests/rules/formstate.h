#pragma once

// Describes controls of the form in one line each, so that a test can hold a set of controls
// against states written out by hand, and a failure names the control that differs.

#include <QStringList>

class QWidget;

// One line "<object name>: <state>" per line of `expected`, for the control that the expected
// line names before its ": ".
//
// The state of a combo box reads `<index> ` (which text an index shows is tst_pages' subject),
// of a check box `checked `,
// `unchecked ` or `partially checked `; then every control's own enabled flag, `enabled` or
// `disabled` (a control on a disabled page keeps its own flag), and ` hidden` when the control
// itself was hidden (not told of tab pages, which only the current tab shows).
QStringList statesLike(const QWidget &window, const QStringList &expected);

int currentIndexOf(const QWidget &window, const QString &comboBox);
