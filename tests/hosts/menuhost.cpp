// A menu bar with every kind of item, and a pop-up menu that "do popup" opens; see
// tests/protocol/test_menubar.py and test_menu.py.

#include "menubuilder.h"
#include "testhost.h"

#include <QActionGroup>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QProcess>
#include <QSpinBox>
#include <QWidgetAction>

#include <string>

namespace {

void addFile(const MenuBuilder& build, QMenuBar* bar)
{
    QMenu* file = build.submenu(bar, "fileMenu", "&File");
    build.item(file, "new", "&New");
    build.separator(file);
    build.item(file, "save", "&Save")->setShortcut(QKeySequence(QLatin1String("Ctrl+S")));
    build.item(file, "locked", "Locked")->setEnabled(false);
    QMenu* recent = build.submenu(file, "recentMenu", "Recent");
    build.item(recent, "x", "x");
    recent->setEnabled(false);
    QMenu* send = build.submenu(file, "sendMenu", "Se&nd");
    build.item(send, "mail", "Mail");
    build.item(send, "fax", "Fax")->setEnabled(false);
    build.submenu(send, "emptyMenu", "Empty");
}

void addOptions(const MenuBuilder& build, QMenuBar* bar)
{
    QMenu* options = build.submenu(bar, "optionsMenu", "&Options");
    build.checkable(options, "wrap", "Word &wrap", true);
    build.checkable(options, "ruler", "Ruler", false);
    build.item(options, "plain", "Plain");
    QMenu* align = build.submenu(options, "alignMenu", "Align");
    auto* group = new QActionGroup(align);
    group->addAction(build.checkable(align, "left", "Left", true));
    group->addAction(build.checkable(align, "right", "Right", false));
    build.item(build.submenu(bar, "offMenu", "Off"), "inOff", "In")->setEnabled(true);
    bar->actions().last()->setEnabled(false);
}

// An item "Widget" that is a widget, called like the item with "Inside" added.
void addWidget(TestHost& host, QMenu* menu, const char* name, QWidget* widget)
{
    auto* action = new QWidgetAction(menu);
    action->setObjectName(QLatin1String(name));
    action->setText(QLatin1String("Widget"));
    widget->setObjectName(QLatin1String(name) + QLatin1String("Inside"));
    action->setDefaultWidget(widget);
    menu->addAction(action);
    host.journalSignal(action, SIGNAL(triggered()), QLatin1String("triggered"));
    host.journalInput(widget);
}

void addTexts(TestHost& host, const MenuBuilder& build, QMenuBar* bar)
{
    QMenu* texts = build.submenu(bar, "textsMenu", "Texts");
    build.separator(texts, "Title");
    build.item(texts, "hidden", "Hidden")->setVisible(false);
    build.item(texts, "first", "First");
    build.item(texts, "nameless", "");
    build.item(texts, "drag", "Drag && drop");
    build.item(texts, "print", "Print\tCtrl+P");
    build.item(texts, "blanks", "  Many   blanks ");
    build.item(texts, "indexLike", "Item 1");
    build.item(build.submenu(texts, "slashMenu", "In/&Out"), "c", "C");
    build.item(build.submenu(texts, "shortMenu", "x"), "inShort", "w");
    build.item(texts, "slash3", "x/y/z");
    build.item(texts, "twin1", "Twin");
    build.item(texts, "twin2", "Twin");
    QMenu* bad = build.submenu(texts, "badMenu", "P/Q");
    build.item(bad, "inBad", "R");
    bad->setEnabled(false);

    addWidget(host, texts, "edited", new QLineEdit);
    build.item(texts, "last", "Last");
    // A spin box takes the keys Up and Down for itself.
    QMenu* spin = build.submenu(bar, "spinMenu", "Spin");
    build.item(spin, "aboveSpin", "Above");
    addWidget(host, spin, "spin", new QSpinBox);
    build.item(spin, "belowSpin", "Below");
}

void addSizes(TestHost& host, const MenuBuilder& build, QMenuBar* bar)
{
    QMenu* deep = build.submenu(bar, "deepMenu", "1");
    const char* const levels[] = {"2", "3", "4", "5"};
    for (const char* level : levels)
        deep = build.submenu(deep, (std::string("deepMenu") + level).c_str(), level);
    build.item(deep, "deepest", "6");
    build.item(deep, "deepestOff", "6 off")->setEnabled(false);

    QMenu* many = build.submenu(bar, "manyMenu", "Many");
    for (int i = 0; i < 200; ++i)
        build.item(many, QString::fromLatin1("entry%1").arg(i), QString::fromLatin1("Entry %1").arg(i));

    build.item(build.submenu(bar, "zoomMenu", "Zoom/&Pan"), "zoomIn", "In");

    QMenu* lazy = build.submenu(bar, "lazyMenu", "Lazy");
    host.onSignal(lazy, SIGNAL(aboutToShow()), [=, &host] {
        lazy->clear();
        QMenu* more = MenuBuilder(host).submenu(lazy, "moreMenu", "More");
        host.onSignal(more, SIGNAL(aboutToShow()), [=, &host] {
            more->clear();
            MenuBuilder(host).item(more, "late", "Late");
        });
    });

    QMenu* tear = build.submenu(bar, "tearMenu", "Tear");
    tear->setTearOffEnabled(true);
    build.item(tear, "tear1", "One");
    build.item(tear, "tear2", "Two");
}

void addActs(TestHost& host, const MenuBuilder& build, QMenuBar* bar)
{
    QMenu* acts = build.submenu(bar, "actsMenu", "Acts");
    host.onSignal(build.item(acts, "ask", "Dialog"), SIGNAL(triggered()), [=, &host] {
        QDialog dialog(bar);
        dialog.setObjectName(QLatin1String("dialog"));
        dialog.setWindowTitle(QLatin1String("Modal"));
        dialog.exec();
        host.journal(QLatin1String("dialog closed"));
    });
    host.onRequest(QLatin1String("closeDialog"), [] { QApplication::activeModalWidget()->close(); });
    host.onSignal(build.item(acts, "quitter", "Quit"), SIGNAL(triggered()), [] { QCoreApplication::quit(); });
    host.onSignal(build.item(acts, "remove", "Remove menu"), SIGNAL(triggered()), [=] { acts->deleteLater(); });
    host.onSignal(build.item(acts, "fragile", "Remove on hover"), SIGNAL(hovered()), [=] { acts->deleteLater(); });
    build.item(acts, "afterFragile", "After");
    QMenu* swap = build.submenu(bar, "swapMenu", "Swap");
    build.item(swap, "before", "Before");
    QAction* swapper = build.item(swap, "swapper", "Swapper");
    const QPointer<QAction> swapped(build.item(swap, "swapped", "Swapped"));
    host.onSignal(swapper, SIGNAL(hovered()), [=] {
        if (swapped)
            swapped->deleteLater();
    });
}

void addPopup(TestHost& host, const MenuBuilder& build, QMainWindow* window)
{
    QMenu* popup = build.menu(window, "popup");
    QMenu* file = build.submenu(popup, "popupFile", "File");
    build.item(file, "popupSave", "Save");
    build.item(file, "popupLocked", "Locked")->setEnabled(false);
    QMenu* deeper = build.submenu(file, "popupDeeper", "Deeper");
    build.item(deeper, "popupY", "y");
    deeper->setEnabled(false);
    build.separator(popup);
    QMenu* options = build.submenu(popup, "popupOptions", "Options");
    build.checkable(options, "popupWrap", "Word wrap", true);
    build.item(options, "popupNameless", "");
    build.separator(options, "Title");
    build.item(options, "popupPlain", "&Plain");
    QMenu* off = build.submenu(popup, "popupOff", "Off");
    build.item(off, "popupInOff", "In");
    build.item(off, "popupInOff2", "In off")->setEnabled(false);
    off->setEnabled(false);
    build.item(build.submenu(popup, "popupSlash", "A/B"), "popupC", "C");
    build.item(popup, "popupHidden", "Hidden")->setVisible(false);
    build.item(popup, "popupLast", "Last");
    host.onRequest(QLatin1String("popup"), [=] { popup->popup(window->mapToGlobal(QPoint(400, 200))); });
    host.onRequest(QLatin1String("openFile"), [=] {
        popup->popup(window->mapToGlobal(QPoint(400, 200)));
        popup->setActiveAction(file->menuAction());
        file->popup(window->mapToGlobal(QPoint(600, 200)));
    });
}

void build(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String("Menus"));
    auto* edit = new QLineEdit;
    edit->setObjectName(QLatin1String("edit"));
    window->setCentralWidget(edit);
    edit->setFocus();
    host.journalInput(edit);

