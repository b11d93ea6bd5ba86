// Things in widgets that are no widgets: rows, cells, sections, tabs, pages, entries of menus; see
// tests/protocol/test_items.py.

#include "testhost.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFrame>
#include <QHeaderView>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QToolBox>
#include <QTreeWidget>

namespace {

using ItemAt = std::function<QString(const QPoint& position)>;

// Journals which item gets the mouse: "press NAME ITEM left", "release", "doubleclick", "contextmenu NAME ITEM", "move".
class MouseJournal : public QObject
{
public:
    MouseJournal(TestHost& testHost, QWidget* widget, const char* widgetName, ItemAt item)
        : QObject(widget)
        , host(testHost)
        , name(QLatin1String(widgetName))
        , itemAt(std::move(item))
    {
        widget->setMouseTracking(true);
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        struct Row
        {
            QEvent::Type type;
            const char* word;
        };
        static const Row rows[] = {
            {QEvent::MouseButtonPress, "press"},
            {QEvent::MouseButtonRelease, "release"},
            {QEvent::MouseButtonDblClick, "doubleclick"},
            {QEvent::MouseMove, "move"},
        };
        for (const Row& row : rows) {
            if (row.type == event->type())
                tell(row.word, *static_cast<QMouseEvent*>(event));
        }
        if (event->type() == QEvent::ContextMenu)
            tell("contextmenu", static_cast<QContextMenuEvent*>(event)->pos(), QString());
        return false;
    }

private:
    void tell(const char* word, const QMouseEvent& event)
    {
        const char* button = event.button() == Qt::LeftButton ? " left" : " right";
        tell(word, event.pos(), QLatin1String(event.type() == QEvent::MouseMove ? "" : button));
    }
    void tell(const char* word, const QPoint& position, const QString& button)
    {
        host.journal(QLatin1String(word) + QLatin1Char(' ') + name + QLatin1Char(' ') + itemAt(position) + button);
    }

    TestHost& host;
    QString name;
    ItemAt itemAt;
};

// Journals "native NAME" for the windowing system's own moves of the mouse over a widget, before any filter of that.
class NativeMoves : public QObject
{
public:
    NativeMoves(TestHost& testHost, QWidget* observed)
        : QObject(observed)
        , host(testHost)
        , widget(observed)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == widget && event->type() == QEvent::MouseMove && event->spontaneous())
            host.journal(QLatin1String("native ") + widget->objectName());
        return false;
    }

private:
    TestHost& host;
    QWidget* widget;
};

template <class Widget>
Widget* placed(Widget* widget, const char* name, const QRect& rect)
{
    widget->setObjectName(QLatin1String(name));
    widget->setGeometry(rect);
    return widget;
}

void journalView(TestHost& host, QAbstractItemView* view, const char* name)
{
    new MouseJournal(host, view->viewport(), name, [view](const QPoint& position) {
        const QModelIndex index = view->indexAt(position);
        return index.isValid() ? index.data().toString() : QLatin1String("nothing");
    });
}

void journalHeader(TestHost& host, QHeaderView* header, const char* name)
{
    new MouseJournal(host, header->viewport(), name, [header](const QPoint& position) {
        const int section = header->logicalIndexAt(position);
        return header->model()->headerData(section, header->orientation()).toString();
    });
}

void addViews(TestHost& host, QWidget* parent)
{
    auto* list = placed(new QListWidget(parent), "list", QRect(10, 10, 150, 120));
    for (int i = 0; i < 100; ++i)
        list->addItem(QString::fromLatin1("Row %1").arg(i));
    list->item(1)->setFlags(Qt::ItemIsSelectable);
    list->item(2)->setHidden(true);
    list->addItem(QString(400, QLatin1Char('w')));
    journalView(host, list, "list");

    auto* tree = placed(new QTreeWidget(parent), "tree", QRect(170, 10, 200, 120));
    tree->setHeaderLabels(QStringList() << QLatin1String("Name") << QLatin1String("Size"));
    for (int i = 0; i < 20; ++i) {
        auto* top = new QTreeWidgetItem(tree, QStringList(QString::fromLatin1("Folder %1").arg(i)));
        new QTreeWidgetItem(top, QStringList(QString::fromLatin1("File %1").arg(i)));
    }
    journalView(host, tree, "tree");
    tree->header()->setSortIndicatorShown(true); // only shown: the rows stay as they are
    tree->header()->setSortIndicator(1, Qt::DescendingOrder);
    journalHeader(host, tree->header(), "columns");

    auto* table = placed(new QTableWidget(50, 20, parent), "table", QRect(380, 10, 260, 120));
    for (int row = 0; row < 50; ++row) {
        for (int column = 0; column < 20; ++column)
            table->setItem(row, column, new QTableWidgetItem(QString::fromLatin1("%1x%2").arg(row).arg(column)));
    }
    table->setColumnHidden(1, true);
    table->item(2, 2)->setCheckState(Qt::Checked);
    table->item(3, 2)->setCheckState(Qt::PartiallyChecked);
    table->item(4, 2)->setFlags(Qt::NoItemFlags);
    journalView(host, table, "table");
    journalHeader(host, table->horizontalHeader(), "columnHeader");
    journalHeader(host, table->verticalHeader(), "rowHeader");
    auto* killer = new QTimer(parent);
    killer->setSingleShot(true);
    host.onSignal(killer, SIGNAL(timeout()), [&host] { delete host.findWidget(QLatin1String("table")); });
    host.onRequest(QLatin1String("deleteTableOnScroll"), [&host, table, killer] {
        host.onSignal(table->verticalScrollBar(), SIGNAL(valueChanged(int)), [killer] { killer->start(0); });
    });
}

