#include "mainmenu.h"

#include "look.h"
#include "named.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStringList>
#include <QToolBar>

namespace {

QString tr(const char* text)
{
    return QObject::tr(text);
}

QAction* addAction(QMenu* menu, const char* name, const QString& text, const QString& shortcut = QString())
{
    QAction* action = named(menu->addAction(text), name);
    if (!shortcut.isEmpty())
        action->setShortcut(QKeySequence(shortcut));
    return action;
}

QAction* addCheckable(QMenu* menu, const char* name, const QString& text, bool checked)
{
    QAction* action = addAction(menu, name, text);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

void addOrderMenu(QMenuBar* bar)
{
    QMenu* menu = named(bar->addMenu(tr("&Order")), "orderMenu");
    addAction(menu, "newOrderAction", tr("&New order..."), QLatin1String("Ctrl+N"))->setIcon(Look::cup());
    addAction(menu, "priceListAction", tr("&Price list..."), QLatin1String("Ctrl+P"));
    menu->addAction(tr("Print receipt")); // without an object name
    addAction(menu, "exportAction", tr("Export (closed)"))->setEnabled(false);
    menu->addSeparator();
    addAction(menu, "quitAction", tr("&Quit"), QLatin1String("Ctrl+Q"));
}

void addBeansMenu(QMenu* menu)
{
    QMenu* beans = named(menu->addMenu(tr("&Beans")), "beansMenu");
    QMenu* arabica = named(beans->addMenu(tr("&Arabica")), "arabicaMenu");
    addAction(arabica, "washedAction", tr("&Washed"));
    addAction(arabica, "naturalAction", tr("&Natural"));
    addAction(arabica, "honeyAction", tr("&Honey"));
    addAction(beans, "robustaAction", tr("&Robusta"));
}

void addRoastMenu(QMenuBar* bar)
{
    QMenu* menu = named(bar->addMenu(tr("&Roast")), "roastMenu");
    addBeansMenu(menu);
    addAction(menu, "roastAction", tr("&Start the roaster"), QLatin1String("F5"))->setIcon(Look::bean());
    addAction(menu, "stopAction", tr("S&top the roaster"))->setIcon(Look::stop());
    menu->addSeparator();
    addCheckable(menu, "lampAction", tr("&Heat lamp"), false);
    addCheckable(menu, "fanAction", tr("Cooling &fan"), true);
    menu->addSeparator();
    auto* grinds = new QActionGroup(menu);
    grinds->addAction(addCheckable(menu, "coarseAction", tr("&Coarse grind"), true));
    grinds->addAction(addCheckable(menu, "fineAction", tr("F&ine grind"), false));
}

void addToolBar(QMainWindow& window, const QMenuBar* bar)
{
    QToolBar* tools = named(window.addToolBar(tr("Tools")), "mainToolBar");
    tools->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const char* name : {"newOrderAction", "roastAction", "stopAction"})
        tools->addAction(bar->findChild<QAction*>(QLatin1String(name)));
    tools->addSeparator();
    auto* hopper = named(new QComboBox(tools), "hopperCombo");
    hopper->addItems(tr("Hopper A,Hopper B,Hopper C").split(QLatin1Char(',')));
    tools->addWidget(hopper);
}

} // namespace

void addMainMenu(QMainWindow& window)
{
    QMenuBar* bar = named(window.menuBar(), "menuBar");
    addOrderMenu(bar);
    addRoastMenu(bar);
    named(bar->addMenu(tr("&View")), "viewMenu");
    QMenu* windows = named(bar->addMenu(tr("&Window")), "windowMenu");
    addAction(windows, "ordersAction", tr("&Orders"), QLatin1String("Ctrl+O"));
    addAction(windows, "order12Action", tr("Order &12"));
    QMenu* help = named(bar->addMenu(tr("&Help")), "helpMenu");
    addAction(help, "aboutAction", tr("&About"), QLatin1String("F1"));
    addToolBar(window, bar);
}
