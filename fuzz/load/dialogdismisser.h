#pragma once

// Answers every modal dialog the moment it is shown, as a user pressing Escape would, so that
// the version dialog of a refused file returns at once instead of waiting for a person.

#include <QObject>

class DialogDismisser : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
