// A plain widgets application, until a line comes.

#include <QApplication>
#include <QWidget>
#include <QtCore/QSocketNotifier>

#include <unistd.h>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, SIGNAL(activated(int)), &application, SLOT(quit()));
    QWidget window;
    window.show();
    return QApplication::exec();
}
