// Tree views over all kinds of models, one per "--scenario"; see tests/protocol/test_tree_view.py.

#include "scenario.h"
#include "testhost.h"
#include "viewjournal.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtCore/QCoreApplication>

namespace {

void select(QTreeView* view, int row)
{
    view->selectionModel()->select(
        view->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

struct Stage
{
    TestHost& host;
    QWidget* window;

    void show(QTreeView* view, QAbstractItemModel* model)
    {
        view->setObjectName(QLatin1String("tree"));
        if (model)
            view->setModel(model);
        window->layout()->addWidget(view);
        journalView(host, view);
        host.onSignal(view, SIGNAL(expanded(QModelIndex)), [this] { host.journal(QLatin1String("expanded")); });
        addRequests(view);
    }

    void addRequests(QTreeView* view)
    {
        struct Mode
        {
            const char* name;
            QAbstractItemView::SelectionMode mode;
        };
        const Mode modes[] = {
            {"single", QAbstractItemView::SingleSelection},
            {"multi", QAbstractItemView::MultiSelection},
            {"extended", QAbstractItemView::ExtendedSelection},
            {"contiguous", QAbstractItemView::ContiguousSelection},
            {"none", QAbstractItemView::NoSelection},
        };
        for (const Mode& mode : modes)
            host.onRequest(QLatin1String(mode.name), [=] { view->setSelectionMode(mode.mode); });
        host.onRequest(QLatin1String("noCurrent"), [=] { view->setCurrentIndex(QModelIndex()); });
        host.onRequest(QLatin1String("cells"), [=] {
            view->setSelectionBehavior(QAbstractItemView::SelectItems);
            for (int column = 0; column < view->header()->count(); ++column)
                view->setColumnHidden(column, false);
        });
        host.onRequest(QLatin1String("collapseAll"), [=] { view->collapseAll(); });
        host.onRequest(QLatin1String("expandAll"), [=] { view->expandAll(); });
        host.onRequest(QLatin1String("hideFirstColumn"), [=] { view->setColumnHidden(0, true); });
        host.onRequest(QLatin1String("hideCurrent"),
            [=] { view->setRowHidden(view->currentIndex().row(), view->currentIndex().parent(), true); });
        host.onRequest(QLatin1String("swapColumns"), [=] { view->header()->moveSection(0, 1); });
        host.onRequest(QLatin1String("scrollToBottom"), [=] { view->scrollToBottom(); });
        host.onRequest(QLatin1String("withoutModelOnFocus"),
            [=] { new EventHandler(view, QEvent::FocusIn, [=] { view->setModel(nullptr); }); });
        host.onRequest(QLatin1String("fixedTree"), [=] { view->setItemsExpandable(false); });
        host.onRequest(QLatin1String("makeSmall"), [=] { view->setFixedHeight(100); });
        host.onRequest(
            QLatin1String("focusOther"), [=] { window->findChild<QWidget*>(QLatin1String("other"))->setFocus(); });
        host.onRequest(QLatin1String("deleteModel"), [=] { delete view->model(); });
        host.onRequest(QLatin1String("selectLast"), [=] { select(view, view->model()->rowCount() - 1); });
        host.onRequest(QLatin1String("selectTwoAndFour"), [=] {
            select(view, 1);
            select(view, 3);
        });
        host.journalSignal(view, SIGNAL(doubleClicked(QModelIndex)), QLatin1String("doubled"));
    }
};

QStandardItem* add(QStandardItem* parent, const char* name, const char* size)
{
    auto* item = new QStandardItem(QLatin1String(name));
    auto* sizeItem = new QStandardItem(QLatin1String(size));
    parent->appendRow(QList<QStandardItem*>() << item << sizeItem << new QStandardItem(QLatin1String("hidden")));
    return item;
}

QStandardItemModel* fileModel(QObject* parent)
{
    auto* model = new QStandardItemModel(parent);
    model->setHorizontalHeaderLabels(
        QStringList() << QLatin1String("Name") << QLatin1String("Size") << QLatin1String("Kind"));
    QStandardItem* root = model->invisibleRootItem();
    add(root, "A", "");
    add(add(root, "A", ""), "B", "1");
    QStandardItem* folder = add(root, "docs", "3");
    add(folder, "file", "12");
    add(folder, "file", "14");
    add(folder, "", "x");
    add(folder, "a/b", "");
    add(add(add(folder, "sub", ""), "subsub", ""), "leaf", "9");
    add(add(root, "secret", ""), "inside", "");
    add(root, "off", "")->setEnabled(false);
    add(root, "label", "")->setSelectable(false);
    const Qt::CheckState states[] = {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked};
    const char* const names[] = {"unchecked", "partial", "checked"};
    for (int i = 0; i < 3; ++i) {
        QStandardItem* item = add(root, names[i], "");
        item->setCheckable(true);
        item->setCheckState(states[i]);
    }
    QStandardItem* last = add(root, "last", "5");
    model->item(last->row(), 1)->setEditable(false);
    return model;
}

QTreeView* showFiles(Stage& stage)
{
    auto* view = new QTreeView;
    stage.show(view, fileModel(stage.window));
    view->setColumnHidden(2, true);
    view->setRowHidden(3, QModelIndex(), true);
    return view;
}

void fileScenario(Stage& stage)
{
    showFiles(stage);
}

void widgetScenario(Stage& stage)
{
    auto* tree = new QTreeWidget;
    tree->setColumnCount(2);
    tree->setHeaderLabels(QStringList() << QLatin1String("One") << QLatin1String("Two"));
    for (int i = 0; i < 3; ++i) {
        auto* top = new QTreeWidgetItem(tree, QStringList() << QString::fromLatin1("top%1").arg(i));
        new QTreeWidgetItem(top, QStringList() << QString::fromLatin1("child") << QString::number(i));
    }
    stage.show(tree, nullptr);
    tree->topLevelItem(1)->setFirstColumnSpanned(true);
}

void singleColumnScenario(Stage& stage)
{
    auto* tree = new QTreeWidget;
    tree->setHeaderLabel(QLatin1String("Names"));
    const char* const names[] = {"one", "two", "three", "four"};
    for (const char* name : names)
        new QTreeWidgetItem(tree, QStringList(QLatin1String(name)));
    stage.show(tree, nullptr);
}

void rootedScenario(Stage& stage)
{
    QStandardItemModel* model = fileModel(stage.window);
    auto* view = new QTreeView;
    stage.show(view, model);
    view->setRootIndex(model->index(2, 0));
}

void sortedScenario(Stage& stage)
{
    auto* proxy = new QSortFilterProxyModel(stage.window);
    proxy->setSourceModel(fileModel(stage.window));
    proxy->setDynamicSortFilter(true);
    proxy->sort(0, Qt::DescendingOrder);
    stage.show(new QTreeView, proxy);
}

// A folder whose children come only when it is expanded.
class LazyModel : public QStandardItemModel
{
public:
    explicit LazyModel(QObject* parent)
        : QStandardItemModel(parent)
    {
        appendRow(new QStandardItem(QLatin1String("folder")));
    }
    bool hasChildren(const QModelIndex& parent) const override { return !parent.parent().isValid(); }
    bool canFetchMore(const QModelIndex& parent) const override
    {
        return parent.isValid() && !parent.parent().isValid() && rowCount(parent) == 0;
    }
    void fetchMore(const QModelIndex& parent) override
    {
        itemFromIndex(parent)->appendRow(new QStandardItem(QLatin1String("child")));
    }
};

void lazyScenario(Stage& stage)
{
    stage.show(new QTreeView, new LazyModel(stage.window));
}

// 100,000 items below 300, or another number of these: "--parents N".
void largeScenario(Stage& stage)
{
    const QStringList arguments = QCoreApplication::arguments();
    const int given = arguments.indexOf(QLatin1String("--parents"));
    const int parents = given < 0 ? 300 : arguments.at(given + 1).toInt();
    auto* tree = new QTreeWidget;
    tree->setColumnCount(2);
    QList<QTreeWidgetItem*> items;
    for (int i = 0; i < parents; ++i) {
        auto* top = new QTreeWidgetItem(QStringList() << QString::fromLatin1("p%1").arg(i));
        items.append(top);
        for (int k = 0; k < 333; ++k)
            top->addChild(
                new QTreeWidgetItem(QStringList() << QString::fromLatin1("c%1").arg(k) << QLatin1String("x")));
    }
    tree->addTopLevelItems(items);
    stage.show(tree, nullptr);
}

void noModelScenario(Stage& stage)
{
    stage.show(new QTreeView, nullptr);
}

void thiefScenario(Stage& stage)
{
    new FocusThief(showFiles(stage), stage.window->findChild<QWidget*>(QLatin1String("other")));
}

// The current item jumps from the top to the bottom and back, so that arrow keys never come to an end.
void wrappingScenario(Stage& stage)
{
    QTreeView* view = showFiles(stage);
    const int last = view->model()->rowCount() - 1;
    afterSignal(stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        const int row = view->currentIndex().row();
        if (row == 0 || row == last)
            view->setCurrentIndex(view->model()->index(row == 0 ? last - 1 : 1, 0));
    });
}

using Change = void (*)(QTreeView* view);

// Runs the change on the way down, when the second row becomes current.
void onTheWay(Stage& stage, Change change)
{
    QTreeView* view = showFiles(stage);
    afterSignal(stage.host, view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (view->currentIndex().row() == 1)
            change(view);
    });
}

void removeDocs(QTreeView* view)
{
    if (view->model()->rowCount() == 10)
        view->model()->removeRow(2);
}

void insertRows(QTreeView* view)
{
    if (view->model()->rowCount() < 20)
        view->model()->insertRow(0);
}

void removingScenario(Stage& stage)
{
    onTheWay(stage, removeDocs);
}
void insertingScenario(Stage& stage)
{
    onTheWay(stage, insertRows);
}
void deletingViewScenario(Stage& stage)
{
    onTheWay(stage, [](QTreeView* view) { delete view; });
}
void deletingModelScenario(Stage& stage)
{
    onTheWay(stage, [](QTreeView* view) { delete view->model(); });
}

void switchingScenario(Stage& stage)
{
    onTheWay(stage, [](QTreeView* view) { view->setModel(new QStandardItemModel(3, 1, view)); });
}

void resettingScenario(Stage& stage)
{
    QTreeView* view = showFiles(stage);
    auto* model = static_cast<QStandardItemModel*>(view->model());
    // Not after the signal: in the middle of it.
    stage.host.onSignal(view->selectionModel(), SIGNAL(currentChanged(QModelIndex, QModelIndex)), [=] {
        if (view->currentIndex().row() == 1)
            model->clear();
    });
}

const Scenario<Stage> scenarios[] = {
    {"files", fileScenario},
    {"widget", widgetScenario},
    {"single-column", singleColumnScenario},
    {"rooted", rootedScenario},
    {"sorted", sortedScenario},
    {"lazy", lazyScenario},
    {"large", largeScenario},
    {"no-model", noModelScenario},
    {"thief", thiefScenario},
    {"wrapping", wrappingScenario},
    {"removing", removingScenario},
    {"inserting", insertingScenario},
    {"switching", switchingScenario},
    {"resetting", resettingScenario},
    {"deleting-model", deletingModelScenario},
    {"deleting-view", deletingViewScenario},
};

void build(TestHost& host)
{
    runScenario(host, scenarios, "Trees", QSize(400, 500));
}

} // namespace

int main(int argc, char** argv)
{
    return TestHost::run(argc, argv, build);
}
