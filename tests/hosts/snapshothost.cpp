// A window with a widget of every kind that a snapshot tells apart; see tests/protocol/test_snapshots.py.

#include "testhost.h"

#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QCommandLinkButton>
#include <QDateEdit>
#include <QDial>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFormLayout>
#include <QGraphicsView>
#include <QGroupBox>
#include <QHeaderView>
#include <QLCDNumber>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSizeGrip>
#include <QSlider>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolBox>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

void addMenu(QMainWindow& window)
{
    QMenu* file = window.menuBar()->addMenu(QLatin1String("&File"));
    QAction* save = file->addAction(QLatin1String("&Save\tignored"));
    save->setShortcut(QKeySequence(QLatin1String("Ctrl+S")));
    file->addSeparator();
    QAction* wrap = file->addAction(QLatin1String("Wrap"));
    wrap->setCheckable(true);
    wrap->setChecked(true);
    file->addAction(QLatin1String("Print"))->setEnabled(false);
    file->addAction(QLatin1String("Never"))->setVisible(false);
    file->addMenu(QLatin1String("Recent"))->addAction(QLatin1String("a.txt"));
    window.menuBar()->addMenu(QLatin1String("&Help"))->setEnabled(false);
}

QWidget* fields()
{
    auto* group = named(new QGroupBox(QLatin1String("&Order")), "orderGroup");
    auto* form = new QFormLayout(group);
    auto* customer = named(new QLineEdit(QString::fromUtf8("Ada \xe2\x82\xac")), "customer");
    customer->setPlaceholderText(QLatin1String("Who?"));
    customer->setToolTip(QLatin1String("The one who pays"));
    form->addRow(QLatin1String("&Customer:"), customer);
    auto* password = named(new QLineEdit(QLatin1String("secret")), "password");
    password->setEchoMode(QLineEdit::Password);
    form->addRow(QLatin1String("Password:"), password);
    auto* fixed = named(new QLineEdit(QLatin1String("fixed")), "fixed");
    fixed->setReadOnly(true);
    form->addRow(QLatin1String("Number:"), fixed);
    auto* amount = named(new QSpinBox, "amount");
    amount->setValue(7);
    form->addRow(QLatin1String("Amount:"), amount);
    auto* roast = named(new QComboBox, "roast");
    roast->addItems(QStringList() << QLatin1String("Light") << QLatin1String("Dark"));
    roast->setCurrentIndex(1);
    form->addRow(QLatin1String("Roast:"), roast);
    auto* heat = named(new QSlider(Qt::Horizontal), "heat");
    heat->setValue(42);
    form->addRow(QLatin1String("Heat:"), heat);
    auto* progress = named(new QProgressBar, "progress");
    progress->setValue(25);
    form->addRow(progress);
    form->addRow(named(new QPlainTextEdit(QLatin1String("two\nlines")), "notes"));
    return group;
}

QWidget* choices()
{
    auto* group = new QWidget;
    auto* column = new QVBoxLayout(group);
    auto* milk = named(new QCheckBox(QLatin1String("&Milk")), "milk");
    milk->setChecked(true);
    auto* sugar = named(new QCheckBox(QLatin1String("Sugar")), "sugar");
    sugar->setTristate(true);
    sugar->setCheckState(Qt::PartiallyChecked);
    auto* small = named(new QRadioButton(QLatin1String("Small")), "small");
    auto* buy = named(new QPushButton(QLatin1String("Buy")), "buy");
    buy->setEnabled(false);
    auto* tabs = named(new QTabBar, "tabs");
    tabs->addTab(QLatin1String("&One"));
    tabs->addTab(QLatin1String("Two"));
    tabs->setTabEnabled(1, false);
    QWidget* const all[] = {milk, sugar, small, buy, tabs};
    for (QWidget* widget : all)
        column->addWidget(widget);
    named(new QLabel(QLatin1String("Ghost"), group), "ghost")->hide();
    return group;
}

