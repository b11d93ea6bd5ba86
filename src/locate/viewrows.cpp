#include "locate/viewrows.h"

#include "compat/variant.h"
#include "locate/rows.h"

#include <QHeaderView>
#include <QPersistentModelIndex>
#include <QPointer>

#include <memory>

namespace locate {

namespace {

// A model of the application's own runs its code at every question: the view, or the model, may be gone after it.
class Liveness
{
public:
    explicit Liveness(QAbstractItemView* itemView)
        : view(itemView)
        , model(itemView->model())
    {
    }
    bool holds() const { return view && model && view->model() == model; }

private:
    const QPointer<QAbstractItemView> view;
    const QPointer<QAbstractItemModel> model;
};

void addCell(Item& item, const QAbstractItemView& view, const QModelIndex& cell, const Liveness& life)
{
    item.texts.append(compat::textOf(cell.data(Qt::DisplayRole)));
    if (!life.holds())
        return;
    addState(item.states, view.selectionModel() && view.selectionModel()->isSelected(cell), "selected");
    const QVariant check = cell.data(Qt::CheckStateRole);
    addState(item.states, check.isValid() && check.toInt() == Qt::Checked, "checked");
    addState(item.states, check.isValid() && check.toInt() == Qt::PartiallyChecked, "partly checked");
}

Item itemOf(const QAbstractItemView& view, const Rows& rows, const QPersistentModelIndex& row, const Liveness& life)
{
    Item item;
    addState(item.states, !(view.model()->flags(row) & Qt::ItemIsEnabled), "disabled");
    if (!life.holds() || !row.isValid())
        return item;
    const QModelIndex current = view.currentIndex();
    addState(item.states, current.row() == row.row() && current.parent() == row.parent(), "current");
    rows.describe(row, item);
    for (int i = 0; life.holds() && row.isValid(); ++i) {
        const QModelIndexList cells = rows.cells(row); // anew: a model may change when it is asked
        if (i >= cells.size())
            break;
        addCell(item, view, cells.at(i), life);
    }
    return item;
}

// Where the row is in the viewport: as wide as that where it has columns, which can be hidden or scrolled away.
QRect placeOf(const QAbstractItemView& view, const Rows& rows, const QModelIndex& row)
{
    const QModelIndexList cells = rows.cells(row);
    QRect place = cells.isEmpty() ? QRect() : view.visualRect(cells.first());
    if (rows.header() && place.height() > 0) {
        place.setLeft(0);
        place.setRight(view.viewport()->width() - 1);
    }
    return place;
}

void addHeader(Items& items, const QAbstractItemView& view, const Rows& rows, const Liveness& life)
{
    const QPointer<QHeaderView> header(rows.header());
    for (int i = 0; life.holds() && header && header->isVisible() && i < header->count(); ++i) {
        const int column = header->logicalIndex(i);
        if (!header->isSectionHidden(column) && items.header.size() < maximumColumns)
            items.header.append(compat::textOf(view.model()->headerData(column, Qt::Horizontal)));
    }
}

} // namespace

Items rowsInSight(QAbstractItemView* view)
{
    Items items;
    if (!view->model())
        return items;
    const Liveness life(view);
    const std::unique_ptr<Rows> rows = rowsOf(view);
    addHeader(items, *view, *rows, life);
    if (!life.holds())
        return items;
    const QRect area = view->viewport()->rect();
    QPersistentModelIndex top;
    QPersistentModelIndex bottom;
    QPersistentModelIndex row = rows->first();
    for (int steps = 0; row.isValid() && steps < maximumSteps && static_cast<int>(items.shown.size()) < maximumItems;
         ++steps) {
        const QRect place = placeOf(*view, *rows, row);
        const bool isInSight = !rows->isHidden(row) && place.isValid() && place.intersects(area);
        if (isInSight) {
            if (!top.isValid())
                top = row;
            bottom = row;
            items.shown.push_back(itemOf(*view, *rows, row, life));
        } else if (rows->isOrdered() && place.top() > area.bottom()) {
            break;
        }
        if (!life.holds() || !row.isValid())
            return items;
        row = rows->below(row);
    }
    if (life.holds())
        items.leftOut = qMax(0, rows->leftOut(top, bottom, static_cast<int>(items.shown.size())));
    return items;
}

} // namespace locate
