// Linked only into the test build of the editor: once the event loop runs, close every window
// the way a user would, or, with AUTOCLOSE_EXIT_CODE set, end the loop with that code.

#include <QApplication>
#include <QTimer>
#include <QWidget>

static void closeWhenShown()
{
    QTimer::singleShot(0, [] {
        bool ok = false;
        const int exitCode = qEnvironmentVariableIntValue("AUTOCLOSE_EXIT_CODE", &ok);
        if (ok) {
            QCoreApplication::exit(exitCode);
            return;
        }
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible())
                window->close();
        }
    });
}
Q_COREAPP_STARTUP_FUNCTION(closeWhenShown)
