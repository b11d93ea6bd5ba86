// Scenarios with item views.

#include "dragwidgets.h"
#include "scenes.h"
#include "viewtricks.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTableWidget>
#include <QTreeWidget>

namespace {

template <class View>
View* putView(Stage& stage, QWidget* centre, const char* name, int depth)
{
    auto* view = put(centre, new DraggingView<View>(stage), name);
    view->setEditTriggers(QAbstractItemView::AllEditTriggers);
    if (QT_VERSION < QT_VERSION_CHECK(5, 0, 0)) { // its lists of some sizes show and hide a scroll bar without an end
        view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
        view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    }
    setHostileModel(stage, view, depth);
    addViewTricks(stage, view, depth);
    return view;
}

// A widget that has lost its model is of no more use, not to its application either: Qt does not look before it asks the
// model for items.
template <class View>
bool isUsable(const QPointer<View>& view)
{
    return view && view->model();
}

// A widget's own model, in whose place no other can be put.
void addModelTrick(Stage& stage, QAbstractItemView* view)
{
    const QPointer<QAbstractItemView> guarded(view);
    stage.addTrick([=, &stage](QObject*) {
        if (isUsable(guarded) && stage.chance.oneIn(3))
            destroyModelOf(guarded);
    });
}

void fillTree(QTreeWidget* tree)
{
    for (int i = 1; i < 5; ++i) {
        auto* item = new QTreeWidgetItem(tree, QStringList() << QString::fromLatin1("Item %1").arg(i) << words("Cell"));
        item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Unchecked);
        new QTreeWidgetItem(item, QStringList(words("Item 1")));
        new QTreeWidgetItem(item->child(0), QStringList(words("Item 2")));
    }
}

void fillTable(QTableWidget* table)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column)
            table->setItem(row, column, new QTableWidgetItem(QString::number(row * column)));
    }
    table->setHorizontalHeaderLabels(QStringList() << words("A") << words("B"));
}

} // namespace

void buildLists(Stage& stage, QWidget* centre)
{
    put(centre, new QLineEdit, "line");
    putDragLabels(stage, centre);
    putView<QListView>(stage, centre, "listView", 1);
    putView<QListView>(stage, centre, "iconView", 1)->setViewMode(QListView::IconMode);
    const QPointer<QListWidget> list(put(centre, new DraggingView<QListWidget>(stage), "listWidget"));
    list->addItems(QStringList() << words("Item 1") << words("Item 2") << words("Item 3"));
    stage.addTrick([=, &stage](QObject*) {
        if (isUsable(list) && list->count() > 3)
            delete list->takeItem(stage.chance.below(list->count()));
        else if (isUsable(list))
            list->addItems(QStringList() << words("Item 4") << words("Item 5"));
    });
    addModelTrick(stage, list);
}

void buildTrees(Stage& stage, QWidget* centre)
{
    put(centre, new QLineEdit, "line");
    putDragLabels(stage, centre);
    putView<QTreeView>(stage, centre, "treeView", 3);
    putView<QTreeView>(stage, centre, "wideTree", 2)->setUniformRowHeights(true);
    const QPointer<QTreeWidget> tree(put(centre, new DraggingView<QTreeWidget>(stage), "treeWidget"));
    tree->setColumnCount(2);
    fillTree(tree);
    stage.addTrick([=](QObject*) {
        if (isUsable(tree)) {
            tree->clear();
            fillTree(tree);
        }
    });
    stage.addTrick([=](QObject*) {
        if (isUsable(tree))
            delete tree->currentItem();
    });
    addModelTrick(stage, tree);
}

void buildTables(Stage& stage, QWidget* centre)
{
    put(centre, new QLineEdit, "line");
    putView<QTableView>(stage, centre, "tableView", 1);
    putView<QTableView>(stage, centre, "otherTable", 1)->setSortingEnabled(true);
    const QPointer<QTableWidget> table(put(centre, new QTableWidget(4, 2), "tableWidget"));
    fillTable(table);
    stage.addTrick([=, &stage](QObject*) {
        if (isUsable(table)) {
            table->setRowCount(stage.chance.below(6));
            fillTable(table);
        }
    });
    stage.addTrick([=](QObject*) {
        if (isUsable(table))
            table->clear();
    });
    addModelTrick(stage, table);
}

void buildGeneric(Stage& stage, QWidget* centre)
{
    put(centre, new QLineEdit, "line");
    putDragLabels(stage, centre);
    auto* header = put(centre, new QHeaderView(Qt::Horizontal), "header");
    setHostileModel(stage, header, 1);
    addViewTricks(stage, header, 1);
    putView<QTreeView>(stage, centre, "treeView", 3);
    putView<QTableView>(stage, centre, "tableView", 1);
    putView<QListView>(stage, centre, "listView", 2);
}
