#include "dialoganswers.h"

#include <QDialog>
#include <QPushButton>
#include <QTest>

namespace {

void dismiss(QWidget *dialog)
{
    if (auto *modal = qobject_cast<QDialog *>(dialog))
        modal->reject();
}

} // namespace

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
