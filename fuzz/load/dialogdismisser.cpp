#include "dialogdismisser.h"

#include <QDialog>
#include <QEvent>

bool DialogDismisser::eventFilter(QObject *watched, QEvent *event)
{
    // Queued, so that the rejection arrives inside the dialog's own event loop, which exec()
    // enters right after showing it.
    if (event->type() == QEvent::Show) {
        auto *dialog = qobject_cast<QDialog *>(watched);
        if (dialog != nullptr && dialog->isModal())
            QMetaObject::invokeMethod(dialog, &QDialog::reject, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