QTabBar* addTabs(TestHost& host, QWidget* parent, const char* name, const QRect& rect, int count)
{
    auto* bar = placed(new QTabBar(parent), name, rect);
    for (int i = 0; i < count; ++i)
        bar->addTab(QString::fromLatin1("Tab %1").arg(i));
    bar->setExpanding(false);
    new MouseJournal(host, bar, name, [bar](const QPoint& position) { return bar->tabText(bar->tabAt(position)); });
    return bar;
}

void addContainers(TestHost& host, QWidget* parent)
{
    auto* movable = addTabs(host, parent, "movable", QRect(10, 140, 400, 30), 4);
    movable->setMovable(true);
    movable->setTabEnabled(3, false);
    new NativeMoves(host, movable);
    host.onSignal(movable, SIGNAL(tabMoved(int, int)), [&host, movable] {
        QString order;
        for (int i = 0; i < movable->count(); ++i)
            order += movable->tabText(i).right(1);
        host.journal(QLatin1String("order ") + order);
    });
    addTabs(host, parent, "scrolled", QRect(10, 180, 200, 30), 20);
    auto* standing = addTabs(host, parent, "standing", QRect(420, 140, 30, 120), 12);
    standing->setShape(QTabBar::RoundedWest);
    addTabs(host, parent, "under", QRect(220, 180, 190, 30), 2);
    auto* overlay = placed(new QFrame(parent), "overlay", QRect(220, 175, 40, 40));
    overlay->setAutoFillBackground(true);

    auto* box = placed(new QToolBox(parent), "box", QRect(460, 140, 180, 120));
    box->addItem(new QWidget, QLatin1String("First"));
    box->addItem(new QWidget, QLatin1String("Second"));
    box->addItem(new QWidget, QLatin1String("Locked"));
    box->setItemEnabled(2, false);
    const QList<QAbstractButton*> headers
        = box->findChildren<QAbstractButton*>(QLatin1String("qt_toolbox_toolboxbutton"));
    for (QAbstractButton* header : headers)
        new MouseJournal(host, header, "box", [header](const QPoint&) { return header->text(); });
}

// A list in the middle of a scroll area, so that there is something beyond it on all sides.
void addArea(TestHost& host, QWidget* parent)
{
    auto* content = placed(new QWidget, "content", QRect(0, 0, 600, 600));
    auto* inner = placed(new QListWidget(content), "innerList", QRect(300, 300, 150, 60));
    for (int i = 0; i < 30; ++i)
        inner->addItem(QString::fromLatin1("Inner %1").arg(i));
    journalView(host, inner, "innerList");
    placed(new QFrame(content), "farFrame", QRect(500, 560, 60, 30));
    auto* area = placed(new QScrollArea(parent), "area", QRect(10, 220, 200, 150));
    area->setWidget(content);
    auto* clip = placed(new QFrame(parent), "clip", QRect(220, 220, 60, 30));
    placed(new QFrame(clip), "clipped", QRect(100, 0, 30, 30));
    placed(new QFrame(parent), "unseen", QRect(300, 220, 30, 30))->hide();
}

QAction* addEntry(TestHost& host, QMenu* menu, const char* name)
{
    QAction* action = menu->addAction(QLatin1String(name));
    action->setObjectName(QLatin1String(name));
    host.journalSignal(action, SIGNAL(hovered()), QLatin1String("hovered"));
    host.journalSignal(action, SIGNAL(triggered()), QLatin1String("triggered"));
    return action;
}

void setChecked(QAction* action)
{
    action->setCheckable(true);
    action->setChecked(true);
}

void addMenus(TestHost& host, QMainWindow* window)
{
    window->menuBar()->setObjectName(QLatin1String("bar"));
    QMenu* file = placed(window->menuBar()->addMenu(QLatin1String("&File")), "fileMenu", QRect());
    addEntry(host, file, "New");
    addEntry(host, file, "Locked")->setEnabled(false);
    QMenu* recent = placed(file->addMenu(QLatin1String("Recent")), "recentMenu", QRect());
    QMenu* older = placed(recent->addMenu(QLatin1String("Older")), "olderMenu", QRect());
    addEntry(host, recent, "Letter");
    addEntry(host, older, "Diary");
    QMenu* edit = placed(window->menuBar()->addMenu(QLatin1String("&Edit")), "editMenu", QRect());
    addEntry(host, edit, "Undo");
    setChecked(addEntry(host, edit, "Bold"));
    QMenu* many = placed(window->menuBar()->addMenu(QLatin1String("Many")), "manyMenu", QRect());
    for (int i = 0; i < 120; ++i)
        addEntry(host, many, QString::fromLatin1("Entry %1").arg(i).toLatin1().constData());
    auto* popup = placed(new QMenu(window), "popup", QRect());
    addEntry(host, popup, "Cut");
    setChecked(addEntry(host, popup, "Wrap"));
    addEntry(host, placed(popup->addMenu(QLatin1String("More")), "moreMenu", QRect()), "Split");
    host.onRequest(QLatin1String("popup"), [=] { popup->popup(window->mapToGlobal(QPoint(300, 300))); });
}

void build(TestHost& host)
{
    auto* window = placed(new QMainWindow, "window", QRect(60, 60, 660, 460));
    window->setWindowTitle(QLatin1String("Items"));
    auto* central = new QWidget;
    window->setCentralWidget(central);
    addViews(host, central);
    addContainers(host, central);
    addArea(host, central);
    addMenus(host, window);
    host.onRequest(QLatin1String("cursorAway"), [] { QCursor::setPos(5, 5); });
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
