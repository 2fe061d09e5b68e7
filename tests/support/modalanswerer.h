#pragma once

// Answers the modal dialogs that a test action opens, one handler per dialog in turn, from
// inside each dialog's own event loop. Arm it before the action that opens the first dialog.

#include <QObject>
#include <QPointer>
#include <QString>
#include <deque>
#include <functional>

class QWidget;

class ModalAnswerer : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(QWidget *dialog)>;

    ModalAnswerer();
    void expect(Handler handler);
    bool allAnswered() const { return m_pending.empty(); }
    int answered() const { return m_answered; }

    // Handlers for the dialogs of the editor.
    // Types path into a file dialog's name field and presses its Open or Save button, which
    // checks the choice (and asks before replacing a file) as a user's click would.
    static Handler chooseFile(const QString &path);
    // Makes a file dialog return path as it stands. The widget dialog's own button steps into a
    // folder instead of returning it and refuses to open a path that does not exist, so the
    // dialog is ended with done(Accepted): the static QFileDialog functions then return the name
    // field's text, and the command receives it like any chosen file.
    static Handler returnPath(const QString &path);
    static Handler cancel();

private:
    void schedulePoll();
    void poll();

    std::deque<Handler> m_pending;
    QPointer<QWidget> m_lastAnswered;
    int m_answered = 0;
    int m_pollsLeft = 0;
};
