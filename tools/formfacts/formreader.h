#pragma once

// Finds the form's input controls and what the window shows in them right after start-up,
// applying the form's properties the way the generated setup code and the toolkit do.

#include "uitree.h"

#include <QStringList>
#include <vector>

namespace formfacts {

struct Control
{
    QString objectName;
    QString className;
    QString page;
    int pageIndex = -1;
    QString caption;
    QStringList items;
    int startIndex = -1;
    bool startChecked = false;
    double startValue = 0;
    QString startText;
    double minimum = 0;
    double maximum = 0;
    int decimals = 0;
    bool ownEnabled = true;     // the control's own enabled property
    bool enabledAtStart = true; // it and every widget around it enabled
};

// Every combo box, spin box, check box and line edit on the pages of the form's tab widget, in
// document order; empty with a reason in error when the form has no tab widget.
std::vector<Control> readControls(const UiElement &form, QString &error);

} // namespace formfacts
