#pragma once

// How the user answers the two dialogs of "Read from file": the open dialog and the version
// box. Each handler closes its dialog whatever it finds, so a wrong dialog cannot leave the test
// waiting in a nested event loop.

#include "modalanswerer.h"

#include <QMessageBox>
#include <QString>

// Types path into the open dialog's name field and presses Open, which checks the choice.
ModalAnswerer::Handler openFile(const QString &path);

// Makes the open dialog return path as it stands. The widget dialog's own Open button steps into
// a folder instead of returning it and refuses a path that does not exist, so the dialog is
// ended with done(Accepted): getOpenFileName then returns the name field's text, and the load
// command receives it like any chosen file.
ModalAnswerer::Handler returnPath(const QString &path);

// What the version box showed while it was open.
struct VersionBox
{
    bool isMessageBox = false;
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    const QWidget *parent = nullptr;
    Qt::WindowFlags flags;
};

enum class BoxAnswer
{
    ClickOk,
    Reject // as the window manager's close button or Escape would
};

ModalAnswerer::Handler answerVersionBox(BoxAnswer answer, VersionBox *seen);
