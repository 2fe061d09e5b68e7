// The file benchmarks: the format library on its own and the save and load commands on a real
// editor window on the offscreen platform. The commands' console lines go to a null stream.

#include "commandbench.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <iostream>
#include <streambuf>

namespace {

class NullBuffer : public std::streambuf
{
protected:
    int overflow(int c) override { return traits_type::not_eof(c); }
};

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);

    NullBuffer nullBuffer;
    std::streambuf *const console = std::cout.rdbuf(&nullBuffer);

    MainWindow window;
    window.show();
    QApplication::processEvents();
    registerCommandBenchmarks(window);

    // The benchmark table still goes to the terminal.
    std::ostream output(console);
    benchmark::ConsoleReporter reporter;
    reporter.SetOutputStream(&output);
    reporter.SetErrorStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    std::cout.rdbuf(console);
    return 0;
}
