#include "locate/rows.h"

#include <QHeaderView>
#include <QListView>
#include <QTableView>
#include <QTreeView>

namespace locate {

namespace {

// Limit for the distance in pixels between the first row and the viewport's edge.
const int maximumMargin = 64;

class ListRows : public Rows
{
public:
    using Rows::Rows;

    QModelIndex first() const override
    {
        return isOrdered() ? itemAtTop() : list().model()->index(0, list().modelColumn(), list().rootIndex());
    }
    bool isOrdered() const override
    {
        return list().viewMode() == QListView::ListMode && list().flow() == QListView::TopToBottom
            && !list().isWrapping();
    }
    bool isHidden(const QModelIndex& row) const override { return list().isRowHidden(row.row()); }

private:
    const QListView& list() const { return *static_cast<const QListView*>(view); }
};

class TableRows : public Rows
{
public:
    using Rows::Rows;

    QModelIndex first() const override { return itemAtTop(); }
    bool isOrdered() const override { return !table().verticalHeader()->sectionsMoved(); }
    bool isHidden(const QModelIndex& row) const override { return table().isRowHidden(row.row()); }
    QModelIndexList cells(const QModelIndex& row) const override
    {
        return shownCells(row, *table().horizontalHeader());
    }
    QHeaderView* header() const override { return table().horizontalHeader(); }

private:
    const QTableView& table() const { return *static_cast<const QTableView*>(view); }
};

class TreeRows : public Rows
{
public:
    using Rows::Rows;

    QModelIndex first() const override
    {
        const QModelIndex top = itemAtTop();
        return top.sibling(top.row(), 0);
    }
    QModelIndex below(const QModelIndex& row) const override { return tree().indexBelow(row); }
    bool isOrdered() const override { return true; }
    QModelIndexList cells(const QModelIndex& row) const override { return shownCells(row, *tree().header()); }
    QHeaderView* header() const override { return tree().header(); }
    void describe(const QModelIndex& row, Item& item) const override
    {
        for (QModelIndex above = row.parent();
             above.isValid() && above != tree().rootIndex() && item.depth < maximumSteps; above = above.parent())
            ++item.depth;
        if (tree().model()->hasChildren(row))
            item.states.append(QLatin1String(tree().isExpanded(row) ? "expanded" : "collapsed"));
    }
    int leftOut(const QModelIndex& top, const QModelIndex& bottom, int) const override
    {
        int count = 0;
        for (QModelIndex row = tree().indexAbove(top); row.isValid() && count < maximumSteps;
             row = tree().indexAbove(row))
            ++count;
        for (QModelIndex row = tree().indexBelow(bottom); row.isValid() && count < maximumSteps; row = below(row))
            ++count;
        return count;
    }

private:
    const QTreeView& tree() const { return *static_cast<const QTreeView*>(view); }
};

} // namespace

QModelIndex Rows::itemAtTop() const
{
    const QRect area = view->viewport()->rect();
    for (int y = 0; y < qMin(area.height(), maximumMargin); y += 2) {
        for (const int x : {1, area.width() / 2, area.width() - 2}) {
            const QModelIndex index = view->indexAt(QPoint(x, y));
            if (index.isValid())
                return index;
        }
    }
    return Rows::first();
}

QModelIndexList Rows::shownCells(const QModelIndex& row, const QHeaderView& columns)
{
    QModelIndexList shown;
    for (int i = 0; i < columns.count() && shown.size() < maximumColumns; ++i) {
        const int column = columns.logicalIndex(i);
        if (!columns.isSectionHidden(column))
            shown.append(row.sibling(row.row(), column));
    }
    return shown;
}

std::unique_ptr<Rows> rowsOf(QAbstractItemView* view)
{
    if (qobject_cast<QTreeView*>(view))
        return std::make_unique<TreeRows>(view);
    if (qobject_cast<QTableView*>(view))
        return std::make_unique<TableRows>(view);
    if (qobject_cast<QListView*>(view))
        return std::make_unique<ListRows>(view);
    return std::make_unique<Rows>(view);
}

} // namespace locate
