// Faults that concern windows, time, and the application as a whole.

#include "closeintime.h"
#include "commonfaults.h"
#include "later.h"
#include "scenes.h"
#include "stage.h"
#include "testhost.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>

namespace {

QWidget* windowOf(Stage& stage)
{
    return stage.window();
}

void fill(QWidget* window, const char* title)
{
    own(window)->setWindowTitle(QLatin1String(title));
    put(window, new QLineEdit, "nestedEdit");
    put(window, new QPushButton(QLatin1String("&Ok")), "");
}

QMenu* newMenu(QWidget* parent)
{
    auto* menu = own(new QMenu(parent));
    menu->setObjectName(QLatin1String("popup"));
    menu->addAction(QLatin1String("Cut"));
    menu->addAction(QLatin1String("Copy"));
    menu->addMenu(QLatin1String("More"))->addAction(QLatin1String("Paste"));
    return menu;
}

void spin(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) { }
}

} // namespace

void hideWindow(Stage& stage, QObject*)
{
    if (QWidget* window = windowOf(stage))
        window->hide();
}

void moveWindow(Stage& stage, QObject*)
{
    if (QWidget* window = windowOf(stage))
        window->move(stage.chance.below(1400) - 200, stage.chance.below(1100) - 100);
}

void resizeWindow(Stage& stage, QObject*)
{
    if (QWidget* window = windowOf(stage))
        window->resize(stage.chance.below(1000) + 1, stage.chance.below(800) + 1);
}

// Not a hidden one, which would be shown: Qt closes all popups before it shows a window, and goes on until none is open,
// also when this happens as a popup closes.
void minimizeWindow(Stage& stage, QObject*)
{
    QWidget* window = windowOf(stage);
    if (window && window->isVisible())
        window->showMinimized();
}

void closeWindow(Stage& stage, QObject*)
{
    if (QWidget* window = windowOf(stage))
        window->close();
}

// Each once. In Qt 5 QApplication::closeAllWindows() goes on until no window is visible, and a window that a modal one
// blocks counts as closed without being asked. Windows stay blocked for good when a modal dialog is destroyed as it is
// visible, after a quit() has ended its exec().
void closeAllWindows(Stage&, QObject*)
{
    QList<QPointer<QWidget>> windows;
    const QWidgetList topLevels = QApplication::topLevelWidgets();
    for (QWidget* window : topLevels)
        windows.append(window);
    for (const QPointer<QWidget>& window : windows) {
        if (window && window->isVisible() && !window->close())
            return;
    }
}

void retitle(Stage& stage, QObject*)
{
    const char* const titles[] = {"", "Stage", "Stage", "100%s, of 5", "Nested"};
    if (QWidget* window = windowOf(stage))
        window->setWindowTitle(QLatin1String(titles[stage.chance.below(5)]));
}

void openPopup(Stage& stage, QObject*)
{
    QMenu* menu = newMenu(stage.window());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    stage.addStray(menu);
    menu->popup(QCursor::pos());
}

void openSecondWindow(Stage& stage, QObject*)
{
    auto* window = new QWidget;
    fill(window, stage.chance.oneIn(2) ? "Stage" : "Second");
    window->setAttribute(Qt::WA_DeleteOnClose);
    stage.addStray(window);
    window->move(stage.chance.below(500), stage.chance.below(500));
    window->show();
}

void openModalWindow(Stage& stage, QObject*)
{
    auto* dialog = new QDialog(stage.window());
    fill(dialog, "Modal");
    dialog->setProperty("nestedByTheApplication", true);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setModal(true);
    stage.addStray(dialog);
    dialog->show();
}

void runDialog(Stage& stage, QObject*)
{
    const QPointer<QDialog> dialog(new QDialog(stage.window()));
    fill(dialog, "Nested");
    dialog->setProperty("nestedByTheApplication", true);
    closeInTime(dialog, 10 + stage.chance.below(60));
    dialog->exec();
    delete dialog;
}

void runMenu(Stage& stage, QObject*)
{
    const QPointer<QMenu> menu(newMenu(stage.window()));
    closeInTime(menu, 10 + stage.chance.below(60));
    menu->exec(QCursor::pos());
    delete menu;
}

void runEventLoop(Stage& stage, QObject*)
{
    QEventLoop loop;
    const QPointer<QEventLoop> guarded(&loop);
    Later::run(stage.chance.below(30), [guarded] {
        if (guarded)
            guarded->quit();
    });
    loop.exec();
}

void handleEvents(Stage&, QObject*)
{
    QCoreApplication::processEvents();
}

// Into the folder that the application watches.
void writeFile(Stage& stage, QObject*)
{
    QFile file(QString::fromLatin1("note %1").arg(stage.chance.below(5)));
    if (!file.remove())
        file.open(QIODevice::WriteOnly);
}

void beBusy(Stage&, QObject*)
{
    spin(20);
}

void beBusyForLong(Stage& stage, QObject*)
{
    if (stage.chance.oneIn(4))
        spin(2000);
}

void quit(Stage& stage, QObject*)
{
    if (stage.chance.oneIn(2))
        QCoreApplication::quit();
}

void retireAgent(Stage& stage, QObject*)
{
    if (!stage.chance.oneIn(2))
        return;
    stage.host.retireAgent();
    Later::run(30, [] { QCoreApplication::quit(); });
}
