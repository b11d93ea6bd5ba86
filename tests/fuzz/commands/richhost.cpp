#include "richhost.h"

#include "commands/hostparts.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QCursor>
#include <QDateTimeEdit>
#include <QDockWidget>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>

template <class Widget>
Widget* RichHost::add(const char* name)
{
    const int columns = 8;
    auto* widget = new Widget;
    const QSize smallest(20, 20);
    widget->setObjectName(QLatin1String(name));
    widget->setMinimumSize(smallest); // the window has to fit on the screen
    widget->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    grid->addWidget(widget, places / columns, places % columns);
    grid->setRowStretch(places / columns, 1);
    grid->setColumnStretch(places % columns, 1);
    ++places;
    return widget;
}

RichHost::RichHost()
    : window(new QMainWindow)
{
    QCursor::setPos(0, 0);
    QApplication::clipboard()->clear();
    window->setObjectName(QLatin1String("main"));
    window->setWindowTitle(QLatin1String("Fuzz host"));
    auto* center = new QWidget(window);
    grid = new QGridLayout(center);
    grid->setSpacing(1);
    window->setCentralWidget(center);
    addButtons();
    addFields();
    addContainers();
    addLists();
    addTrees();
    addTables();
    addMenus();
    addDialogButtons();
    addMortals();
    const QSize mainSize(780, 560); // the screen is of 800 by 600 pixels
    window->resize(mainSize);
    auto* second = new QWidget; // titles that begin like the first one's, and names that are there twice
    second->setObjectName(QLatin1String("second"));
    second->setWindowTitle(QLatin1String("Fuzz host - second"));
    auto* twin = new QPushButton(QLatin1String("Twin"), second);
    twin->setObjectName(QLatin1String("probe"));
    second->resize(100, 50);
    second->show();
    window->setUpdatesEnabled(false); // to draw it takes three quarters of the time, and nobody looks
    window->show();
    window->activateWindow();
    QCoreApplication::processEvents();
}

