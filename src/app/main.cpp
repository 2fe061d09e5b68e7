#include "mainwindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);

    // Building the form reads one picture: the PNG icon of the menu bar's extension button, which
    // stays hidden while the menu bar is empty. Qt decodes PNG itself, but its image reader first
    // offers the file to every image-format plugin on the plugin path, loading each one with its
    // libraries (GIF, ICO, JPEG with libjpeg, SVG with QtSvg) only to hear that none reads PNG.
    // The window needs no plugin to be built (the platform and the style are loaded by now), so
    // it is built with an empty plugin path, and the path is put back before anything else runs.
    const QStringList pluginPath = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    MainWindow window;
    QCoreApplication::setLibraryPaths(pluginPath);

    window.show();
    return application.exec();
}
