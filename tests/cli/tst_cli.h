#pragma once

// lxconfig, run as a separate process on files in a temporary folder; and its tables held
// against the editor's own form. The slots are defined in one file per command.

#include <QObject>

class TestCli : public QObject
{
    Q_OBJECT

private slots:
    // tst_cli.cpp
    void commandLine_data();
    void commandLine();
    void helpOfCommandWithoutPage();

    // checktests.cpp
    void check_data();
    void check();
    void checkSeveralFiles();
    void warningNextToItsFile();
    void checkQuiet_data();
    void checkQuiet();

    // showtests.cpp
    void show_data();
    void show();
    void showItemTexts_data();
    void showItemTexts();

    // exporttests.cpp
    void exportFile_data();
    void exportFile();
    void exportToFile();
    void exportBeyondJsonNumber();

    // importtests.cpp
    void importDefaults();
    void importRejects_data();
    void importRejects();
    void importReplacesChecksum();
    void roundTrip_data();
    void roundTrip();

    // settests.cpp
    void set_data();
    void set();
    void setQuiet();
    void setNothingChanged();
    void setRejects_data();
    void setRejects();

    // difftests.cpp
    void diff_data();
    void diff();

    // failuretests.cpp
    void failedCommandKeepsOutput_data();
    void failedCommandKeepsOutput();
    void defaultsReplacesLongerFile();

    // editortests.cpp
    void itemTextsMatchForm_data();
    void itemTextsMatchForm();
    void itemListsCoverForm();
    void itemListsMatchSavedFields_data();
    void itemListsMatchSavedFields();
    void defaultsCommandMatchesEditor();
};
