#include "scenes.h"

#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBox>

namespace {

void putDocks(QMainWindow* window)
{
    QDockWidget* previous = nullptr;
    for (const char* name : {"Dock 1", "Dock 2", "Dock 3"}) {
        auto* dock = own(new QDockWidget(words(name), window));
        dock->setObjectName(words(name).remove(QLatin1Char(' ')));
        dock->setWidget(own(new QLineEdit));
        window->addDockWidget(Qt::BottomDockWidgetArea, dock);
        if (previous)
            window->tabifyDockWidget(previous, dock);
        previous = dock;
    }
}

void fillTabs(QTabWidget* tabs)
{
    for (const char* name : {"Page 1", "&Page 2", "Page 3", "Page 4"})
        tabs->addTab(own(new QPushButton(words(name))), words(name));
}

void fillToolBox(QToolBox* box)
{
    for (const char* name : {"Tools", "&More", "Even more"})
        box->addItem(own(new QLabel(words(name))), words(name));
}

void addTricks(Stage& stage, const QPointer<QTabWidget>& tabs, const QPointer<QToolBox>& box)
{
    const QPointer<QMainWindow> window(stage.window());
    stage.addTrick([=, &stage](QObject*) {
        if (tabs && tabs->count() > 0)
            delete tabs->widget(stage.chance.below(tabs->count()));
    });
    stage.addTrick([=](QObject*) {
        if (tabs) {
            tabs->clear();
            fillTabs(tabs);
        }
    });
    stage.addTrick([=, &stage](QObject*) {
        if (box && box->count() > 0)
            delete box->widget(stage.chance.below(box->count()));
        else if (box)
            fillToolBox(box);
    });
    stage.addTrick([=, &stage](QObject*) {
        const QList<QDockWidget*> docks = window ? window->findChildren<QDockWidget*>() : QList<QDockWidget*>();
        if (docks.isEmpty() && window)
            return putDocks(window);
        for (QDockWidget* dock : docks) {
            if (stage.chance.oneIn(3))
                dock->setFloating(!dock->isFloating());
            else if (stage.chance.oneIn(4))
                delete dock;
        }
    });
    stage.addTrick([=](QObject*) {
        if (window) {
            delete window->statusBar();
            window->statusBar()->setObjectName(words("status"));
        }
    });
}

} // namespace

void buildContainers(Stage& stage, QWidget* centre)
{
    const QPointer<QMainWindow> window(stage.window());
    putDocks(window);
    window->statusBar()->setObjectName(words("status"));
    window->statusBar()->showMessage(words("Ready"));
    const QPointer<QTabWidget> tabs(put(centre, new QTabWidget, "tabs"));
    tabs->setTabsClosable(true);
    tabs->setMovable(true);
    fillTabs(tabs);
    const QPointer<QToolBox> box(put(centre, new QToolBox, "toolBox"));
    fillToolBox(box);
    auto* splitter = put(centre, new QSplitter, "splitter");
    splitter->addWidget(own(new QLineEdit));
    auto* area = new QScrollArea;
    area->setObjectName(words("scrollArea"));
    area->setWidget(own(new QPushButton(words("Inside"))));
    splitter->addWidget(area);
    auto* mdi = put(centre, new QMdiArea, "mdi");
    mdi->addSubWindow(new QLineEdit)->setWindowTitle(words("Sub"));
    mdi->addSubWindow(new QPushButton(words("Sub button")))->setObjectName(words("subWindow"));

    addTricks(stage, tabs, box);
}
