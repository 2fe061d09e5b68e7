#pragma once

// The real editor's round trip: a freshly started window loads a record and saves it at once.

#include "configrecord.h"
#include "mainwindow.h"

#include <QString>
#include <functional>
#include <vector>

struct EditorResave
{
    MainWindow::LoadOutcome outcome = MainWindow::LoadOutcome::Restored;
    lumarex::RecordBytes bytes{}; // what "Write to file" made of the loaded form
};

// Through the window's load and save members, with the console lines discarded: fast enough for
// thousands of records. Only for records with the right magic and version: the version box
// would wait for an answer.
EditorResave resaveInFreshWindow(const lumarex::RecordBytes &record);
// The same with several records loaded one after the other into one window before the save; the
// outcome is the last load's. The later loads start from a form the earlier ones changed, so the
// rules also run from checked to unchecked and between receivers.
EditorResave resaveAfterLoads(const std::vector<lumarex::RecordBytes> &records);

// An operator's session: the record loaded into a freshly started window, then edit run on the
// window (with the console lines discarded), then the form saved. Only for accepted records.
EditorResave loadEditSave(const lumarex::RecordBytes &record,
                          const std::function<void(MainWindow &)> &edit);

// As a user does it: the record in a file, "Read from file" and "Write to file" pressed with
// their dialogs answered, the saved file read back. An empty result means a step failed.
QByteArray resaveThroughFiles(const QByteArray &file, const QString &folder);

// "<field> (offset N[, element k]): editor X, model Y" for every field where the two differ.
QStringList differingFields(const lumarex::RecordBytes &editor, const lumarex::RecordBytes &model);
