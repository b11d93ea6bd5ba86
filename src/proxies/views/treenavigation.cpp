// Moves the current item of a tree by the keyboard: up to the top, then down past every row, expanding the items that
// contain the target.

#include "proxies/views/itemproperties.h"
#include "proxies/views/itemtext.h"
#include "proxies/views/stqtreeview.h"
#include "proxies/views/treeitempath.h"
#include "proxies/views/walkguard.h"

#include <QTreeView>

#include <algorithm>
#include <vector>

namespace {

const char noItemMessage[] = "Internal error";
const char notEnabledMessage[] = "item \"%s\" is not enabled";
const char notSelectableItemMessage[] = "item \"%s\" is not selectable";
const char stuckMessage[] = "item is not selectable";

// The cell that carries the row's children.
QModelIndex firstCell(const QModelIndex& index)
{
    return index.sibling(index.row(), 0);
}

bool isBelow(const QModelIndex& index, const QModelIndex& ancestor)
{
    QModelIndex parent = index.parent();
    while (parent.isValid() && parent != ancestor)
        parent = parent.parent();
    return parent.isValid();
}

// The rows that lead to an item, its own first.
std::vector<int> rowsFromItem(QModelIndex item)
{
    std::vector<int> rows;
    for (; item.isValid(); item = item.parent())
        rows.push_back(item.row());
    return rows;
}

// Whether an item comes after another one on the way down; the items below it do.
bool isAfter(const QModelIndex& item, const QModelIndex& other)
{
    const std::vector<int> rows = rowsFromItem(item);
    const std::vector<int> otherRows = rowsFromItem(other);
    return std::lexicographical_compare(otherRows.rbegin(), otherRows.rend(), rows.rbegin(), rows.rend());
}

} // namespace

void STQTreeView::navigateTo(const QModelIndex& index)
{
    requireReachable(index);
    const QPersistentModelIndex target(index);
    if (isSettledOn(target))
        return;
    walkToTop();
    const QModelIndex top = treeView()->currentIndex();
    makeCurrent(views::cellAt(top.model(), top.row(), target.column(), top.parent()));
    if (!target.isValid() || target != treeView()->currentIndex())
        walkDownTo(target);
}

void STQTreeView::requireReachable(const QModelIndex& target)
{
    // The application may have given the view another model meanwhile.
    if (!target.isValid() || target.model() != treeView()->model())
        proxy::raiseError(noItemMessage);
    if (!(target.flags() & Qt::ItemIsEnabled)) {
        const QString path = views::itemPathOf(*treeView(), target);
        proxy::raiseNotYet(proxy::disabledItem(path), notEnabledMessage, path);
    }
    if (!(target.flags() & Qt::ItemIsSelectable))
        proxy::raiseError(notSelectableItemMessage, views::itemPathOf(*treeView(), target));
}

bool STQTreeView::isSettledOn(const QModelIndex& target)
{
    const QTreeView* view = treeView();
    return view->currentIndex() == target && views::isSelected(*view, target)
        && (view->model()->rowCount(target) == 0 || view->isExpanded(target));
}

void STQTreeView::walkToTop()
{
    views::WalkGuard guard(treeView()->model());
    for (;;) {
        const QPersistentModelIndex before(treeView()->currentIndex());
        keyClick(Qt::Key_Up, Qt::NoModifier);
        const QModelIndex now = treeView()->currentIndex();
        if (now == before || guard.visitAndDetectEndlessWalk(now, true))
            return;
    }
}

void STQTreeView::walkDownTo(const QPersistentModelIndex& target)
{
    views::WalkGuard guard(treeView()->model());
    for (;;) {
        const QPersistentModelIndex before(treeView()->currentIndex());
        if (!before.isValid() || !target.isValid())
            break;
        stepTowards(target);
        const QModelIndex now = treeView()->currentIndex();
        if (now == before)
            break;
        if (now == target)
            return;
        if (guard.visitAndDetectEndlessWalk(now, !isAfter(now, target)))
            break;
    }
    proxy::raiseError(stuckMessage);
}

void STQTreeView::stepTowards(const QPersistentModelIndex& target)
{
    const QPersistentModelIndex before(treeView()->currentIndex());
    const QPersistentModelIndex row(firstCell(before));
    if (before == target || isBelow(target, row)) {
        if (!treeView()->isExpanded(row))
            keyClick(Qt::Key_Plus, Qt::NoModifier);
        // Beside the first cell, Right would leave the column of a view that selects cells, unless it expands the row.
        if (before == target || before == row || !treeView()->isExpanded(row))
            keyClick(Qt::Key_Right, Qt::NoModifier);
        if (treeView()->currentIndex() != before)
            return;
    }
    keyClick(Qt::Key_Down, Qt::NoModifier);
}

void STQTreeView::makeCurrent(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    QTreeView* view = treeView();
    // In multi selection the view's own setCurrentIndex() toggles whether the item is selected. Moving there must not.
    if (view->selectionMode() == QAbstractItemView::MultiSelection)
        view->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    else
        view->setCurrentIndex(index);
}