RichHost::~RichHost()
{
    while (QWidget* popup = QApplication::activePopupWidget()) {
        delete popup;
    }
    delete window;
    QWidgetList rest = QApplication::topLevelWidgets();
    while (!rest.isEmpty()) {
        delete rest.first();
        rest = QApplication::topLevelWidgets();
    }
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void RichHost::addButtons()
{
    auto* probe = add<QPushButton>("probe");
    probe->setText(QLatin1String("&Probe"));
    QObject::connect(probe, &QPushButton::clicked, [this] { ++clicks; });
    add<QCheckBox>("check")->setTristate(true);
    add<QRadioButton>("radio")->setText(QLatin1String("Radio"));
    auto* tool = add<QToolButton>("tool");
    tool->setPopupMode(QToolButton::MenuButtonPopup);
    tool->setMenu(hostparts::newMenu(tool));
    auto* instant = add<QToolButton>("instant");
    instant->setPopupMode(QToolButton::InstantPopup);
    instant->setMenu(hostparts::newMenu(instant));
    auto* group = add<QGroupBox>("group");
    group->setTitle(QLatin1String("Group"));
    group->setCheckable(true);
    (new QPushButton(QLatin1String("In group"), group))->move(5, 20);
    add<QPushButton>("disabled")->setEnabled(false);
    add<QPushButton>("hidden")->hide();
    add<QPushButton>("unnamedSoon")->setObjectName(QString());
}

void RichHost::addFields()
{
    add<QLineEdit>("edit")->setText(QLatin1String("text"));
    add<QLineEdit>("masked")->setInputMask(QLatin1String("999.999"));
    add<QLineEdit>("number")->setValidator(new QIntValidator(0, 99, window));
    add<QLineEdit>("readonly")->setReadOnly(true);
    add<QTextEdit>("memo")->setText(QLatin1String("memo"));
    hostparts::fill(add<QComboBox>("combo"), false);
    hostparts::fill(add<QComboBox>("editcombo"), true);
    add<QSpinBox>("spin")->setRange(-5, 1000000);
    add<QDoubleSpinBox>("double");
    add<QDateTimeEdit>("datetime");
    add<QTimeEdit>("time");
    auto* slider = add<QSlider>("slider");
    slider->setOrientation(Qt::Horizontal);
    slider->setRange(-20, 20);
    add<QSlider>("vslider")->setRange(0, 2147483647);
    add<QProgressBar>("progress")->setValue(30);
    add<QLabel>("label")->setText(QLatin1String("Label"));
}

void RichHost::addContainers()
{
    auto* tabs = add<QTabWidget>("tabs");
    for (const char* title : {"&One", "Two", "Two", "", "T/h:ree"})
        tabs->addTab(new QLineEdit, QLatin1String(title));
    auto* box = add<QToolBox>("toolbox");
    box->addItem(new QLabel(QLatin1String("a")), QLatin1String("Page A"));
    box->addItem(new QLabel(QLatin1String("b")), QLatin1String("Page B"));
    QDockWidget* docks[2] = {nullptr, nullptr};
    for (int i = 0; i < 2; ++i) {
        docks[i] = new QDockWidget(QString::fromLatin1("Dock %1").arg(i), window);
        docks[i]->setObjectName(QString::fromLatin1("dock%1").arg(i));
        docks[i]->setWidget(new QLineEdit);
        window->addDockWidget(Qt::BottomDockWidgetArea, docks[i]);
    }
    window->tabifyDockWidget(docks[0], docks[1]);
    window->statusBar()->setObjectName(QLatin1String("statusbar"));
    window->statusBar()->showMessage(QLatin1String("Ready"));
}

void RichHost::addLists()
{
    hostparts::fill(add<QListWidget>("list"));
    hostparts::setModel(add<QListView>("listview"));
    hostparts::shrinkOnKeys(hostparts::fill(add<QListWidget>("shrinking")));
    add<QListView>("modelless");
    hostparts::setModel(add<hostparts::PlainView>("plainview"));
}

void RichHost::addTrees()
{
    hostparts::fill(add<QTreeWidget>("tree"));
    hostparts::setModel(add<QTreeView>("treeview"));
    auto* multi = add<QTreeView>("multitree");
    multi->setSelectionMode(QAbstractItemView::MultiSelection);
    hostparts::setModel(multi);
    multi->expandAll();
}

void RichHost::addTables()
{
    hostparts::fill(add<QTableWidget>("table"));
    auto* view = add<QTableView>("tableview");
    hostparts::setModel(view);
    view->setEditTriggers(QAbstractItemView::CurrentChanged);
    view->setColumnHidden(1, true);
}

void RichHost::addMenus()
{
    QMenu* file = hostparts::newMenu(window);
    file->setTitle(QLatin1String("&File"));
    window->menuBar()->setObjectName(QLatin1String("menubar"));
    window->menuBar()->addMenu(file);
    QMenu* changing = window->menuBar()->addMenu(QLatin1String("Changing"));
    QObject::connect(changing, &QMenu::aboutToShow, [changing] { hostparts::rebuild(changing); });
    window->menuBar()->addAction(QLatin1String("Plain"));
    QToolBar* bar = window->addToolBar(QLatin1String("Tools"));
    auto* action = new QAction(QLatin1String("Brew"), bar);
    action->setObjectName(QLatin1String("brew"));
    bar->addAction(action);
    bar->addSeparator();
    bar->addAction(QLatin1String("Nameless"));
}

void RichHost::addDialogButtons()
{
    for (const hostparts::DialogKind& kind : hostparts::dialogKinds()) {
        auto* button = add<QPushButton>(kind.name);
        button->setText(QLatin1String(kind.name));
        QObject::connect(button, &QPushButton::clicked, [this, kind] { kind.open(window); });
    }
}

void RichHost::addMortals()
{
    auto* pad = add<hostparts::MenuArea>("menuarea");
    pad->setMinimumHeight(20);
    auto* dies = add<QPushButton>("dies");
    QObject::connect(dies, &QPushButton::pressed, dies, &QObject::deleteLater);
    auto* closes = add<QPushButton>("closes");
    QObject::connect(closes, &QPushButton::clicked, window, &QWidget::close);
    auto* kills = add<QPushButton>("kills"); // another widget, at once
    const QPointer<QWidget> victim(window->findChild<QWidget*>(QLatin1String("list")));
    QObject::connect(kills, &QPushButton::clicked, [victim] { delete victim; });
    auto* mortal = add<QLineEdit>("mortaledit");
    QObject::connect(mortal, &QLineEdit::textChanged, mortal, &QObject::deleteLater);
    auto* combo = add<QComboBox>("mortalcombo");
    hostparts::fill(combo, false);
    QObject::connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), combo, &QObject::deleteLater);
    auto* list = hostparts::fill(add<QListWidget>("mortallist"));
    QObject::connect(list, &QListWidget::currentRowChanged, list, &QObject::deleteLater);
    auto* tree = add<QTreeView>("forgettingtree");
    hostparts::setModel(tree);
    QObject::connect(tree->selectionModel(), &QItemSelectionModel::currentChanged, tree,
        [tree] { QTimer::singleShot(0, tree, [tree] { tree->setModel(nullptr); }); });
}