QTreeWidget* tree()
{
    auto* tree = named(new QTreeWidget, "tree");
    tree->setHeaderLabels(QStringList() << QLatin1String("Name") << QLatin1String("Size"));
    for (int i = 0; i < 50; ++i) {
        auto* top = new QTreeWidgetItem(tree, QStringList() << QString::fromLatin1("top %1").arg(i));
        top->setText(1, QString::number(i));
        new QTreeWidgetItem(top, QStringList() << QString::fromLatin1("child %1").arg(i));
    }
    tree->topLevelItem(0)->setExpanded(true);
    tree->topLevelItem(1)->setCheckState(0, Qt::Checked);
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    return tree;
}

QTableWidget* table()
{
    auto* table = named(new QTableWidget(100, 3), "table");
    table->setHorizontalHeaderLabels(QStringList() << QLatin1String("A") << QLatin1String("B") << QLatin1String("C"));
    for (int row = 0; row < 100; ++row) {
        for (int column = 0; column < 3; ++column)
            table->setItem(row, column, new QTableWidgetItem(QString::fromLatin1("%1.%2").arg(row).arg(column)));
    }
    table->hideColumn(1);
    table->hideRow(1);
    table->item(0, 0)->setFlags(Qt::ItemIsSelectable);
    return table;
}

QListWidget* list()
{
    auto* list = named(new QListWidget, "list");
    for (int i = 0; i < 300; ++i)
        list->addItem(QString::fromLatin1("item %1").arg(i));
    list->setSpacing(3);
    list->setCurrentRow(2);
    return list;
}

// Deletes its view when it is asked for a text, which no model should do.
class DeadlyModel : public QStandardItemModel
{
public:
    explicit DeadlyModel(QWidget* deletedView)
        : view(deletedView)
    {
        setHorizontalHeaderLabels(QStringList() << QLatin1String("deadly"));
        appendRow(new QStandardItem(QLatin1String("row")));
    }

    bool isArmed = false;

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (isArmed && role == Qt::DisplayRole)
            delete view.data();
        return QStandardItemModel::data(index, role);
    }

private:
    QPointer<QWidget> view;
};

// Does not paint, for which Qt would ask for the text and not survive it.
class UnpaintedView : public QTreeView
{
protected:
    void paintEvent(QPaintEvent*) override { }
};

void addDeadlyWindow(TestHost& host)
{
    auto* window = new QWidget;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QLatin1String("Deadly"));
    auto* row = new QVBoxLayout(window);
    auto* view = named(new UnpaintedView, "deadlyView");
    auto* model = new DeadlyModel(view);
    model->setParent(window);
    view->setModel(model);
    row->addWidget(view);
    row->addWidget(named(new QPushButton(QLatin1String("After")), "after"));
    window->show();
    host.onRequest(QLatin1String("arm"), [model, view] {
        view->doItemsLayout();
        model->isArmed = true;
    });
}

QString roleName(const char* role)
{
    return QLatin1String("role ") + QLatin1String(role);
}

// A widget of each kind that the main window has none of; its name tells the role that a snapshot has to tell.
void addKinds(QWidget* parent)
{
    const struct
    {
        const char* role;
        QWidget* widget;
    } kinds[] = {
        {"widget", new QFrame},
        {"scroll area", new QScrollArea},
        {"slider", new QDial},
        {"scroll bar", new QScrollBar},
        {"spin box", new QDoubleSpinBox},
        {"calendar", new QCalendarWidget},
        {"button", new QCommandLinkButton(QLatin1String("Go"))},
        {"date edit", new QTimeEdit},
        {"button box", new QDialogButtonBox(QDialogButtonBox::Ok)},
        {"dock", new QDockWidget(QLatin1String("Files"))},
        {"graphics view", new QGraphicsView},
        {"display", new QLCDNumber},
        {"workspace", new QMdiArea},
        {"edit", new QTextBrowser},
        {"size grip", new QSizeGrip(parent)},
        {"splitter", new QSplitter},
        {"stack", new QStackedWidget},
        {"status bar", new QStatusBar},
        {"tabs", new QTabWidget},
        {"tool bar", new QToolBar},
        {"tool box", new QToolBox},
        {"tree", new QTreeView},
        {"table", new QTableView},
        {"list", new QListView},
    };
    int number = 0;
    for (const auto& kind : kinds) {
        kind.widget->setParent(parent);
        kind.widget->setObjectName(roleName(kind.role));
        kind.widget->setGeometry(10 + 110 * (number % 8), 10 + 60 * (number / 8), 100, 50);
        ++number;
    }
}

