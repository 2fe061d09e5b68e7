#pragma once

// A valid configuration file that differs from the start form in four settings that no form rule
// watches, so that loading it changes exactly those four controls.

#include <QByteArray>

class MainWindow;

// The start form's record with the four settings, sealed. Prints the save's console lines.
QByteArray storedSettingsFile(MainWindow &startForm);
// Sets the four controls by hand, as loading the file must.
void showStoredSettings(MainWindow &window);
