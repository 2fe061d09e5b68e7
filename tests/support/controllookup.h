#pragma once

// Finding a control of the window by its object name. A name the form lacks stops the test
// with a message, so that a renamed control fails loudly instead of crashing on a null pointer.

#include <QWidget>

template <typename Control> Control &controlNamed(QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    if (found == nullptr)
        qFatal("The form has no %s named %s", Control::staticMetaObject.className(),
               qPrintable(name));
    return *found;
}

template <typename Control> const Control &controlNamed(const QWidget &window, const QString &name)
{
    return controlNamed<Control>(const_cast<QWidget &>(window), name);
}
