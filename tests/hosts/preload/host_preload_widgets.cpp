// A widgets application that runs in the way its first argument names. It prints a line at each step, and
// does what the lines of its standard input tell while an event loop runs.

#include "signalhandler.h"

#include <QApplication>
#include <QDialog>
#include <QWidget>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QProcess>
#include <QtCore/QSocketNotifier>
#include <QtCore/QStringList>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <malloc.h>
#include <unistd.h>

namespace {

void report(const QByteArray& line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

QByteArray readOrder()
{
    QByteArray line;
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n')
        line += byte;
    return line;
}

void runChild()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList(QLatin1String("child")));
    child.waitForFinished(-1);
    report("child " + child.readLine().trimmed());
}

// Timer events that have been delivered while Working lives.
int ticks = 0;

// Works by itself: a timer ticks, and a thread allocates memory all the time.
class Working : public QThread
{
public:
    Working()
    {
        startTimer(1);
        start();
    }

    ~Working() override
    {
        isOver = true;
        wait();
    }

protected:
    void timerEvent(QTimerEvent*) override { ++ticks; }

    void run() override
    {
        while (!isOver) {
            std::free(std::malloc(64));
            usleep(100);
        }
    }

private:
    std::atomic<bool> isOver{false};
};

// Ticks so far, and bytes of the heap.
void reportWork()
{
    report(QByteArray::number(ticks) + ' ' + QByteArray::number(qulonglong(mallinfo2().uordblks)));
}

// Loads the library whose path is the next line, and calls its function as a debugger does; reports what that returns.
void attach()
{
    void* const library = dlopen(readOrder().constData(), RTLD_NOW);
    using Attach = const char* (*)();
    const auto call = reinterpret_cast<Attach>(library ? dlsym(library, "qtdriver_attach") : nullptr);
    report(QByteArray("attached: ") + (call ? call() : dlerror()));
}

struct Order
{
    const char* name;
    void (*execute)();
};

const Order orders[] = {
    {"quit", [] { QCoreApplication::quit(); }},
    {"close", [] { QApplication::activeModalWidget()->close(); }},
    {"exit", [] { std::exit(7); }},
    {"_exit", [] { _exit(8); }},
    {"child", runChild},
    {"work", reportWork},
    {"attach", attach},
    {"wait", [] { report("waited for " + readOrder()); }},
};

void obey()
{
    const QByteArray line = readOrder();
    for (const Order& order : orders) {
        if (line == order.name)
            order.execute();
    }
}

class LoopThread : public QThread
{
    void run() override
    {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, SLOT(quit()));
        loop.exec();
    }
};

void runLoop(const char* name)
{
    report(QByteArray("start ") + name);
    QApplication::exec();
    report(QByteArray("end ") + name);
}

void runDialog()
{
    QDialog dialog;
    dialog.setWindowTitle(QLatin1String("Dialog"));
    report("start dialog");
    dialog.exec();
    report("end dialog");
}

void runChildProgram()
{
    const char* const preloaded = std::getenv("LD_PRELOAD");
    report(QByteArray("LD_PRELOAD=") + (preloaded ? preloaded : "<unset>"));
    QTimer::singleShot(0, qApp, SLOT(quit()));
    QApplication::exec();
}

struct Way
{
    const char* name;
    void (*run)();
};

const Way ways[] = {
    {"plain", [] { runLoop("loop"); }},
    {"working",
        [] {
            Working working;
            runLoop("loop");
        }},
    {"dialogFirst",
        [] {
            runDialog();
            runLoop("loop");
        }},
    {"dialogOnly", runDialog},
    {"twice",
        [] {
            runLoop("first");
            runLoop("second");
        }},
    {"threadFirst",
        [] {
            LoopThread thread;
            thread.start();
            thread.wait();
            report("end thread");
            readOrder();
            runLoop("loop");
        }},
    {"childFirst",
        [] {
            runChild();
            runLoop("loop");
        }},
    {"child", runChildProgram},
    {"static", [] { runLoop("loop"); }},
};

void run(const char* name)
{
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    auto* handler = new SignalHandler(&input, [](const QString&) { obey(); });
    QObject::connect(&input, SIGNAL(activated(int)), handler, SLOT(handleInt(int)));
    QWidget window;
    window.setWindowTitle(QString(20000, QLatin1Char('x')));
    window.show();
    for (const Way& way : ways) {
        if (std::strcmp(name, way.name) == 0)
            way.run();
    }
}

} // namespace

int main(int argc, char** argv)
{
    const char* const way = argc > 1 ? argv[1] : "plain";
    if (std::strcmp(way, "static") == 0) {
        static QApplication application(argc, argv);
        run(way);
        return 0;
    }
    {
        QApplication application(argc, argv);
        run(way);
    }
    report("torn down");
    return 0;
}
