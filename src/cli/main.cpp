// lxconfig: the editor's command-line companion for LXCONFIG.BIN files.

#include "commandline.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    lxconfig::Output output(stdout, stderr);
    return lxconfig::run(QCoreApplication::arguments(), output);
}
