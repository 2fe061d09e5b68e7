// Linked into the start-up benchmark builds of the editor and of the bare window alike, so both
// pay the same for being measured. When the first top-level window has painted once, it writes
// one line to standard error and ends the process at once (teardown is not start-up):
//   first-paint-ns=<ns since LUMAREX_BENCH_T0_NS> peak-rss-kb=<VmHWM>
// LUMAREX_BENCH_T0_NS is the launcher's CLOCK_MONOTONIC stamp taken just before it spawned us;
// without it only the memory is reported.

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>

namespace {

long long monotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

// The process's peak resident set so far; the launcher's own pages before exec do not count.
long peakResidentKb()
{
    FILE *status = std::fopen("/proc/self/status", "r");
    if (!status)
        return -1;
    char line[256];
    long kb = -1;
    while (std::fgets(line, sizeof line, status)) {
        if (std::strncmp(line, "VmHWM:", 6) == 0) {
            kb = std::strtol(line + 6, nullptr, 10);
            break;
        }
    }
    std::fclose(status);
    return kb;
}

void reportAndExit()
{
    const long long now = monotonicNs();
    const char *start = std::getenv("LUMAREX_BENCH_T0_NS");
    if (start)
        std::fprintf(stderr, "first-paint-ns=%lld ", now - std::atoll(start));
    std::fprintf(stderr, "peak-rss-kb=%ld\n", peakResidentKb());
    std::fflush(stderr);
    _exit(0);
}

class FirstPaintProbe : public QObject
{
protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType() &&
            static_cast<QWidget *>(watched)->isWindow()) {
            QCoreApplication::instance()->removeEventFilter(this);
            // The window's children are painted and the backing store flushed in this same
            // update pass; the queued call runs once that pass is over.
            QTimer::singleShot(0, reportAndExit);
        }
        return false;
    }
};

void installProbe()
{
    QCoreApplication::instance()->installEventFilter(new FirstPaintProbe);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installProbe)
