// Runs an event loop without QApplication: for ever with an argument, otherwise once, and then waits for a line.

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1)
        return QCoreApplication::exec();
    QEventLoop loop;
    QTimer::singleShot(0, &loop, SLOT(quit()));
    loop.exec();
    QTimer::singleShot(0, &application, SLOT(quit()));
    QCoreApplication::exec();
    std::puts("end loop");
    std::fflush(stdout);
    std::getchar();
    return 0;
}
