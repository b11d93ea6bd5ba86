#include "corewindows.h"
#include "testhost.h"

#include <QAction>
#include <QCommandLinkButton>
#include <QLabel>
#include <QListWidget>
#include <QSpinBox>
#include <QTextEdit>
#include <QToolBox>
#include <QToolButton>
#include <QTreeView>

namespace {

// A class of an application: its widgets are named like those of Qt's class.
class DerivedToolButton : public QToolButton
{
    Q_OBJECT
};

void showNames(TestHost& host)
{
    auto* window = addWindow("names", "Names", QPoint(500, 30));
    QPushButton* const buttons[] = {new QPushButton(latin1("&Cancel")), new QPushButton(latin1("Apply  to all")),
        new QPushButton(latin1("Don't save")), new QPushButton, new QCommandLinkButton(latin1("Go on"))};
    for (QPushButton* button : buttons) {
        add(window, button);
        host.onSignal(
            button, SIGNAL(clicked()), [&host, button] { host.journal(latin1("clicked label ") + button->text()); });
    }
    auto* action = named(new QAction(latin1("Open"), window), "fileOpen");
    host.journalSignal(action, SIGNAL(triggered()), latin1("triggered"));
    add(window, new QToolButton)->setDefaultAction(action);
    auto* second = add(window, new QToolButton);
    second->addAction(action);
    second->addAction(new QAction(latin1("Save"), window));
    auto* derivedAction = named(new QAction(latin1("Close"), window), "fileClose");
    host.journalSignal(derivedAction, SIGNAL(triggered()), latin1("triggered"));
    add(window, new DerivedToolButton)->setDefaultAction(derivedAction);
    window->show();
}

void showViews()
{
    auto* window = addWindow("views", "Views, and more", QPoint(500, 30));
    add(window, named(new QSpinBox, "spin"));
    add(window, named(new QTreeView, "tree"));
    add(window, named(new QListWidget, "list"));
    add(window, named(new QTextEdit, "text"));
    auto* box = add(window, named(new QToolBox, "toolbox"));
    box->addItem(new QLabel(latin1("page")), latin1("Page"));
    add(window, new QLabel(latin1("unnamed one")));
    window->show();
}

} // namespace

void buildNamedWindows(TestHost& host)
{
    host.onRequest(latin1("showNames"), [&host] { showNames(host); });
    host.onRequest(latin1("showUnnamed"), [] {
        auto* single = addWindow("single", "Single", QPoint(800, 30));
        add(single, new QLabel(latin1("only")));
        single->show();
        auto* several = addWindow("several", "Several", QPoint(800, 200));
        add(several, new QLabel(latin1("one")));
        add(several, new QLabel(latin1("two")));
        several->show();
    });
    host.onRequest(latin1("showReports"), [] {
        addWindow("r1", "Report 1", QPoint(500, 400))->show();
        addWindow("r12", "Report 12", QPoint(700, 400))->show();
        addWindow("hidden", "Report 13", QPoint(900, 400));
        addWindow("untitled", "", QPoint(500, 600))->show();
        addWindow("literal", "Widget:main", QPoint(700, 600))->show();
    });
    host.onRequest(latin1("showFrameless"), [] {
        auto* window = addWindow("frameless", "Frameless", QPoint(500, 30));
        window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        window->resize(200, 100);
        window->show();
        window->activateWindow();
    });
    host.onRequest(latin1("showViews"), [] { showViews(); });
}

#include "namedwindows.moc"
