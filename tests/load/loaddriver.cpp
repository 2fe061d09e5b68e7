#include "loaddriver.h"

#include "consolecapture.h"

#include <QDir>
#include <QPushButton>
#include <QTest>

namespace {

int openDescriptorCount()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

LoadRun pressReadFromFile(QWidget &window, const ModalAnswerer::Handler &openDialog,
                          const ModalAnswerer::Handler &versionBox)
{
    LoadRun run;
    ModalAnswerer answerer;
    answerer.expect([&run, openDialog](QWidget *dialog) {
        run.openDialogTitle = dialog->windowTitle();
        run.openDialogParent = dialog->parentWidget();
        openDialog(dialog);
    });
    // A version box that the test does not expect is closed rather than waited on, and shows
    // in the count of dialogs answered.
    answerer.expect(versionBox ? versionBox : ModalAnswerer::cancel());

    const int descriptorsBefore = openDescriptorCount();
    {
        ConsoleCapture console;
        QTest::mouseClick(window.findChild<QPushButton *>(QStringLiteral("btnReadConf")),
                          Qt::LeftButton);
        run.out = console.out();
        run.err = console.err();
        run.all = console.all();
        run.unterminated = console.unterminated();
    }
    run.descriptorsLeftOpen = openDescriptorCount() - descriptorsBefore;
    run.dialogsAnswered = answerer.answered();
    return run;
}