// Fields whose values are told in a way of their own.
void addFields(QWidget* parent)
{
    auto* pin = named(new QComboBox(parent), "pin");
    pin->setEditable(true);
    pin->lineEdit()->setEchoMode(QLineEdit::Password);
    pin->lineEdit()->setText(QLatin1String("secret"));
    auto* unseen = named(new QLineEdit(QLatin1String("secret"), parent), "unseen");
    unseen->setEchoMode(QLineEdit::NoEcho);
    named(new QDoubleSpinBox(parent), "weight")->setValue(2.5);
    named(new QDateEdit(QDate(2024, 3, 12), parent), "day")->setDisplayFormat(QLatin1String("yyyy-MM-dd"));
    named(new QLCDNumber(parent), "digits")->display(42);
    named(new QTextEdit(parent), "story")->setPlainText(QString(3000, QLatin1Char('x')));
    auto* many = named(new QComboBox(parent), "many");
    for (int i = 0; i < 250; ++i)
        many->addItem(QString::fromLatin1("choice %1").arg(i));
    auto* open = named(new QToolButton(parent), "open");
    auto* action = named(new QAction(QLatin1String("&Open\tignored"), open), "openAction");
    action->setToolTip(QLatin1String("Opens a file"));
    open->setDefaultAction(action);
    named(new QPushButton(QLatin1String("Go"), parent), "go")->setDefault(true);
    auto* locked = named(new QGroupBox(QLatin1String("Locked"), parent), "locked");
    locked->setCheckable(true);
    named(new QPlainTextEdit(parent), "fixedText")->setReadOnly(true);
}

void addMoreWindow()
{
    auto* window = new QWidget;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QLatin1String("More"));
    window->resize(900, 300);
    addKinds(window);
    addFields(window);
    window->show();
}

void build(TestHost& host)
{
    auto* window = named(new QMainWindow, "main");
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(QString::fromUtf8("Caf\xc3\xa9, \xe2\x82\xac"));
    addMenu(*window);
    auto* middle = new QWidget;
    auto* columns = new QHBoxLayout(middle);
    auto* views = new QVBoxLayout;
    QWidget* const viewWidgets[] = {tree(), table(), list()};
    for (QWidget* view : viewWidgets)
        views->addWidget(view);
    columns->addWidget(fields());
    columns->addWidget(choices());
    columns->addLayout(views);
    window->setCentralWidget(middle);
    window->resize(900, 640);
    window->show();

    host.onRequest(QLatin1String("showDeadly"), [&host] { addDeadlyWindow(host); });
    host.onRequest(QLatin1String("showMore"), addMoreWindow);
    host.onRequest(QLatin1String("focusNotes"), [&host] { host.findWidget(QLatin1String("notes"))->setFocus(); });
    host.onRequest(QLatin1String("deleteBuy"), [&host] { delete host.findWidget(QLatin1String("buy")); });
    host.onRequest(QLatin1String("hideFirstColumns"), [&host] {
        static_cast<QTreeView*>(host.findWidget(QLatin1String("tree")))->hideColumn(0);
        static_cast<QTableView*>(host.findWidget(QLatin1String("table")))->hideColumn(0);
    });
    host.onRequest(QLatin1String("scrollList"),
        [&host] { static_cast<QListWidget*>(host.findWidget(QLatin1String("list")))->scrollToBottom(); });
    host.onRequest(QLatin1String("manyWidgets"), [&host] {
        auto* many = named(new QWidget, "many");
        many->setWindowTitle(QLatin1String("Many"));
        many->setAttribute(Qt::WA_DeleteOnClose);
        for (int i = 0; i < 5000; ++i)
            new QPushButton(QString::fromLatin1("button %1").arg(i), many);
        many->show();
    });
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
