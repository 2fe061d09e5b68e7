#include "dialoganswers.h"

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

// The name field of the widget file dialog. Its text is set directly, as typing would: selectFile()
// leaves the field alone while it has the keyboard focus, so what it chooses would depend on
// whether the dialog had given the field its focus yet.
QLineEdit *nameField(QWidget *dialog)
{
    return qobject_cast<QFileDialog *>(dialog) != nullptr
               ? dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
               : nullptr;
}

void dismiss(QWidget *dialog)
{
    if (auto *modal = qobject_cast<QDialog *>(dialog))
        modal->reject();
}

} // namespace

ModalAnswerer::Handler openFile(const QString &path)
{
    return [path](QWidget *dialog) {
        QLineEdit *field = nameField(dialog);
        if (field == nullptr)
            return dismiss(dialog);
        field->setText(path);
        // QFileDialog::accept() is protected; through QDialog it is what the Open button does.
        static_cast<QDialog *>(dialog)->accept();
    };
}

ModalAnswerer::Handler returnPath(const QString &path)
{
    return [path](QWidget *dialog) {
        QLineEdit *field = nameField(dialog);
        if (field == nullptr)
            return dismiss(dialog);
        field->setText(path);
        static_cast<QDialog *>(dialog)->done(QDialog::Accepted);
    };
}

ModalAnswerer::Handler answerVersionBox(BoxAnswer answer, VersionBox *seen)
{
    return [answer, seen](QWidget *dialog) {
        auto *box = qobject_cast<QMessageBox *>(dialog);
        seen->isMessageBox = box != nullptr;
        if (box == nullptr)
            return dismiss(dialog);
        seen->title = box->windowTitle();
        seen->text = box->text();
        seen->icon = box->icon();
        seen->buttons = box->standardButtons();
        seen->defaultButton = box->standardButton(box->defaultButton());
        seen->parent = box->parentWidget();
        seen->flags = box->windowFlags();
        QAbstractButton *ok = box->button(QMessageBox::Ok);
        if (answer == BoxAnswer::ClickOk && ok != nullptr)
            QTest::mouseClick(ok, Qt::LeftButton);
        else
            box->reject();
    };
}
