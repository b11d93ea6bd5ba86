#include "scenes.h"

#include "closeintime.h"
#include "faultinjector.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QToolBar>

namespace {

void fillMenu(QMenu* menu, int depth)
{
    menu->addAction(words("&New"));
    menu->addAction(words("Open/Close"));
    QAction* checkable = menu->addAction(words("Checked"));
    checkable->setCheckable(true);
    menu->addSeparator();
    menu->addAction(words("Disabled"))->setEnabled(false);
    menu->addAction(QString());
    if (depth > 0)
        fillMenu(menu->addMenu(words("More")), depth - 1);
}

void fillBar(Stage& stage, QMenuBar* bar)
{
    for (const char* name : {"&File", "Edit", "View"}) {
        QMenu* menu = bar->addMenu(words(name));
        menu->setObjectName(words(name));
        fillMenu(menu, 2);
        FaultInjector::connectSignals(stage, menu);
    }
    bar->addAction(words("Plain"));
}

// Has a menu by popup() or exec(), as it likes.
class Canvas : public QLabel
{
public:
    explicit Canvas(Stage& wantedStage)
        : QLabel(words("Canvas"))
        , stage(wantedStage)
    {
        setMinimumHeight(100);
    }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override
    {
        const QPointer<QMenu> menu(new QMenu(this));
        menu->setObjectName(words("context"));
        fillMenu(menu, 1);
        FaultInjector::connectSignals(stage, menu);
        const QPoint position = event->globalPos();
        if (stage.chance.oneIn(2))
            return menu->popup(position);
        stage.nest(Place::Fragile, [&] {
            closeInTime(menu, 30 + stage.chance.below(60));
            menu->exec(position);
        });
        delete menu;
    }

private:
    Stage& stage;
};

void addTricks(Stage& stage, const QPointer<QMenuBar>& bar)
{
    stage.addTrick([=, &stage](QObject*) {
        if (bar) {
            bar->clear();
            fillBar(stage, bar);
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QMenu*> menus = bar ? bar->findChildren<QMenu*>() : QList<QMenu*>();
        if (!menus.isEmpty())
            delete menus.at(stage.chance.below(static_cast<int>(menus.size())));
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QAction*> actions = bar ? bar->findChildren<QAction*>() : QList<QAction*>();
        QAction* action
            = actions.isEmpty() ? nullptr : actions.at(stage.chance.below(static_cast<int>(actions.size())));
        if (action && !action->menu()) // a menu's own action goes with it, not before
            delete action;
    });
    stage.addTrick([=, &stage](QObject* sender) {
        auto* menu = qobject_cast<QMenu*>(sender);
        if (menu) {
            menu->clear();
            fillMenu(menu, stage.chance.below(2));
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QAction*> actions = bar ? bar->findChildren<QAction*>() : QList<QAction*>();
        for (QAction* action : actions) {
            if (stage.chance.oneIn(10))
                action->setVisible(!action->isVisible());
            if (stage.chance.oneIn(10))
                action->setEnabled(!action->isEnabled());
        }
    });
}

} // namespace

void buildMenus(Stage& stage, QWidget* centre)
{
    const QPointer<QMainWindow> window(stage.window());
    const QPointer<QMenuBar> bar(window->menuBar());
    bar->setObjectName(words("bar"));
    bar->setNativeMenuBar(false);
    fillBar(stage, bar);
    put(centre, new Canvas(stage), "canvas");
    put(centre, new QLineEdit, "line");
    auto* toolBar = window->addToolBar(words("Tools"));
    toolBar->setObjectName(words("toolBar"));
    toolBar->addAction(words("Rinse"))->setObjectName(words("rinse"));

    addTricks(stage, bar);
}
