// The editor's load path on arbitrary bytes: one real window on the offscreen platform, kept
// for the whole run, gets each input as the load command's zero-filled 1024-byte read buffer.
// Every check, restore and form rule runs as it does for a file; the version dialog is
// answered by DialogDismisser.

#include "dialogdismisser.h"
#include "editorverdict.h"
#include "mainwindow.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <iostream>

namespace {

MainWindow *window = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt gets arguments of its own: it would take its options out of the fuzzer's.
    static int qtArgc = 1;
    static char *qtArgv[] = {(*argv)[0], nullptr};
    // Never destroyed: the toolkit's teardown at exit is not what is under test.
    auto *application = new QApplication(qtArgc, qtArgv);
    application->installEventFilter(new DialogDismisser(application));
    window = new MainWindow;
    window->show();
    // Millions of console lines would only slow the run down; sanitizer and fuzzer reports
    // do not go through these streams.
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::array<unsigned char, lumarex::kEditorReadSize> buffer{};
    std::copy_n(data, std::min(size, buffer.size()), buffer.begin());
    window->restoreFromFileBytes(buffer.data());
    // What the event loop does after the command: repaint and lay out the changed form.
    QCoreApplication::processEvents();
    return 0;
}
