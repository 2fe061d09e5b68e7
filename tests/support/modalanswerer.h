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
    static Handler chooseFile(const QString &path);
    static Handler cancel();
    static Handler accept();

private:
    void schedulePoll();
    void poll();

    std::deque<Handler> m_pending;
    QPointer<QWidget> m_lastAnswered;
    int m_answered = 0;
    int m_pollsLeft = 0;
};
