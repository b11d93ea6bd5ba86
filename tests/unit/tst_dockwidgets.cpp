// Which dock widgets scripts see as active: docked, behind tabs, floating and hidden ones.

#include "activewindow.h"
#include "bridge/csquishproxy.h"
#include "unittests.h"

#include <QTest>

#include <QDockWidget>
#include <QMainWindow>

#include <memory>

using LmSquishProxy::CSquishProxy;

class tst_DockWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void dockedOneIsActiveInTheActiveWindow();
    void noneIsActiveInAnInactiveWindow();
    void onlyTheFrontOneOfTabsIsActive();
    void raisingATabMakesItTheActiveSibling();
    void siblingOfTheFrontOneIsNotActive();
    void oneWithoutTabsHasNoSibling();
    void hiddenOneCountsWhereItWas();
    void floatingOneThatIsActiveIsActiveAnywhere();
    void floatingOneHasNoSiblings();
    void oneOutsideAMainWindowIsActiveOnlyWhenItFloats();
    void otherWidgetsAreNoDockWidgets();
    void deletedOneIsNoDockWidget();

private:
    QDockWidget* addDock(const char* name, Qt::DockWidgetArea area);
    void tabify(QDockWidget* first, QDockWidget* second);

    std::unique_ptr<CSquishProxy> proxy;
    std::unique_ptr<QMainWindow> main;
    QDockWidget* left = nullptr;
    QDockWidget* right = nullptr;
    QDockWidget* behind = nullptr;
};

QDockWidget* tst_DockWidgets::addDock(const char* name, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(QLatin1String(name), main.get());
    dock->setObjectName(QLatin1String(name));
    auto* content = new QWidget;
    content->setMinimumSize(80, 60);
    dock->setWidget(content);
    main->addDockWidget(area, dock);
    return dock;
}

void tst_DockWidgets::tabify(QDockWidget* first, QDockWidget* second)
{
    main->tabifyDockWidget(first, second);
    first->raise();
    QVERIFY(becomesTrue([=] { return proxy->isDockWidgetActive(first) && !proxy->isDockWidgetActive(second); }));
}

void tst_DockWidgets::init()
{
    proxy.reset(new CSquishProxy("proxy"));
    main.reset(new QMainWindow);
    main->setAnimated(false);
    main->setCentralWidget(new QWidget);
    main->resize(500, 300);
    main->move(100, 100);
    left = addDock("left", Qt::LeftDockWidgetArea);
    right = addDock("right", Qt::RightDockWidgetArea);
    behind = addDock("behind", Qt::BottomDockWidgetArea);
    QVERIFY(showActive(*main));
}

void tst_DockWidgets::cleanup()
{
    main.reset();
    proxy.reset();
}

void tst_DockWidgets::dockedOneIsActiveInTheActiveWindow()
{
    QVERIFY(proxy->isDockWidgetActive(left));
    QVERIFY(proxy->isDockWidgetActive(right));
}

void tst_DockWidgets::noneIsActiveInAnInactiveWindow()
{
    QWidget other;
    QVERIFY(showActive(other));
    QVERIFY(!proxy->isDockWidgetActive(left));
    main->tabifyDockWidget(left, behind);
    QVERIFY(!proxy->getActivatedSiblingDockWidget(left));
    QVERIFY(!proxy->getActivatedSiblingDockWidget(behind));
}

void tst_DockWidgets::onlyTheFrontOneOfTabsIsActive()
{
    tabify(left, behind);
    QVERIFY(proxy->isDockWidgetActive(left));
    QVERIFY(!proxy->isDockWidgetActive(behind));
    QCOMPARE(proxy->getActivatedSiblingDockWidget(behind), static_cast<QWidget*>(left));
}

void tst_DockWidgets::raisingATabMakesItTheActiveSibling()
{
    main->tabifyDockWidget(right, behind);
    tabify(right, left);
    behind->raise();
    QVERIFY(becomesTrue([this] { return proxy->isDockWidgetActive(behind) && !proxy->isDockWidgetActive(right); }));
    QCOMPARE(proxy->getActivatedSiblingDockWidget(left), static_cast<QWidget*>(behind));
    QCOMPARE(proxy->getActivatedSiblingDockWidget(right), static_cast<QWidget*>(behind));
}

void tst_DockWidgets::siblingOfTheFrontOneIsNotActive()
{
    tabify(left, behind);
    QVERIFY(!proxy->getActivatedSiblingDockWidget(left));
}

void tst_DockWidgets::oneWithoutTabsHasNoSibling()
{
    QVERIFY(!proxy->getActivatedSiblingDockWidget(left));
}

void tst_DockWidgets::hiddenOneCountsWhereItWas()
{
    left->hide();
    QVERIFY(left->isActiveWindow()); // it belongs to the main window
    QVERIFY(proxy->isDockWidgetActive(left));
    main->hide();
    QVERIFY(becomesTrue([this] { return !main->isActiveWindow(); }));
    QVERIFY(!proxy->isDockWidgetActive(left));
}

void tst_DockWidgets::floatingOneThatIsActiveIsActiveAnywhere()
{
    left->setFloating(true);
    QVERIFY(showActive(*left));
    // A late answer of the window manager to setFloating() can undo the first move.
    QVERIFY(becomesTrue([this] {
        left->move(700, 500);
        return !left->geometry().intersects(main->geometry());
    }));
    QVERIFY(becomesTrue([this] { return proxy->isDockWidgetActive(left); }));

    QWidget other;
    QVERIFY(showActive(other));
    QVERIFY(becomesTrue([this] { return !left->isActiveWindow(); }));
    QVERIFY(!proxy->isDockWidgetActive(left));
}

void tst_DockWidgets::floatingOneHasNoSiblings()
{
    tabify(left, behind);
    behind->setFloating(true);
    QVERIFY(!proxy->getActivatedSiblingDockWidget(behind));
}

void tst_DockWidgets::oneOutsideAMainWindowIsActiveOnlyWhenItFloats()
{
    QWidget window;
    auto* dock = new QDockWidget(&window);
    window.resize(300, 200);
    QVERIFY(showActive(window));
    dock->show();
    QVERIFY(dock->isActiveWindow());
    QVERIFY(!dock->isFloating());
    QVERIFY(!proxy->isDockWidgetActive(dock));
    QVERIFY(!proxy->getActivatedSiblingDockWidget(dock));

    QDockWidget alone;
    QVERIFY(showActive(alone));
    QVERIFY(alone.isFloating());
    QVERIFY(proxy->isDockWidgetActive(&alone));
}

void tst_DockWidgets::otherWidgetsAreNoDockWidgets()
{
    QVERIFY(!proxy->isDockWidgetActive(main.get()));
    QVERIFY(!proxy->isDockWidgetActive(nullptr));
    QVERIFY(!proxy->getActivatedSiblingDockWidget(main->centralWidget()));
    QVERIFY(!proxy->getActivatedSiblingDockWidget(nullptr));
}

void tst_DockWidgets::deletedOneIsNoDockWidget()
{
    main.reset();
    QVERIFY(!proxy->isDockWidgetActive(left));
    QVERIFY(!proxy->getActivatedSiblingDockWidget(left));
}

UNIT_TESTS(tst_dockwidgets, unit::withApplication<tst_DockWidgets>)
#include "tst_dockwidgets.moc"
