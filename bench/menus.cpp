// Choosing an item of a submenu until the slot behind it has run. The floor presses the same keys with Qt's own calls,
// and handles the events that each of them made.

#include "onscreen.h"
#include "pairs.h"
#include "proxy/stapplicationproxy.h"

#include <QAction>
#include <QCursor>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace {

const int itemsPerMenu = 5;

struct MenuWindow
{
    MenuWindow()
    {
        menu = window.menuBar()->addMenu(QString::fromLatin1("File"));
        for (int i = 1; i < itemsPerMenu; ++i)
            menu->addAction(QString::fromLatin1("Item no %1").arg(i));
        QMenu* submenu = menu->addMenu(QString::fromLatin1("More"));
        for (int i = 1; i <= itemsPerMenu; ++i)
            item = submenu->addAction(QString::fromLatin1("Choice %1").arg(i));
        item->setCheckable(true);
        window.setWindowTitle(QString::fromLatin1("Menus"));
        window.resize(300, 200);
        showActive(window);
        // Beside the menus: an item that opens under the cursor may become the active one.
        QCursor::setPos(window.mapToGlobal(window.rect().bottomRight()));
    }

    QMainWindow window;
    QMenu* menu = nullptr;
    QAction* item = nullptr; // the last one of the last menu
    STApplicationProxy registry;
};

MenuWindow& menuWindow()
{
    static auto* const window = new MenuWindow; // kept: a static would outlive the application
    return *window;
}

// Two rounds, as events make events.
void handleEvents()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void pressKey(int key)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* target = popup ? popup : QApplication::focusWidget();
        if (target)
            QCoreApplication::postEvent(target, new QKeyEvent(type, key, Qt::NoModifier));
        handleEvents();
    }
}

void chooseByQt()
{
    MenuWindow& menus = menuWindow();
    menus.window.activateWindow();
    menus.window.raise();
    handleEvents();
    menus.window.menuBar()->setActiveAction(menus.menu->menuAction());
    handleEvents();
    for (int i = 0; i < itemsPerMenu && menus.menu->activeAction() != menus.menu->actions().last(); ++i)
        pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Right);
    for (int i = 1; i < itemsPerMenu; ++i)
        pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Return);
}

template <class Choose>
void chooseUntilSeen(Choose choose)
{
    const QAction* item = menuWindow().item;
    const bool before = item->isChecked();
    choose();
    processEventsUntil([item, before] { return item->isChecked() != before && !QApplication::activePopupWidget(); });
}

Measured makeOurs(int)
{
    menuWindow();
    return [] {
        chooseUntilSeen([] {
            menuWindow().registry.activate(menuWindow().window.menuBar(), QString(),
                QString::fromLatin1("File/More/Choice %1").arg(itemsPerMenu), QVariant());
        });
    };
}

Measured makeFloor(int)
{
    menuWindow();
    return [] { chooseUntilSeen(chooseByQt); };
}

} // namespace

void registerMenus()
{
    registerPair("menu", Clock::Wall, {1}, makeOurs, makeFloor);
}
