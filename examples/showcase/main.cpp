#include "journal.h"
#include "look.h"
#include "mainwindow.h"
#include "options.h"
#include "trayicon.h"

#include <QApplication>
#include <QStringList>
#include <QStyleFactory>

#include <cstdio>

namespace {

int fail(const QString& reason)
{
    std::fprintf(stderr, "showcase: %s\nTry 'showcase --help'.\n", reason.toLocal8Bit().constData());
    return 2;
}

QString text(const char* words)
{
    return QLatin1String(words);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    Options options = Options::fromArguments(argumentCount, arguments);
    if (!options.error.isEmpty())
        return fail(options.error);
    if (options.help) {
        std::fputs(Options::helpText().toLocal8Bit().constData(), stdout);
        return 0;
    }

    int remainingCount = int(options.remaining.size()) - 1;
    QApplication application(remainingCount, options.remaining.data());
    if (remainingCount > 1)
        return fail(text("unknown option: ") + QString::fromLocal8Bit(options.remaining[1]));
    if (!Look::setStyle(options.style))
        return fail(text("no such style: ") + options.style + text(" (there are: ")
            + QStyleFactory::keys().join(text(", ")) + text(")"));
    if (options.rightToLeft)
        QApplication::setLayoutDirection(Qt::RightToLeft);
    Look::setColors(application);

    Journal journal;
    if (!options.journal.isEmpty() && !journal.openFile(options.journal))
        return fail(text("cannot write ") + options.journal + text(": ") + journal.errorString());
    MainWindow window(journal);
    if (!options.page.isEmpty() && !window.showPage(options.page))
        return fail(text("no such page: ") + options.page);
    if (!options.geometry.isEmpty())
        window.resize(options.geometry.size());
    if (options.placed)
        window.move(options.geometry.topLeft());
    window.show();
    journal.start();

    TrayIcon trayIcon(journal, window, &application);
    if (options.tray || QSystemTrayIcon::isSystemTrayAvailable())
        trayIcon.show();
    return QApplication::exec();
}
