// Items that are not there or cannot be used, and what the application feels of a search for them; see
// tests/protocol/test_unready_items.py.

#include "testhost.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTabBar>
#include <QTableWidget>
#include <QToolBox>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

struct FeltRow
{
    QEvent::Type type;
    const char* word;
};

const FeltRow feltRows[] = {
    {QEvent::FocusIn, "focus"},
    {QEvent::FocusOut, "blur"},
    {QEvent::Show, "show"},
    {QEvent::Hide, "hide"},
    {QEvent::KeyPress, "key"},
    {QEvent::MouseButtonPress, "press"},
    {QEvent::MouseMove, "move"},
    {QEvent::Wheel, "wheel"},
    {QEvent::WindowActivate, "activate"},
    {QEvent::ZOrderChange, "raise"},
};

// Journals what any widget of the application feels of input, from "do watch" on.
class Watcher : public QObject
{
public:
    explicit Watcher(TestHost& testHost)
        : QObject(QApplication::instance())
        , host(testHost)
    {
        host.onRequest(QLatin1String("watch"), [this] { QApplication::instance()->installEventFilter(this); });
        host.onRequest(QLatin1String("stopWatching"), [this] { QApplication::instance()->removeEventFilter(this); });
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        for (const FeltRow& row : feltRows) {
            if (object->isWidgetType() && row.type == event->type())
                host.journal(QLatin1String("felt ") + QLatin1String(row.word) + QLatin1Char(' ')
                    + QLatin1String(object->metaObject()->className()) + QLatin1Char(' ') + object->objectName());
        }
        return false;
    }

private:
    TestHost& host;
};

template <class Widget>
Widget* add(QWidget* parent, const char* name)
{
    auto* widget = new Widget;
    widget->setObjectName(QLatin1String(name));
    parent->layout()->addWidget(widget);
    return widget;
}

void addViews(TestHost& host, QWidget* content)
{
    auto* list = add<QListWidget>(content, "list");
    list->addItems(QStringList() << QLatin1String("Early") << QLatin1String("Blocked") << QLatin1String("Hidden"));
    list->item(1)->setFlags(Qt::ItemIsSelectable);
    list->setRowHidden(2, true);
    host.journalSignal(list, SIGNAL(itemSelectionChanged()), QLatin1String("felt selection"));
    auto* tree = add<QTreeWidget>(content, "tree");
    auto* outer = new QTreeWidgetItem(tree, QStringList(QLatin1String("Outer")));
    auto* blocked = new QTreeWidgetItem(outer, QStringList(QLatin1String("Blocked")));
    blocked->setFlags(Qt::ItemIsSelectable);
    tree->setSelectionMode(QAbstractItemView::MultiSelection);
    outer->setSelected(true);
    host.journalSignal(tree, SIGNAL(itemSelectionChanged()), QLatin1String("felt selection"));
    auto* table = add<QTableWidget>(content, "table");
    table->setRowCount(2);
    table->setColumnCount(2);
    table->setRowHidden(1, true);
    table->setItem(0, 1, new QTableWidgetItem(QLatin1String("Blocked")));
    table->item(0, 1)->setFlags(Qt::ItemIsSelectable);
    host.journalSignal(table, SIGNAL(itemSelectionChanged()), QLatin1String("felt selection"));
    auto* plain = add<QListView>(content, "plain");
    plain->setModel(new QStandardItemModel(1, 1, plain));
    add<QComboBox>(content, "combo")->addItem(QLatin1String("Early"));
    auto* tabs = add<QTabBar>(content, "tabs");
    tabs->addTab(QLatin1String("Early"));
    tabs->setTabEnabled(tabs->addTab(QLatin1String("Blocked")), false);
    auto* box = add<QToolBox>(content, "box");
    box->addItem(new QWidget, QLatin1String("Early"));
    box->setItemEnabled(box->addItem(new QWidget, QLatin1String("Blocked")), false);
}

void addMenus(TestHost& host, QMenuBar* bar)
{
    bar->setObjectName(QLatin1String("bar"));
    QMenu* file = bar->addMenu(QLatin1String("&File"));
    file->addAction(QLatin1String("Early"));
    file->addAction(QLatin1String("Blocked"))->setEnabled(false);
    file->addMenu(QLatin1String("More"))->addAction(QLatin1String("Deep"));
    bar->addMenu(QLatin1String("Closed"))->setEnabled(false);

    QMenu* lazy = bar->addMenu(QLatin1String("Lazy"));
    host.onSignal(lazy, SIGNAL(aboutToShow()), [lazy, &host] {
        lazy->clear();
        QAction* filled = lazy->addAction(QLatin1String("Filled"));
        filled->setObjectName(QLatin1String("filled"));
        host.journalSignal(filled, SIGNAL(triggered()), QLatin1String("triggered"));
    });
    QMenu* edit = bar->addMenu(QLatin1String("Edit"));
    QAction* paste = edit->addAction(QLatin1String("Paste"));
    paste->setObjectName(QLatin1String("paste"));
    paste->setEnabled(false);
    host.onSignal(edit, SIGNAL(aboutToShow()), [paste] { paste->setEnabled(true); });
    host.journalSignal(paste, SIGNAL(triggered()), QLatin1String("triggered"));
    // Has no entries, so that only its opening tells whether there are any.
    bar->addMenu(QLatin1String("Empty"));
    host.onRequest(QLatin1String("popUp"), [file, bar] { file->popup(bar->mapToGlobal(QPoint(0, bar->height()))); });
}

// The views are out of sight, in a scroll area and partly behind the other window.
void build(TestHost& host)
{
    auto* window = new QMainWindow;
    window->setObjectName(QLatin1String("items"));
    window->setWindowTitle(QLatin1String("Items"));
    window->setGeometry(60, 60, 400, 300);
    auto* area = new QScrollArea;
    area->setWidgetResizable(true);
    auto* content = new QWidget;
    content->setLayout(new QVBoxLayout);
    add<QLineEdit>(content, "holder");
    auto* gap = add<QWidget>(content, "gap");
    gap->setFixedHeight(600);
    addViews(host, content);
    area->setWidget(content);
    window->setCentralWidget(area);
    area->verticalScrollBar()->setObjectName(QLatin1String("bar of the area"));
    host.journalSignal(area->verticalScrollBar(), SIGNAL(valueChanged(int)), QLatin1String("felt scrolling"));
    addMenus(host, window->menuBar());
    window->show();

    auto* front = new QWidget;
    front->setObjectName(QLatin1String("front"));
    front->setWindowTitle(QLatin1String("Front"));
    front->setGeometry(300, 200, 300, 200);
    (new QLineEdit(front))->setObjectName(QLatin1String("frontLine"));
    front->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, [](TestHost& host) {
        new Watcher(host);
        build(host);
    });
}