    const MenuBuilder menus(host);
    QMenuBar* bar = window->menuBar();
    bar->setObjectName(QLatin1String("bar"));
    host.journalInput(bar);
    addFile(menus, bar);
    addOptions(menus, bar);
    menus.item(bar, "title", "Title only");
    menus.separator(bar, "Bar separator");
    addTexts(host, menus, bar);
    addSizes(host, menus, bar);
    addActs(host, menus, bar);
    menus.submenu(bar, "hiddenMenu", "Hidden")->menuAction()->setVisible(false);
    addPopup(host, menus, window);
    journalInputState(host);
    // As Qt 5 does by itself, now and then, while menus open and close: the windowing system takes the focus, and Qt
    // has no active window.
    host.onRequest(QLatin1String("loseActiveWindow"), [=, &host] {
        auto* texts = window->findChild<QMenu*>(QLatin1String("textsMenu"));
        host.onSignal(texts, SIGNAL(aboutToShow()), [] { QApplication::setActiveWindow(nullptr); });
        host.onSignal(texts->actions().at(2), SIGNAL(hovered()), [] {
            QProcess::execute(QLatin1String("xdotool"), {QLatin1String("windowfocus"), QLatin1String("0")});
        });
    });
    host.onRequest(QLatin1String("narrow"), [=] { window->resize(110, 300); });

    window->setGeometry(60, 60, 1000, 600);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
