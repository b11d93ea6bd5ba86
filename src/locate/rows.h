#pragma once

#include "locate/items.h"

#include <QAbstractItemView>

#include <memory>

class QHeaderView;

namespace locate {

// Limit for the rows that are visited to find those in sight, or to count the others.
const int maximumSteps = 2000;

// Walks through the rows of an item view; subclasses know the kinds of views. This class makes no assumption about
// where rows are.
class Rows
{
public:
    explicit Rows(QAbstractItemView* itemView)
        : view(itemView)
    {
    }
    virtual ~Rows() = default;
    Q_DISABLE_COPY(Rows)

    // The first row of which something can be in sight.
    virtual QModelIndex first() const { return view->model()->index(0, 0, view->rootIndex()); }
    virtual QModelIndex below(const QModelIndex& row) const { return row.sibling(row.row() + 1, row.column()); }
    // Whether all rows after one that is below the viewport are out of sight, too.
    virtual bool isOrdered() const { return false; }
    virtual bool isHidden(const QModelIndex&) const { return false; }
    virtual QModelIndexList cells(const QModelIndex& row) const { return QModelIndexList() << row; }
    virtual QHeaderView* header() const { return nullptr; }
    virtual void describe(const QModelIndex&, Item&) const { }
    // How many rows there are besides the `shown` ones from `top` to `bottom`.
    virtual int leftOut(const QModelIndex&, const QModelIndex&, int shown) const
    {
        return view->model()->rowCount(view->rootIndex()) - shown;
    }

protected:
    // The item nearest to the beginning of the viewport.
    QModelIndex itemAtTop() const;
    // The cells of a row in the columns that are not hidden, in the order in which the header shows them.
    static QModelIndexList shownCells(const QModelIndex& row, const QHeaderView& columns);

    QAbstractItemView* const view;
};

// For the kind of the view, which has a model.
std::unique_ptr<Rows> rowsOf(QAbstractItemView* view);

} // namespace locate
