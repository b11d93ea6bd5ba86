// Widgets that open pop-up menus in all the usual ways; see tests/protocol/test_popups.py.

#include "menubuilder.h"
#include "testhost.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// The items of all menus here: NAMEOne, NAMETwo and NAMESub/NAMEThree, NAMEFour (a checked one).
void fill(const MenuBuilder& build, QMenu* menu)
{
    const QString name = menu->objectName();
    build.item(menu, name + QLatin1String("One"), QLatin1String("One"));
    build.item(menu, name + QLatin1String("Two"), QLatin1String("Two"));
    QMenu* sub = build.submenu(menu, (name + QLatin1String("Sub")).toLatin1().constData(), "Sub");
    build.item(sub, name + QLatin1String("Three"), QLatin1String("Three"));
    build.checkable(sub, (name + QLatin1String("Four")).toLatin1().constData(), "Four", true);
}

// Opens its menu by exec() in the event handler, as a subclass would; the menu lives on the stack.
class ExecutingArea : public QWidget
{
public:
    ExecutingArea(TestHost& testHost, QWidget* parent)
        : QWidget(parent)
        , host(testHost)
    {
    }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override
    {
        QMenu menu;
        menu.setObjectName(QLatin1String("executed"));
        const MenuBuilder build(host);
        fill(build, &menu);
        QAction* chosen = menu.exec(event->globalPos());
        host.journal(QLatin1String("exec gave ") + (chosen ? chosen->text() : QLatin1String("nothing")));
    }

private:
    TestHost& host;
};

QWidget* addArea(QWidget* window, QWidget* area, const char* name)
{
    area->setObjectName(QLatin1String(name));
    area->setMinimumSize(300, 60);
    window->layout()->addWidget(area);
    return area;
}

template <class Button>
Button* addButton(const MenuBuilder& build, QWidget* window, const char* name, const char* menuName)
{
    auto* button = new Button(window);
    button->setObjectName(QLatin1String(name));
    button->setText(QLatin1String(name));
    QMenu* menu = build.menu(button, menuName);
    fill(build, menu);
    button->setMenu(menu);
    window->layout()->addWidget(button);
    return button;
}

void addContextMenus(TestHost& host, const MenuBuilder& build, QWidget* window)
{
    QWidget* popping = addArea(window, new QWidget, "popping");
    popping->setContextMenuPolicy(Qt::CustomContextMenu);
    QMenu* popped = build.menu(popping, "popped");
    fill(build, popped);
    host.onSignal(popping, SIGNAL(customContextMenuRequested(QPoint)),
        [=] { popped->popup(popping->mapToGlobal(QPoint(20, 20))); });

    QWidget* listing = addArea(window, new QWidget, "listing");
    listing->setContextMenuPolicy(Qt::ActionsContextMenu);
    build.item(listing, "listed", "Listed");
}

// A menu that is torn off is a window, not a popup.
void addTornMenu(TestHost& host, const MenuBuilder& build, QWidget* window)
{
    QMenu* torn = build.menu(window, "torn");
    torn->setTearOffEnabled(true);
    torn->setTitle(QLatin1String("Torn off")); // of the torn-off window; with Qt 4 it is the next one
    torn->setWindowTitle(QLatin1String("Torn off"));
    fill(build, torn);
    QPointer<QMenu> guarded(torn);
    host.onRequest(QLatin1String("openTorn"), [=] { guarded->popup(window->mapToGlobal(QPoint(20, 20))); });
}

// A modal dialog, which Escape would close, with a context menu and a menu bar.
void openDialog(TestHost& host, const MenuBuilder& build, QWidget* window)
{
    auto* dialog = new QDialog(window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QLatin1String("dialog"));
    dialog->setWindowTitle(QLatin1String("Modal"));
    dialog->setModal(true);
    auto* bar = new QMenuBar(dialog);
    bar->setObjectName(QLatin1String("dialogBar"));
    fill(build, build.submenu(bar, "barMenu", "Bar"));
    (new QVBoxLayout(dialog))->setMenuBar(bar);
    addArea(dialog, new ExecutingArea(host, dialog), "executingModal");
    dialog->move(400, 300);
    dialog->show();
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String("Popups"));
    new QVBoxLayout(window);
    const MenuBuilder build(host);

    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String("edit"));
    window->layout()->addWidget(edit);
    addArea(window, new ExecutingArea(host, window), "executing");

    addContextMenus(host, build, window);

    addButton<QPushButton>(build, window, "push", "pushMenu");
    addButton<QToolButton>(build, window, "instant", "instantMenu")->setPopupMode(QToolButton::InstantPopup);
    auto* split = addButton<QToolButton>(build, window, "split", "splitMenu");
    split->setPopupMode(QToolButton::MenuButtonPopup);
    split->setMinimumSize(120, 40);
    host.journalSignal(split, SIGNAL(clicked()), QLatin1String("clicked"));

    addTornMenu(host, build, window);

    host.onRequest(QLatin1String("openDialog"), [=, &host] { openDialog(host, build, window); });
    journalInputState(host);
    edit->setFocus();
    window->move(60, 60);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
