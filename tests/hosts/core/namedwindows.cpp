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

} // namespace

void buildNamedWindows(TestHost& host)
{
    host.onRequest(text("showNames"), [&host] {
        auto* window = addWindow("names", "Names", QPoint(500, 30));
        QPushButton* const buttons[] = {new QPushButton(text("&Cancel")), new QPushButton(text("Apply  to all")),
            new QPushButton(text("Don't save")), new QPushButton, new QCommandLinkButton(text("Go on"))};
        for (QPushButton* button : buttons) {
            add(window, button);
            host.onSignal(
                button, SIGNAL(clicked()), [&host, button] { host.journal(text("clicked label ") + button->text()); });
        }
        auto* action = named(new QAction(text("Open"), window), "fileOpen");
        host.journalSignal(action, SIGNAL(triggered()), text("triggered"));
        add(window, new QToolButton)->setDefaultAction(action);
        auto* second = add(window, new QToolButton);
        second->addAction(action);
        second->addAction(new QAction(text("Save"), window));
        auto* derivedAction = named(new QAction(text("Close"), window), "fileClose");
        host.journalSignal(derivedAction, SIGNAL(triggered()), text("triggered"));
        add(window, new DerivedToolButton)->setDefaultAction(derivedAction);
        window->show();
    });
    host.onRequest(text("showUnnamed"), [] {
        auto* single = addWindow("single", "Single", QPoint(800, 30));
        add(single, new QLabel(text("only")));
        single->show();
        auto* several = addWindow("several", "Several", QPoint(800, 200));
        add(several, new QLabel(text("one")));
        add(several, new QLabel(text("two")));
        several->show();
    });
    host.onRequest(text("showReports"), [] {
        addWindow("r1", "Report 1", QPoint(500, 400))->show();
        addWindow("r12", "Report 12", QPoint(700, 400))->show();
        addWindow("hidden", "Report 13", QPoint(900, 400));
        addWindow("untitled", "", QPoint(500, 600))->show();
        addWindow("literal", "Widget:main", QPoint(700, 600))->show();
    });
    host.onRequest(text("showFrameless"), [] {
        auto* window = addWindow("frameless", "Frameless", QPoint(500, 30));
        window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
        window->resize(200, 100);
        window->show();
        window->activateWindow();
    });
    host.onRequest(text("showViews"), [] {
        auto* window = addWindow("views", "Views, and more", QPoint(500, 30));
        add(window, named(new QSpinBox, "spin"));
        add(window, named(new QTreeView, "tree"));
        add(window, named(new QListWidget, "list"));
        add(window, named(new QTextEdit, "text"));
        auto* box = add(window, named(new QToolBox, "toolbox"));
        box->addItem(new QLabel(text("page")), text("Page"));
        add(window, new QLabel(text("unnamed one")));
        window->show();
    });
}

#include "namedwindows.moc"
