// Dock widgets in every place they can have; see tests/protocol/test_dock_widgets.py.

#include "deleteonrestore.h"
#include "testhost.h"

#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

QDockWidget* create(TestHost& host, QWidget* parent, const char* name, const char* title)
{
    auto* dock = new QDockWidget(QLatin1String(title), parent);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(new QLabel(QLatin1String(title)));
    // "shown NAME true" when its tab comes to the front, "shown NAME false" when another does.
    host.journalValue(dock, SIGNAL(visibilityChanged(bool)), QLatin1String("shown"));
    return dock;
}

// Dock widgets in one area, one behind the other; the last is in front.
void addTabs(QMainWindow* window, Qt::DockWidgetArea area, const QList<QDockWidget*>& docks)
{
    for (QDockWidget* dock : docks)
        window->addDockWidget(area, dock);
    for (int i = 1; i < docks.size(); ++i)
        window->tabifyDockWidget(docks.at(i - 1), docks.at(i));
    // Room for all tabs: how wide an area becomes is up to Qt's layout, on Qt 4.8 even to how quickly the window comes
    // up, and in a narrow one the tabs are scrolled, the first of them out of reach.
    const int width = 340;
    for (const QDockWidget* dock : docks)
        dock->widget()->setMinimumWidth(width);
    docks.last()->raise();
}

void addAlone(TestHost& host, QMainWindow* window)
{
    window->addDockWidget(Qt::BottomDockWidgetArea, create(host, window, "alone", "Alone"));

    auto* floating = create(host, window, "floating", "Floating");
    window->addDockWidget(Qt::BottomDockWidgetArea, floating);
    floating->setFloating(true);
    floating->move(700, 760);

    // A dock widget need not have a main window.
    auto* inside = create(host, window->centralWidget(), "inside", "Inside");
    window->centralWidget()->layout()->addWidget(inside);

    auto* orphan = create(host, nullptr, "orphan", "Orphan");
    orphan->setGeometry(100, 760, 150, 100);
    orphan->show();
}

// The tab bars that the main window makes for its dock widgets have no names of their own.
void journalTabBars(TestHost& host, const QMainWindow* window)
{
    const QList<QTabBar*> bars = window->findChildren<QTabBar*>();
    for (QTabBar* bar : bars) {
        if (bar->parentWidget() != window || bar->count() == 0)
            continue;
        bar->setObjectName(QLatin1String("tabsOf:") + bar->tabText(0));
        host.journalInput(bar);
    }
}

// Pages with a tab of the same text as a dock widget's, but not the main window's own.
void addPages(QWidget* central)
{
    auto* pages = new QTabWidget;
    pages->setObjectName(QLatin1String("pages"));
    pages->addTab(new QWidget, QLatin1String("Summary"));
    pages->addTab(new QWidget, QLatin1String("Alpha"));
    central->layout()->addWidget(pages);
}

void answerRequests(TestHost& host, QMainWindow* window, QDockWidget* alpha, QDockWidget* beta, QDockWidget* doomed)
{
    host.onRequest(QLatin1String("journalTabBars"), [&host, window] { journalTabBars(host, window); });
    host.onRequest(QLatin1String("journalAlone"),
        [&host, window] { host.journalInput(window->findChild<QDockWidget*>(QLatin1String("alone"))); });
    host.onRequest(QLatin1String("floatBeta"), [beta] {
        beta->setFloating(true);
        beta->move(300, 760);
    });
    host.onRequest(QLatin1String("hideAlpha"), [alpha] { alpha->hide(); });
    host.onRequest(QLatin1String("renameAlpha"), [alpha] { alpha->setWindowTitle(QLatin1String("Omega")); });
    host.onRequest(QLatin1String("minimizeDoomed"), [window, doomed] {
        (new DeleteOnRestore(doomed))->setParent(window);
        window->showMinimized();
    });
}

void build(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("main"));
    window->setWindowTitle(QLatin1String("Docks"));
    auto* central = new QWidget;
    new QVBoxLayout(central);
    window->setCentralWidget(central);

    addPages(central);

    auto* alpha = create(host, window, "alpha", "Alpha");
    auto* beta = create(host, window, "beta", "Beta");
    auto* doomed = create(host, window, "doomed", "Doomed");
    auto* fixed = create(host, window, "fixed", "Fixed");
    fixed->setFeatures(QDockWidget::NoDockWidgetFeatures);
    auto* disabled = create(host, window, "disabled", "Disabled");
    disabled->setEnabled(false);
    addTabs(window, Qt::LeftDockWidgetArea, {alpha, beta, doomed, fixed, disabled});
    auto* firstTwin = create(host, window, "firstTwin", "Twin");
    auto* secondTwin = create(host, window, "secondTwin", "Twin");
    auto* ampersand = create(host, window, "ampersand", "R&D");
    auto* marked = create(host, window, "marked", "Notes[*]");
    auto* cover = create(host, window, "cover", "Cover");
    addTabs(window, Qt::RightDockWidgetArea, {firstTwin, secondTwin, ampersand, marked, cover});
    auto* pairShown = create(host, window, "pairShown", "Pair shown");
    auto* pairHidden = create(host, window, "pairHidden", "Pair hidden");
    addTabs(window, Qt::TopDockWidgetArea, {pairShown, pairHidden});
    pairHidden->hide();
    addAlone(host, window);

    answerRequests(host, window, alpha, beta, doomed);
    window->setGeometry(60, 60, 1000, 600);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
