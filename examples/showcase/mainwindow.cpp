#include "mainwindow.h"

#include "boilerpane.h"
#include "buttonspage.h"
#include "containerspage.h"
#include "dialogspage.h"
#include "entrypage.h"
#include "journal.h"
#include "journalpane.h"
#include "listspage.h"
#include "mainmenu.h"
#include "named.h"
#include "tablespage.h"

#include <QAction>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

MainWindow::MainWindow(Journal& journal)
    : m_journal(journal)
    , m_pages(named(new QTabWidget(this), "pages"))
    , m_dialogs(nullptr)
{
    setObjectName(QLatin1String("showcase"));
    setWindowTitle(tr("Roastery"));
    addMainMenu(*this);
    addPages();
    setCentralWidget(m_pages);
    addDocks();
    named(statusBar(), "statusBar")->addPermanentWidget(named(new QLabel(tr("Open until 18:00"), this), "openLabel"));
    resize(1100, 760);

    m_journal.watch(this);
    connectActions();
}

MainWindow::~MainWindow()
{
    m_journal.stopWatching();
}

void MainWindow::addPages()
{
    m_pages->setDocumentMode(true);
    m_dialogs = named(new DialogsPage(m_journal, m_pages), "dialogsPage");
    m_pages->addTab(named(new ButtonsPage(m_journal, m_pages), "buttonsPage"), tr("Buttons"));
    m_pages->addTab(named(new EntryPage(m_journal, m_pages), "entryPage"), tr("Entry fields"));
    m_pages->addTab(named(new ListsPage(m_journal, m_pages), "listsPage"), tr("Lists"));
    m_pages->addTab(named(new TablesPage(m_journal, m_pages), "tablesPage"), tr("Tables"));
    m_pages->addTab(named(new ContainersPage(m_journal, m_pages), "containersPage"), tr("Containers"));
    m_pages->addTab(m_dialogs, tr("Dialogs"));
}

bool MainWindow::showPage(const QString& title)
{
    for (int index = 0; index < m_pages->count(); ++index) {
        if (m_pages->tabText(index).compare(title, Qt::CaseInsensitive) == 0) {
            m_pages->setCurrentIndex(index);
            return true;
        }
    }
    return false;
}

void MainWindow::addDocks()
{
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    auto* boiler = makeDock("boilerDock", tr("Boiler"), Qt::RightDockWidgetArea, new BoilerPane(this));
    auto* recipe = makeDock("recipeDock", tr("Recipe"), Qt::RightDockWidgetArea, makeRecipe());
    tabifyDockWidget(boiler, recipe);
    boiler->raise();
    makeDock("journalDock", tr("Journal"), Qt::BottomDockWidgetArea, new JournalPane(m_journal, this));
}

QDockWidget* MainWindow::makeDock(const char* name, const QString& title, Qt::DockWidgetArea area, QWidget* content)
{
    auto* dock = named(new QDockWidget(title, this), name);
    dock->setWidget(content);
    addDockWidget(area, dock);
    QAction* toggle = dock->toggleViewAction();
    toggle->setObjectName(dock->objectName() + QLatin1String("Action"));
    findChild<QMenu*>(QLatin1String("viewMenu"))->addAction(toggle);
    return dock;
}

QWidget* MainWindow::makeRecipe()
{
    auto* pane = new QWidget(this);
    auto* text = new QLabel(tr("Flat white\n\nTwo shots of espresso,\na little steamed milk,\nhardly any foam."), pane);
    auto* column = new QVBoxLayout(pane);
    column->addWidget(text);
    column->addWidget(named(new QCheckBox(tr("A favourite"), pane), "favouriteCheck"));
    column->addStretch();
    return pane;
}

void MainWindow::connectActions()
{
    const struct
    {
        const char* name;
        const char* slot;
    } rows[] = {{"newOrderAction", SLOT(newOrder())}, {"priceListAction", SLOT(choosePriceList())},
        {"ordersAction", SLOT(showOrders())}, {"order12Action", SLOT(showOrder12())},
        {"aboutAction", SLOT(showAbout())}};
    for (const auto& row : rows)
        connect(findChild<QAction*>(QLatin1String(row.name)), SIGNAL(triggered()), m_dialogs, row.slot);
    connect(findChild<QAction*>(QLatin1String("quitAction")), SIGNAL(triggered()), this, SLOT(close()));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    m_journal.stopWatching(); // what goes with the window is not the user's doing
    QMainWindow::closeEvent(event);
    QCoreApplication::exit(0); // the other windows go with this one
}
