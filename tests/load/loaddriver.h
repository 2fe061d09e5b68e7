#pragma once

// Presses "Read from file" as a user does, with the dialogs answered in turn, and records what
// the load printed and how many file descriptors it left open.

#include "modalanswerer.h"

#include <QString>
#include <QStringList>

class QWidget;

struct LoadRun
{
    QStringList out;
    QStringList err;
    QStringList all; // both streams in order, standard error lines marked "ERR: "
    QString unterminated;
    QString openDialogTitle;
    const QWidget *openDialogParent = nullptr;
    int descriptorsLeftOpen = 0;
    int dialogsAnswered = 0;
};

// versionBox is left empty where the load must not show the version box.
LoadRun pressReadFromFile(QWidget &window, const ModalAnswerer::Handler &openDialog,
                          const ModalAnswerer::Handler &versionBox = {});
