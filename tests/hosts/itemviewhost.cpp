// Item views of every kind, for the proxy that any item view can have; see tests/protocol/test_item_view.py.

#include "testhost.h"
#include "viewjournal.h"

#include <QColumnView>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

// An item view of the application's own: each row 10 pixels high, 20 wide, at (90, 45) and below. Counts what
// it is asked to do.
class OwnView : public QAbstractItemView
{
public:
    explicit OwnView(TestHost& testHost)
        : host(testHost)
    {
        setFrameShape(QFrame::NoFrame);
        setFixedSize(200, 100);
    }

    QRect visualRect(const QModelIndex& index) const override
    {
        return index.isValid() && !index.parent().isValid() ? QRect(90, 45 + 10 * index.row(), 20, 10) : QRect();
    }
    void scrollTo(const QModelIndex& index, ScrollHint hint) override
    {
        host.journal(QString::fromLatin1("scrollTo %1,%2 %3 hint %4")
                         .arg(index.row())
                         .arg(index.column())
                         .arg(index.data().toString())
                         .arg(int(hint)));
    }
    QModelIndex indexAt(const QPoint&) const override { return QModelIndex(); }

protected:
    QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return QModelIndex(); }
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override { return 0; }
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override { }
    QRegion visualRegionForSelection(const QItemSelection&) const override { return QRegion(); }

private:
    TestHost& host;
};

// Dies when it is asked to scroll.
class DyingView : public OwnView
{
public:
    using OwnView::OwnView;
    void scrollTo(const QModelIndex&, ScrollHint) override { delete model(); }
};

// Claims rows, but has none of them.
class EmptyPromiseModel : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;
    int rowCount(const QModelIndex&) const override { return 2; }
    int columnCount(const QModelIndex&) const override { return 2; }
    QVariant data(const QModelIndex&, int) const override { return QVariant(); }
    QModelIndex index(int, int, const QModelIndex&) const override { return QModelIndex(); }
};

QList<QStandardItem*> row(const QString& prefix)
{
    QList<QStandardItem*> items;
    for (int column = 1; column <= 3; ++column)
        items << new QStandardItem(prefix + QString::fromLatin1("c%1").arg(column));
    return items;
}

// Four rows and three columns; below row 2, column 3 two rows "deep".
QStandardItemModel* itemModel(QObject* parent)
{
    auto* model = new QStandardItemModel(parent);
    for (int i = 1; i <= 4; ++i)
        model->appendRow(row(QString::fromLatin1("r%1").arg(i)));
    for (int i = 1; i <= 2; ++i)
        model->item(1, 2)->appendRow(row(QString::fromLatin1("deep%1").arg(i)));
    model->item(0)->appendRow(row(QString::fromLatin1("child")));
    model->setVerticalHeaderLabels(QString::fromLatin1("one same same four").split(QLatin1Char(' ')));
    model->setHorizontalHeaderLabels(QString::fromLatin1("left mid right").split(QLatin1Char(' ')));
    return model;
}

void show(TestHost& host, QWidget* window, QAbstractItemView* view, const char* name, QAbstractItemModel* model)
{
    view->setObjectName(QLatin1String(name));
    if (model)
        view->setModel(model);
    window->layout()->addWidget(view);
    journalView(host, view);
}

void addOwnView(TestHost& host, QWidget* window)
{
    auto* own = new OwnView(host);
    QStandardItemModel* model = itemModel(window);
    show(host, window, own, "own", model);
    host.onRequest(QLatin1String("deepNamelessRow"), [=] {
        model->setVerticalHeaderItem(0, new QStandardItem);
        model->item(1, 2)->child(0)->appendRow(row(QLatin1String("deepest")));
    });
    host.onRequest(QLatin1String("selectRows"), [=] { own->setSelectionBehavior(QAbstractItemView::SelectRows); });
    host.onRequest(
        QLatin1String("selectColumns"), [=] { own->setSelectionBehavior(QAbstractItemView::SelectColumns); });
    host.onRequest(QLatin1String("selectItems"), [=] { own->setSelectionBehavior(QAbstractItemView::SelectItems); });
}

void addTree(TestHost& host, QWidget* window)
{
    auto* tree = new QTreeView;
    show(host, window, tree, "tree", itemModel(window));
    tree->setFixedHeight(150);
    host.onRequest(QLatin1String("expandFirst"), [=] { tree->expand(tree->model()->index(0, 0)); });
    host.onRequest(QLatin1String("headerCentre"), [=, &host] {
        const QHeaderView* header = tree->header();
        const QRect rect(header->sectionViewportPosition(1), 0, header->sectionSize(1), header->height());
        host.journal(QString::fromLatin1("centre %1;%2")
                         .arg((rect.left() + rect.right()) * 0.5 / tree->width())
                         .arg((rect.top() + rect.bottom()) * 0.5 / tree->height()));
    });
}

void addTable(TestHost& host, QWidget* window)
{
    auto* table = new QTableView;
    show(host, window, table, "table", itemModel(window));
    table->setFixedHeight(150);
    host.onRequest(QLatin1String("cellCentre"), [=, &host] {
        const QRect rect = table->visualRect(table->model()->index(1, 1)).translated(table->viewport()->pos());
        host.journal(QString::fromLatin1("centre %1;%2")
                         .arg((rect.left() + rect.right()) * 0.5 / table->width())
                         .arg((rect.top() + rect.bottom()) * 0.5 / table->height()));
    });
}

void build(TestHost& host)
{
    auto* window = new QWidget;
    window->setObjectName(QLatin1String("window"));
    window->setWindowTitle(QLatin1String("Views"));
    new QVBoxLayout(window);

    addOwnView(host, window);
    show(host, window, new OwnView(host), "modelless", nullptr);
    show(host, window, new OwnView(host), "promise", new EmptyPromiseModel(window));
    show(host, window, new DyingView(host), "dying", itemModel(nullptr));
    show(host, window, new QColumnView, "columns", itemModel(window));

    addTree(host, window);
    addTable(host, window);
    window->setGeometry(60, 30, 500, 950);
    window->show();
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
