// The start-up baseline: the editor's main() with an empty QMainWindow of the editor's size, so
// the benchmark can tell what the form costs over Qt itself.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(803, 567);
    window.show();
    return application.exec();
}
