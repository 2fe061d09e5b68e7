#include "modalanswerer.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QTimer>

namespace {
// Polls happen every few milliseconds while a dialog is awaited; after this many the answerer
// gives up, so that a dialog that never opens fails the test instead of hanging it.
constexpr int kMaxPolls = 2000;
constexpr int kPollIntervalMs = 5;
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
        auto *fileDialog = qobject_cast<QFileDialog *>(dialog);
        if (fileDialog == nullptr)
            return;
        fileDialog->selectFile(path);
        // QFileDialog::accept() is protected; through QDialog it still checks the choice
        // (and asks before overwriting) as a click on the dialog's button would.
        static_cast<QDialog *>(fileDialog)->accept();
    };
}

ModalAnswerer::Handler ModalAnswerer::cancel()
{
    return [](QWidget *dialog) {
        if (auto *modal = qobject_cast<QDialog *>(dialog))
            modal->reject();
    };
}

ModalAnswerer::Handler ModalAnswerer::accept()
{
    return [](QWidget *dialog) {
        if (auto *modal = qobject_cast<QDialog *>(dialog))
            modal->accept();
    };
}
