#include "modalanswerer.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

namespace {
// Polls happen every few milliseconds while a dialog is awaited; after this many the answerer
// gives up, so that a dialog that never opens fails the test instead of hanging it.
constexpr int kMaxPolls = 2000;
constexpr int kPollIntervalMs = 5;

// Puts path into the name field of a widget file dialog, as typing would; selectFile() leaves the
// field alone while it has the keyboard focus, so what it chooses would depend on timing.
// Anything but a file dialog is dismissed, so a wrong dialog cannot leave a test waiting.
QDialog *fileDialogWithName(QWidget *dialog, const QString &path)
{
    auto *fileDialog = qobject_cast<QFileDialog *>(dialog);
    auto *nameField = fileDialog != nullptr
                          ? fileDialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                          : nullptr;
    if (nameField == nullptr) {
        if (auto *modal = qobject_cast<QDialog *>(dialog))
            modal->reject();
        return nullptr;
    }
    nameField->setText(path);
    return fileDialog;
}

} // namespace

ModalAnswerer::ModalAnswerer() = default;

void ModalAnswerer::expect(Handler handler)
{
    m_pending.push_back(std::move(handler));
    m_pollsLeft = kMaxPolls;
    schedulePoll();
}

void ModalAnswerer::schedulePoll()
{
    // A fresh single-shot timer for every poll: a repeating timer is not delivered again while
    // its own handler runs, and a handler may open the next dialog nested inside it.
    QTimer::singleShot(kPollIntervalMs, this, &ModalAnswerer::poll);
}

void ModalAnswerer::poll()
{
    if (m_pending.empty() || --m_pollsLeft < 0)
        return;
    QWidget *dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog == m_lastAnswered) {
        schedulePoll();
        return;
    }
    m_lastAnswered = dialog;
    Handler handler = std::move(m_pending.front());
    m_pending.pop_front();
    ++m_answered;
    m_pollsLeft = kMaxPolls;
    if (!m_pending.empty())
        schedulePoll();
    handler(dialog);
}

ModalAnswerer::Handler ModalAnswerer::chooseFile(const QString &path)
{
    return [path](QWidget *dialog) {
        // QFileDialog::accept() is protected; through QDialog it is what the dialog's button does.
        if (QDialog *fileDialog = fileDialogWithName(dialog, path))
            fileDialog->accept();
    };
}

ModalAnswerer::Handler ModalAnswerer::returnPath(const QString &path)
{
    return [path](QWidget *dialog) {
        if (QDialog *fileDialog = fileDialogWithName(dialog, path))
            fileDialog->done(QDialog::Accepted);
    };
}

ModalAnswerer::Handler ModalAnswerer::cancel()
{
    return [](QWidget *dialog) {
        if (auto *modal = qobject_cast<QDialog *>(dialog))
            modal->reject();
    };
}
