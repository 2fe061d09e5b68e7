#pragma once

// How the user answers the version box of "Read from file" (the open dialog is answered with
// ModalAnswerer::chooseFile and returnPath). The handler closes the box whatever it finds, so a
// wrong dialog cannot leave the test waiting in a nested event loop.

#include "modalanswerer.h"

#include <QMessageBox>
#include <QString>

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
