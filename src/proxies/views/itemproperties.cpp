#include "proxies/views/itemproperties.h"

#include <QAbstractItemView>

namespace views {

bool isItemName(const char* name)
{
    const char prefix[] = "item";
    return qstrncmp(name, prefix, qstrlen(prefix)) == 0;
}

QVariant itemIsEnabled(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsEnabled) == Qt::ItemIsEnabled;
}

QVariant itemIsSelectable(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsSelectable) == Qt::ItemIsSelectable;
}

QVariant itemIsSelected(const QAbstractItemView& view, const QModelIndex& item)
{
    return isSelected(view, item);
}

QVariant itemIsCheckable(const QAbstractItemView&, const QModelIndex& item)
{
    return (item.flags() & Qt::ItemIsUserCheckable) == Qt::ItemIsUserCheckable;
}

QVariant itemIsChecked(const QAbstractItemView&, const QModelIndex& item)
{
    return item.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

bool isSelected(const QAbstractItemView& view, const QModelIndex& item)
{
    const QItemSelectionModel* selection = view.selectionModel();
    return selection && item.isValid() && selection->isSelected(item);
}

} // namespace views
