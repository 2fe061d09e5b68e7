// The floor of what apply can cost per file: the least a safe replacement does, with no
// settings read or changed. For each file: read its bytes, write them with one byte changed to
// a temporary file in the same folder, fsync it, rename it over the file; with replace-durably
// also fsync the folder, so that the rename itself survives a power cut. Also makes the
// benchmark's files.
// Usage: lumarex-safereplace make SOURCE FOLDER COUNT   (COUNT copies of SOURCE, 00000.bin...)
//        lumarex-safereplace replace FILE...             (prints the wall time in nanoseconds)
//        lumarex-safereplace replace-durably FILE...     (ditto)

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const std::string &what)
{
    std::fprintf(stderr, "lumarex-safereplace: %s: %s\n", what.c_str(), std::strerror(errno));
    std::exit(1);
}

void writeFile(const std::string &path, const char *data, std::size_t size, int flags)
{
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0644);
    if (fd == -1 || ::write(fd, data, size) != static_cast<ssize_t>(size))
        fail(path);
    if (flags & O_EXCL && ::fsync(fd) == -1)
        fail(path);
    ::close(fd);
}

std::size_t readFile(const std::string &path, char *buffer, std::size_t size)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const ssize_t got = fd == -1 ? -1 : ::read(fd, buffer, size);
    if (got < 0)
        fail(path);
    ::close(fd);
    return static_cast<std::size_t>(got);
}

void replace(const std::string &path, bool durably)
{
    char bytes[4096];
    const std::size_t size = readFile(path, bytes, sizeof bytes);
    if (size > 0)
        bytes[size / 2] ^= 1;
    const std::string temporary = path + ".new";
    writeFile(temporary, bytes, size, O_EXCL);
    if (::rename(temporary.c_str(), path.c_str()) == -1)
        fail(path);
    if (!durably)
        return;
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd == -1 || ::fsync(fd) == -1)
        fail(folder);
    ::close(fd);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "make" && argc == 5) {
        char bytes[4096];
        const std::size_t size = readFile(argv[2], bytes, sizeof bytes);
        for (int i = 0; i < std::atoi(argv[4]); ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "/%05d.bin", i);
            writeFile(argv[3] + std::string(name), bytes, size, O_TRUNC);
        }
        return 0;
    }
    if ((mode == "replace" || mode == "replace-durably") && argc > 2) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 2; i < argc; ++i)
            replace(argv[i], mode == "replace-durably");
        const auto elapsed = std::chrono::steady_clock::now() - start;
        std::printf("%lld\n",
                    static_cast<long long>(
                        std::chrono::duration_cast<std::chrono::nanoseconds>(elapsed).count()));
        return 0;
    }
    std::fprintf(
        stderr,
        "usage: lumarex-safereplace make SOURCE FOLDER COUNT | replace[-durably] FILE...\n");
    return 2;
}
