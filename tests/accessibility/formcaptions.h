#pragma once

// The captions of the Designer form as the form file states them: every label that names a
// buddy, with its text and the buddy's object name and class. Read from the form itself so that
// the accessibility tests check what the form really says.

#include <QString>
#include <QVector>

struct FormCaption
{
    QString label;
    QString text;
    QString control;
    QString controlClass;
};

// Empty when the file cannot be read; *error then says why.
QVector<FormCaption> readFormCaptions(const QString &formPath, QString *error);
