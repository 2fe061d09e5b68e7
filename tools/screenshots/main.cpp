// Shows the editor's window on the current display, selects each tab page in turn and writes
// what the screen shows into OUTPUT_DIR: window.png (the first page) and one page-N-NAME.png per
// page. Run it under Xvfb (scripts/screenshots.sh) so the pictures come from a real X server.

#include "mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTabWidget>
#include <QTest>
#include <QTextStream>

namespace {

QString fileNameFor(int index, const QString &tabText)
{
    QString slug = tabText.toLower();
    slug.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char(' '), QLatin1Char('-'));
    return QStringLiteral("page-%1-%2.png").arg(index + 1).arg(slug);
}

bool writeShot(QWidget &window, const QString &path)
{
    QApplication::processEvents();
    // The screen's pixels, as a user sees them; no window manager runs, so no frame is drawn.
    const QPixmap shot = window.screen()->grabWindow(window.winId());
    return shot.save(path);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 2) {
        QTextStream(stderr) << "usage: lumarex-screenshots OUTPUT_DIR\n";
        return 2;
    }
    const QDir output(arguments.at(1));

    MainWindow window;
    window.move(0, 0);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;

    auto *tabs = window.findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    bool written = writeShot(window, output.filePath(QStringLiteral("window.png")));
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        written =
            writeShot(window, output.filePath(fileNameFor(index, tabs->tabText(index)))) && written;
    }
    return written ? 0 : 1;
}
