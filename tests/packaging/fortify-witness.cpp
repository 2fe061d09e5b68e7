// Reads standard input into a buffer with a length known only when the program runs. Built
// with the project's flags, the read must go through the C library's checked __read_chk: the
// package test shows with it that fortify is in effect, which the editor and lxconfig cannot
// show themselves, as the compiler proves each of their reads in bounds and calls plain read.
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

int main(int argc, char *argv[])
{
    char buffer[64];
    const auto wanted = static_cast<std::size_t>(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0);
    const ssize_t got = ::read(STDIN_FILENO, buffer, wanted);
    std::printf("%zd\n", got);
    return got < 0 ? 1 : 0;
}
