// A small application that prints the cost of its start-up, "MICROSECONDS KIBIBYTES HEAPBYTES" from before its event loop
// until the first events in it are handled. A library named on the command line is loaded and started within what is
// measured. It ends when its standard input is closed, since on a busy machine the agent may connect after the figures.

#include <QApplication>
#include <QLabel>
#include <QTimerEvent>
#include <QtCore/QBasicTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QSocketNotifier>

#include <cstddef>
#include <cstdio>
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

namespace {

struct Use
{
    long residentKibibytes;
    std::size_t heapBytes;
};

Use currentUse()
{
    long pages = 0;
    long resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(file);
    }
    const std::size_t heap = mallinfo2().uordblks;
    return {resident * (sysconf(_SC_PAGESIZE) / 1024), heap};
}

// Reports at the second round of events: in the first one the agent connects.
class Report : public QObject
{
public:
    void begin()
    {
        roundTimer.start(0, this);
        before = currentUse();
        timer.start();
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        if (++rounds < 2)
            return;
        const qint64 microseconds = timer.nsecsElapsed() / 1000;
        const Use now = currentUse();
        std::printf("%lld %ld %ld\n", static_cast<long long>(microseconds),
            now.residentKibibytes - before.residentKibibytes,
            static_cast<long>(now.heapBytes) - static_cast<long>(before.heapBytes));
        std::fflush(stdout);
        roundTimer.stop();
    }

private:
    QBasicTimer roundTimer;
    QElapsedTimer timer;
    Use before = {};
    int rounds = 0;
};

bool startLibrary(const char* path)
{
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    const auto start = reinterpret_cast<void (*)()>(library ? dlsym(library, "startModule") : nullptr);
    if (!start) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    start();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QLabel label(QString::fromLatin1("Start-up"));
    label.show();
    QCoreApplication::processEvents();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, SIGNAL(activated(int)), &application, SLOT(quit()));
    Report report;
    report.begin();
    if (argc > 1 && !startLibrary(argv[1]))
        return 1;
    return QApplication::exec();
}
