// The part with Qt of host_preload_loader.

#include <QApplication>
#include <QWidget>
#include <QtCore/QSocketNotifier>

#include <unistd.h>

extern "C" int runModule(int argc, char** argv)
{
    QApplication application(argc, argv);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, SIGNAL(activated(int)), &application, SLOT(quit()));
    QWidget window;
    window.show();
    return QApplication::exec();
}
